#pragma once

#include "app/look/Look.h"

#include <QLineEdit>

namespace quillet {

/// A capsule to type a search into. What is typed shows as it is, without ligatures.
class SearchField : public QLineEdit {
    Q_OBJECT

public:
    SearchField(const Look& look, const QString& placeholder, QWidget* parent = nullptr);

    QSize sizeHint() const override { return {200, 30}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void followTheme();
    void followText(const QString& text);

    Look m_look;
};

} // namespace quillet

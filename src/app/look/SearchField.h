#pragma once

#include "app/look/TextInput.h"

namespace quillet {

/// A capsule to type a search into.
class SearchField : public TextInput {
    Q_OBJECT

public:
    SearchField(const Look& look, Pasteboard& pasteboard, const QString& placeholder,
                QWidget* parent = nullptr);

    QSize sizeHint() const override { return {200, 30}; }

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace quillet

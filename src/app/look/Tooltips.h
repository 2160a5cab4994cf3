#pragma once

#include "app/look/Look.h"

#include <memory>
#include <QObject>

class QWidget;

namespace quillet {

/// Shows the tooltips of the whole application in the look. One object for the process, made when
/// the application exists.
class Tooltips : public QObject {
    Q_OBJECT

public:
    explicit Tooltips(const Look& look);
    ~Tooltips() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    class Bubble;

    void show(const QString& text, const QPoint& pointer);
    void hide();

    Look m_look;
    std::unique_ptr<Bubble> m_bubble;
};

} // namespace quillet

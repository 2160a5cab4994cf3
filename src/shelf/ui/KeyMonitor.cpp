#include "shelf/ui/KeyMonitor.h"

#include <QCoreApplication>
#include <QKeyEvent>

namespace quillet {

namespace {

/// Virtual key codes of the keys that are known by place; any other key is known by what it types.
uint16_t keyCode(int key) {
    switch (key) {
    case Qt::Key_Return:
        return 36;
    case Qt::Key_Enter:
        return 76;
    case Qt::Key_Backspace:
        return 51;
    case Qt::Key_Escape:
        return 53;
    case Qt::Key_Left:
        return 123;
    case Qt::Key_Right:
        return 124;
    default:
        return 0xffff;
    }
}

} // namespace

ShelfKey shelfKey(const QKeyEvent& event) {
    const bool shift = event.modifiers().testFlag(Qt::ShiftModifier);
    const bool command = event.modifiers().testFlag(Qt::ControlModifier);
    const bool isCharacter = event.key() > 0 && event.key() < Qt::Key_Escape;
    QString characters;
    if (isCharacter) {
        // The toolkit names letters by their capitals.
        const QString typed =
            QString::fromUcs4(std::array{static_cast<char32_t>(event.key())}.data(), 1);
        characters = shift ? typed : typed.toLower();
    }
    return {keyCode(event.key()), shift, command, characters};
}

KeyMonitor::KeyMonitor(QWidget& window, Handler handler)
    : m_window(window), m_handler(std::move(handler)) {
    QCoreApplication::instance()->installEventFilter(this);
}

bool KeyMonitor::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress)
        return false;
    // A key nobody wants is offered to one parent after the other; only its first stop counts.
    const QWidget* focus = m_window.focusWidget();
    if (watched != (focus ? focus : &m_window))
        return false;
    // The handler may end this monitor.
    const Handler handler = m_handler;
    return handler(shelfKey(*static_cast<QKeyEvent*>(event)));
}

} // namespace quillet

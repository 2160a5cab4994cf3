#include "app/look/CommandKeys.h"

#include <QCoreApplication>
#include <QKeyEvent>

namespace quillet {
namespace {

/// Such keys are told with the modifiers after them.
bool isModifier(int key) {
    return key >= Qt::Key_Shift && key <= Qt::Key_Alt;
}

} // namespace

CommandKeys::CommandKeys(const HotKeyService& keyboard) : m_keyboard(keyboard) {
    QCoreApplication::instance()->installEventFilter(this);
}

bool CommandKeys::eventFilter(QObject* watched, QEvent* event) {
    const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease;
    if (!isKey || !watched->isWidgetType())
        return false;
    auto& pressed = *static_cast<QKeyEvent*>(event);
    if (isModifier(pressed.key()) ||
        !(pressed.modifiers() & (Qt::ControlModifier | Qt::MetaModifier)))
        return false;
    const auto modifiers = (pressed.modifiers() & ~Qt::MetaModifier) | Qt::ControlModifier;
    const int key = latinKey(pressed);
    if (modifiers == pressed.modifiers() && key == pressed.key())
        return false;
    QKeyEvent command(pressed.type(), key, modifiers, pressed.nativeScanCode(),
                      pressed.nativeVirtualKey(), pressed.nativeModifiers(), {},
                      pressed.isAutoRepeat());
    QCoreApplication::sendEvent(watched, &command);
    pressed.accept(); // the command has already been offered to all parents
    return true;
}

int CommandKeys::latinKey(const QKeyEvent& event) const {
    constexpr int lastOfAscii = 0x7e;
    if (event.key() <= lastOfAscii || event.key() >= Qt::Key_Escape)
        return event.key();
    const char32_t symbol = m_keyboard.symbol(event.nativeScanCode());
    // The toolkit names letters by their capitals.
    return symbol == 0 ? event.key() : static_cast<int>(QChar::toUpper(symbol));
}

} // namespace quillet

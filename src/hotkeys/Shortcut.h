#pragma once

#include <optional>
#include <QByteArray>
#include <QString>

namespace quillet {

/// Bits of a shortcut's modifier mask.
namespace ModifierKey {
inline constexpr qint64 cmdKey = 0x100;
inline constexpr qint64 shiftKey = 0x200;
inline constexpr qint64 optionKey = 0x800;
inline constexpr qint64 controlKey = 0x1000;
} // namespace ModifierKey

/// Flags of a key event that count for shortcuts; an event may carry others beside them.
namespace ModifierFlag {
inline constexpr quint64 shift = 1U << 17;
inline constexpr quint64 control = 1U << 18;
inline constexpr quint64 option = 1U << 19;
inline constexpr quint64 command = 1U << 20;
} // namespace ModifierFlag

/// A key that went down.
struct KeyDown {
    quint16 keyCode = 0;       ///< virtual key code
    quint64 modifierFlags = 0; ///< see ModifierFlag
    std::optional<QString> charactersIgnoringModifiers;
};

/// Which key, with which modifier keys, and how the key is written. The name is kept rather than
/// worked out anew, so that a shortcut reads the same on every keyboard layout.
struct Shortcut {
    qint64 keyCode = 0;   ///< virtual key code
    qint64 modifiers = 0; ///< see ModifierKey
    QString keyName;
    bool operator==(const Shortcut&) const = default;

    /// Absent where the event carries none of command, option and control.
    static std::optional<Shortcut> fromEvent(const KeyDown& event);

    /// Absent where a member is missing or has another type.
    static std::optional<Shortcut> fromJson(const QByteArray& json);
    QByteArray toJson() const;

    /// As shown to the user: ⌃⌥⇧⌘, then the key.
    QString display() const;
};

} // namespace quillet

#pragma once

#include "hotkeys/HotKeyCenter.h"

#include <functional>
#include <optional>

namespace quillet {

/// Recording a new shortcut for one action: the rules without the control that shows them. The
/// control passes on every key that goes down while isRecording(). Global shortcuts are suspended
/// meanwhile, so that pressing one reaches the recording instead of doing its work; they resume
/// when the recording stops or dies.
class ShortcutRecording {
public:
    ShortcutRecording(HotKeyCenter& center, HotKeyAction action);
    ~ShortcutRecording();

    ShortcutRecording(const ShortcutRecording&) = delete;
    ShortcutRecording& operator=(const ShortcutRecording&) = delete;

    void start();

    /// Takes a key in. Whether it was swallowed, which is always so while recording.
    bool handle(const KeyDown& event);

    /// Ends without a new shortcut.
    void cancel() { stop(false); }

    bool isRecording() const { return m_isRecording; }

    /// What the control reads.
    QString label() const;

    /// Why the last key was refused, or what to know of the shortcut just accepted.
    const std::optional<QString>& warning() const { return m_warning; }

    /// The line under the control: the warning or, without one, that another program has the
    /// combination. Absent where there is nothing to say.
    std::optional<QString> note() const;

    /// Called when label(), warning() or isRecording() may have changed.
    std::function<void()> onChange;

private:
    std::optional<HotKeyAction> otherActionWith(const Shortcut& shortcut) const;
    void warn(const QString& warning);
    void stop(bool keepWarning);
    void notify() const;

    HotKeyCenter& m_center;
    HotKeyAction m_action;
    bool m_isRecording = false;
    std::optional<QString> m_warning;
};

} // namespace quillet

#pragma once

#include "platform/Observers.h"

#include <QString>
#include <QVariant>

namespace quillet {

/// Settings that belong to the desktop and its file manager, which others change too. Reading never
/// waits: it gives what the desktop said last. What it says later, shortly after the start among
/// that, observers are told.
class DesktopSettings {
public:
    enum class FileManagerKey {
        createDesktop, ///< icons on the desktop
        showAllFiles   ///< hidden files among the others
    };
    using Observation = Observers::Observation;
    using Completion = std::function<void(bool done)>;

    virtual ~DesktopSettings() = default;

    /// Whether programs are to look dark. False while that is not known.
    virtual bool isDark() const = 0;

    /// Whether things are to appear in their places instead of moving there.
    virtual bool isMotionReduced() const = 0;

    /// Makes the desktop dark or light, and all programs with it: where it is so already, some of
    /// them may not be. `completion` runs once, inside the call or later, when isDark() tells the
    /// outcome; it is dropped when this dies first. Its argument is false where the desktop did
    /// not let us.
    virtual void makeDark(bool dark, Completion completion) = 0;

    /// What the file manager has stored; invalid where it has nothing or nothing is known yet.
    virtual QVariant fileManagerValue(FileManagerKey key) const = 0;

    /// Stores a value and makes the file manager follow it, in the background and in the order of
    /// the calls. The new value is what fileManagerValue() gives until the next reading, even
    /// should it not get through, which is logged.
    virtual void setFileManagerValue(FileManagerKey key, bool value) = 0;

    /// Why a setting cannot be changed on this desktop, for people; empty where it can.
    virtual QString cause(FileManagerKey key) const = 0;

    /// Reads all of this again, for changes that the desktop does not tell of, and runs `task` when
    /// that is done or known to fail: inside the call or within seconds. It is dropped when this
    /// dies first.
    virtual void refresh(std::function<void()> task) = 0;

    /// Asks again, in the background, for what the desktop took too long to tell.
    virtual void retry() = 0;

    /// Shows the desktop's own settings.
    virtual void openSettings() = 0;

    /// `handler` runs after any of this has changed by somebody else's doing or has become known.
    [[nodiscard]] Observation observe(std::function<void()> handler) {
        return m_observers.add(std::move(handler));
    }

protected:
    void notify() { m_observers.notify(); }

private:
    Observers m_observers;
};

} // namespace quillet

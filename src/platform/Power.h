#pragma once

#include <functional>
#include <memory>
#include <QString>

namespace quillet {

/// Sleep: keeping the machine from it, and sending the display there.
class Power {
public:
    enum class AssertionType {
        preventUserIdleDisplaySleep, ///< neither the machine nor its display sleeps by itself
        preventUserIdleSystemSleep   ///< the machine stays awake; the display may sleep and lock
    };

    /// Destroying it gives back what it holds, also what the desktop grants only later.
    class Assertion {
    public:
        virtual ~Assertion() = default;

        /// Runs once when nobody holds the machine awake any more: the desktop has refused after
        /// all, has not answered for ten seconds, or its service went and did not come back for as
        /// long. Never from inside assertion(); may destroy the assertion.
        std::function<void()> onLost;
    };

    virtual ~Power() = default;

    /// Null where it is known that nobody here can hold it. Never waits: the desktop's answers
    /// come later, and the assertion counts as held until they do. It returns by itself to services
    /// that start anew, changes no setting, and ends with this process, however that ends. `name`
    /// is what the desktop shows as its reason.
    [[nodiscard]] virtual std::unique_ptr<Assertion> assertion(AssertionType type,
                                                               const QString& name) = 0;

    /// Turns the display off once all keys and buttons are up, so that their release does not wake
    /// it. A line in the log where it cannot be turned off.
    virtual void sleepDisplay() = 0;

    /// Why the display cannot be turned off, for people; empty where it can.
    virtual QString whyNoDisplaySleep() const = 0;

    /// Shows the screen saver, which on most desktops locks. A line in the log where there is none.
    virtual void startScreenSaver() = 0;
};

} // namespace quillet

#pragma once

#include "platform/Commands.h"
#include "platform/linux/dbus/Buses.h"
#include "platform/linux/dbus/ServiceNames.h"
#include "platform/Power.h"
#include "platform/Scheduler.h"

#include <vector>

namespace quillet {

class X11DisplayPower;

/// Keeps the machine awake through every service of a desktop that can, because each is heard by
/// some part of it only, and through the X server where the display is to stay on too. A program
/// that grants late is given back what nobody wants any more. Outlives its assertions.
class LinuxPower : public QObject, public Power {
public:
    /// `display` is null where the session's display is not an X server's.
    LinuxPower(const Buses& buses, Commands& commands, Scheduler& scheduler,
               std::unique_ptr<X11DisplayPower> display);
    ~LinuxPower() override;

    std::unique_ptr<Assertion> assertion(AssertionType type, const QString& name) override;
    void sleepDisplay() override;
    QString whyNoDisplaySleep() const override;
    void startScreenSaver() override;

    /// Why nothing keeps the machine awake here, for people; empty where something may.
    QString whyNotAwake() const;

private:
    class Share;
    class LinuxAssertion;

    void noteOwner(const QString& service, const QString& before, const QString& now);
    void tryScreenSaver(std::size_t index);

    Commands& m_commands;
    Scheduler& m_scheduler;
    std::unique_ptr<X11DisplayPower> m_display;
    ServiceNames m_session;
    ServiceNames m_system;
    std::vector<LinuxAssertion*> m_assertions;
};

} // namespace quillet

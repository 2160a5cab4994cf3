#include "platform/linux/dbus/LinuxPower.h"

#include "platform/Alive.h"
#include "platform/linux/dbus/SleepInhibitors.h"
#include "platform/linux/x11/X11DisplayPower.h"

#include <algorithm>
#include <array>
#include <limits>
#include <QDBusError>
#include <QLoggingCategory>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace quillet {

Q_LOGGING_CATEGORY(logPower, "quillet.power", QtWarningMsg)

namespace {

constexpr auto patience = 10s;

// A grant that comes after the bus library has given up could not be given back.
constexpr int forever = std::numeric_limits<int>::max();

constexpr int screenSaverTimeout = 5'000; // milliseconds

/// A screen saver's service, or the program that starts one.
struct ScreenSaver {
    QString service;
    QString path;
    QString program{};
    QStringList arguments{};
};

const std::vector<ScreenSaver>& screenSavers() {
    static const std::vector<ScreenSaver> savers = {
        {u"org.freedesktop.ScreenSaver"_s, u"/org/freedesktop/ScreenSaver"_s},
        {u"org.gnome.ScreenSaver"_s, u"/org/gnome/ScreenSaver"_s},
        {u"org.cinnamon.ScreenSaver"_s, u"/org/cinnamon/ScreenSaver"_s},
        {u"org.mate.ScreenSaver"_s, u"/org/mate/ScreenSaver"_s},
        {{}, {}, u"xfce4-screensaver-command"_s, {u"-a"_s}},
        {{}, {}, u"xdg-screensaver"_s, {u"activate"_s}},
        {{}, {}, u"loginctl"_s, {u"lock-session"_s}},
    };
    return savers;
}

QStringList servicesOn(SleepInhibitor::Bus bus) {
    QStringList services;
    for (const SleepInhibitor& inhibitor : sleepInhibitors()) {
        if (inhibitor.bus == bus)
            services.append(inhibitor.service);
    }
    return services;
}

bool isWrongPath(const QDBusMessage& reply) {
    const QDBusError::ErrorType type = QDBusError(reply).type();
    return type == QDBusError::UnknownObject || type == QDBusError::UnknownMethod ||
           type == QDBusError::UnknownInterface;
}

} // namespace

/// One service's part in an assertion.
class LinuxPower::Share {
public:
    /// `changed` is called last in whatever changes this, and may destroy it.
    Share(LinuxPower& power, const SleepInhibitor& inhibitor, QVariantList arguments,
          std::function<void()> changed)
        : m_power(power),
          m_inhibitor(inhibitor),
          m_arguments(std::move(arguments)),
          m_changed(std::move(changed)) {
        if (names().mayAnswer(m_inhibitor.service))
            ask(m_inhibitor.path);
    }

    bool isHeld() const { return m_state == State::held; }
    bool mayBeHeld() const { return m_state != State::none; }

    void noteOwner(const QString& service, const QString& before, const QString& now) {
        if (service != m_inhibitor.service)
            return;
        if (now.isEmpty()) {
            if (m_state == State::held)
                m_state = State::gone;
        } else if (m_state != State::asked || !before.isEmpty()) {
            ask(m_inhibitor.path);
        } else {
            return; // the call itself has started it
        }
        m_changed();
    }

private:
    enum class State {
        none,
        asked,
        held,
        gone ///< was held by a program that may come back
    };

    const ServiceNames& names() const {
        return m_inhibitor.bus == SleepInhibitor::Bus::system ? m_power.m_system
                                                              : m_power.m_session;
    }

    void ask(const QString& path) {
        m_state = State::asked;
        m_asking = Alive();
        auto message = QDBusMessage::createMethodCall(m_inhibitor.service, path,
                                                      m_inhibitor.interface, u"Inhibit"_s);
        message.setArguments(m_arguments);
        const QDBusConnection& bus = names().bus();
        // The answer is looked at even when this is gone, to give back what it grants.
        callAsync(
            bus, message, &m_power,
            [bus, path, &inhibitor = m_inhibitor,
             note = m_asking(
                 [this, path](std::unique_ptr<SleepGrant> grant, const QDBusMessage& reply) {
                     noteAnswer(std::move(grant), reply, path);
                 })](const QDBusMessage& reply) mutable {
                note(SleepGrant::from(reply, inhibitor, bus, path), reply);
            },
            forever);
    }

    void noteAnswer(std::unique_ptr<SleepGrant> grant, const QDBusMessage& reply,
                    const QString& path) {
        if (!grant && isWrongPath(reply) && !m_inhibitor.olderPath.isEmpty() &&
            path != m_inhibitor.olderPath)
            return ask(m_inhibitor.olderPath);
        if (!grant && QDBusError(reply).type() != QDBusError::ServiceUnknown) {
            qCWarning(logPower, "%s does not keep the machine awake: %s",
                      qPrintable(m_inhibitor.service), qPrintable(reply.errorMessage()));
        }
        m_state = grant ? State::held : State::none;
        m_grant = std::move(grant);
        m_changed();
    }

    LinuxPower& m_power;
    const SleepInhibitor& m_inhibitor;
    QVariantList m_arguments;
    std::function<void()> m_changed;
    State m_state = State::none;
    std::unique_ptr<SleepGrant> m_grant;
    Alive m_asking;
};

class LinuxPower::LinuxAssertion : public Assertion {
public:
    LinuxAssertion(LinuxPower& power, AssertionType type, const QString& name) : m_power(power) {
        if (power.m_display && type == AssertionType::preventUserIdleDisplaySleep)
            m_display = power.m_display->suspend();
        for (const SleepInhibitor& inhibitor : sleepInhibitors()) {
            const QVariantList arguments = inhibitor.arguments(type, name);
            if (!arguments.isEmpty()) {
                m_shares.push_back(
                    std::make_unique<Share>(power, inhibitor, arguments, [this] { review(); }));
            }
        }
        if (mayBeHeld())
            review();
        m_power.m_assertions.push_back(this);
    }
    ~LinuxAssertion() override { std::erase(m_power.m_assertions, this); }

    bool mayBeHeld() const { return m_display || hasShare(&Share::mayBeHeld); }

    void noteOwner(const QString& service, const QString& before, const QString& now) {
        for (const auto& share : m_shares)
            share->noteOwner(service, before, now);
    }

private:
    bool hasShare(bool (Share::*property)() const) const {
        return std::any_of(m_shares.begin(), m_shares.end(),
                           [property](const auto& share) { return (*share.*property)(); });
    }

    void review() {
        if (m_display || hasShare(&Share::isHeld))
            return m_patience.reset();
        if (!mayBeHeld())
            return lose();
        if (!m_patience)
            m_patience = m_power.m_scheduler.after(patience, [this] { lose(); });
    }

    void lose() {
        qCWarning(logPower, "nothing keeps the machine awake any more");
        m_shares.clear();
        if (const auto lost = std::exchange(onLost, {}))
            lost();
    }

    LinuxPower& m_power;
    X11DisplayPower::Suspension m_display;
    std::unique_ptr<Timer> m_patience; ///< while it is open whether anybody holds it
    std::vector<std::unique_ptr<Share>> m_shares;
};

LinuxPower::LinuxPower(const Buses& buses, Commands& commands, Scheduler& scheduler,
                       std::unique_ptr<X11DisplayPower> display)
    : m_commands(commands),
      m_scheduler(scheduler),
      m_display(std::move(display)),
      m_session(buses.session, servicesOn(SleepInhibitor::Bus::session)),
      m_system(buses.system, servicesOn(SleepInhibitor::Bus::system)) {
    for (ServiceNames* names : {&m_session, &m_system})
        names->onOwnerChanged = std::bind_front(&LinuxPower::noteOwner, this);
}

LinuxPower::~LinuxPower() = default;

std::unique_ptr<Power::Assertion> LinuxPower::assertion(AssertionType type, const QString& name) {
    auto assertion = std::make_unique<LinuxAssertion>(*this, type, name);
    return assertion->mayBeHeld() ? std::move(assertion) : nullptr;
}

void LinuxPower::noteOwner(const QString& service, const QString& before, const QString& now) {
    for (LinuxAssertion* assertion : m_assertions)
        assertion->noteOwner(service, before, now);
}

QString LinuxPower::whyNotAwake() const {
    const auto& inhibitors = sleepInhibitors();
    const bool mayBe =
        std::any_of(inhibitors.begin(), inhibitors.end(), [this](const SleepInhibitor& inhibitor) {
            const bool isSystem = inhibitor.bus == SleepInhibitor::Bus::system;
            return (isSystem ? m_system : m_session).mayAnswer(inhibitor.service);
        });
    return mayBe || (m_display && m_display->canSuspend())
               ? QString()
               : u"This desktop has no service that keeps the machine awake."_s;
}

QString LinuxPower::whyNoDisplaySleep() const {
    return m_display ? m_display->whyNoSleep()
                     : u"Only an X server lets programs turn the display off."_s;
}

void LinuxPower::sleepDisplay() {
    const QString cause = whyNoDisplaySleep();
    if (cause.isEmpty())
        m_display->sleep();
    else
        qCWarning(logPower, "%s", qPrintable(cause));
}

void LinuxPower::startScreenSaver() {
    tryScreenSaver(0);
}

/// The one at `index`, or the first after it that does as it is told.
void LinuxPower::tryScreenSaver(std::size_t index) {
    if (index == screenSavers().size()) {
        qCWarning(logPower, "this desktop has no screen saver that is known here");
        return;
    }
    const ScreenSaver& saver = screenSavers()[index];
    const auto goOn = [this, index](bool isDone) {
        if (!isDone)
            tryScreenSaver(index + 1);
    };
    if (!saver.program.isEmpty()) {
        m_commands.run(saver.program, saver.arguments,
                       [goOn](const CommandResult& result) { goOn(result.exitCode == 0); });
        return;
    }
    auto message =
        QDBusMessage::createMethodCall(saver.service, saver.path, saver.service, u"SetActive"_s);
    message << true;
    message.setAutoStartService(false); // of another desktop that is installed too
    callAsync(
        m_session.bus(), message, this,
        [goOn](const QDBusMessage& reply) {
            const bool isRefused = reply.type() != QDBusMessage::ReplyMessage ||
                                   reply.arguments().value(0, true) == false;
            goOn(!isRefused);
        },
        screenSaverTimeout);
}

} // namespace quillet

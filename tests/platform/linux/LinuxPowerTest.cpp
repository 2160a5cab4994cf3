#include "platform/linux/dbus/LinuxPower.h"
#include "contracts/SpinUntil.h"
#include "platform/linux/x11/X11DisplayPower.h"
#include "platform/memory/MemoryCommands.h"
#include "platform/memory/MemoryScheduler.h"
#include "support/PrivateBus.h"

#include <gmock/gmock.h>
#include <poll.h>
#include <QDBusUnixFileDescriptor>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace quillet {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using enum Power::AssertionType;

namespace {

struct Address {
    QString name;
    QString path;
};
const Address logindAt{u"org.freedesktop.login1"_s, u"/org/freedesktop/login1"_s};
const Address managerAt{u"org.gnome.SessionManager"_s, u"/org/gnome/SessionManager"_s};
const Address powerAt{u"org.freedesktop.PowerManagement"_s,
                      u"/org/freedesktop/PowerManagement/Inhibit"_s};
const Address saverAt{u"org.freedesktop.ScreenSaver"_s, u"/org/freedesktop/ScreenSaver"_s};

/// A service that keeps the machine awake, at once, when told to, or not at all.
class FakeInhibitor : public FakeService {
public:
    enum class Manner { grants, waits, refuses };

    FakeInhibitor(PrivateBus& bus, const Address& address, Manner itsManner = Manner::grants)
        : FakeService(bus, address.name, address.path), manner(itsManner) {
        answers[u"Inhibit"_s] = [this](const QDBusMessage& call) {
            calls.append(call.arguments());
            if (manner == Manner::refuses)
                return call.createErrorReply(QDBusError::AccessDenied, u"not today"_s);
            waiting.append(call);
            return manner == Manner::waits ? QDBusMessage() : grant();
        };
        answers[u"UnInhibit"_s] = [this](const QDBusMessage& call) {
            EXPECT_TRUE(cookies.remove(call.arguments().at(0).toUInt()));
            return call.createReply();
        };
        answers[u"Uninhibit"_s] = answers[u"UnInhibit"_s];
    }

    void answerLate() { send(grant()); }

    virtual int held() { return int(cookies.size()); }

    Manner manner;
    QList<QVariantList> calls;
    QList<QDBusMessage> waiting;

protected:
    virtual QVariant newGrant() {
        cookies.insert(++m_lastCookie);
        return m_lastCookie;
    }

private:
    QDBusMessage grant() { return waiting.takeFirst().createReply(newGrant()); }

    QSet<uint> cookies;
    uint m_lastCookie = 100;
};

/// Holds as long as the file that it hands out is open.
class FakeLogind : public FakeInhibitor {
public:
    explicit FakeLogind(PrivateBus& bus, Manner itsManner = Manner::grants)
        : FakeInhibitor(bus, logindAt, itsManner) {}
    ~FakeLogind() override {
        for (const int end : m_ends)
            close(end);
    }

    int held() override {
        return int(std::count_if(m_ends.begin(), m_ends.end(), [](int end) {
            pollfd watched{end, POLLIN, 0};
            return poll(&watched, 1, 0) == 0;
        }));
    }

protected:
    QVariant newGrant() override {
        int ends[2];
        if (pipe(ends) != 0)
            qFatal("no pipe");
        m_ends.push_back(ends[0]);
        const QDBusUnixFileDescriptor handedOut(ends[1]);
        close(ends[1]);
        return QVariant::fromValue(handedOut);
    }

private:
    std::vector<int> m_ends;
};

/// Waits until what a service has answered to a connection has also been dealt with.
void hearFrom(const Address& service, const QDBusConnection& connection) {
    QObject context;
    bool isHeard = false;
    callAsync(connection,
              QDBusMessage::createMethodCall(service.name, service.path,
                                             u"org.freedesktop.DBus.Peer"_s, u"Ping"_s),
              &context, [&](const QDBusMessage&) { isHeard = true; });
    EXPECT_TRUE(spinUntil([&] { return isHeard; }));
}

} // namespace

TEST(Buses, aSystemBusThatAcceptsButNeverSpeaksIsLeftAlone) {
    const QTemporaryDir folder;
    const QByteArray path = folder.filePath(u"bus"_s).toUtf8();
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    ASSERT_LT(std::size_t(path.size()), sizeof address.sun_path);
    std::ranges::copy(path, address.sun_path);
    const int silent = socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_EQ(bind(silent, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    ASSERT_EQ(listen(silent, 5), 0);
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=" + path);
    QElapsedTimer elapsed;
    elapsed.start();
    EXPECT_FALSE(Buses::standard().system.isConnected());
    EXPECT_LT(elapsed.elapsed(), 5'000);

    PrivateBus alive;
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", alive.address().toUtf8());
    const QDBusConnection bus = Buses::standard().system;
    EXPECT_TRUE(bus.isConnected());
    QDBusConnection::disconnectFromBus(bus.name());
    qunsetenv("DBUS_SYSTEM_BUS_ADDRESS");
    close(silent);
}

class LinuxPowerTest : public testing::Test {
protected:
    using Manner = FakeInhibitor::Manner;

    LinuxPower& start() {
        power.emplace(Buses{ours, system.connect()}, commands, scheduler, nullptr);
        return *power;
    }

    std::unique_ptr<Power::Assertion> hold(Power::AssertionType type) {
        auto assertion = power->assertion(type, u"reading"_s);
        if (assertion)
            assertion->onLost = [this] { ++losses; };
        return assertion;
    }

    template<typename Condition>
    bool waitFor(Condition condition) {
        return spinUntil([&] {
            scheduler.advance(0ms);
            return condition();
        });
    }

    /// Whether it is known that no service is there.
    bool seesNobody() {
        return waitFor([&] { return !power->whyNotAwake().isEmpty(); });
    }

    PrivateBus session;
    QDBusConnection ours = session.connect();
    PrivateBus system;
    MemoryScheduler scheduler;
    MemoryCommands commands{scheduler};
    std::optional<LinuxPower> power;
    int losses = 0;
};

TEST_F(LinuxPowerTest, everyServiceIsAskedForWhatTheTypeMeansAndGetsItBack) {
    FakeLogind logind(system);
    FakeInhibitor manager(session, managerAt);
    FakeInhibitor powerManager(session, powerAt);
    FakeInhibitor saver(session, saverAt);
    const auto held = [&] {
        return std::vector{logind.held(), manager.held(), powerManager.held(), saver.held()};
    };
    start();

    auto assertion = hold(preventUserIdleDisplaySleep);
    EXPECT_TRUE(waitFor([&] { return held() == std::vector{1, 1, 1, 1}; }));
    EXPECT_THAT(logind.calls,
                ElementsAre(QVariantList{u"sleep:idle"_s, u"Quillet"_s, u"reading"_s, u"block"_s}));
    EXPECT_THAT(manager.calls, ElementsAre(QVariantList{u"Quillet"_s, 0u, u"reading"_s, 12u}));
    EXPECT_THAT(powerManager.calls, ElementsAre(QVariantList{u"Quillet"_s, u"reading"_s}));
    EXPECT_THAT(saver.calls, ElementsAre(QVariantList{u"Quillet"_s, u"reading"_s}));

    assertion.reset();
    assertion = hold(preventUserIdleSystemSleep);
    EXPECT_TRUE(waitFor([&] { return held() == std::vector{1, 1, 1, 0}; }));
    EXPECT_EQ(logind.calls.last(),
              (QVariantList{u"sleep"_s, u"Quillet"_s, u"reading"_s, u"block"_s}));
    EXPECT_EQ(manager.calls.last(), (QVariantList{u"Quillet"_s, 0u, u"reading"_s, 4u}));
    EXPECT_EQ(saver.calls.size(), 1) << "the display may sleep";

    assertion.reset();
    EXPECT_TRUE(waitFor([&] { return held() == std::vector{0, 0, 0, 0}; }));
    EXPECT_EQ(losses, 0);
}

TEST_F(LinuxPowerTest, whatIsGrantedAfterTheReleaseIsGivenBack) {
    FakeLogind logind(system, Manner::waits);
    FakeInhibitor manager(session, managerAt, Manner::waits);
    start();
    auto assertion = hold(preventUserIdleSystemSleep);
    ASSERT_TRUE(waitFor([&] { return logind.waiting.size() + manager.waiting.size() == 2; }));
    assertion.reset();
    logind.answerLate();
    manager.answerLate();
    EXPECT_EQ(logind.held() + manager.held(), 2);
    EXPECT_TRUE(waitFor([&] { return logind.held() + manager.held() == 0; }));
}

TEST_F(LinuxPowerTest, silenceIsALossAfterTenSecondsAndALaterGrantIsGivenBack) {
    FakeInhibitor manager(session, managerAt, Manner::waits);
    start();
    const auto assertion = hold(preventUserIdleSystemSleep);
    ASSERT_TRUE(waitFor([&] { return manager.waiting.size() == 1; }));
    scheduler.advance(9.9s);
    EXPECT_EQ(losses, 0);
    scheduler.advance(0.2s);
    EXPECT_EQ(losses, 1);
    manager.answerLate();
    EXPECT_TRUE(waitFor([&] { return manager.held() == 0; }));
}

TEST_F(LinuxPowerTest, aRefusalIsALossOnlyWhereNobodyElseHoldsIt) {
    FakeInhibitor manager(session, managerAt, Manner::refuses);
    std::optional<FakeInhibitor> powerManager(std::in_place, session, powerAt);
    start();
    auto assertion = hold(preventUserIdleSystemSleep);
    ASSERT_TRUE(waitFor([&] { return manager.calls.size() == 1 && powerManager->held() == 1; }));
    hearFrom(powerAt, ours);
    scheduler.advance(1min);
    EXPECT_EQ(losses, 0);

    assertion.reset();
    powerManager->manner = Manner::refuses;
    assertion = hold(preventUserIdleSystemSleep);
    assertion->onLost = [&] {
        ++losses;
        assertion.reset();
    };
    EXPECT_TRUE(waitFor([&] { return losses == 1; })) << "without any time passing";
    EXPECT_EQ(assertion, nullptr);
}

TEST_F(LinuxPowerTest, aServiceThatStartsAnewOrLaterIsAskedAgain) {
    std::optional<FakeInhibitor> manager(std::in_place, session, managerAt);
    start();
    const auto assertion = hold(preventUserIdleDisplaySleep);
    ASSERT_TRUE(waitFor([&] { return manager->held() == 1; }));
    manager.reset();
    ASSERT_TRUE(seesNobody());
    scheduler.advance(9s);
    manager.emplace(session, managerAt);
    EXPECT_TRUE(waitFor([&] { return manager->held() == 1; }));
    FakeInhibitor saver(session, {saverAt.name, u"/ScreenSaver"_s}); // as older ones have it
    EXPECT_TRUE(waitFor([&] { return saver.held() == 1; }));
    hearFrom(managerAt, ours);
    scheduler.advance(1min);
    EXPECT_EQ(losses, 0);
    EXPECT_EQ(manager->calls.size(), 1);

    manager.reset();
    EXPECT_EQ(losses, 0) << "the other one holds it";
}

TEST_F(LinuxPowerTest, withoutServicesOrBusesNothingIsHeld) {
    start();
    EXPECT_TRUE(seesNobody());
    EXPECT_EQ(hold(preventUserIdleDisplaySleep), nullptr);

    const QDBusConnection none{QString()};
    power.emplace(Buses{none, none}, commands, scheduler, nullptr);
    EXPECT_EQ(hold(preventUserIdleDisplaySleep), nullptr);
    power->startScreenSaver();
    EXPECT_TRUE(waitFor([&] { return commands.calls.size() == 3; })) << "all that are left";
}

TEST_F(LinuxPowerTest, theFirstScreenSaverThatObeysIsTheOnlyOne) {
    std::vector<QString> told;
    const auto tells = [&](FakeService& service, const QString& name, const QVariantList& reply) {
        service.answers[u"SetActive"_s] = [&told, name, reply](const QDBusMessage& call) {
            told.push_back(call.arguments() == QVariantList{true} ? name : u"wrong"_s);
            return call.createReply(reply);
        };
    };
    const FakeService withoutMethod(session, saverAt.name, saverAt.path);
    FakeService unwilling(session, u"org.cinnamon.ScreenSaver"_s, u"/org/cinnamon/ScreenSaver"_s);
    tells(unwilling, u"unwilling"_s, {false});
    std::optional<FakeService> willing(std::in_place, session, u"org.mate.ScreenSaver"_s,
                                       u"/org/mate/ScreenSaver"_s);
    tells(*willing, u"willing"_s, {});
    start().startScreenSaver();
    EXPECT_TRUE(waitFor([&] { return told.size() == 2; }));
    EXPECT_THAT(told, ElementsAre(u"unwilling"_s, u"willing"_s));
    EXPECT_THAT(commands.calls, IsEmpty());

    willing.reset();
    commands.results = {{u"xdg-screensaver"_s, {0, {}}}};
    power->startScreenSaver();
    EXPECT_TRUE(waitFor([&] { return commands.calls.size() == 2; }));
    EXPECT_EQ(commands.calls,
              (QStringList{u"xfce4-screensaver-command -a"_s, u"xdg-screensaver activate"_s}));
}

} // namespace quillet

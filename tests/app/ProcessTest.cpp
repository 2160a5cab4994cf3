#include "app/ProcessSession.h"
#include "support/Eventually.h"

#include <csignal>
#include <gmock/gmock.h>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusInterface>
#include <QDBusReply>
#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>

using namespace Qt::StringLiterals;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

namespace quillet {

/// Everything here holds with a session bus and without one.
class Process : public testing::TestWithParam<ProcessSession::Bus> {
protected:
    QJsonArray clips() {
        return QJsonDocument::fromJson(session.run({u"clip"_s, u"list"_s, u"--json"_s}).output)
            .array();
    }

    ProcessSession session{GetParam()};
};

INSTANTIATE_TEST_SUITE_P(, Process,
                         testing::Values(ProcessSession::Bus::present, ProcessSession::Bus::absent),
                         [](const auto& bus) {
                             return bus.param == ProcessSession::Bus::present ? "withBus"
                                                                              : "withoutBus";
                         });

TEST_P(Process, twentyLaunchesAtOnceEndWithOneProcessThatRanEveryVerb) {
    session.fillHistory(std::vector<QByteArray>{"0", "1", "2", "3", "4", "5", "6", "7", "8", "9"});
    std::vector<QProcess*> starts;
    std::vector<QProcess*> verbs;
    for (int i = 1; i <= 10; ++i) {
        verbs.push_back(&session.launch({u"clip"_s, u"pin"_s, QString::number(i)}));
        starts.push_back(&session.launch());
    }
    for (QProcess* verb : verbs) {
        ASSERT_TRUE(verb->waitForFinished());
        EXPECT_EQ(verb->exitCode(), 0) << verb->readAllStandardError().toStdString();
    }
    EXPECT_TRUE(eventually([&] { return session.processes().size() == 1; }));
    const qint64 pid = session.status()["pid"_L1].toInteger();
    EXPECT_THAT(session.processes(), testing::ElementsAre(pid));
    for (QProcess* start : starts) {
        start->waitForFinished(100);
        EXPECT_TRUE(start->processId() == pid || start->exitCode() == 0)
            << start->readAllStandardError().toStdString();
    }
    for (const auto& clip : clips())
        EXPECT_TRUE(clip["isPinned"_L1].toBool());
    EXPECT_EQ(clips().size(), 10);
}

TEST_P(Process, aVerbThatNeedsNoQuilletStartsNone) {
    const RunResult status = session.run({u"status"_s});
    EXPECT_EQ(status.exitCode, 1);
    EXPECT_EQ(QJsonDocument::fromJson(status.output).object(),
              (QJsonObject{{u"ready"_s, false}, {u"running"_s, false}}));
    const RunResult quit = session.run({u"quit"_s});
    EXPECT_EQ(quit.exitCode, 1);
    EXPECT_EQ(quit.error, "quillet: Quillet is not running\n");
    const RunResult usage = session.run({u"clip"_s, u"copy"_s, u"x"_s});
    EXPECT_EQ(usage.exitCode, 2);
    EXPECT_EQ(usage.error.count('\n'), 1);
    EXPECT_EQ(session.run({u"--help"_s}).exitCode, 0);
    EXPECT_THAT(session.run({u"--version"_s}).output.toStdString(), HasSubstr("quillet "));
    EXPECT_THAT(session.processes(), IsEmpty());
}

TEST_P(Process, quitReturnsWhenThePlaceIsFreeForTheNext) {
    for (int i = 0; i < 3; ++i) {
        QProcess& process = session.start();
        EXPECT_EQ(session.status()["pid"_L1].toInteger(), process.processId());
        EXPECT_EQ(session.run({u"quit"_s}).exitCode, 0);
        EXPECT_FALSE(session.status()["running"_L1].toBool());
        ASSERT_TRUE(process.waitForFinished());
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(process.exitCode(), 0);
    }
}

TEST_P(Process, endSignalsEndItInItsOwnWay) {
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        QProcess& process = session.start();
        ASSERT_EQ(process.state(), QProcess::Running);
        kill(pid_t(process.processId()), signal);
        ASSERT_TRUE(process.waitForFinished());
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit) << signal;
        EXPECT_EQ(process.exitCode(), 0) << signal;
    }
}

TEST_P(Process, whatAKilledProcessLeavesBehindIsNoObstacle) {
    QProcess& killed = session.start();
    killed.kill();
    ASSERT_TRUE(killed.waitForFinished());
    ASSERT_TRUE(QFile::exists(session.runtimeFolder() + u"/lock"_s));
    EXPECT_FALSE(session.status()["running"_L1].toBool());
    EXPECT_EQ(session.run({u"clip"_s, u"list"_s}).exitCode, 0);
    EXPECT_TRUE(session.status()["ready"_L1].toBool());
}

TEST_P(Process, aVerbNeitherWaitsForAStoppedQuilletNorLeavesItSomethingToDo) {
    session.fillHistory({"kept"});
    const auto pid = pid_t(session.start().processId());
    kill(pid, SIGSTOP);
    const RunResult clear = session.run({u"clip"_s, u"clear"_s});
    kill(pid, SIGCONT);
    EXPECT_EQ(clear.exitCode, 1);
    EXPECT_THAT(clear.error.toStdString(), HasSubstr("may be stopped"));
    EXPECT_EQ(clips().size(), 1);
}

TEST_P(Process, aVerbThatWaitsSaysWhenQuilletIsGone) {
    QProcess& quillet = session.start();
    QProcess& watch = session.launch({u"stats"_s, u"--watch"_s});
    ASSERT_TRUE(watch.waitForReadyRead());
    quillet.kill();
    ASSERT_TRUE(watch.waitForFinished());
    EXPECT_EQ(watch.exitCode(), 1);
    EXPECT_EQ(watch.readAllStandardError(), "quillet: Quillet ended before it answered\n");
}

TEST_P(Process, aVerbLeavesTheQuilletItStartedBehindOnItsOwn) {
    session.fillHistory({"kept"});
    // The pipe stays open for as long as anybody holds it.
    const RunResult list = session.shell(u"{ \"$QUILLET\" clip list 2>&1 7>&1; } | cat"_s);
    EXPECT_THAT(list.output.toStdString(), HasSubstr("kept"));
    const auto processes = session.processes();
    ASSERT_THAT(processes, SizeIs(1));
    EXPECT_EQ(getsid(pid_t(processes.front())), processes.front());
}

TEST_P(Process, closedStandardStreamsAreNotMistakenForFiles) {
    session.fillHistory({"confidential"});
    session.shell(u"\"$QUILLET\" clip list --json <&- >&- 2>&-"_s);
    QFile lock(session.runtimeFolder() + u"/lock"_s);
    ASSERT_TRUE(lock.open(QIODevice::ReadOnly));
    EXPECT_THAT(lock.readAll().toStdString(), testing::Not(HasSubstr("confidential")));
    const RunResult second = session.run({});
    EXPECT_EQ(second.exitCode, 0) << "the instance still holds its lock";
    EXPECT_THAT(session.processes(), SizeIs(1));
}

TEST_P(Process, bytesComeOutAsTheyWentIn) {
    const QByteArray tricky("a\0b\r\n\xEF\xBF\xBD\xF0\x9F\x98\x80 ", 14);
    const QByteArray large(300'000, 'x');
    session.fillHistory({tricky, large});
    EXPECT_EQ(session.run({u"clip"_s, u"show"_s, u"2"_s}).output, tricky);
    EXPECT_EQ(session.run({u"clip"_s, u"show"_s, u"1"_s}).output, large);
    EXPECT_EQ(clips().at(1)["text"_L1].toString().toUtf8(), tricky);

    const RunResult cut =
        session.shell(u"\"$QUILLET\" clip show 1 | head -c 3; echo \" ${PIPESTATUS[0]}\""_s);
    EXPECT_EQ(cut.output, "xxx 1\n");
    EXPECT_EQ(cut.error, "");
    const RunResult full = session.shell(u"\"$QUILLET\" clip show 1 >/dev/full"_s);
    EXPECT_EQ(full.exitCode, 1);
    EXPECT_THAT(full.error.toStdString(), HasSubstr("cannot write the output"));
}

TEST_P(Process, aHistoryThatCannotBeOpenedStopsTheStartWithAReason) {
    QFile obstacle(session.dataFolder());
    ASSERT_TRUE(obstacle.open(QIODevice::WriteOnly));
    const RunResult start = session.run({});
    EXPECT_EQ(start.exitCode, 1);
    EXPECT_THAT(start.error.toStdString(), StartsWith("Failed to create model container: "));
    const RunResult verb = session.run({u"clip"_s, u"list"_s});
    EXPECT_EQ(verb.exitCode, 1);
    EXPECT_THAT(verb.error.toStdString(), HasSubstr("Failed to create model container: "));
    EXPECT_TRUE(eventually([&] { return session.processes().empty(); }));
}

TEST_P(Process, verbsLeaveNothingOpenInTheProcess) {
    session.start();
    const QDir open(u"/proc/%1/fd"_s.arg(session.status()["pid"_L1].toInteger()));
    const auto count = open.entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System);
    for (int i = 0; i < 10; ++i)
        session.run({u"clip"_s, u"list"_s});
    // The database keeps one file of its checkpoints open for the next.
    EXPECT_TRUE(eventually([&] {
        return open.entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System).size() <=
               count.size() + 1;
    }));
}

TEST(ProcessOnADisplay, theEndOfTheDisplayIsAnEndLikeAnyOther) {
    ProcessSession session(ProcessSession::Bus::absent);
    QProcess server;
    server.start(u"Xvfb"_s, {u"-displayfd"_s, u"1"_s, u"-noreset"_s, u"-nolisten"_s, u"tcp"_s});
    ASSERT_TRUE(server.waitForReadyRead());
    const QString display = u":"_s + QString::fromUtf8(server.readLine().trimmed());
    const RunResult list = session.shell(
        u"DISPLAY=%1 QUILLET_PLATFORM= QT_QPA_PLATFORM=xcb \"$QUILLET\" clip list"_s.arg(display));
    ASSERT_EQ(list.exitCode, 0) << list.error.toStdString();
    const QString journal = session.dataFolder() + u"/clips.sqlite-wal"_s;
    ASSERT_TRUE(QFile::exists(journal));
    server.terminate();
    ASSERT_TRUE(server.waitForFinished());
    EXPECT_TRUE(eventually([&] { return !session.status()["running"_L1].toBool(); }));
    EXPECT_FALSE(QFile::exists(journal));

    const RunResult start =
        session.shell(u"DISPLAY=%1 QUILLET_PLATFORM= \"$QUILLET\""_s.arg(display));
    EXPECT_EQ(start.exitCode, 1);
    EXPECT_EQ(start.error.toStdString(),
              "quillet: The display \"" + display.toStdString() + "\" does not answer.\n");
}

TEST(ProcessOnTheBus, desktopsFindTheApplicationUnderItsName) {
    ProcessSession session(ProcessSession::Bus::present);
    session.start();
    auto bus = QDBusConnection::connectToBus(session.busAddress(), u"test"_s);
    const QString name = u"org.quillet.Quillet"_s;
    EXPECT_EQ(bus.interface()->servicePid(name).value(), session.status()["pid"_L1].toInteger());
    QDBusInterface application(name, u"/org/quillet/Quillet"_s, u"org.freedesktop.Application"_s,
                               bus);
    EXPECT_TRUE(QDBusReply<void>(application.call(u"Activate"_s, QVariantMap())).isValid());
    QDBusConnection::disconnectFromBus(u"test"_s);
}

TEST(ProcessOnTheBus, oneOtherRuntimeFolderOnTheSameBusMeetsTheSameQuillet) {
    ProcessSession session(ProcessSession::Bus::present);
    session.start();
    const RunResult second =
        session.shell(u"mkdir -m 700 \"$HOME/other\"; XDG_RUNTIME_DIR=$HOME/other \"$QUILLET\""_s);
    EXPECT_EQ(second.exitCode, 0) << second.error.toStdString();
    EXPECT_TRUE(session.status()["running"_L1].toBool());
}

} // namespace quillet

#include "settings/Permissions.h"
#include "platform/memory/MemoryAccess.h"
#include "platform/memory/MemoryCommands.h"
#include "platform/memory/MemoryScheduler.h"
#include "platform/memory/MemoryWorkspace.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <optional>
#include <QProcess>

namespace quillet {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Kind = Permissions::Kind;
using testing::ElementsAre;
using testing::IsEmpty;

class PermissionsTest : public testing::Test {
protected:
    PermissionsTest() {
        commands.results[u"/bin/sh"_s] = {0, {}};
        make(u"/usr/bin/quillet"_s);
    }

    void make(const QString& path) {
        permissions.emplace(Permissions::Services{access, workspace, commands, scheduler},
                            Permissions::Program{path, [this] { ++terminations; }});
        QObject::connect(&*permissions, &Permissions::accessibilityChanged,
                         [this] { ++accessibilityChanges; });
        QObject::connect(&*permissions, &Permissions::screenRecordingChanged,
                         [this] { ++screenRecordingChanges; });
    }

    MemoryScheduler scheduler;
    MemoryAccess access;
    MemoryWorkspace workspace;
    MemoryCommands commands{scheduler};
    int terminations = 0;
    int accessibilityChanges = 0;
    int screenRecordingChanges = 0;
    std::optional<Permissions> permissions;
};

TEST_F(PermissionsTest, theStateIsThatOfTheLastRefreshAndOnlyRealChangesAreTold) {
    access.granted.erase(Kind::accessibility);
    EXPECT_TRUE(permissions->accessibility());
    permissions->refresh();
    permissions->refresh();
    EXPECT_FALSE(permissions->accessibility());
    EXPECT_FALSE(permissions->isGranted(Kind::accessibility));
    EXPECT_TRUE(permissions->isGranted(Kind::screenRecording));
    EXPECT_EQ(accessibilityChanges, 1);
    access.granted = {Kind::accessibility};
    permissions->refresh();
    EXPECT_EQ(accessibilityChanges, 2);
    EXPECT_EQ(screenRecordingChanges, 1);
    EXPECT_FALSE(permissions->screenRecording());
    make(u"/usr/bin/quillet"_s);
    EXPECT_FALSE(permissions->screenRecording()) << "read when made";
}

TEST_F(PermissionsTest, pollingFindsAGrantWithinASecondUntilItIsStopped) {
    access.granted.clear();
    permissions->refresh();
    permissions->startPolling();
    scheduler.advance(500ms);
    permissions->startPolling();
    access.granted.insert(Kind::accessibility);
    scheduler.advance(600ms);
    EXPECT_TRUE(permissions->accessibility());
    EXPECT_FALSE(permissions->screenRecording());
    permissions->stopPolling();
    access.granted.insert(Kind::screenRecording);
    scheduler.advance(5s);
    EXPECT_FALSE(permissions->screenRecording());
}

TEST_F(PermissionsTest, accessibilitySettingsOpenOnlyWhileItIsMissing) {
    permissions->request(Kind::accessibility);
    EXPECT_THAT(access.requested, ElementsAre(Kind::accessibility));
    EXPECT_THAT(access.settingsOpened, IsEmpty());
    access.granted.clear();
    permissions->request(Kind::accessibility);
    EXPECT_THAT(access.settingsOpened, ElementsAre(Kind::accessibility));
    EXPECT_TRUE(permissions->accessibility()) << "left to the next refresh";
    scheduler.advance(5s);
    EXPECT_EQ(access.settingsOpened.size(), 1U);
}

TEST_F(PermissionsTest, screenRecordingSettingsAlwaysOpenAfterTheSystemHadItsTime) {
    int requests = 0;
    QObject::connect(&*permissions, &Permissions::requestedScreenRecordingChanged,
                     [&] { ++requests; });
    permissions->request(Kind::screenRecording);
    EXPECT_TRUE(permissions->requestedScreenRecording());
    EXPECT_THAT(access.requested, ElementsAre(Kind::screenRecording));
    scheduler.advance(599ms);
    EXPECT_THAT(access.settingsOpened, IsEmpty());
    scheduler.advance(1ms);
    EXPECT_THAT(access.settingsOpened, ElementsAre(Kind::screenRecording));
    permissions->request(Kind::screenRecording);
    EXPECT_EQ(requests, 1);
}

TEST_F(PermissionsTest, theProgramsFileIsRevealedAndToldFromABuildFolder) {
    permissions->revealApp();
    EXPECT_THAT(workspace.revealed, ElementsAre(u"/usr/bin/quillet"_s));
    for (const auto& [path, isInstalled] : {std::pair{u"/usr/local/bin/quillet"_s, true},
                                            {u"/opt/quillet/quillet"_s, true},
                                            {u"/home/me/src/build/quillet"_s, false},
                                            {u"/home/usr/bin/quillet"_s, false}}) {
        make(path);
        EXPECT_EQ(permissions->isInstalled(), isInstalled) << path.toStdString();
    }
}

TEST_F(PermissionsTest, relaunchingStartsTheSameFileWhateverItsPathHolds) {
    for (const QString& path : {u"/usr/bin/quillet"_s, u"/a \"b\" c"_s, u"/$HOME/$(id)/`id`"_s,
                                u"/back\\slash\\"_s, u"/two\nlines"_s, u"/it's ; & | * ~ #!"_s}) {
        make(path);
        permissions->relaunch();
        const QStringList call = commands.launched.back();
        ASSERT_EQ(call.size(), 3);
        EXPECT_EQ(call.first(2), QStringList({u"/bin/sh"_s, u"-c"_s}));
        // The shell itself tells what it takes for the program.
        QString script = call.last();
        script.replace(u"sleep 0.7; exec "_s, u"printf %s "_s);
        QProcess shell;
        shell.start(call.first(), {call.at(1), script});
        ASSERT_TRUE(shell.waitForFinished());
        EXPECT_EQ(QString::fromUtf8(shell.readAllStandardOutput()), path);
    }
    EXPECT_EQ(terminations, 6);
    commands.results.clear();
    permissions->relaunch();
    EXPECT_EQ(terminations, 7) << "the user can still start it by hand";
}

} // namespace quillet

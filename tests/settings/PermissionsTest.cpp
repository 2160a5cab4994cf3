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
    }

    MemoryScheduler scheduler;
    MemoryAccess access;
    MemoryWorkspace workspace;
    MemoryCommands commands{scheduler};
    int terminations = 0;
    std::optional<Permissions> permissions;
};

TEST_F(PermissionsTest, aRequestOpensTheSettingsWhereTheSystemDoesNotAskItself) {
    permissions->request(Kind::accessibility);
    EXPECT_THAT(access.settingsOpened, IsEmpty()) << "it is granted already";
    access.granted.clear();
    permissions->request(Kind::accessibility);
    EXPECT_THAT(access.settingsOpened, ElementsAre(Kind::accessibility));

    permissions->request(Kind::screenRecording);
    EXPECT_TRUE(permissions->requestedScreenRecording());
    EXPECT_EQ(access.requested.back(), Kind::screenRecording);
    scheduler.advance(599ms);
    EXPECT_EQ(access.settingsOpened.size(), 1U) << "the system's own question comes first";
    scheduler.advance(1ms);
    EXPECT_EQ(access.settingsOpened.back(), Kind::screenRecording);
}

TEST_F(PermissionsTest, relaunchingStartsTheSameFileWhateverItsPathHolds) {
    for (const QString& path : {u"/usr/bin/quillet"_s, u"/a \"b\" c"_s, u"/$HOME/$(id)/`id`"_s,
                                u"/back\\slash\\"_s, u"/two\nlines"_s, u"/it's ; & | * ~ #!"_s}) {
        make(path);
        permissions->relaunch();
        QStringList call = commands.launched.back();
        // The shell itself tells what it takes for the program.
        call.last().replace(u"sleep 0.7; exec "_s, u"printf %s "_s);
        QProcess shell;
        shell.start(call.takeFirst(), call);
        ASSERT_TRUE(shell.waitForFinished());
        EXPECT_EQ(QString::fromUtf8(shell.readAllStandardOutput()), path);
    }
    EXPECT_EQ(terminations, 6);
}

} // namespace quillet

#include "contracts/CommandsContract.h"
#include "contracts/HostStatisticsContract.h"
#include "contracts/PreferencesContract.h"
#include "contracts/SchedulerContract.h"
#include "contracts/SoundPlayerContract.h"
#include "contracts/SpinUntil.h"
#include "platform/linux/files/JsonPreferences.h"
#include "platform/linux/LinuxScheduler.h"
#include "platform/linux/proc/ProcHostStatistics.h"
#include "platform/linux/ProcessCommands.h"
#include "platform/linux/sound/PulseSoundPlayer.h"

#include <QTemporaryDir>

namespace quillet {

using namespace Qt::StringLiterals;

struct LinuxSchedulerBackend {
    std::unique_ptr<Scheduler> scheduler = std::make_unique<LinuxScheduler>();

    void letPass(milliseconds span) { spinFor(span); }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Linux, SchedulerContract, LinuxSchedulerBackend);

struct JsonPreferencesBackend {
    QTemporaryDir folder;
    std::vector<std::unique_ptr<Preferences>> runs; // earlier ones stay valid for who holds them

    JsonPreferencesBackend() { reopen(); }

    Preferences& preferences() { return *runs.back(); }
    void reopen() {
        runs.push_back(std::make_unique<JsonPreferences>(folder.filePath(u"preferences.json"_s)));
    }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Linux, PreferencesContract, JsonPreferencesBackend);

struct ProcessCommandsBackend {
    std::unique_ptr<Commands> commands = std::make_unique<ProcessCommands>();

    template<typename Condition>
    bool waitFor(Condition condition) {
        return spinUntil(condition, milliseconds(commands ? 10000 : 100));
    }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Linux, CommandsContract, ProcessCommandsBackend);

TEST(ProcessCommands, aProgramThatHangsIsEnded) {
    ProcessCommands commands(milliseconds(100));
    std::optional<CommandResult> result;
    commands.run(u"sleep"_s, {u"100"_s}, [&](const CommandResult& end) { result = end; });
    ASSERT_TRUE(spinUntil([&] { return result.has_value(); }));
    EXPECT_EQ(result->exitCode, -1);
}

TEST(ProcessCommands, whatWasLaunchedOutlivesThem) {
    const QTemporaryDir folder;
    const QString sign = folder.filePath(u"sign"_s);
    {
        ProcessCommands commands;
        ASSERT_TRUE(commands.launch(u"/bin/sh"_s, {u"-c"_s, u"sleep 0.2; : >'%1'"_s.arg(sign)}));
    }
    EXPECT_FALSE(QFile::exists(sign));
    EXPECT_TRUE(spinUntil([&] { return QFile::exists(sign); }));
}

struct PulseSoundBackend {
    PulseSoundPlayer sounds;

    SoundPlayer& player() { return sounds; }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Linux, SoundPlayerContract, PulseSoundBackend);

struct ProcHostBackend {
    ProcHostStatistics host;

    HostStatistics& statistics() { return host; }
    void work() {
        const auto end = host.uptime() + milliseconds(50);
        while (host.uptime() < end) {
        }
    }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Linux, HostStatisticsContract, ProcHostBackend);

} // namespace quillet

#include "contracts/PreferencesContract.h"
#include "contracts/SchedulerContract.h"
#include "contracts/SpinUntil.h"
#include "platform/linux/files/JsonPreferences.h"
#include "platform/linux/LinuxScheduler.h"
#include "platform/linux/ProcessCommands.h"

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

TEST(ProcessCommands, howeverAProgramEndsIsToldUnlessTheyAreGoneBefore) {
    using End = std::pair<int, QByteArray>;
    const auto endOf = [](ProcessCommands& commands, const QString& program,
                          const QStringList& arguments) {
        std::vector<End> told;
        commands.run(program, arguments, [&](const CommandResult& end) {
            told.emplace_back(end.exitCode, end.output);
        });
        EXPECT_TRUE(told.empty()) << "told inside the call";
        EXPECT_TRUE(spinUntil([&] { return !told.empty(); }));
        return told.at(0);
    };
    ProcessCommands commands;
    const auto endOfScript = [&](const QString& script) {
        return endOf(commands, u"/bin/sh"_s, {u"-c"_s, script});
    };
    EXPECT_EQ(endOfScript(u"printf 'a b\\n'; echo oops >&2; exit 3"_s), End(3, "a b\n"));
    EXPECT_EQ(endOfScript(u"printf begun; kill -9 $$"_s), End(-1, "begun"));
    EXPECT_EQ(endOf(commands, u"/no/such/program"_s, {}), End(-1, ""));
    EXPECT_FALSE(commands.launch(u"/no/such/program"_s, {}));

    ProcessCommands impatient(milliseconds(100));
    EXPECT_EQ(endOf(impatient, u"sleep"_s, {u"100"_s}).first, -1);
    auto leaving = std::make_unique<ProcessCommands>();
    leaving->run(u"true"_s, {},
                 [](const CommandResult&) { ADD_FAILURE() << "told after the end"; });
    leaving.reset();
    spinFor(milliseconds(100));
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

} // namespace quillet

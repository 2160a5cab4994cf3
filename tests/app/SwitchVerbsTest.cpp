#include "app/SwitchVerbs.h"
#include "platform/memory/MemoryPlatform.h"
#include "switches/SwitchCenter.h"

#include <gtest/gtest.h>
#include <optional>

using namespace Qt::StringLiterals;

namespace quillet {

class SwitchVerbs : public testing::Test {
protected:
    VerbResult run(const QStringList& arguments) {
        const auto command = std::get<Command>(parseCommandLine(arguments));
        std::optional<VerbResult> result;
        const auto reply = [&](const VerbResult& answer) { result = answer; };
        if (command.verb == Verb::dark)
            runDarkVerb(command, switches, reply);
        else if (command.verb == Verb::keyboardLock)
            runKeyboardLockVerb(switches, reply);
        else
            return runSwitchVerb(command, switches);
        memory.scheduler.advance(std::chrono::seconds(1));
        return result.value();
    }

    Platform platform = makeMemoryPlatform();
    MemoryFakes memory{platform};
    Permissions permissions{
        {*platform.access, *platform.workspace, *platform.commands, *platform.scheduler}, {}};
    SwitchCenter switches{{*platform.power, *platform.desktop, *platform.preferences,
                           *platform.scheduler, permissions, *platform.keyboard},
                          [](HUDState&, const std::function<void()>&) { return nullptr; },
                          [] {}};
};

TEST_F(SwitchVerbs, eachTurnsItsSwitchAndSaysWhereItCould) {
    const std::pair<QString, std::function<bool()>> table[]{
        {u"dark"_s, [&] { return switches.darkMode(); }},
        {u"icons"_s, [&] { return !switches.desktopIconsHidden(); }},
        {u"hidden"_s, [&] { return switches.hiddenFilesShown(); }},
        {u"awake"_s, [&] { return switches.keepAwake(); }}};
    for (const auto& [name, isOn] : table) {
        for (const auto& [word, expected] :
             {std::pair{"off", false}, {"on", true}, {"on", true}, {"toggle", false}}) {
            EXPECT_EQ(run({name, QString::fromLatin1(word)}).code, ExitCode::done);
            EXPECT_EQ(isOn(), expected) << name.toStdString() << ' ' << word;
        }
    }
}

TEST_F(SwitchVerbs, whatTheDesktopRefusesIsAFailure) {
    memory.desktop.letsToggleDark = false;
    memory.desktop.missing = {DesktopSettings::FileManagerKey::createDesktop,
                              DesktopSettings::FileManagerKey::showAllFiles};
    memory.power.isAvailable = false;
    memory.power.canSleepDisplay = false;
    memory.keyboard.isTakenElsewhere = true;
    for (const QStringList& verb : {QStringList{u"dark"_s, u"on"_s},
                                    {u"icons"_s, u"off"_s},
                                    {u"hidden"_s, u"on"_s},
                                    {u"awake"_s, u"on"_s},
                                    {u"display-sleep"_s},
                                    {u"keyboard-lock"_s}}) {
        const VerbResult result = run(verb);
        EXPECT_EQ(result.code, ExitCode::failed) << verb.join(u' ').toStdString();
        EXPECT_NE(result.message, QString());
    }
    EXPECT_EQ(run({u"dark"_s, u"off"_s}).code, ExitCode::done) << "as it is already";
}

TEST_F(SwitchVerbs, contraryWishesForTheAppearanceAreBothFulfilledOneAfterTheOther) {
    memory.desktop.isSlow = true;
    std::vector<ExitCode> codes;
    for (const QString& word : {u"on"_s, u"off"_s})
        runDarkVerb(std::get<Command>(parseCommandLine({u"dark"_s, word})), switches,
                    [&](const VerbResult& reply) { codes.push_back(reply.code); });
    EXPECT_TRUE(codes.empty());
    memory.desktop.endToggles();
    EXPECT_EQ(codes, (std::vector{ExitCode::done, ExitCode::done}));
    EXPECT_FALSE(switches.darkMode());
}

TEST_F(SwitchVerbs, theEndOfKeepAwakeIsTheSameTimeEverywhere) {
    run({u"awake"_s, u"on"_s, u"30m"_s});
    const QString until = switchesAsJson(switches)[u"awakeUntil"_s].toString();
    const QDateTime read = QDateTime::fromString(until, Qt::ISODate);
    EXPECT_NE(read.timeSpec(), Qt::LocalTime) << until.toStdString();
    EXPECT_EQ(read.toSecsSinceEpoch(), switches.awakeUntil()->toSecsSinceEpoch());
}

} // namespace quillet

#include "contracts/SpinUntil.h"
#include "platform/linux/dbus/LinuxDesktopSettings.h"
#include "platform/memory/MemoryCommands.h"
#include "platform/memory/MemoryScheduler.h"
#include "support/PrivateBus.h"

#include <gtest/gtest.h>
#include <QDBusVariant>
#include <QDir>

namespace quillet {

using namespace Qt::StringLiterals;
using Key = DesktopSettings::FileManagerKey;

namespace {

const QString appearance = u"org.freedesktop.appearance"_s;
const QString common = u"org.gnome.desktop.interface"_s;
const QString getScheme = u"gsettings get org.gnome.desktop.interface color-scheme"_s;
const QString getTheme = u"gsettings get org.gnome.desktop.interface gtk-theme"_s;

QVariant wrapped(const QVariant& value) {
    return QVariant::fromValue(QDBusVariant(value));
}

/// A portal with a few values, of the older kind where it only knows how to wrap them twice.
class FakePortal : public FakeService {
public:
    FakePortal(PrivateBus& bus, std::map<QString, QVariant> stored, bool isOld = false)
        : FakeService(bus, u"org.freedesktop.portal.Desktop"_s,
                      u"/org/freedesktop/portal/desktop"_s),
          values(std::move(stored)) {
        answers[isOld ? u"Read"_s : u"ReadOne"_s] = [this, isOld](const QDBusMessage& call) {
            const auto value = values.find(call.arguments().at(0).toString() + u' ' +
                                           call.arguments().at(1).toString());
            if (value == values.end())
                return call.createErrorReply(u"org.freedesktop.portal.Error.NotFound"_s, {});
            const QVariant once = wrapped(value->second);
            return call.createReply(isOld ? wrapped(once) : once);
        };
    }

    void change(const QString& space, const QString& key, const QVariant& value) {
        values[space + u' ' + key] = value;
        emitSignal(u"org.freedesktop.portal.Settings"_s, u"SettingChanged"_s,
                   {space, key, wrapped(value)});
    }

    std::map<QString, QVariant> values;
};

} // namespace

class DesktopSettingsTest : public testing::Test {
protected:
    LinuxDesktopSettings& start(const QString& currentDesktop) {
        settings.emplace(bus.connect(), commands,
                         LinuxDesktopSettings::Surroundings{
                             currentDesktop, u"/home of a/share"_s, {folder.path()}});
        observation = settings->observe([this] { ++changes; });
        return *settings;
    }

    template<typename Condition>
    bool waitFor(Condition condition) {
        return spinUntil([&] {
            runCommands();
            return condition();
        });
    }

    void runCommands() { scheduler.advance(std::chrono::milliseconds(0)); }

    /// What a program that reads puts out; it may be asked for any number of times.
    void script(const QString& commandLine, const QByteArray& output) {
        commands.results[commandLine] = {0, output};
    }

    QTemporaryDir folder;
    PrivateBus bus;
    MemoryScheduler scheduler;
    MemoryCommands commands{scheduler};
    std::optional<LinuxDesktopSettings> settings;
    DesktopSettings::Observation observation;
    int changes = 0;
};

TEST_F(DesktopSettingsTest, thePortalTellsTheAppearanceAndItsChangesBothInItsOlderAndNewerForm) {
    for (const bool isOld : {false, true}) {
        FakePortal portal(
            bus, {{appearance + u" color-scheme"_s, 1U}, {common + u" enable-animations"_s, true}},
            isOld);
        start(u"GNOME"_s);
        EXPECT_FALSE(settings->isDark()) << "not known yet";
        ASSERT_TRUE(waitFor([&] { return settings->isDark(); }));
        portal.change(appearance, u"color-scheme"_s, 2U);
        ASSERT_TRUE(waitFor([&] { return !settings->isDark(); }));

        portal.change(common, u"enable-animations"_s, false);
        ASSERT_TRUE(waitFor([&] { return settings->isMotionReduced(); }));
        portal.change(common, u"enable-animations"_s, true);
        ASSERT_TRUE(waitFor([&] { return !settings->isMotionReduced(); }));
        portal.change(appearance, u"reduced-motion"_s, 1U);
        ASSERT_TRUE(waitFor([&] { return settings->isMotionReduced(); }));
    }
}

TEST_F(DesktopSettingsTest, whereThePortalIsAbsentOrHasNoPreferenceTheDesktopsOwnProgramsAreAsked) {
    std::optional<FakePortal> portal;
    for (const bool hasPortal : {false, true}) {
        if (hasPortal)
            portal.emplace(bus, std::map<QString, QVariant>{{appearance + u" color-scheme"_s, 0U}});
        script(getScheme, "'default'\n");
        script(getTheme, "'Yaru-blue-dark'\n");
        script(u"gsettings get org.gnome.desktop.interface enable-animations"_s, "false\n");
        start(u"ubuntu:GNOME"_s);
        EXPECT_TRUE(waitFor([&] { return settings->isDark() && settings->isMotionReduced(); }));
    }
}

TEST_F(DesktopSettingsTest, aPortalThatComesLateIsListenedTo) {
    start(u"GNOME"_s);
    waitFor([&] { return changes > 0; }); // the file manager's settings are known to be missing
    FakePortal portal(bus, {{appearance + u" color-scheme"_s, 1U}});
    EXPECT_TRUE(waitFor([&] { return settings->isDark(); }));
}

TEST_F(DesktopSettingsTest, darkIsSetWhereTheDesktopKeepsItWithAThemeThatIsInstalled) {
    struct Case {
        const char* desktop;
        const char* getTheme;
        const char* theme;
        const char* installed;
        QStringList expected;
    };
    const QString setScheme =
        u"gsettings set org.gnome.desktop.interface color-scheme prefer-dark"_s;
    const Case cases[] = {
        {"XFCE",
         "xfconf-query -c xsettings -p /Net/ThemeName",
         "Greybird",
         "Greybird-dark",
         {setScheme,
          u"xfconf-query -c xsettings -p /Net/ThemeName -n -t string -s Greybird-dark"_s}},
        {"X-Cinnamon",
         "gsettings get org.cinnamon.desktop.interface gtk-theme",
         "'Mint-Y-Aqua'",
         "Mint-Y-Dark-Aqua",
         {setScheme, u"gsettings set org.x.apps.portal color-scheme prefer-dark"_s,
          u"gsettings set org.cinnamon.desktop.interface gtk-theme Mint-Y-Dark-Aqua"_s}},
        {"MATE", "gsettings get org.mate.interface gtk-theme", "'Menta'", "Another", {setScheme}},
        {"KDE", "", "", "Breeze", {setScheme, u"plasma-apply-colorscheme BreezeDark"_s}},
        {"sway", "", "", "Any", {setScheme}},
    };
    for (const Case& each : cases) {
        QDir(folder.path()).mkdir(QString::fromLatin1(each.installed));
        script(QString::fromLatin1(each.getTheme), each.theme);
        start(QString::fromLatin1(each.desktop));
        runCommands();
        commands.calls.clear();
        settings->toggleDark([](bool) {});
        runCommands();
        QStringList changing = commands.calls;
        changing.removeIf([](const QString& call) {
            return call.contains(u" get "_s) || call.startsWith(u"kread"_s) ||
                   call.endsWith(u"ThemeName"_s);
        });
        EXPECT_EQ(changing, each.expected) << each.desktop;
    }
}

TEST_F(DesktopSettingsTest, aToggleTellsWhatCameOfIt) {
    start(u"sway"_s);
    std::vector<bool> told;
    const auto tell = [&](bool done) {
        told.push_back(done);
        told.push_back(settings->isDark());
    };
    settings->toggleDark(tell);
    waitFor([&] { return !told.empty(); });
    EXPECT_EQ(told, (std::vector{false, false})) << "nothing let itself be set";

    told.clear();
    script(u"gsettings set org.gnome.desktop.interface color-scheme prefer-dark"_s, {});
    script(getScheme, "'prefer-dark'\n");
    settings->toggleDark(tell);
    EXPECT_TRUE(settings->isDark()) << "shows at once";
    waitFor([&] { return !told.empty(); });
    EXPECT_EQ(told, (std::vector{true, true}));
}

TEST_F(DesktopSettingsTest, aSecondToggleMidwayGoesBackAndWhatTheFirstWroteIsNotTaken) {
    FakePortal portal(bus, {{appearance + u" color-scheme"_s, 2U}});
    commands.results[u"gsettings"_s] = {0, "'default'"};
    start(u"sway"_s);
    portal.change(common, u"enable-animations"_s, false);
    waitFor([&] { return settings->isMotionReduced(); });
    int told = 0;
    settings->toggleDark([&](bool) { ++told; });
    settings->toggleDark([&](bool) { ++told; });
    EXPECT_FALSE(settings->isDark());
    portal.change(appearance, u"color-scheme"_s, 1U);
    portal.change(common, u"enable-animations"_s, true);
    spinUntil([&] { return !settings->isMotionReduced(); });
    EXPECT_FALSE(settings->isDark());
    EXPECT_TRUE(waitFor([&] { return told == 2; }));
    EXPECT_FALSE(settings->isDark());
}

TEST_F(DesktopSettingsTest, everyDesktopKeepsIconsAndHiddenFilesInItsOwnPlaceOrSaysWhyItCannot) {
    struct Case {
        const char* desktop;
        Key key;
        const char* read;
        const char* output;
        QVariant value;
        const char* hides; ///< what setting it to false runs; null where it cannot be set
    };
    const Case cases[] = {
        {"XFCE", Key::createDesktop, "xfconf-query -c xfce4-desktop -p /desktop-icons/style", "2\n",
         true, "xfconf-query -c xfce4-desktop -p /desktop-icons/style -n -t int -s 0"},
        {"XFCE", Key::createDesktop, "xfconf-query -c xfce4-desktop -p /desktop-icons/style", "1\n",
         false, "xfconf-query -c xfce4-desktop -p /desktop-icons/style -n -t int -s 0"},
        {"MATE", Key::createDesktop, "gsettings get org.mate.background show-desktop-icons",
         "true\n", true, "gsettings set org.mate.background show-desktop-icons false"},
        {"ubuntu:GNOME", Key::createDesktop, "gnome-extensions info ding@rastersoft.com",
         "ding\n  Name: Icons\n  State: ACTIVE\n", true,
         "gnome-extensions disable ding@rastersoft.com"},
        {"GNOME", Key::createDesktop, "nothing", "", {}, nullptr},
        {"KDE", Key::createDesktop, "nothing", "", {}, nullptr},
        {"twm", Key::createDesktop, "nothing", "", {}, nullptr},
        {"", Key::showAllFiles, "nothing", "", {}, nullptr},
        {"GNOME", Key::showAllFiles, "gsettings get org.gtk.Settings.FileChooser show-hidden",
         "false", false, "gsettings set org.gtk.Settings.FileChooser show-hidden false"},
        {"KDE", Key::showAllFiles,
         "kreadconfig5 --file /home of a/share/dolphin/view_properties/global/.directory --group "
         "Settings --key HiddenFilesShown",
         "true\n", true,
         "kwriteconfig5 --file /home of a/share/dolphin/view_properties/global/.directory --group "
         "Settings --key HiddenFilesShown --type bool false"},
    };
    for (const Case& each : cases) {
        commands.results = {{QString::fromLatin1(each.read), {0, each.output}}};
        start(QString::fromLatin1(each.desktop));
        runCommands();
        EXPECT_EQ(settings->fileManagerValue(each.key), each.value) << each.desktop;
        EXPECT_EQ(settings->cause(each.key).isEmpty(), each.hides != nullptr) << each.desktop;
        if (!each.hides)
            continue;
        commands.calls.clear();
        script(QString::fromLatin1(each.hides), {});
        settings->setFileManagerValue(each.key, false);
        EXPECT_EQ(settings->fileManagerValue(each.key), QVariant(false));
        runCommands();
        EXPECT_EQ(commands.calls, QStringList(QString::fromLatin1(each.hides)))
            << "only the places that are there";
    }
}

TEST_F(DesktopSettingsTest, nothingStoredIsNotTheSameAsNoPlaceForIt) {
    commands.results = {{u"xfconf-query"_s, {1, {}}}};
    start(u"XFCE"_s);
    runCommands();
    EXPECT_EQ(settings->fileManagerValue(Key::createDesktop), QVariant());
    EXPECT_EQ(settings->cause(Key::createDesktop), QString());
}

TEST_F(DesktopSettingsTest, aValueThatIsSetWhileTheOldOneIsBeingReadStays) {
    script(u"gsettings"_s, "true");
    start(u"MATE"_s);
    settings->setFileManagerValue(Key::createDesktop, false);
    settings->setFileManagerValue(Key::createDesktop, true);
    settings->setFileManagerValue(Key::createDesktop, false);
    runCommands();
    EXPECT_EQ(settings->fileManagerValue(Key::createDesktop), QVariant(false));
    EXPECT_EQ(commands.calls.filter(u"set org.mate.background"_s).last(),
              u"gsettings set org.mate.background show-desktop-icons false"_s)
        << "the last word is the last one said";
}

} // namespace quillet

#include "contracts/DesktopSettingsContract.h"
#include "contracts/SpinUntil.h"
#include "platform/linux/dbus/LinuxDesktopSettings.h"
#include "platform/linux/LinuxScheduler.h"
#include "platform/linux/ProcessCommands.h"
#include "platform/memory/MemoryCommands.h"
#include "platform/memory/MemoryPreferences.h"
#include "platform/memory/MemoryScheduler.h"
#include "support/FakePortal.h"

#include <gtest/gtest.h>
#include <QDir>
#include <QLockFile>
#include <QRegularExpression>

namespace quillet {

using namespace Qt::StringLiterals;
using Key = DesktopSettings::FileManagerKey;

namespace {

const QString getScheme = u"gsettings get org.gnome.desktop.interface color-scheme"_s;
const QString getTheme = u"gsettings get org.gnome.desktop.interface gtk-theme"_s;

} // namespace

class DesktopSettingsTest : public testing::Test {
protected:
    LinuxDesktopSettings& start(const QString& currentDesktop) {
        settings.emplace(
            bus.connect(), commands, scheduler, preferences,
            LinuxDesktopSettings::Surroundings{
                currentDesktop, folder.path(), u"/home of a/share"_s, {folder.path()}});
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

    /// What a program puts out, however often it runs.
    void script(const QString& commandLine, const QByteArray& output) {
        commands.results[commandLine] = {0, output};
    }

    QTemporaryDir folder;
    PrivateBus bus;
    MemoryScheduler scheduler;
    MemoryCommands commands{scheduler};
    MemoryPreferences preferences;
    std::optional<LinuxDesktopSettings> settings;
};

TEST_F(DesktopSettingsTest, thePortalTellsTheAppearanceInEitherFormHoweverLateItComes) {
    for (const bool isOld : {false, true}) {
        start(u"GNOME"_s);
        FakePortal portal(bus, {{FakePortal::colorScheme, 1U}, {FakePortal::animations, true}},
                          isOld);
        ASSERT_TRUE(waitFor([&] { return settings->isDark(); }));
        portal.change(FakePortal::colorScheme, 2U);
        ASSERT_TRUE(waitFor([&] { return !settings->isDark(); }));
        portal.change(FakePortal::animations, false);
        ASSERT_TRUE(waitFor([&] { return settings->isMotionReduced(); }));
        portal.change(FakePortal::animations, true);
        ASSERT_TRUE(waitFor([&] { return !settings->isMotionReduced(); }));
        portal.change(FakePortal::reducedMotion, 1U);
        ASSERT_TRUE(waitFor([&] { return settings->isMotionReduced(); }));
    }
}

TEST_F(DesktopSettingsTest, whereThePortalIsAbsentOrHasNoPreferenceTheDesktopsOwnProgramsAreAsked) {
    std::optional<FakePortal> portal;
    for (const bool hasPortal : {false, true}) {
        if (hasPortal)
            portal.emplace(bus,
                           std::map<FakePortal::Setting, QVariant>{{FakePortal::colorScheme, 0U}});
        script(getScheme, "'default'\n");
        script(getTheme, "'Yaru-blue-dark'\n");
        script(u"gsettings get org.gnome.desktop.interface enable-animations"_s, "false\n");
        start(u"ubuntu:GNOME"_s);
        EXPECT_TRUE(waitFor([&] { return settings->isDark() && settings->isMotionReduced(); }));
    }
}

TEST_F(DesktopSettingsTest, aRefreshTellsWhatOthersStoredAndWhoeverAsksTooEarlyIsToldInTime) {
    const QString hidden = u"gsettings get org.gtk.gtk4.Settings.FileChooser show-hidden"_s;
    script(hidden, "false");
    start(u"MATE"_s);
    for (const bool dark : {true, false}) {
        script(getScheme, dark ? "'prefer-dark'" : "'default'");
        script(hidden, dark ? "false" : "true");
        bool isTold = false;
        settings->refresh([&] { isTold = true; });
        EXPECT_FALSE(isTold);
        ASSERT_TRUE(waitFor([&] { return isTold; }));
        EXPECT_EQ(settings->isDark(), dark);
        EXPECT_EQ(settings->fileManagerValue(Key::showAllFiles), QVariant(!dark));
        EXPECT_NE(settings->cause(Key::createDesktop), QString());
    }
}

TEST_F(DesktopSettingsTest, whatTookTooLongToTellIsAskedAgain) {
    const QString ask = u"env LC_ALL=C gnome-extensions info ding@rastersoft.com"_s;
    commands.results[ask] = {-1, {}, true};
    start(u"GNOME"_s);
    const auto isThere = [&] { return settings->cause(Key::createDesktop).isEmpty(); };
    runCommands();
    EXPECT_EQ(settings->cause(Key::createDesktop), u"The desktop takes too long to tell."_s);
    bool isRead = false;
    settings->refresh([&] { isRead = true; });
    ASSERT_TRUE(waitFor([&] { return isRead; }));
    EXPECT_FALSE(isThere());
    script(ask, "State: ENABLED");
    settings->retry();
    EXPECT_TRUE(waitFor(isThere));

    commands.results[ask] = {-1, {}, true};
    start(u"GNOME"_s);
    runCommands();
    script(ask, "State: ENABLED");
    const FakeService shell(bus, u"org.gnome.Shell"_s, u"/"_s);
    EXPECT_TRUE(waitFor(isThere)) << "when the one who knows has come";
}

TEST_F(DesktopSettingsTest, darkTakesAThemeThatIsInstalledAndLightTheOneThatWasThereBefore) {
    struct Case {
        const char* desktop;
        const char* read;
        const char* set;
        const char* light;
        const char* dark;
        const char* folder;
    };
    const Case cases[] = {
        {"X-Cinnamon", "gsettings get org.cinnamon.desktop.interface gtk-theme",
         "gsettings set org.cinnamon.desktop.interface gtk-theme", "Mint-Y-Aqua",
         "Mint-Y-Dark-Aqua", ".themes/Mint-Y-Dark-Aqua/gtk-3.0"},
        {"XFCE", "xfconf-query -c xsettings -p /Net/ThemeName",
         "xfconf-query -c xsettings -p /Net/ThemeName -n -t string -s", "Xfce", "Adwaita-dark",
         "themes/Adwaita-dark/gtk-3.0"},
        {"MATE", "gsettings get org.mate.interface gtk-theme",
         "gsettings set org.mate.interface gtk-theme", "Shiny", "BlackMATE",
         "themes/BlackMATE/gtk-3.0"},
        {"GNOME", "gsettings get org.gnome.desktop.interface color-scheme",
         "gsettings set org.gnome.desktop.interface color-scheme", "prefer-light", "prefer-dark",
         nullptr},
    };
    for (const Case& each : cases) {
        const QString read = QString::fromLatin1(each.read);
        const auto toggles = [&](const char* from, const char* to, bool isDark) {
            script(read, '\'' + QByteArray(from) + "'\n");
            start(QString::fromLatin1(each.desktop)); // as after a restart, all the same
            bool isKnown = false;
            settings->refresh([&] { isKnown = true; });
            EXPECT_TRUE(waitFor([&] { return isKnown && settings->isDark() == isDark; }));
            commands.calls.clear();
            const QString set =
                u"%1 %2"_s.arg(QString::fromLatin1(each.set), QString::fromLatin1(to));
            script(set, {});
            std::optional<bool> told;
            settings->makeDark(!settings->isDark(), [&](bool done) { told = done; });
            EXPECT_TRUE(waitFor([&] {
                scheduler.advance(std::chrono::milliseconds(100));
                return told.has_value();
            }));
            EXPECT_EQ(*told, commands.calls.contains(set)) << each.desktop;
            EXPECT_EQ(*told, !commands.calls.filter(QRegularExpression(u" set | -s "_s)).isEmpty())
                << "nothing is half dark";
            return *told;
        };
        if (each.folder) {
            EXPECT_FALSE(toggles(each.light, each.dark, false)) << each.desktop;
            QDir(folder.path()).mkpath(QString::fromLatin1(each.folder));
        }
        EXPECT_TRUE(toggles(each.light, each.dark, false)) << each.desktop;
        EXPECT_TRUE(toggles(each.dark, each.light, true)) << each.desktop;
    }
}

TEST_F(DesktopSettingsTest, aSchemeOfColoursThatTheDesktopDoesNotFollowDoesNotMakeItDark) {
    FakePortal portal(bus, {{FakePortal::colorScheme, 1U}, {FakePortal::reducedMotion, 1U}});
    script(u"xfconf-query -c xsettings -p /Net/ThemeName"_s, "Xfce\n");
    script(getScheme, "'prefer-dark'");
    start(u"XFCE"_s);
    bool isRead = false;
    settings->refresh([&] { isRead = true; });
    ASSERT_TRUE(waitFor([&] { return isRead && settings->isMotionReduced(); }));
    EXPECT_FALSE(settings->isDark());

    script(u"gsettings set org.gnome.desktop.interface color-scheme default"_s, {});
    std::optional<bool> told;
    settings->makeDark(false, [&](bool done) { told = done; });
    EXPECT_TRUE(waitFor([&] { return told.has_value(); }));
    EXPECT_EQ(told, true) << "the programs follow a theme that was chosen by hand";
    EXPECT_EQ(commands.calls.filter(QRegularExpression(u" set | -s "_s)),
              QStringList(u"gsettings set org.gnome.desktop.interface color-scheme default"_s));
}

TEST_F(DesktopSettingsTest, aSettingsFileIsChangedAndComesBackAsItWas) {
    const QString path = folder.filePath(u"lxqt/lxqt.conf"_s);
    QDir(folder.path()).mkpath(u"lxqt/themes/dark"_s);
    const auto content = [&](const QByteArray& written = {}) {
        QFile file(path);
        file.open(written.isEmpty() ? QIODevice::ReadOnly : QIODevice::WriteOnly);
        return written.isEmpty() ? file.readAll() : (file.write(written), written);
    };
    const QByteArray before = "# theme=none\n[General]\nicon_theme=Caf\\xe9 \xe9\ntheme=\"ice, "
                              "cold\"\r\nno value\n\n[Other]\ntheme=1\n[Palette]\nbase_color=#"
                              "ffffff\ntext_color=#000000\n"
                              "window_color=#eeeeee\nwindow_text_color=#000000";
    const QString target = folder.filePath(u"kept elsewhere"_s);
    ASSERT_TRUE(QFile::link(target, path));
    content(before);
    QLockFile lock(path + u".lock"_s); // no reason to wait
    ASSERT_TRUE(lock.lock());
    start(u"LXQt"_s);
    const auto toggles = [&](bool dark) {
        bool isRead = false;
        settings->refresh([&] { isRead = true; });
        ASSERT_TRUE(waitFor([&] { return isRead; }));
        std::optional<bool> told;
        settings->makeDark(!settings->isDark(), [&](bool done) { told = done; });
        ASSERT_TRUE(waitFor([&] { return told.has_value(); }));
        EXPECT_EQ(told, true);
        EXPECT_EQ(settings->isDark(), dark);
        EXPECT_EQ(content().contains("theme=dark"), dark);
        EXPECT_EQ(content().contains("window_color=#232323"), dark);
    };
    toggles(true);
    toggles(false);
    EXPECT_EQ(content(), before);
    toggles(true);
    content(content().replace("theme=dark", "theme=Nord"));
    toggles(false);
    EXPECT_EQ(content(), QByteArray(before).replace("\"ice, cold\"", "Nord"))
        << "the colours go although the theme is another one meanwhile";

    QFile::remove(target);
    toggles(true);
    EXPECT_TRUE(content().startsWith("[General]\ntheme=dark\n[Palette]\nwindow_color=#232323\n"));
    toggles(false);
    EXPECT_TRUE(content().startsWith("[General]\n[Palette]\nwindow_color=#eeeeee\n"));
    content("[General]\n[Palette]\n[Other]\nlast=1");
    toggles(true);
    EXPECT_TRUE(content().endsWith("text_color=#d6d6d6\n[Other]\nlast=1")) << "and no more";
    EXPECT_EQ(QFile::symLinkTarget(path), target);
}

TEST_F(DesktopSettingsTest, aThemeHasItsCounterpartWhereThatIsInstalled) {
    for (const QString& name :
         {u"Greybird"_s, u"Greybird-dark"_s, u"Mint-Y-Dark-Aqua"_s, u"Adwaita-dark"_s})
        QDir(folder.path()).mkdir(name);
    DesktopLook look;
    look.folders = {u"%1"_s};
    look.dark = {u"Missing-dark"_s, u"Adwaita-dark"_s};
    const LookPair last{u"Missing"_s, u"Greybird-dark"_s};
    struct Row {
        bool dark;
        QString name;
        QString expected;
        std::optional<LookPair> last{};
    };
    const Row rows[] = {
        {true, u"Greybird"_s, u"Greybird-dark"_s},
        {true, u"Greybird-dark"_s, u"Greybird-dark"_s},
        {false, u"Greybird-dark"_s, u"Greybird"_s},
        {false, u"Greybird-dark"_s, u"Missing"_s, last}, // it may come from elsewhere
        {true, u"Missing"_s, u"Greybird-dark"_s, last},
        {true, u"Mint-Y-Aqua"_s, u"Mint-Y-Dark-Aqua"_s},
        {false, u"Mint-Y-Dark-Aqua"_s, u"Mint-Y-Dark-Aqua"_s}, // no such light one
        {true, u"Darkly"_s, u"Adwaita-dark"_s},
        {false, u"Adwaita-dark"_s, u"Adwaita"_s},
    };
    for (const Row& row : rows)
        EXPECT_EQ(nameFor(row.dark, row.name, look, row.last, {folder.path()}), row.expected);
}

TEST_F(DesktopSettingsTest, aToggleTellsWhatCameOfIt) {
    script(getScheme, "'prefer-light'");
    start(u"sway"_s);
    std::vector<bool> told;
    const auto tell = [&](bool done) {
        told.push_back(done);
        told.push_back(settings->isDark());
    };
    settings->makeDark(!settings->isDark(), tell);
    waitFor([&] { return !told.empty(); });
    EXPECT_EQ(told, (std::vector{false, false})) << "nothing let itself be set";
    EXPECT_EQ(preferences.value(PreferenceKey<QStringList>{u"dark.pair: "_s + getScheme, {}}),
              QStringList());

    told.clear();
    script(u"gsettings set org.gnome.desktop.interface color-scheme prefer-dark"_s, {});
    script(getScheme, "'prefer-dark'\n");
    settings->makeDark(!settings->isDark(), tell);
    EXPECT_TRUE(settings->isDark()) << "shows at once";
    waitFor([&] { return !told.empty(); });
    EXPECT_EQ(told, (std::vector{true, true}));

    told.clear();
    commands.calls.clear();
    script(getScheme, "'prefer-light'");
    start(u"MATE"_s);
    for (int i = 0; i < 2; ++i)
        settings->makeDark(true, tell);
    waitFor([&] { return told.size() == 4; });
    EXPECT_EQ(told, (std::vector{false, true, false, false}));
    EXPECT_EQ(commands.calls.filter(u" set "_s), QStringList()) << "what is wanted is not yet so";
}

TEST_F(DesktopSettingsTest, aSecondToggleMidwayGoesBackAndWhatTheFirstWroteIsNotTaken) {
    FakePortal portal(bus, {{FakePortal::colorScheme, 2U}});
    commands.results[u"gsettings"_s] = {0, "'default'"};
    start(u"sway"_s);
    portal.change(FakePortal::animations, false);
    waitFor([&] { return settings->isMotionReduced(); });
    int told = 0;
    for (int i = 0; i < 2; ++i)
        settings->makeDark(!settings->isDark(), [&](bool) { ++told; });
    EXPECT_FALSE(settings->isDark());
    portal.change(FakePortal::colorScheme, 1U);
    portal.change(FakePortal::animations, true);
    spinUntil([&] { return !settings->isMotionReduced(); });
    EXPECT_FALSE(settings->isDark());
    portal.change(FakePortal::colorScheme, 2U);
    EXPECT_TRUE(waitFor([&] { return told == 2; }));
    EXPECT_FALSE(settings->isDark());
}

TEST_F(DesktopSettingsTest, afterAToggleThePortalsPreferenceOutweighsTheProgramsEvenIfItComesLate) {
    for (const bool isObeyed : {false, true}) {
        FakePortal portal(bus, {{FakePortal::colorScheme, 2U}});
        commands.results[u"gsettings"_s] = {0, "'prefer-dark'"};
        start(u"GNOME"_s);
        bool isKnown = false;
        settings->refresh([&] { isKnown = true; });
        ASSERT_TRUE(waitFor([&] { return isKnown; }));
        bool isOver = false;
        settings->makeDark(!settings->isDark(), [&](bool) { isOver = true; });
        ASSERT_TRUE(waitFor([&] { return !scheduler.isIdle(); })) << "it will look again";
        EXPECT_FALSE(isOver);
        if (isObeyed)
            portal.change(FakePortal::colorScheme, 1U);
        scheduler.advance(std::chrono::milliseconds(100));
        EXPECT_TRUE(waitFor([&] { return isOver; }));
        EXPECT_EQ(settings->isDark(), isObeyed);
    }
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
        {"ubuntu:GNOME", Key::createDesktop,
         "env LC_ALL=C gnome-extensions info ding@rastersoft.com",
         "ding\n  Name: Icons\n  State: ACTIVE\n", true,
         "gnome-extensions disable ding@rastersoft.com"},
        {"GNOME", Key::createDesktop, "nothing", "", {}, nullptr},
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

TEST_F(DesktopSettingsTest, iconsOfAnotherKindComeBackAsTheyWere) {
    const QString style = u"xfconf-query -c xfce4-desktop -p /desktop-icons/style"_s;
    struct Row {
        CommandResult found;
        QVariant value;
        QString shown;
    };
    for (const Row& row : {Row{{1, {}}, {}, u" -n -t int -s 2"_s}, // nothing is stored yet
                           Row{{0, "0\n"}, false, u" -n -t int -s 2"_s},
                           Row{{0, "1\n"}, true, u" -n -t int -s 1"_s}}) {
        commands.results = {{style, row.found}};
        start(u"XFCE"_s);
        runCommands();
        EXPECT_EQ(settings->fileManagerValue(Key::createDesktop), row.value);
        settings->setFileManagerValue(Key::createDesktop, false);
        settings->setFileManagerValue(Key::createDesktop, true);
        runCommands();
        EXPECT_EQ(commands.calls.last(), style + row.shown);
    }
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

/// The real programs for settings, over a file in a home of their own.
struct LinuxDesktopSettingsBackend {
    LinuxDesktopSettingsBackend() {
        qputenv("XDG_CONFIG_HOME", home.path().toUtf8());
        qputenv("GSETTINGS_BACKEND", "keyfile");
    }
    ~LinuxDesktopSettingsBackend() {
        qunsetenv("XDG_CONFIG_HOME");
        qunsetenv("GSETTINGS_BACKEND");
    }

    QTemporaryDir home;
    PrivateBus bus;
    FakePortal portal{bus, {{FakePortal::colorScheme, 0U}}};
    LinuxScheduler scheduler;
    ProcessCommands commands;
    MemoryPreferences preferences;
    LinuxDesktopSettings settings{
        bus.connect(), commands, scheduler, preferences, {u"GNOME"_s, {}, {}, {}}};

    DesktopSettings& desktop() { return settings; }

    bool showsHiddenFiles() {
        QFile file(home.filePath(u"glib-2.0/settings/keyfile"_s));
        return file.open(QIODevice::ReadOnly) && file.readAll().contains("show-hidden=true");
    }
    void setDarkElsewhere(bool dark) { portal.change(FakePortal::colorScheme, dark ? 1U : 2U); }

    template<typename Condition>
    bool waitFor(Condition condition) {
        return spinUntil(condition);
    }
};
INSTANTIATE_TYPED_TEST_SUITE_P(Linux, DesktopSettingsContract, LinuxDesktopSettingsBackend);

} // namespace quillet

#include "platform/linux/dbus/DesktopTable.h"

#include <algorithm>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace quillet {

namespace {

DesktopSwitch gsettings(const QString& schemaAndKey, const QString& on = u"true"_s,
                        const QString& off = u"false"_s) {
    return {u"gsettings get "_s + schemaAndKey, u"'?%1'?"_s.arg(on),
            u"gsettings set %1 %2"_s.arg(schemaAndKey, on),
            u"gsettings set %1 %2"_s.arg(schemaAndKey, off)};
}

DesktopSwitch xfconf(const QString& channel, const QString& property, const QString& type,
                     const QString& on, const QString& off) {
    const QString place = u"xfconf-query -c %1 -p %2"_s.arg(channel, property);
    const QString set = place + u" -n -t %1 -s "_s.arg(type);
    return {place, on, set + on, set + off, true};
}

DesktopSwitch kconfig(const QString& version, const QString& file, const QString& group,
                      const QString& key) {
    const QString place = u" --file %1 --group %2 --key %3"_s.arg(file, group, key);
    const QString set = u"kwriteconfig"_s + version + place + u" --type bool "_s;
    return {u"kreadconfig"_s + version + place, u"true"_s, set + u"true"_s, set + u"false"_s};
}

DesktopTheme gsettingsTheme(const QString& schema) {
    const QString place = schema + u" gtk-theme"_s;
    return {u"gsettings get "_s + place, u"gsettings set "_s + place};
}

DesktopSwitch colorScheme(const QString& schema) {
    return gsettings(schema + u" color-scheme"_s, u"prefer-dark"_s, u"default"_s);
}

/// Where every file chooser of the two toolkit versions looks, and a file manager made with them.
std::vector<DesktopSwitch> fileChoosers() {
    return {gsettings(u"org.gtk.gtk4.Settings.FileChooser show-hidden"_s),
            gsettings(u"org.gtk.Settings.FileChooser show-hidden"_s)};
}

std::vector<DesktopSwitch> with(std::vector<DesktopSwitch> switches, DesktopSwitch another) {
    switches.insert(switches.begin(), std::move(another));
    return switches;
}

Desktop gnome() {
    Desktop desktop;
    const QString extension = u"ding@rastersoft.com"_s;
    desktop.icons = {
        {u"env LC_ALL=C gnome-extensions info "_s + extension, u"(?s).*State: (ENABLED|ACTIVE).*"_s,
         u"gnome-extensions enable "_s + extension, u"gnome-extensions disable "_s + extension}};
    desktop.whyNoIcons = u"This desktop has no icons without its extension for them."_s;
    desktop.hiddenFiles = fileChoosers();
    return desktop;
}

Desktop cinnamon() {
    Desktop desktop;
    desktop.icons = {gsettings(u"org.nemo.desktop show-desktop-icons"_s)};
    desktop.hiddenFiles =
        with(fileChoosers(), gsettings(u"org.nemo.preferences show-hidden-files"_s));
    desktop.dark = {colorScheme(u"org.x.apps.portal"_s)};
    desktop.themes = {gsettingsTheme(u"org.cinnamon.desktop.interface"_s)};
    return desktop;
}

Desktop mate() {
    Desktop desktop;
    desktop.icons = {gsettings(u"org.mate.background show-desktop-icons"_s)};
    desktop.hiddenFiles =
        with(fileChoosers(), gsettings(u"org.mate.caja.preferences show-hidden-files"_s));
    desktop.themes = {gsettingsTheme(u"org.mate.interface"_s)};
    return desktop;
}

Desktop xfce() {
    Desktop desktop;
    desktop.icons = {
        xfconf(u"xfce4-desktop"_s, u"/desktop-icons/style"_s, u"int"_s, u"2"_s, u"0"_s)};
    desktop.icons.front().isOn = u"[1-9]"_s; // for files, or for windows that are minimised
    desktop.icons.front().hasKinds = true;
    desktop.hiddenFiles = with(fileChoosers(), xfconf(u"thunar"_s, u"/last-show-hidden"_s,
                                                      u"bool"_s, u"true"_s, u"false"_s));
    const QString theme = u"xfconf-query -c xsettings -p /Net/ThemeName"_s;
    desktop.themes = {{theme, theme + u" -n -t string -s"_s}};
    return desktop;
}

Desktop kde() {
    Desktop desktop;
    desktop.whyNoIcons = u"This desktop can hide its icons only by forgetting their places."_s;
    // Two versions of this desktop are about, each with its own programs for its files.
    for (const QString& version : {u"5"_s, u"6"_s})
        desktop.hiddenFiles.push_back(kconfig(version,
                                              u"$DATA/dolphin/view_properties/global/.directory"_s,
                                              u"Settings"_s, u"HiddenFilesShown"_s));
    const QString scheme = u" --file kdeglobals --group General --key ColorScheme"_s;
    desktop.dark = {
        {u"kreadconfig5"_s + scheme, u".*Dark"_s, u"plasma-apply-colorscheme BreezeDark"_s,
         u"plasma-apply-colorscheme BreezeLight"_s},
        {u"kreadconfig6"_s + scheme, u".*Dark"_s, {}, {}},
    };
    return desktop;
}

Desktop lxqt() {
    Desktop desktop;
    desktop.whyNoIcons = u"This desktop draws its icons and its wallpaper as one."_s;
    desktop.whyNoHiddenFiles = u"This desktop's file manager has no setting for programs."_s;
    return desktop;
}

struct Row {
    QLatin1StringView name;
    Desktop (*make)();
};

constexpr Row rows[] = {{"GNOME"_L1, gnome}, {"X-Cinnamon"_L1, cinnamon},
                        {"MATE"_L1, mate},   {"XFCE"_L1, xfce},
                        {"KDE"_L1, kde},     {"LXQt"_L1, lxqt}};

Desktop unknown(const QString& name) {
    Desktop desktop;
    desktop.whyNoIcons = name.isEmpty() ? u"The session does not say which desktop this is."_s
                                        : u"Nothing is known about the desktop \"%1\"."_s.arg(name);
    desktop.whyNoHiddenFiles = desktop.whyNoIcons;
    return desktop;
}

Desktop ownPart(const QString& currentDesktop) {
    for (const QString& name : currentDesktop.split(u':')) {
        const auto row = std::ranges::find_if(rows, [&](const Row& candidate) {
            return name.compare(candidate.name, Qt::CaseInsensitive) == 0;
        });
        if (row != std::end(rows))
            return row->make();
    }
    return unknown(currentDesktop);
}

bool isDarkPart(const QString& part) {
    return part.compare("dark"_L1, Qt::CaseInsensitive) == 0;
}

bool isInstalled(const QString& theme, const QStringList& folders) {
    // One light theme is part of the toolkit itself.
    return theme == "Adwaita"_L1 || std::ranges::any_of(folders, [&](const QString& folder) {
               return QFileInfo(folder + u'/' + theme).isDir();
           });
}

} // namespace

Desktop desktopNamed(const QString& currentDesktop) {
    Desktop desktop = ownPart(currentDesktop);
    // What the programs of every desktop look at.
    const QString common = u"org.gnome.desktop.interface"_s;
    desktop.dark.insert(desktop.dark.begin(), colorScheme(common));
    desktop.themes.push_back(gsettingsTheme(common));
    return desktop;
}

bool isDarkTheme(const QString& theme) {
    return std::ranges::any_of(theme.split(u'-'), isDarkPart);
}

QString themeFor(bool dark, const QString& theme, const QStringList& folders) {
    if (isDarkTheme(theme) == dark)
        return theme;
    const QStringList parts = theme.split(u'-');
    QStringList names;
    if (dark) {
        // "Name-dark", but "Name-Dark-Blue" too.
        for (qsizetype place = parts.size(); place > 0; --place) {
            for (const QString& word : {u"dark"_s, u"Dark"_s}) {
                QStringList longer = parts;
                longer.insert(place, word);
                names.append(longer.join(u'-'));
            }
        }
    } else {
        QStringList shorter = parts;
        shorter.removeIf(isDarkPart);
        names.append(shorter.join(u'-'));
    }
    for (const QString& name : names) {
        if (isInstalled(name, folders))
            return name;
    }
    return theme;
}

} // namespace quillet

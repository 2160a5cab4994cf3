#include "platform/linux/dbus/DesktopTable.h"

#include <algorithm>
#include <cstdlib>
#include <QColor>
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

const QString commonSchema = u"org.gnome.desktop.interface"_s;

DesktopLook gsettingsLook(const QString& place, const QStringList& dark, const QStringList& light,
                          const QString& folder = {}) {
    DesktopLook look{u"gsettings get "_s + place, u"gsettings set "_s + place, dark, light};
    if (!folder.isEmpty())
        look.folders = {u"themes/"_s + folder, u".themes/"_s + folder};
    return look;
}

DesktopLook gtkTheme(const QString& schema, const QStringList& dark = {u"Adwaita-dark"_s},
                     const QStringList& light = {u"Adwaita"_s}) {
    return gsettingsLook(schema + u" gtk-theme"_s, dark, light, u"%1/gtk-3.0"_s);
}

DesktopLook colorScheme(const QString& schema) {
    return gsettingsLook(schema + u" color-scheme"_s, {u"prefer-dark"_s}, {u"default"_s});
}

/// Where the light name is empty, none is stored and the desktop's own default shows.
DesktopLook iniLook(const QString& file, const QString& key, const QString& dark,
                    const QString& light) {
    const QString place = u"ini $CONFIG/%1 %2"_s.arg(file, key);
    return {place, place, {dark}, {light}};
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
    desktop.iconsService = u"org.gnome.Shell"_s;
    desktop.whyNoIcons = u"This desktop has no icons without its extension for them."_s;
    desktop.hiddenFiles = fileChoosers();
    return desktop;
}

Desktop cinnamon() {
    Desktop desktop;
    desktop.icons = {gsettings(u"org.nemo.desktop show-desktop-icons"_s)};
    desktop.hiddenFiles =
        with(fileChoosers(), gsettings(u"org.nemo.preferences show-hidden-files"_s));
    desktop.looks = {gtkTheme(u"org.cinnamon.desktop.interface"_s),
                     colorScheme(u"org.x.apps.portal"_s)};
    desktop.isDarkByPortal = false;
    return desktop;
}

Desktop mate() {
    Desktop desktop;
    desktop.icons = {gsettings(u"org.mate.background show-desktop-icons"_s)};
    desktop.hiddenFiles =
        with(fileChoosers(), gsettings(u"org.mate.caja.preferences show-hidden-files"_s));
    const QStringList dark{u"BlackMATE"_s};
    const QStringList light{u"Menta"_s};
    desktop.looks = {
        gtkTheme(u"org.mate.interface"_s, dark, light),
        gsettingsLook(u"org.mate.Marco.general theme"_s, dark, light, u"%1/metacity-1"_s)};
    desktop.isDarkByPortal = false;
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
    desktop.looks = {gtkTheme(commonSchema)};
    desktop.looks.front().read = theme;
    desktop.looks.front().set = theme + u" -n -t string -s"_s;
    desktop.isDarkByPortal = false;
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
    desktop.looks = {{u"ini $CONFIG/kdeglobals ColorScheme"_s,
                      u"plasma-apply-colorscheme"_s,
                      {u"BreezeDark"_s},
                      {u"BreezeLight"_s}}};
    desktop.looks.front().namesTell = false;
    return desktop;
}

Desktop lxqt() {
    Desktop desktop;
    desktop.whyNoIcons = u"This desktop draws its icons and its wallpaper as one."_s;
    desktop.whyNoHiddenFiles = u"This desktop's file manager has no setting for programs."_s;
    const QString file = u"lxqt/lxqt.conf"_s;
    desktop.looks = {iniLook(file, u"theme"_s, u"dark"_s, {}),
                     // Programs that run do not notice when these are taken away.
                     iniLook(file, u"Palette/window_color"_s, u"#232323"_s, u"#efefef"_s),
                     iniLook(file, u"Palette/window_text_color"_s, u"#e1e6e6"_s, u"#000000"_s),
                     iniLook(file, u"Palette/base_color"_s, u"#282828"_s, u"#ffffff"_s),
                     iniLook(file, u"Palette/text_color"_s, u"#d6d6d6"_s, u"#000000"_s)};
    desktop.looks.front().folders = {u"lxqt/themes/%1"_s};
    desktop.looks.front().othersAreLight = false;
    desktop.isDarkByPortal = false;
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

bool isInstalled(const QString& name, const DesktopLook& look, const QStringList& folders) {
    // One light theme is part of the toolkit itself.
    if (look.folders.isEmpty() || name == "Adwaita"_L1)
        return true;
    return std::ranges::any_of(folders, [&](const QString& folder) {
        return std::ranges::any_of(look.folders, [&](const QString& place) {
            return QFileInfo(folder + u'/' + place.arg(name)).isDir();
        });
    });
}

/// Names that may belong to the same theme.
QStringList counterparts(bool dark, const QString& name) {
    QStringList parts = name.split(u'-');
    if (!dark) {
        parts.removeIf(isDarkPart);
        return {parts.join(u'-')};
    }
    QStringList names; // "Name-dark", but "Name-Dark-Blue" too
    for (qsizetype place = parts.size(); place > 0; --place) {
        for (const QString& word : {u"dark"_s, u"Dark"_s}) {
            QStringList longer = parts;
            longer.insert(place, word);
            names.append(longer.join(u'-'));
        }
    }
    return names;
}

/// For a colour of text the dark look has the lighter one.
bool isNearerToDark(const DesktopLook& look, const QColor& color) {
    const auto distance = [&](const QStringList& names) {
        return std::abs(color.lightness() - QColor(names.value(0)).lightness());
    };
    return distance(look.dark) < distance(look.light);
}

} // namespace

Desktop desktopNamed(const QString& currentDesktop) {
    Desktop desktop = ownPart(currentDesktop);
    // What the programs of every desktop look at.
    desktop.looks.push_back(colorScheme(commonSchema));
    desktop.looks.push_back(gtkTheme(commonSchema));
    return desktop;
}

std::optional<bool> isDarkByName(const DesktopLook& look, const QString& name) {
    if (name == "default"_L1)
        return std::nullopt;
    if (name.startsWith(u'#'))
        return isNearerToDark(look, QColor(name));
    if (look.dark.contains(name) || name.endsWith("Dark"_L1) ||
        std::ranges::any_of(name.split(u'-'), isDarkPart))
        return true;
    return look.othersAreLight || look.light.contains(name) ? std::optional(false) : std::nullopt;
}

QString nameFor(bool dark, const QString& name, const DesktopLook& look,
                const std::optional<LookPair>& last, const QStringList& folders) {
    if (look.namesTell && isDarkByName(look, name).value_or(false) == dark)
        return name;
    if (!dark && last && name == last->dark)
        return last->light; // wherever it comes from, it was there
    QStringList names;
    if (dark && last && name == last->light)
        names.append(last->dark);
    if (!look.folders.isEmpty())
        names.append(counterparts(dark, name));
    names.append(dark ? look.dark : look.light);
    const auto wanted = std::ranges::find_if(names, [&](const QString& candidate) {
        return candidate != name && isInstalled(candidate, look, folders);
    });
    return wanted == names.end() ? name : *wanted;
}

} // namespace quillet

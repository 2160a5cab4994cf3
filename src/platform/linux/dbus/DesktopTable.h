#pragma once

#include <QString>
#include <QStringList>
#include <vector>

namespace quillet {

/// One place where a desktop keeps something that is on or off: command lines of words between
/// single spaces, in which `$DATA` is the folder of the user's application data.
struct DesktopSwitch {
    QString read;  ///< fails where the desktop lacks the place
    QString isOn;  ///< what `read` puts out where it is on: a regular expression for all of it
    QString setOn; ///< empty, as the other one, where another place's does for both
    QString setOff;
    bool mayBeUnset = false; ///< `read` also fails where nothing is stored yet
    bool hasKinds = false;   ///< of being on: the one that is found replaces the last word of setOn
};

/// The name of the theme that a desktop draws programs with.
struct DesktopTheme {
    QString read;
    QString set; ///< the name is one word more
};

/// How one desktop keeps the settings that people switch from here.
struct Desktop {
    std::vector<DesktopSwitch> icons;
    std::vector<DesktopSwitch> hiddenFiles;
    std::vector<DesktopSwitch> dark;
    std::vector<DesktopTheme> themes; ///< the first one tells whether the desktop is dark

    // For people: why a switch cannot work where none of its places is there.
    QString whyNoIcons;
    QString whyNoHiddenFiles;
};

/// `currentDesktop` is what the session says of itself in XDG_CURRENT_DESKTOP: names between
/// colons, the nearest first. On an unknown desktop only what all have in common is switched.
Desktop desktopNamed(const QString& currentDesktop);

/// The dark theme that belongs to a light one or the light one that belongs to a dark one, where
/// it is installed in one of `folders`; else the theme itself.
QString themeFor(bool dark, const QString& theme, const QStringList& folders);

/// Whether a theme is a dark one, by its name.
bool isDarkTheme(const QString& theme);

} // namespace quillet

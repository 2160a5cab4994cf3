#pragma once

#include <optional>
#include <QString>
#include <QStringList>
#include <vector>

namespace quillet {

// Command lines here are words between single spaces, in which `$CONFIG` and `$DATA` are the
// folders of the user's settings and of application data. The program `ini` is in here: see
// IniFile.h.

/// One place where a desktop keeps something that is on or off.
struct DesktopSwitch {
    QString read; ///< fails where the desktop lacks the place
    QString isOn; ///< what `read` puts out where it is on: a regular expression for all of it
    QString setOn;
    QString setOff;
    bool mayBeUnset = false; ///< `read` also fails where nothing is stored yet
    bool hasKinds = false;   ///< of being on: the one that is found replaces the last word of setOn
};

/// Where a desktop keeps a name that it draws by: of a theme, of a colour scheme, of a colour.
struct DesktopLook {
    QString read;
    QString set;           ///< the name is one word more
    QStringList dark;      ///< what a light one without a counterpart gives way to, the best first
    QStringList light;     ///< and a dark one
    QStringList folders{}; ///< where one is installed, below those of data: `%1` is its name
    bool namesTell = true; ///< which ones are dark
    bool othersAreLight = true; ///< those whose names do not say that they are dark
};

/// How one desktop keeps the settings that people switch from here.
struct Desktop {
    std::vector<DesktopSwitch> icons;
    std::vector<DesktopSwitch> hiddenFiles;
    std::vector<DesktopLook> looks; ///< the first is the desktop's own, the others go with it
    bool isDarkByPortal = true;     ///< whether the portal knows better than the looks

    QString iconsService; ///< a program that knows of the icons once it runs; may be empty

    // For people: why a switch cannot work where none of its places is there.
    QString whyNoIcons;
    QString whyNoHiddenFiles;
};

/// `currentDesktop` is what the session says of itself in XDG_CURRENT_DESKTOP: names between
/// colons, the nearest first. On an unknown desktop only what all have in common is switched.
Desktop desktopNamed(const QString& currentDesktop);

/// Two names that one look has had, each put in place of the other.
struct LookPair {
    QString light;
    QString dark;
};

/// What a look that is called `name` is to be called to be dark or to be light: as in the `last`
/// pair if it is of that, else its counterpart in `folders`, else one of the look's own. The name
/// itself where none of them is installed.
QString nameFor(bool dark, const QString& name, const DesktopLook& look,
                const std::optional<LookPair>& last, const QStringList& folders);

/// Whether a look is dark by its name, a colour by which of the look's own it is nearer to; absent
/// where that leaves it open.
std::optional<bool> isDarkByName(const DesktopLook& look, const QString& name);

} // namespace quillet

#include "platform/linux/SettingsProgram.h"

#include <algorithm>
#include <QStringList>

namespace quillet {

namespace {

struct Row {
    QLatin1StringView desktop;
    QLatin1StringView program;
};

constexpr Row rows[] = {
    {QLatin1StringView("Budgie"), QLatin1StringView("budgie-control-center")},
    {QLatin1StringView("GNOME"), QLatin1StringView("gnome-control-center")},
    {QLatin1StringView("KDE"), QLatin1StringView("systemsettings")},
    {QLatin1StringView("LXQt"), QLatin1StringView("lxqt-config")},
    {QLatin1StringView("MATE"), QLatin1StringView("mate-control-center")},
    {QLatin1StringView("Pantheon"), QLatin1StringView("io.elementary.settings")},
    {QLatin1StringView("Unity"), QLatin1StringView("unity-control-center")},
    {QLatin1StringView("X-Cinnamon"), QLatin1StringView("cinnamon-settings")},
    {QLatin1StringView("XFCE"), QLatin1StringView("xfce4-settings-manager")},
};

} // namespace

std::optional<QString> settingsProgram(const QString& currentDesktop) {
    for (const QString& name : currentDesktop.split(u':')) {
        const auto row = std::find_if(std::begin(rows), std::end(rows), [&](const Row& candidate) {
            return name.compare(candidate.desktop, Qt::CaseInsensitive) == 0;
        });
        if (row != std::end(rows))
            return row->program;
    }
    return std::nullopt;
}

} // namespace quillet

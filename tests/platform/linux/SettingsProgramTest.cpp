#include "platform/linux/SettingsProgram.h"

#include <gtest/gtest.h>

namespace quillet {

using namespace Qt::StringLiterals;

TEST(SettingsProgramTest, itIsThatOfTheNearestDesktopThatIsKnown) {
    const std::pair<QString, std::optional<QString>> cases[] = {
        {u"KDE"_s, u"systemsettings"_s},
        {u"ubuntu:GNOME"_s, u"gnome-control-center"_s},
        {u"Budgie:GNOME"_s, u"budgie-control-center"_s},
        {u"xfce"_s, u"xfce4-settings-manager"_s},
        {u"openbox"_s, std::nullopt},
        {QString(), std::nullopt},
    };
    for (const auto& [desktop, program] : cases)
        EXPECT_EQ(settingsProgram(desktop), program) << desktop.toStdString();
}

} // namespace quillet

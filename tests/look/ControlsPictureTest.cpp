#include "app/look/Theme.h"
#include "look/ControlsSheet.h"
#include "look/Picture.h"

namespace quillet {

using namespace Qt::StringLiterals;

TEST(ControlsPictureTest, controlsLookAsDrawnInLightAndDark) {
    EXPECT_TRUE(
        matchesPicture(controlsSheet(Theme::colors(Appearance::light)), u"controls-light"_s));
    EXPECT_TRUE(matchesPicture(controlsSheet(Theme::colors(Appearance::dark)), u"controls-dark"_s));
}

} // namespace quillet

#include "app/look/ButtonPainting.h"
#include "app/look/FieldPainting.h"
#include "app/look/GlassCard.h"
#include "app/look/MenuPainting.h"
#include "app/look/Shadow.h"
#include "app/look/Theme.h"
#include "app/look/ToastView.h"
#include "app/look/TogglePainting.h"
#include "look/Picture.h"

#include <QPainter>

namespace quillet {
namespace {

using namespace Qt::StringLiterals;

/// Every control in its states, with toasts, a menu and a tooltip, at two pixels a point.
class Sheet {
public:
    explicit Sheet(const ThemeColors& colors) : c(colors) {
        image.setDevicePixelRatio(2);
        image.fill(c.group);
        p.begin(&image);
        controls();
        panels();
        p.end();
    }

    QImage image{640 * 2, 520 * 2, QImage::Format_ARGB32_Premultiplied};

private:
    /// Calls `paint(rect, state)` for every state, the last time inside a focus ring.
    template<typename Paint>
    void row(const QSizeF& size, double corner, Paint paint) {
        QRectF rect({}, size);
        rect.moveCenter({64, y});
        for (const ControlState& state :
             {ControlState{}, {.hover = 1}, {.isPressed = true}, {.isEnabled = false}}) {
            paint(rect, state);
            rect.translate(120, 0);
        }
        paint(rect, ControlState{});
        paintFocusRing(p, rect, corner, c);
        y += 40;
    }

    void controls() {
        for (const ButtonKind kind :
             {ButtonKind::prominent, ButtonKind::regular, ButtonKind::borderless}) {
            ButtonLook look{u"Button"_s, kind, ButtonSize::medium, {}};
            row(buttonSize(look), 7, [&](const QRectF& rect, const ControlState& state) {
                look.state = state;
                paintButton(p, rect, look, c);
            });
        }
        row(chipSize(u"Links"_s), 13, [&](const QRectF& rect, const ControlState& state) {
            paintChip(p, rect, {u"Links"_s, rect.left() > 480, state}, c);
        });
        row(switchSize(SwitchSize::regular), 11,
            [&](const QRectF& rect, const ControlState& state) {
                const double on = rect.left() < 240 ? 0 : 1;
                paintSwitch(p, rect, {on, SwitchSize::regular, state}, c);
            });
        row({checkboxSide, checkboxSide}, checkboxRadius,
            [&](const QRectF& rect, const ControlState& state) {
                paintCheckbox(p, rect, {{}, rect.left() < 240, state}, c);
            });
        row({28, 28}, symbolButtonRadius, [&](const QRectF& rect, const ControlState& state) {
            paintSymbolButton(p, rect, {u"xmark"_s, 12, SymbolWeight::regular, state}, c);
        });
        paintSlider(p, {24, 305, 232, 20}, {0.5, {}}, c);
        paintSegmented(p, {320, 302, 260, 28}, {{u"Auto"_s, u"16:9"_s, u"1:1"_s}, 1, 2, {}}, c);
        paintField(p, {24, 350, 180, 28}, FieldShape::rounded, c);
    }

    void panels() {
        const QRectF menu(24, 400, 170, 97);
        paintPanelShadow(p, menu, menuRadius, c);
        paintGlassCard(p, menu, menuRadius, c, Material::thick);
        const QRectF first(menu.left() + 5, menu.top() + 5, menu.width() - 10, menuRowHeight);
        paintMenuRow(p, first, {.text = u"Paste"_s, .isSelected = true}, c);
        paintMenuRow(p, first.translated(0, 26),
                     {.text = u"30 days"_s, .checkColumn = CheckColumn::present, .isChecked = true},
                     c);
        paintMenuSeparator(p, {first.left(), first.top() + 52, first.width(), 9}, c);
        paintMenuRow(p, first.translated(0, 61), {.text = u"Delete"_s, .isDestructive = true}, c);
        const ToastView text{u"Copied 24 words"_s, u"text.viewfinder"_s, {}};
        text.paint(p, {{240, 400}, text.size()}, c);
        const ToastView color{u"#FF8000 copied"_s, {}, QColor(255, 128, 0)};
        color.paint(p, {{240, 456}, color.size()}, c);
        paintTooltip(p, {{440, 400}, tooltipSize(u"Undo (⌘Z)"_s)}, u"Undo (⌘Z)"_s, c);
    }

    const ThemeColors& c;
    QPainter p;
    double y = 34;
};

TEST(ControlsPictureTest, controlsLookAsDrawnInLightAndDark) {
    const ThemeColors& light = Theme::colors(Appearance::light);
    EXPECT_TRUE(matchesPicture(Sheet(light).image, u"controls-light"_s));
    const ThemeColors& dark = Theme::colors(Appearance::dark);
    EXPECT_TRUE(matchesPicture(Sheet(dark).image, u"controls-dark"_s));
}

} // namespace
} // namespace quillet

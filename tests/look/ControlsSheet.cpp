#include "look/ControlsSheet.h"
#include "app/look/ButtonPainting.h"
#include "app/look/FieldPainting.h"
#include "app/look/GlassCard.h"
#include "app/look/MenuPainting.h"
#include "app/look/Shadow.h"
#include "app/look/ToastView.h"
#include "app/look/TogglePainting.h"

#include <QPainter>

namespace quillet {
namespace {

using namespace Qt::StringLiterals;

constexpr ControlState states[] = {{}, {.hover = 1}, {.isPressed = true}, {.isEnabled = false}, {}};
constexpr qsizetype focused = 4;

class Sheet {
public:
    Sheet(QPainter& painter, const ThemeColors& colors) : p(painter), c(colors) {}

    /// Calls `paint(rect, state)` for every state, the last time inside a focus ring.
    template<typename Paint>
    void row(double y, const QSizeF& size, double corner, Paint paint) {
        for (qsizetype i = 0; i <= focused; ++i) {
            QRectF rect({}, size);
            rect.moveCenter({64 + 120.0 * static_cast<double>(i), y});
            paint(rect, states[i]);
            if (i == focused)
                paintFocusRing(p, rect, corner, c);
        }
    }

    void buttons() {
        double y = 34;
        for (const ButtonKind kind :
             {ButtonKind::prominent, ButtonKind::regular, ButtonKind::borderless}) {
            const ButtonLook look{u"Button"_s, kind, ButtonSize::medium, {}};
            row(y, buttonSize(look), 7, [&](const QRectF& rect, const ControlState& state) {
                paintButton(p, rect, {look.text, kind, look.size, state}, c);
            });
            y += 40;
        }
        row(y, chipSize(u"Links"_s), 13, [&](const QRectF& rect, const ControlState& state) {
            paintChip(p, rect, {u"Links"_s, rect.left() > 480, state}, c);
        });
    }

    void toggles() {
        row(194, switchSize(SwitchSize::regular), 11,
            [&](const QRectF& rect, const ControlState& state) {
                paintSwitch(p, rect, {rect.left() < 240 ? 0.0 : 1.0, SwitchSize::regular, state},
                            c);
            });
        row(234, {checkboxSide, checkboxSide}, checkboxRadius,
            [&](const QRectF& rect, const ControlState& state) {
                paintCheckbox(p, rect, {{}, rect.left() < 240, state}, c);
            });
        row(274, {28, 28}, symbolButtonRadius, [&](const QRectF& rect, const ControlState& state) {
            paintSymbolButton(p, rect, {u"xmark"_s, 12, SymbolWeight::regular, state}, c);
        });
        paintSlider(p, {24, 305, 232, 20}, {0.5, {}}, c);
        paintSegmented(p, {320, 302, 260, 28},
                       {{u"Auto"_s, u"16:9"_s, u"4:3"_s, u"1:1"_s, u"4:5"_s}, 1, 2, {}}, c);
    }

    void fields() {
        paintField(p, {24, 350, 180, 28}, FieldShape::rounded, c);
        paintField(p, {224, 349, 200, 30}, FieldShape::capsule, c);
        paintSearchSymbol(p, {224, 349, 200, 30}, c);
        paintText(p, {256, 349, 100, 30}, Qt::AlignVCenter, u"Search 3x3->4"_s,
                  TextStyles::body.verbatim(), c.tertiary);
        paintCaret(p, {255, 356, 1, 17});
        paintText(p, {444, 349, 90, 30}, Qt::AlignVCenter,
                  elidedText(u"A title too long for it"_s, TextStyles::headline, 90),
                  TextStyles::headline, c.primary);
        paintText(p, {550, 349, 60, 30}, Qt::AlignVCenter, u"10:11"_s,
                  TextStyles::statValue.tabular(), c.secondary);
        double x = 24;
        for (const QString& keys : {u"⇧⌘2"_s, u"⌃⌥←"_s, u"⌘⌫"_s, u"⌘1…9"_s, u"Space"_s, u"Esc"_s}) {
            const QSizeF size = keyCapSize(keys);
            paintKeyCap(p, {{x, 394}, size}, keys, c);
            x += size.width() + 20;
        }
    }

    void panels() {
        const QRectF menu(24, 440, 170, 97);
        paintPanelShadow(p, menu, menuRadius, c);
        paintGlassCard(p, menu, menuRadius, c, Material::thick);
        const QRectF first(menu.left() + 5, menu.top() + 5, menu.width() - 10, menuRowHeight);
        paintMenuRow(p, first, {.text = u"Paste"_s, .isSelected = true}, c);
        paintMenuRow(p, first.translated(0, 26),
                     {.text = u"30 days"_s, .checkColumn = CheckColumn::present, .isChecked = true},
                     c);
        paintMenuSeparator(p, {first.left(), first.top() + 52, first.width(), 9}, c);
        paintMenuRow(p, first.translated(0, 61), {.text = u"Delete"_s, .isDestructive = true}, c);
        const ToastView toasts[] = {{u"Copied 24 words"_s, u"text.viewfinder"_s, {}},
                                    {u"#FF8000 copied"_s, {}, QColor(255, 128, 0)}};
        double y = 440;
        for (const ToastView& toast : toasts) {
            toast.paint(p, {{240, y}, toast.size()}, c);
            y += 56;
        }
        paintTooltip(p, {{440, 440}, tooltipSize(u"Undo (⌘Z)"_s)}, u"Undo (⌘Z)"_s, c);
        double x = 440;
        for (const SymbolWeight weight : {SymbolWeight::light, SymbolWeight::regular,
                                          SymbolWeight::semibold, SymbolWeight::bold}) {
            paintSymbol(p, {x, 490, 31, 31}, u"magnifyingglass"_s, 30, c.primary, weight);
            x += 40;
        }
    }

private:
    QPainter& p;
    const ThemeColors& c;
};

} // namespace

QImage controlsSheet(const ThemeColors& colors) {
    QImage image(640 * 2, 570 * 2, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(2);
    image.fill(colors.group);
    QPainter painter(&image);
    Sheet sheet(painter, colors);
    sheet.buttons();
    sheet.toggles();
    sheet.fields();
    sheet.panels();
    return image;
}

} // namespace quillet

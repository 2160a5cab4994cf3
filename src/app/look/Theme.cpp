#include "app/look/Theme.h"

namespace quillet {
namespace {

ThemeColors makeLight() {
    const QColor primary(0x1B, 0x1B, 0x21);
    const QColor white(Qt::white);
    return {
        .appearance = Appearance::light,
        .accentText = QColor(0x54, 0x41, 0xE0),
        .primary = primary,
        .secondary = QColor(0x54, 0x54, 0x5F),
        .tertiary = QColor(0x5F, 0x5F, 0x6A),
        .window = QColor(0xF4, 0xF4, 0xF7),
        .group = white,
        .textBackground = white,
        .field = white,
        .control = white,
        .controlBorder = withAlpha(primary, 0.16),
        .keyCapBorder = withAlpha(primary, 0.16),
        .chosenSegment = white,
        .material = withAlpha(QColor(249, 249, 252), 0.96),
        .thickMaterial = withAlpha(QColor(248, 248, 251), 0.985),
        .frameMaterial = withAlpha(QColor(233, 233, 239), 0.97),
        .cardFill = withAlpha(primary, 0.05),
        .cardStroke = withAlpha(primary, 0.08),
        .separator = withAlpha(primary, 0.10),
        .trackOff = withAlpha(primary, 0.16),
        .orangeText = QColor(0x94, 0x50, 0x00),
        .redText = QColor(0xBC, 0x1F, 0x27),
        .greenText = QColor(0x16, 0x70, 0x2F),
    };
}

ThemeColors makeDark() {
    const QColor primary(0xF3, 0xF3, 0xF7);
    return {
        .appearance = Appearance::dark,
        .accentText = QColor(0xAA, 0xA0, 0xFF),
        .primary = primary,
        .secondary = QColor(0xB8, 0xB8, 0xC4),
        .tertiary = QColor(0xA0, 0xA0, 0xAD),
        .window = QColor(0x1C, 0x1C, 0x21),
        .group = QColor(0x27, 0x27, 0x2D),
        .textBackground = QColor(0x13, 0x13, 0x16),
        .field = QColor(0x17, 0x17, 0x1B),
        .control = QColor(0x3A, 0x3A, 0x42),
        .controlBorder = withAlpha(primary, 0.10),
        .keyCapBorder = withAlpha(primary, 0.14),
        .chosenSegment = QColor(0x55, 0x55, 0x5F),
        .material = withAlpha(QColor(32, 32, 38), 0.96),
        .thickMaterial = withAlpha(QColor(31, 31, 37), 0.985),
        .frameMaterial = withAlpha(QColor(38, 38, 45), 0.97),
        .cardFill = withAlpha(primary, 0.05),
        .cardStroke = withAlpha(primary, 0.08),
        .separator = withAlpha(primary, 0.10),
        .trackOff = withAlpha(primary, 0.20),
        .orangeText = QColor(0xFF, 0xB4, 0x54),
        .redText = QColor(0xFF, 0x7A, 0x73),
        .greenText = QColor(0x56, 0xD4, 0x7C),
    };
}

} // namespace

QColor ThemeColors::primaryAt(double opacity) const {
    return withAlpha(primary, opacity);
}

QLinearGradient Theme::accentGradient(const QRectF& rect) {
    QLinearGradient gradient(rect.topLeft(), rect.bottomRight());
    gradient.setColorAt(0, accent);
    gradient.setColorAt(1, accentGradientEnd);
    return gradient;
}

const ThemeColors& Theme::colors(Appearance appearance) {
    static const ThemeColors light = makeLight();
    static const ThemeColors dark = makeDark();
    return appearance == Appearance::dark ? dark : light;
}

void Theme::setAppearance(Appearance appearance) {
    if (m_appearance == appearance)
        return;
    m_appearance = appearance;
    Q_EMIT changed();
}

QColor withAlpha(QColor color, double opacity) {
    color.setAlphaF(static_cast<float>(opacity) * color.alphaF());
    return color;
}

QColor mixed(const QColor& from, const QColor& to, double share) {
    const auto mix = [share](float a, float b) {
        return std::clamp(a + (b - a) * static_cast<float>(share), 0.F, 1.F);
    };
    return QColor::fromRgbF(mix(from.redF(), to.redF()), mix(from.greenF(), to.greenF()),
                            mix(from.blueF(), to.blueF()), mix(from.alphaF(), to.alphaF()));
}

} // namespace quillet

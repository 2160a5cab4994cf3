#include "shelf/ui/ShelfPanel.h"
#include "app/look/GlassCard.h"
#include "app/look/Shadow.h"

#include <QPainter>

namespace quillet {

namespace {

constexpr int margin = 48;
constexpr int popUpMenuLevel = 101;

} // namespace

ShelfPanel::ShelfPanel(const Theme& theme, const Panels& panels)
    : m_theme(theme), m_panels(panels) {
    setAttribute(Qt::WA_TranslucentBackground);
    setWindowTitle(tr("Quillet Shelf"));
    resize(900 + 2 * margin, static_cast<int>(height) + 2 * margin);
    connect(&theme, &Theme::changed, this, qOverload<>(&QWidget::update));
}

PanelStyle ShelfPanel::style() const {
    return {.level = popUpMenuLevel,
            .canBecomeKey = true,
            .ignoresMouse = false,
            .margin = margin,
            .cornerRadius = cornerRadius};
}

QRect ShelfPanel::card() const {
    return rect().adjusted(margin, margin, -margin, -margin);
}

void ShelfPanel::setContent(QWidget& content) {
    m_content = &content;
    content.setParent(this);
    content.setGeometry(card());
}

void ShelfPanel::resizeEvent(QResizeEvent*) {
    if (m_content)
        m_content->setGeometry(card());
}

void ShelfPanel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const ThemeColors& colors = m_theme.colors();
    const bool isTranslucent = m_panels.isTranslucent();
    if (isTranslucent)
        paintPanelShadow(painter, card(), cornerRadius, colors);
    paintGlassCard(painter, card(), cornerRadius, colors, Material::thick,
                   isTranslucent ? Translucency::translucent : Translucency::opaque);
}

} // namespace quillet

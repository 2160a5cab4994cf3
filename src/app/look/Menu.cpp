#include "app/look/Menu.h"
#include "app/look/GlassCard.h"
#include "app/look/Shadow.h"

#include <algorithm>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QProxyStyle>
#include <QScreen>
#include <QStyleOptionMenuItem>

namespace quillet {

/// Gives the toolkit's layout of menus our measures.
class Menu::Style : public QProxyStyle {
public:
    explicit Style(const Menu& menu) : m_menu(menu) {}

    int pixelMetric(PixelMetric metric, const QStyleOption* option,
                    const QWidget* widget) const override {
        switch (metric) {
        case PM_MenuHMargin:
        case PM_MenuVMargin:
            return static_cast<int>(menuPadding) + m_menu.m_margin;
        case PM_MenuPanelWidth:
            return 0;
        default:
            return QProxyStyle::pixelMetric(metric, option, widget);
        }
    }

    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                           const QWidget* widget) const override {
        const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
        if (type != CT_MenuItem || !item)
            return QProxyStyle::sizeFromContents(type, option, size, widget);
        if (item->menuItemType == QStyleOptionMenuItem::Separator)
            return QSizeF(1, menuSeparatorHeight).toSize();
        return QSizeF(menuRowWidth(item->text, m_menu.checkColumn()), menuRowHeight).toSize();
    }

private:
    const Menu& m_menu;
};

Menu::Menu(const Look& look, QWidget* parent)
    : QMenu(parent), m_look(look), m_margin(look.panels.isTranslucent() ? 48 : 0) {
    setWindowFlag(Qt::FramelessWindowHint);
    setWindowFlag(Qt::NoDropShadowWindowHint);
    setAttribute(Qt::WA_TranslucentBackground, look.panels.isTranslucent());
    auto* style = new Style(*this);
    style->setParent(this);
    setStyle(style);
    connect(this, &QMenu::aboutToHide, this, [this] { setFocusProxy(nullptr); });
}

QAction* Menu::addDestructiveAction(const QString& text) {
    m_destructive.append(addAction(text));
    return m_destructive.last();
}

void Menu::popupAt(const QPoint& position) {
    const QSize margins(2 * m_margin, 2 * m_margin);
    const QScreen* screen = QGuiApplication::screenAt(position);
    QRect place(position, sizeHint() - margins);
    if (screen) {
        const QRect usable = screen->availableGeometry();
        place.moveLeft(
            std::max(usable.left(), std::min(place.left(), usable.right() - place.width())));
        place.moveTop(
            std::max(usable.top(), std::min(place.top(), usable.bottom() - place.height())));
    }
    // With the first key a menu takes the focus from its window, and when it gives it back it asks
    // for the window's activation, which panels refuse.
    if (parentWidget())
        setFocusProxy(parentWidget()->window()->focusWidget());
    popup(place.topLeft());
    // The toolkit keeps the whole window on the screen; the shadow may reach out of it.
    move(place.topLeft() - QPoint(m_margin, m_margin));
    if (m_margin == 0)
        setMask(cardMask(rect(), menuRadius));
}

void Menu::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const ThemeColors& colors = m_look.colors();
    const bool isTranslucent = m_margin > 0;
    if (isTranslucent)
        paintPanelShadow(painter, card(), menuRadius, colors);
    paintGlassCard(painter, card(), menuRadius, colors, Material::thick,
                   isTranslucent ? Translucency::translucent : Translucency::opaque);
    for (const QAction* action : actions()) {
        const QRectF row = actionGeometry(const_cast<QAction*>(action));
        if (action->isSeparator()) {
            paintMenuSeparator(painter, row, colors);
            continue;
        }
        paintMenuRow(painter, row,
                     {.text = action->text(),
                      .checkColumn = checkColumn(),
                      .isChecked = action->isChecked(),
                      .isSelected = action == activeAction(),
                      .isDestructive = m_destructive.contains(action),
                      .isEnabled = action->isEnabled()},
                     colors);
    }
}

void Menu::mousePressEvent(QMouseEvent* event) {
    if (card().contains(event->position().toPoint()))
        QMenu::mousePressEvent(event);
    else
        close(); // the shadow is not the menu
}

CheckColumn Menu::checkColumn() const {
    return std::ranges::any_of(actions(), &QAction::isCheckable) ? CheckColumn::present
                                                                 : CheckColumn::absent;
}

QRect Menu::card() const {
    return rect().adjusted(m_margin, m_margin, -m_margin, -m_margin);
}

} // namespace quillet

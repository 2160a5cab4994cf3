#include "hotkeys/ui/ShortcutBannerView.h"

#include "app/look/Buttons.h"
#include "app/look/GlassCard.h"
#include "app/look/Shadow.h"

#include <algorithm>
#include <QKeyEvent>
#include <QPainter>
#include <utility>

using namespace Qt::StringLiterals;

namespace quillet {
namespace {

constexpr int cardWidth = 380;
constexpr int padding = 16;
constexpr int discSide = 32;
constexpr int headHeight = 36;
constexpr int rowHeight = 30;
constexpr int answersHeight = 28;
constexpr int blockGap = 12;
constexpr int arrowSize = 10;
constexpr int arrowRoom = 22;
constexpr double refusedOpacity = 0.5;

} // namespace

ShortcutBannerView::ShortcutBannerView(const Look& look,
                                       std::vector<ShortcutAlternatives::Refusal> refusals,
                                       std::function<void(bool isAccepted)> onAnswer,
                                       std::function<void()> onPress)
    : m_look(look),
      m_refusals(std::move(refusals)),
      m_onAnswer(std::move(onAnswer)),
      m_onPress(std::move(onPress)),
      m_hasOffer(std::ranges::any_of(
          m_refusals, [](const auto& refusal) { return refusal.alternative.has_value(); })) {
    setAttribute(Qt::WA_TranslucentBackground);
    setWindowTitle(tr("Quillet Shortcuts"));
    QStringList rows;
    for (const auto& refusal : m_refusals)
        rows << row(refusal.action).title + u' ' + refusal.shortcut.display();
    setAccessibleName(tr("Some shortcuts are taken"));
    setAccessibleDescription(rows.join(u", "_s));
    resize(cardSize() + QSize(2 * margin, 2 * margin));
    addAnswers();
    connect(&look.theme, &Theme::changed, this, qOverload<>(&QWidget::update));
}

QSize ShortcutBannerView::cardSize() const {
    const int rows = static_cast<int>(m_refusals.size()) * rowHeight;
    return {cardWidth, padding + headHeight + blockGap + rows + blockGap + answersHeight + padding};
}

void ShortcutBannerView::addAnswers() {
    const QPoint end(card().right() + 1 - padding, card().bottom() + 1 - padding);
    int right = end.x() + Button::margin;
    const auto add = [&](ButtonKind kind, const QString& text, bool isAccepted) {
        auto* button = new Button(m_look, kind, text, this);
        button->resize(button->sizeHint());
        button->move(right - button->width(), end.y() + Button::margin - button->height());
        right = button->x() - 8 + 2 * Button::margin;
        button->setAutoDefault(true); // Return presses the one that has the focus
        if (!focusProxy())
            setFocusProxy(button);
        connect(button, &QAbstractButton::clicked, this,
                [this, isAccepted] { answer(isAccepted); });
    };
    if (m_hasOffer)
        add(ButtonKind::prominent, tr("Use These"), true);
    add(ButtonKind::regular, m_hasOffer ? tr("Not Now") : tr("OK"), false);
}

void ShortcutBannerView::answer(bool isAccepted) {
    if (const auto onAnswer = std::exchange(m_onAnswer, {}))
        onAnswer(isAccepted);
}

void ShortcutBannerView::mousePressEvent(QMouseEvent*) {
    m_onPress();
}

void ShortcutBannerView::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape)
        answer(false);
    else
        QWidget::keyPressEvent(event);
}

void ShortcutBannerView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const ThemeColors& colors = m_look.colors();
    const bool isTranslucent = m_look.panels.isTranslucent();
    if (isTranslucent)
        paintPanelShadow(painter, card(), cornerRadius, colors);
    paintGlassCard(painter, card(), cornerRadius, colors, Material::thick,
                   isTranslucent ? Translucency::translucent : Translucency::opaque);
    painter.translate(card().topLeft());
    paintHead(painter);
    QRectF row(padding, padding + headHeight + blockGap, cardWidth - 2 * padding, rowHeight);
    for (const auto& refusal : m_refusals) {
        paintRow(painter, row, refusal);
        row.translate(0, rowHeight);
    }
}

void ShortcutBannerView::paintHead(QPainter& painter) const {
    const ThemeColors& colors = m_look.colors();
    const QRectF disc(padding, padding + (headHeight - discSide) / 2.0, discSide, discSide);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Theme::accentGradient(disc));
    painter.drawEllipse(disc);
    painter.restore();
    paintSymbol(painter, disc, u"keyboard"_s, 15, Qt::white);
    const double left = disc.right() + 12;
    const QRectF text(left, padding, cardWidth - padding - left, headHeight);
    paintText(painter, text, Qt::AlignTop, accessibleName(), TextStyles::headline, colors.primary);
    paintText(painter, text, Qt::AlignBottom,
              m_hasOffer ? tr("Other apps use them. These are free:")
                         : tr("Other apps use them, and the others, too."),
              TextStyles::callout, colors.secondary);
}

/// The action, the keys that are taken, and those that can be had.
void ShortcutBannerView::paintRow(QPainter& painter, const QRectF& row,
                                  const ShortcutAlternatives::Refusal& refusal) const {
    const ThemeColors& colors = m_look.colors();
    double right = row.right();
    const auto paintKeys = [&](const Shortcut& shortcut) {
        const QSizeF size = keyCapSize(shortcut.display());
        right -= size.width();
        paintKeyCap(painter, {{right, row.center().y() - size.height() / 2}, size},
                    shortcut.display(), colors);
    };
    if (refusal.alternative) {
        paintKeys(*refusal.alternative);
        right -= arrowRoom;
        paintSymbol(painter, {right, row.top(), arrowRoom, row.height()}, u"chevron.right"_s,
                    arrowSize, colors.tertiary);
    }
    painter.setOpacity(refusedOpacity);
    paintKeys(refusal.shortcut);
    painter.setOpacity(1);
    const QString title = quillet::row(refusal.action).title;
    paintText(painter, row, Qt::AlignLeft | Qt::AlignVCenter,
              elidedText(title, TextStyles::body, right - row.left() - 8), TextStyles::body,
              colors.primary);
}

} // namespace quillet

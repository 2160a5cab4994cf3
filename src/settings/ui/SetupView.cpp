#include "settings/ui/SetupView.h"

#include "app/look/Shadow.h"

#include <cmath>
#include <QApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QWindow>

namespace quillet {

using namespace Qt::StringLiterals;

namespace {

constexpr int padding = 28;
constexpr int markSide = 48;
constexpr double markRadius = 12;
constexpr double markSymbol = 23;
constexpr double titleGap = 8;
constexpr double subtitleGap = 2;
constexpr double lineHeight = 18;
constexpr TextStyle subtitleStyle{12.5, 18, QFont::Normal, -0.05};
constexpr double headerHeight = markSide + titleGap + TextStyles::display.lineHeight + subtitleGap +
                                2 * subtitleStyle.lineHeight;
constexpr double headingGap = 6;
constexpr int cardGap = 8;
constexpr int hintGap = 8;
constexpr double noteGap = 8;
constexpr double hintsHeight =
    ShortcutHint::fittingHeight + noteGap + TextStyles::caption.lineHeight;
constexpr QSize doneSize{160, 32};
constexpr int bottomPadding = 16;

/// What the gaps above the mark, the permissions, the hints and the button have beside their equal
/// share of the height that is left.
constexpr double gaps[] = {0, 3, 4.5, 2.5};
constexpr double leastShare = 6;

constexpr HotKeyAction hintedActions[] = {HotKeyAction::captureArea, HotKeyAction::captureScreen,
                                          HotKeyAction::clipboardShelf};

void paintMark(QPainter& painter, const QRectF& rect) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    paintShadow(painter, rect, markRadius, {8, 4, 0.35, Theme::accent});
    painter.setPen(Qt::NoPen);
    painter.setBrush(Theme::accentGradient(rect));
    painter.drawRoundedRect(rect, markRadius, markRadius);
    painter.setPen(QPen(withAlpha(Qt::white, 0.3), 0.5));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(rect.adjusted(0.25, 0.25, -0.25, -0.25), markRadius, markRadius);
    paintSymbol(painter, rect, u"square.grid.2x2.fill"_s, markSymbol, Qt::white);
    painter.restore();
}

} // namespace

SetupView::SetupView(const Look& look, Permissions& permissions, HotKeyCenter& hotKeys,
                     std::function<void()> onDone)
    : m_look(look),
      m_permissions(permissions),
      m_hotKeys(hotKeys),
      m_onDone(std::move(onDone)),
      m_cards{{{look, permissions, Permissions::Kind::screenRecording, this},
               {look, permissions, Permissions::Kind::accessibility, this}}},
      m_hints{{{look, u"rectangle.dashed"_s, tr("Capture area"), this},
               {look, u"macwindow"_s, tr("Full screen"), this},
               {look, u"clipboard"_s, tr("Clipboard"), this}}},
      m_done(look, ButtonKind::prominent, {}, this, ButtonSize::large) {
    resize(windowSize);
    connect(&m_done, &Button::clicked, this, [this] { m_onDone(); });
    for (const auto changed :
         {&Permissions::accessibilityChanged, &Permissions::screenRecordingChanged,
          &Permissions::requestedScreenRecordingChanged})
        connect(&permissions, changed, this, [this] { showPermissions(); });
    connect(&hotKeys, &HotKeyCenter::shortcutsChanged, this, [this] { showShortcuts(); });
    connect(&look.theme, &Theme::changed, this, [this] { update(); });
    showPermissions();
    showShortcuts();
    setFocusProxy(&m_done);
}

bool SetupView::event(QEvent* event) {
    // Another view may have stopped the polling when it was closed.
    if (event->type() == QEvent::Show || event->type() == QEvent::WindowActivate)
        m_permissions.startPolling();
    if (event->type() == QEvent::Hide)
        m_permissions.stopPolling();
    return QWidget::event(event);
}

void SetupView::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        m_onDone();
    else
        QWidget::keyPressEvent(event);
}

void SetupView::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton)
        m_pressed = event->globalPosition();
}

/// A window manager that takes over at the press may miss the release of a short click and leave
/// the window at the pointer.
void SetupView::mouseMoveEvent(QMouseEvent* event) {
    if (!m_pressed)
        return;
    const QPoint way = (event->globalPosition() - *m_pressed).toPoint();
    if (way.manhattanLength() < QApplication::startDragDistance())
        return;
    m_pressed.reset();
    window()->windowHandle()->startSystemMove();
}

void SetupView::mouseReleaseEvent(QMouseEvent*) {
    m_pressed.reset();
}

void SetupView::showPermissions() {
    for (PermissionCard& card : m_cards)
        card.showState();
    m_done.setText(m_permissions.accessibility() && m_permissions.screenRecording()
                       ? tr("Done")
                       : tr("Finish Later"));
    place();
    update();
}

void SetupView::showShortcuts() {
    for (size_t i = 0; i < m_hints.size(); ++i)
        m_hints[i].setKeys(m_hotKeys.shortcut(hintedActions[i]).display());
}

/// Puts one thing below the other and shares the height that is left among the gaps.
void SetupView::place() {
    double used = headerHeight + lineHeight + headingGap + cardGap + hintsHeight +
                  doneSize.height() + bottomPadding;
    for (const PermissionCard& card : m_cards)
        used += card.sizeHint().height();
    for (const double gap : gaps)
        used += gap;
    constexpr auto gapCount = static_cast<double>(std::size(gaps));
    setMinimumHeight(static_cast<int>(std::ceil(used + gapCount * leastShare)));
    const double share = (height() - used) / gapCount;

    double y = gaps[0] + share;
    m_markTop = qRound(y);
    y += headerHeight + gaps[1] + share;
    m_headingTop = qRound(y);
    y += lineHeight + headingGap;
    for (PermissionCard& card : m_cards) {
        const QSize fitting = card.sizeHint();
        card.setGeometry(QRect(QPoint(padding, qRound(y)), fitting));
        y += fitting.height() + cardGap;
    }
    y += gaps[2] + share - cardGap;
    m_hintsTop = qRound(y);
    const double hintWidth = (m_cards.front().width() - 2 * hintGap) / 3.0;
    for (size_t i = 0; i < m_hints.size(); ++i) {
        const double left = padding + static_cast<double>(i) * (hintWidth + hintGap);
        m_hints[i].setGeometry(qRound(left), m_hintsTop, qRound(left + hintWidth) - qRound(left),
                               ShortcutHint::fittingHeight);
    }
    constexpr int shadow = Button::margin;
    const QPoint doneOrigin((width() - doneSize.width()) / 2,
                            height() - bottomPadding - doneSize.height());
    m_done.setGeometry(QRect(doneOrigin, doneSize).adjusted(-shadow, -shadow, shadow, shadow));
}

void SetupView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const ThemeColors& colors = m_look.colors();
    painter.fillRect(rect(), colors.window);
    paintMark(painter, {(width() - markSide) / 2.0, double(m_markTop), markSide, markSide});

    QRectF line(0, m_markTop + markSide + titleGap, width(), TextStyles::display.lineHeight);
    paintText(painter, line, Qt::AlignHCenter, tr("Welcome to Quillet"), TextStyles::display,
              colors.primary);
    line.translate(0, line.height() + subtitleGap);
    paintLines(painter, line, Qt::AlignHCenter,
               {tr("Clipboard history, screenshots, switches and system stats — in one menu bar "
                   "icon."),
                tr("Everything stays on this Mac.")},
               subtitleStyle, colors.secondary);
    paintText(painter, {padding, double(m_headingTop), 0, lineHeight}, Qt::AlignLeft,
              tr("Permissions"), TextStyles::headline, colors.primary);
    paintText(painter,
              {0, double(m_hintsTop + ShortcutHint::fittingHeight + noteGap), double(width()),
               TextStyles::caption.lineHeight},
              Qt::AlignHCenter, tr("You can change shortcuts in Settings."), TextStyles::caption,
              colors.secondary);
}

} // namespace quillet

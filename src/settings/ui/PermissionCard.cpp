#include "settings/ui/PermissionCard.h"

#include "app/look/GlassCard.h"

#include <QPainter>

namespace quillet {

using namespace Qt::StringLiterals;

namespace {

constexpr int cardWidth = 504;
constexpr double cardRadius = 14;
constexpr int inset = 14;
constexpr int textLeft = 62;
constexpr int textGap = 12; // to what stands at the end of the row

constexpr int stateHeight = 71;
constexpr QRectF tile{14, 17.5, 36, 36};
constexpr double tileRadius = 10;
constexpr double tileSymbol = 17;
constexpr double titleTop = 10.5;
constexpr double reasonTop = 29.75;
constexpr double onSymbol = 13;
constexpr double onGap = 5;

constexpr int firstHelpTop = 78;
constexpr int helpGap = 8;
constexpr int helpBottom = 11;
constexpr int buttonHeight = 24;
constexpr double helpSymbol = 15;
constexpr double warningSymbol = 14;

constexpr TextStyle reasonStyle{12, 15, QFont::Normal, -0.05};
constexpr TextStyle onStyle{13, 18, QFont::Medium, -0.05};
constexpr TextStyle helpStyle{11.5, 14, QFont::Normal, -0.05};

constexpr QChar strong = u'*'; // stands twice before and after bold words

/// The widget of a button is larger than the button.
int fittingWidth(const Button& button) {
    return button.sizeHint().width() - 2 * Button::margin;
}

/// One line, whose words between double asterisks are bold and in the colour of titles.
void paintHelpLine(QPainter& painter, QPointF at, const QString& line, const QColor& color,
                   const QColor& strongColor) {
    const TextStyle bold = helpStyle.weighing(QFont::Bold);
    bool isStrong = false;
    for (const QString& part : line.split(QString(2, strong))) {
        const TextStyle& style = isStrong ? bold : helpStyle;
        const double partWidth = textWidth(part, style);
        paintText(painter, {at.x(), at.y(), partWidth, style.lineHeight}, Qt::AlignLeft, part,
                  style, isStrong ? strongColor : color);
        at.rx() += partWidth;
        isStrong = !isStrong;
    }
}

} // namespace

PermissionCard::PermissionCard(const Look& look, Permissions& permissions, Permissions::Kind kind,
                               QWidget* parent)
    : QWidget(parent),
      m_look(look),
      m_permissions(permissions),
      m_kind(kind),
      m_continue(look, ButtonKind::regular, tr("Continue"), this),
      m_reveal(look, ButtonKind::regular, tr("Show Quillet in Finder"), this, ButtonSize::small),
      m_restart(look, ButtonKind::regular, tr("Restart Quillet"), this, ButtonSize::small) {
    setAccessibleName(Permissions::title(kind));
    m_continue.setAccessibleName(tr("Continue") + u", "_s + Permissions::title(kind));
    connect(&m_continue, &Button::clicked, this, [this] { m_permissions.request(m_kind); });
    connect(&m_reveal, &Button::clicked, this, [this] { m_permissions.revealApp(); });
    connect(&m_restart, &Button::clicked, this, [this] { m_permissions.relaunch(); });
    connect(&look.theme, &Theme::changed, this, [this] { update(); });
    showState();
}

QSize PermissionCard::sizeHint() const {
    if (m_help.empty())
        return {cardWidth, stateHeight};
    return {cardWidth, m_help.back().top + m_help.back().height + helpBottom};
}

void PermissionCard::showState() {
    listHelp();
    placeButtons();
    QStringList spoken{Permissions::reason(m_kind)};
    if (isGranted())
        spoken.prepend(tr("On"));
    for (const HelpRow& row : m_help)
        spoken += row.lines.join(u' ').remove(strong);
    const QString cause = m_permissions.cause(m_kind);
    if (!cause.isEmpty())
        spoken += cause;
    setToolTip(cause);
    setAccessibleDescription(spoken.join(u' '));
    update();
}

void PermissionCard::listHelp() {
    m_help.clear();
    if (isGranted())
        return;
    if (m_kind == Permissions::Kind::accessibility)
        addHelp(u"questionmark.circle"_s,
                tr("Not in the list? Click **+** in System Settings and choose Quillet, or drag it "
                   "in."),
                &m_reveal);
    if (m_kind == Permissions::Kind::screenRecording && m_permissions.requestedScreenRecording())
        addHelp(u"arrow.clockwise.circle"_s,
                tr("Turned it on? macOS needs Quillet to restart first."), &m_restart);
    if (!m_permissions.isInstalled())
        addHelp(u"exclamationmark.triangle.fill"_s,
                tr("Quillet is running from a build folder. Move it to Applications so System "
                   "Settings lists it reliably."),
                nullptr);
}

void PermissionCard::addHelp(const QString& symbol, const QString& text, Button* button) {
    constexpr int maxLines = 3;
    const double whole = cardWidth - inset - textLeft;
    const QStringList lines =
        button ? wrappedText(text, helpStyle, whole - fittingWidth(*button) - textGap, maxLines)
               : balancedText(text, helpStyle, whole);
    const int textHeight = qRound(static_cast<double>(lines.size()) * helpStyle.lineHeight);
    const int top =
        m_help.empty() ? firstHelpTop : m_help.back().top + m_help.back().height + helpGap;
    m_help.push_back({symbol, lines, button, top, std::max(textHeight, button ? buttonHeight : 0)});
}

void PermissionCard::placeButtons() {
    const auto place = [](Button& button, int middle) {
        const QSize size = button.sizeHint();
        button.setGeometry(QRect(
            QPoint(cardWidth - inset + Button::margin - size.width(), middle - size.height() / 2),
            size));
        button.show();
    };
    for (Button* button : {&m_continue, &m_reveal, &m_restart})
        button->hide();
    if (!isGranted())
        place(m_continue, stateHeight / 2);
    for (const HelpRow& row : m_help) {
        if (row.button)
            place(*row.button, row.middle());
    }
}

void PermissionCard::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const ThemeColors& colors = m_look.colors();
    painter.fillPath(continuousRect(rect(), cardRadius), colors.group);
    painter.setPen(QPen(colors.cardStroke, 1));
    painter.drawPath(
        continuousRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), cardRadius - 0.5));
    paintState(painter);
    if (m_help.empty())
        return;
    painter.fillRect(QRectF(inset, stateHeight - 1, cardWidth - 2 * inset, 1), colors.separator);
    for (const HelpRow& row : m_help)
        paintHelp(painter, row);
}

void PermissionCard::paintState(QPainter& painter) const {
    const ThemeColors& colors = m_look.colors();
    painter.setPen(Qt::NoPen);
    painter.setBrush(withAlpha(Theme::accent, 0.125));
    painter.drawRoundedRect(tile, tileRadius, tileRadius);
    paintSymbol(painter, tile, Permissions::symbol(m_kind), tileSymbol, colors.accentText);

    paintText(painter, {textLeft, titleTop, 0, TextStyles::headline.lineHeight}, Qt::AlignLeft,
              Permissions::title(m_kind), TextStyles::headline, colors.primary);
    // The same lines whether or not the button is there.
    const double reasonWidth = cardWidth - inset - fittingWidth(m_continue) - textGap - textLeft;
    paintLines(painter, {textLeft, reasonTop, reasonWidth, 2 * reasonStyle.lineHeight},
               Qt::AlignLeft, balancedText(Permissions::reason(m_kind), reasonStyle, reasonWidth),
               reasonStyle, colors.secondary);
    if (!isGranted())
        return;
    const QRectF end(0, 0, cardWidth - inset, stateHeight);
    paintText(painter, end, Qt::AlignRight | Qt::AlignVCenter, tr("On"), onStyle, colors.greenText);
    const double side = symbolSide(onSymbol);
    const double right = end.right() - textWidth(tr("On"), onStyle) - onGap;
    paintSymbol(painter, {right - side, 0, side, end.height()}, u"checkmark.circle.fill"_s,
                onSymbol, colors.greenText);
}

void PermissionCard::paintHelp(QPainter& painter, const HelpRow& row) const {
    const ThemeColors& colors = m_look.colors();
    const QColor& color = row.button ? colors.secondary : colors.orangeText;
    paintSymbol(painter, {tile.left(), double(row.top), tile.width(), double(row.height)},
                row.symbol, row.button ? helpSymbol : warningSymbol, color);
    QPointF at(textLeft,
               row.middle() - helpStyle.lineHeight * static_cast<double>(row.lines.size()) / 2);
    for (const QString& line : row.lines) {
        paintHelpLine(painter, at, line, color, colors.primary);
        at.ry() += helpStyle.lineHeight;
    }
}

} // namespace quillet

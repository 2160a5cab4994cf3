#include "shelf/ui/ShelfEmptyState.h"
#include "app/look/Symbols.h"
#include "app/look/Text.h"

#include <QPainter>

namespace quillet {

using namespace Qt::StringLiterals;

ShelfEmptyState::ShelfEmptyState(QWidget& parent, const Theme& theme)
    : QWidget(&parent), m_theme(theme) {}

void ShelfEmptyState::setQuery(const QString& query) {
    if (query.isEmpty()) {
        m_symbol = u"clipboard"_s;
        m_title = tr("Nothing here yet");
        m_line = tr("Copy anything — text, links, images, files — and it shows up here.");
    } else {
        m_symbol = u"magnifyingglass"_s;
        m_title = tr("No matches for “%1”").arg(query);
        m_line = tr("Try a different word or filter.");
    }
    setAccessibleName(m_title);
    setAccessibleDescription(m_line);
    update();
}

void ShelfEmptyState::paintEvent(QPaintEvent*) {
    constexpr double symbolSize = 30;
    constexpr TextStyle title = TextStyles::headline;
    constexpr TextStyle line = TextStyles::callout;
    const double side = symbolSide(symbolSize);
    const double height = side + 12 + title.lineHeight + 3 + line.lineHeight;
    const ThemeColors& colors = m_theme.colors();
    QPainter painter(this);
    QRectF row(0, (this->height() - height) / 2, width(), side);
    paintSymbol(painter, row, m_symbol, symbolSize, colors.secondary, SymbolWeight::light);
    row = {0, row.bottom() + 12, row.width(), title.lineHeight};
    paintText(painter, row, Qt::AlignCenter, elidedText(m_title, title.verbatim(), width() - 40.0),
              title.verbatim(), colors.primary);
    row = {0, row.bottom() + 3, row.width(), line.lineHeight};
    paintText(painter, row, Qt::AlignCenter, m_line, line, colors.secondary);
}

} // namespace quillet

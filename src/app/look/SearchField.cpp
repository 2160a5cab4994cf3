#include "app/look/SearchField.h"
#include "app/look/FieldPainting.h"
#include "app/look/Text.h"

#include <QPainter>
#include <QProxyStyle>

namespace quillet {
namespace {

/// The toolkit paints its caret in the colour of the text. As narrow as can be, it disappears under
/// ours.
class CaretlessStyle : public QProxyStyle {
public:
    int pixelMetric(PixelMetric metric, const QStyleOption* option,
                    const QWidget* widget) const override {
        return metric == PM_TextCursorWidth ? 0 : QProxyStyle::pixelMetric(metric, option, widget);
    }
};

} // namespace

SearchField::SearchField(const Look& look, const QString& placeholder, QWidget* parent)
    : QLineEdit(parent), m_look(look) {
    auto* style = new CaretlessStyle;
    style->setParent(this);
    setStyle(style);
    setPlaceholderText(placeholder);
    setAccessibleName(placeholder);
    setFrame(false);
    setTextMargins(30, 0, 10, 0);
    followText({});
    followTheme();
    connect(this, &QLineEdit::textChanged, this, &SearchField::followText);
    connect(&look.theme, &Theme::changed, this, &SearchField::followTheme);
}

void SearchField::paintEvent(QPaintEvent* event) {
    {
        QPainter painter(this);
        paintField(painter, rect(), FieldShape::capsule, m_look.colors());
        paintSearchSymbol(painter, rect(), m_look.colors());
    }
    QLineEdit::paintEvent(event);
    if (!hasFocus() || hasSelectedText())
        return;
    constexpr int before = 5; // the toolkit's rectangle starts so far before the caret
    QPainter painter(this);
    paintCaret(painter, cursorRect().adjusted(before, 0, 0, 0));
}

void SearchField::followTheme() {
    const ThemeColors& colors = m_look.colors();
    QPalette palette;
    palette.setColor(QPalette::Base, Qt::transparent);
    palette.setColor(QPalette::Text, colors.primary);
    palette.setColor(QPalette::PlaceholderText, colors.tertiary);
    palette.setColor(QPalette::Highlight, Theme::accent);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    setPalette(palette);
}

void SearchField::followText(const QString& text) {
    setFont(widgetFont(TextStyles::body.verbatim(), text));
}

} // namespace quillet

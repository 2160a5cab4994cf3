#include "app/look/TextInput.h"
#include "app/look/FieldPainting.h"
#include "app/look/Text.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QProxyStyle>

namespace quillet {
namespace {

using Outcome = PasteboardReading::Outcome;

constexpr qint64 longestPaste = 1 << 20;

/// The toolkit paints its caret in the colour of the text. As narrow as can be, it disappears under
/// ours.
class CaretlessStyle : public QProxyStyle {
public:
    int pixelMetric(PixelMetric metric, const QStyleOption* option,
                    const QWidget* widget) const override {
        return metric == PM_TextCursorWidth ? 0 : QProxyStyle::pixelMetric(metric, option, widget);
    }
};

/// Lines are copied with their ends, which a single line has no use for.
QString withoutLineEnds(QString text) {
    while (text.endsWith(u'\n') || text.endsWith(u'\r'))
        text.chop(1);
    return text;
}

/// Whether it would type a character although a modifier asks for something else.
bool isUnknownCommand(const QKeyEvent& event) {
    const bool isCommand = (event.modifiers() & (Qt::AltModifier | Qt::MetaModifier)) != 0;
    return isCommand && !event.text().isEmpty() && event.text().front().isPrint();
}

} // namespace

TextInput::TextInput(const Look& look, Pasteboard& pasteboard, QWidget* parent)
    : QLineEdit(parent), m_look(look), m_pasteboard(pasteboard) {
    auto* style = new CaretlessStyle;
    style->setParent(this);
    setStyle(style);
    setFrame(false);
    setAcceptDrops(false); // the toolkit would wait for the program that drops
    followText({});
    followTheme();
    connect(this, &QLineEdit::textChanged, this, &TextInput::followText);
    connect(&look.theme, &Theme::changed, this, &TextInput::followTheme);
}

void TextInput::paintEvent(QPaintEvent* event) {
    QLineEdit::paintEvent(event);
    if (!hasFocus() || hasSelectedText())
        return;
    // The toolkit's rectangle starts five points before the place where its caret would be.
    const int before = text().isEmpty() ? 3 : 5; // beside the placeholder, or between letters
    QPainter painter(this);
    paintCaret(painter, cursorRect().adjusted(before, 0, 0, 0));
}

void TextInput::keyPressEvent(QKeyEvent* event) {
    struct Row {
        QKeySequence::StandardKey key;
        void (TextInput::*action)();
    };
    static constexpr Row rows[] = {
        {QKeySequence::Copy, &TextInput::copySelection},
        {QKeySequence::Cut, &TextInput::cutSelection},
        {QKeySequence::Paste, &TextInput::pasteText},
        // These two would replace what is on the clipboard with what they delete.
        {QKeySequence::DeleteEndOfLine, &TextInput::deleteToEnd},
        {QKeySequence::DeleteCompleteLine, &TextInput::clear},
    };
    for (const Row& row : rows) {
        if (event->matches(row.key))
            return (this->*row.action)();
    }
    if (isUnknownCommand(*event))
        return event->ignore();
    QLineEdit::keyPressEvent(event);
}

void TextInput::mouseReleaseEvent(QMouseEvent* event) {
    // The middle button pastes what is selected elsewhere, and the toolkit would wait for that.
    if (event->button() != Qt::MiddleButton)
        QLineEdit::mouseReleaseEvent(event);
}

void TextInput::contextMenuEvent(QContextMenuEvent* event) {
    m_menu = makeMenu();
    m_menu->popupAt(event->globalPos());
}

std::unique_ptr<Menu> TextInput::makeMenu() {
    auto menu = std::make_unique<Menu>(m_look, this);
    const auto add = [&](const QString& text, void (TextInput::*action)(), bool isEnabled) {
        menu->addAction(text, this, action)->setEnabled(isEnabled);
    };
    add(tr("Cut"), &TextInput::cutSelection, hasSelectedText());
    add(tr("Copy"), &TextInput::copySelection, hasSelectedText());
    add(tr("Paste"), &TextInput::pasteText, m_pasteboard.types().contains(PasteboardType::string));
    menu->addSeparator();
    add(tr("Select All"), &TextInput::selectAll, !text().isEmpty());
    return menu;
}

void TextInput::hideEvent(QHideEvent* event) {
    m_pastes = {};
    QLineEdit::hideEvent(event);
}

/// Whether what is selected, if anything, is on the clipboard now.
bool TextInput::offerSelection() {
    if (!hasSelectedText())
        return false;
    const auto bytes = [text = selectedText().toUtf8()] { return text; };
    const bool isTaken = m_pasteboard.write({{PasteboardType::string, bytes}});
    if (!isTaken)
        QApplication::beep();
    return isTaken;
}

void TextInput::copySelection() {
    offerSelection();
}

void TextInput::cutSelection() {
    if (offerSelection())
        del();
}

void TextInput::pasteText() {
    m_pasteboard.read(PasteboardType::string, longestPaste,
                      m_pastes([this](const PasteboardReading& reading) {
                          if (reading.outcome == Outcome::data)
                              insert(withoutLineEnds(QString::fromUtf8(reading.bytes)));
                          else
                              QApplication::beep();
                      }));
}

void TextInput::deleteToEnd() {
    end(true);
    if (hasSelectedText())
        del();
}

void TextInput::followTheme() {
    const ThemeColors& colors = m_look.colors();
    QPalette palette;
    palette.setColor(QPalette::Base, Qt::transparent);
    palette.setColor(QPalette::Text, colors.primary);
    palette.setColor(QPalette::PlaceholderText, colors.tertiary);
    palette.setColor(QPalette::Highlight, Theme::accent);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    setPalette(palette);
}

void TextInput::followText(const QString& text) {
    setFont(widgetFont(TextStyles::body.verbatim(), text));
}

} // namespace quillet

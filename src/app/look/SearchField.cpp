#include "app/look/SearchField.h"
#include "app/look/FieldPainting.h"

#include <QPainter>

namespace quillet {

SearchField::SearchField(const Look& look, Pasteboard& pasteboard, const QString& placeholder,
                         QWidget* parent)
    : TextInput(look, pasteboard, parent) {
    setPlaceholderText(placeholder);
    setAccessibleName(placeholder);
    setTextMargins(28, 0, 10, 0);
}

void SearchField::paintEvent(QPaintEvent* event) {
    {
        QPainter painter(this);
        paintField(painter, rect(), FieldShape::capsule, look().colors());
        paintSearchSymbol(painter, rect(), look().colors());
    }
    TextInput::paintEvent(event);
}

} // namespace quillet

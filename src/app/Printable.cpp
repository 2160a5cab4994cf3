#include "app/Printable.h"

#include <algorithm>
#include <numeric>
#include <QList>
#include <wchar.h>

namespace quillet {

namespace {

/// Nothing is known of the newest characters; terminals then take one column.
int columns(char32_t character) {
    const int width = wcwidth(static_cast<wchar_t>(character));
    return width < 0 ? 1 : width;
}

} // namespace

QString printable(QStringView text) {
    QString line;
    for (const QChar c : text) {
        const QChar::Category category = c.category();
        if (category == QChar::Other_Format)
            continue;
        if (category == QChar::Other_Control || c.isSpace()) {
            if (!line.endsWith(u' '))
                line += u' ';
        } else {
            line += c;
        }
    }
    return line.trimmed();
}

int columns(QStringView text) {
    const QList<uint> characters = text.toUcs4();
    return std::accumulate(characters.begin(), characters.end(), 0, [](int sum, uint character) {
        return sum + columns(char32_t{character});
    });
}

QString preview(QStringView text, int length) {
    // Collapsing may shorten the text a lot, so more than `length` is looked at.
    const QStringView head = text.first(std::min(text.size(), qsizetype{length} * 8));
    QString line;
    int taken = 0;
    for (const uint next : printable(head).toUcs4()) {
        const char32_t character = next;
        taken += columns(character);
        if (taken > length)
            return line + u'\u2026';
        line += QStringView(QChar::fromUcs4(character));
    }
    return head.size() == text.size() ? line : line + u'\u2026';
}

} // namespace quillet

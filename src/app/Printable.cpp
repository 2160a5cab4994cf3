#include "app/Printable.h"

namespace quillet {

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

QString preview(QStringView text, qsizetype length) {
    // Collapsing may shorten the text a lot, so more than `length` is looked at.
    const QStringView head = text.first(std::min(text.size(), length * 8));
    QString line = printable(head);
    if (line.size() <= length && head.size() == text.size())
        return line;
    qsizetype cut = std::min(line.size(), length);
    if (cut > 0 && line.at(cut - 1).isHighSurrogate())
        --cut;
    line.truncate(cut);
    return line + u'\u2026';
}

} // namespace quillet

#include "shelf/CardTexts.h"

#include <algorithm>
#include <QCoreApplication>
#include <QTextBoundaryFinder>

namespace quillet {

using namespace Qt::StringLiterals;

namespace {

QString tr(const char* text) {
    return QCoreApplication::translate("ClipCard", text);
}

struct Age {
    qint64 count;
    const char* past;
    const char* future;
};

/// Days, months and years are those of the calendar: a day may have 23 hours, and a month after
/// 31 January is the last of February.
Age age(const QDateTime& earlier, const QDateTime& later) {
    const qint64 seconds = earlier.secsTo(later);
    qint64 days = earlier.daysTo(later);
    if (days > 0 && earlier.addDays(days) > later)
        --days;
    qint64 months = 12LL * (later.date().year() - earlier.date().year()) + later.date().month() -
                    earlier.date().month();
    if (months > 0 && earlier.addMonths(static_cast<int>(months)) > later)
        --months;
    if (months >= 12)
        return {months / 12, QT_TRANSLATE_NOOP("ClipCard", "%1 yr. ago"),
                QT_TRANSLATE_NOOP("ClipCard", "in %1 yr.")};
    if (months >= 1)
        return {months, QT_TRANSLATE_NOOP("ClipCard", "%1 mo. ago"),
                QT_TRANSLATE_NOOP("ClipCard", "in %1 mo.")};
    if (days >= 7)
        return {days / 7, QT_TRANSLATE_NOOP("ClipCard", "%1 wk. ago"),
                QT_TRANSLATE_NOOP("ClipCard", "in %1 wk.")};
    if (days == 1)
        return {1, QT_TRANSLATE_NOOP("ClipCard", "%1 day ago"),
                QT_TRANSLATE_NOOP("ClipCard", "in %1 day")};
    if (days > 1)
        return {days, QT_TRANSLATE_NOOP("ClipCard", "%1 days ago"),
                QT_TRANSLATE_NOOP("ClipCard", "in %1 days")};
    if (seconds >= 3600)
        return {seconds / 3600, QT_TRANSLATE_NOOP("ClipCard", "%1 hr. ago"),
                QT_TRANSLATE_NOOP("ClipCard", "in %1 hr.")};
    if (seconds >= 60)
        return {seconds / 60, QT_TRANSLATE_NOOP("ClipCard", "%1 min. ago"),
                QT_TRANSLATE_NOOP("ClipCard", "in %1 min.")};
    return {seconds, QT_TRANSLATE_NOOP("ClipCard", "%1 sec. ago"),
            QT_TRANSLATE_NOOP("ClipCard", "in %1 sec.")};
}

} // namespace

QString kindLabel(ClipItem::Kind kind) {
    switch (kind) {
    case ClipItem::Kind::text:
        return tr("Text");
    case ClipItem::Kind::link:
        return tr("Link");
    case ClipItem::Kind::image:
        return tr("Image");
    case ClipItem::Kind::file:
        return tr("File");
    case ClipItem::Kind::color:
        return tr("Color");
    }
    return {};
}

QString relativeDate(const QDateTime& date, const QDateTime& now) {
    if (date > now) {
        const Age ahead = age(now, date);
        return tr(ahead.future).arg(ahead.count);
    }
    const Age behind = age(date, now);
    return tr(behind.past).arg(behind.count);
}

QString quickPasteBadge(int index) {
    return index < 9 ? u"⌘%1"_s.arg(index + 1) : QString();
}

qint64 characterCount(const QString& text) {
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    qint64 count = 0;
    while (finder.toNextBoundary() >= 0)
        ++count;
    return count;
}

QString characterFooter(qint64 characters) {
    return tr("%1 characters").arg(characters);
}

QString fileFooter(qsizetype files) {
    return files == 1 ? tr("1 file") : tr("%1 files").arg(files);
}

QString imageFooter(const std::optional<QSize>& pixels) {
    return pixels ? u"%1 × %2"_s.arg(pixels->width()).arg(pixels->height()) : tr("Image");
}

QString linkHost(const QString& link) {
    return QUrl(link.trimmed()).host();
}

std::optional<QColor> colorFromHex(const QString& text) {
    QString digits = text.trimmed();
    digits.remove(u'#');
    const auto isHexDigit = [](QChar c) {
        return (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F');
    };
    if (digits.size() != 6 || !std::ranges::all_of(digits, isHexDigit))
        return std::nullopt;
    return QColor::fromRgb(0xff000000U | digits.toUInt(nullptr, 16));
}

} // namespace quillet

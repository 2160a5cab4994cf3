#include "app/ClipListing.h"

#include "app/Printable.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace quillet {

namespace {

constexpr int previewLength = 60;
constexpr qint64 previewBytes = 4096; // a preview skips white space

QJsonValue valueOrNull(const std::optional<QString>& text) {
    return text ? QJsonValue(*text) : QJsonValue();
}

QJsonObject asJson(const ClipItem& clip) {
    return {{u"id"_s, clip.id().toString(QUuid::WithoutBraces)},
            {u"kind"_s, ClipItem::rawValue(clip.kind())},
            {u"text"_s, valueOrNull(clip.text())},
            {u"filePaths"_s, QJsonArray::fromStringList(clip.filePaths())},
            {u"imageBytes"_s, clip.imageBytes()},
            {u"sourceBundleID"_s, valueOrNull(clip.sourceBundleID())},
            {u"sourceAppName"_s, valueOrNull(clip.sourceAppName())},
            {u"createdAt"_s, clip.createdAt().toUTC().toString(Qt::ISODateWithMs)},
            {u"isPinned"_s, clip.isPinned()},
            {u"contentHash"_s, clip.contentHash()}};
}

QString contentPreview(const ClipItem& clip) {
    switch (clip.kind()) {
    case ClipItem::Kind::text:
    case ClipItem::Kind::link:
    case ClipItem::Kind::color:
        return preview(clip.textBeginning(previewBytes), previewLength);
    case ClipItem::Kind::image:
        return u"%1 bytes"_s.arg(clip.imageBytes());
    case ClipItem::Kind::file:
        return preview(clip.filePaths().join(u", "_s), previewLength);
    }
    return {};
}

QString padded(const QString& text, int width) {
    return text + QString(std::max(0, width - columns(text)), u' ');
}

QString asLine(size_t number, const ClipItem& clip) {
    const QString source = printable(clip.sourceAppName().value_or(QString()));
    // In one step: a clip may contain what looks like a place to fill.
    return u"%1 %2 %3 %4  %5  %6\n"_s.arg(
        QString::number(number).rightJustified(4), clip.isPinned() ? u"*"_s : u" "_s,
        ClipItem::rawValue(clip.kind()).leftJustified(5),
        padded(contentPreview(clip), previewLength + 1), source,
        clip.createdAt().toLocalTime().toString(u"yyyy-MM-dd HH:mm"_s));
}

} // namespace

QByteArray clipsAsJson(const ClipSnapshot& clips) {
    // One clip at a time: all long texts together may be very large.
    QByteArray list = "[";
    for (const ClipItem& clip : clips) {
        list += list.size() > 1 ? ",\n" : "\n";
        list += QJsonDocument(asJson(clip)).toJson().trimmed();
    }
    return list + "\n]\n";
}

QByteArray clipsAsLines(const ClipSnapshot& clips) {
    QByteArray lines;
    size_t number = 0;
    for (const ClipItem& clip : clips)
        lines += asLine(++number, clip).toUtf8();
    return lines;
}

} // namespace quillet

#include "clipboard/ClipItem.h"
#include "clipboard/Utf8.h"
#include "imaging/Bitmap.h"
#include "imaging/Png.h"

namespace quillet {

using namespace Qt::StringLiterals;

QString ClipItem::rawValue(Kind kind) {
    switch (kind) {
    case Kind::text:
        return u"text"_s;
    case Kind::link:
        return u"link"_s;
    case Kind::image:
        return u"image"_s;
    case Kind::file:
        return u"file"_s;
    case Kind::color:
        return u"color"_s;
    }
    return {};
}

std::optional<ClipItem::Kind> ClipItem::kindWithRawValue(QStringView raw) {
    for (const Kind kind : kinds) {
        if (rawValue(kind) == raw)
            return kind;
    }
    return std::nullopt;
}

std::optional<QString> ClipItem::text() const {
    if (!m_fields.longText)
        return m_fields.text;
    const auto bytes = m_fields.longText->read();
    return bytes ? std::optional(decodeUtf8(*bytes)) : std::nullopt;
}

QString ClipItem::textBeginning(qint64 bytes) const {
    if (!m_fields.longText)
        return m_fields.text.value_or(QString()).left(bytes);
    // A character that was cut in the middle is left out, not shown as damaged.
    QStringDecoder decoder(QStringConverter::Utf8);
    return decoder(m_fields.longText->read(0, bytes).value_or(QByteArray()));
}

bool ClipItem::isContentReadable() const {
    const auto& payload = m_fields.longText ? m_fields.longText : m_fields.imageData;
    return !payload || payload->source();
}

std::optional<QByteArray> ClipItem::imageData() const {
    return m_fields.imageData ? m_fields.imageData->read() : std::nullopt;
}

bool ClipItem::isImageDecodable() const {
    if (!m_fields.imageData)
        return false;
    constexpr qint64 startBytes = 64;
    constexpr qint64 endBytes = 12;
    const ClipPayload& image = *m_fields.imageData;
    const QByteArray start = image.read(0, startBytes).value_or(QByteArray());
    if (!hasPngSignature(start))
        return isDecodable(image.read().value_or(QByteArray()));
    const auto end = image.read(std::max<qint64>(0, image.size() - endBytes), endBytes);
    return end && isPngFromStartToEnd(start, *end);
}

ClipItem::Kind ClipItem::kind() const {
    return kindWithRawValue(m_fields.kindRaw).value_or(Kind::text);
}

QList<QUrl> ClipItem::fileURLs() const {
    QList<QUrl> urls;
    for (const QString& path : m_fields.filePaths)
        urls.append(QUrl::fromLocalFile(path));
    return urls;
}

QString ClipItem::searchText() const {
    QStringList parts;
    if (const auto ownText = text())
        parts.append(*ownText);
    if (m_fields.sourceAppName)
        parts.append(*m_fields.sourceAppName);
    QStringList fileNames;
    for (const QString& path : m_fields.filePaths)
        fileNames.append(path.section(u'/', -1));
    parts.append(fileNames.join(u' '));
    return parts.join(u' ');
}

std::function<QByteArray()> ClipItem::textSource() const {
    if (m_fields.longText)
        return m_fields.longText->source();
    if (!m_fields.text)
        return nullptr;
    return [bytes = m_fields.text->toUtf8()] { return bytes; };
}

std::function<QByteArray()> ClipItem::imageSource() const {
    return m_fields.imageData ? m_fields.imageData->source() : nullptr;
}

} // namespace quillet

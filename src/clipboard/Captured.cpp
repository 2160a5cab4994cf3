#include "clipboard/Captured.h"
#include "clipboard/UriList.h"
#include "clipboard/Utf8.h"
#include "imaging/Bitmap.h"
#include "imaging/Png.h"

#include <algorithm>
#include <array>
#include <nettle/sha2.h>

namespace quillet {

using namespace Qt::StringLiterals;

namespace {

bool isHexDigit(QChar c) {
    return (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F');
}

bool isColorCode(QStringView text) {
    if (text.startsWith(u'#'))
        text = text.sliced(1);
    return text.size() == 6 && std::ranges::all_of(text, isHexDigit);
}

bool isWebAddress(QStringView text) {
    // Parsing is for what can be an address at all: a long text must not pay for it.
    if (!text.startsWith("http:"_L1, Qt::CaseInsensitive) &&
        !text.startsWith("https:"_L1, Qt::CaseInsensitive))
        return false;
    const QUrl url(text.toString());
    return url.isValid() && !url.host().isEmpty();
}

} // namespace

std::optional<Captured> Captured::fromUriList(const QByteArray& bytes) {
    QStringList paths = localFilesInUriList(bytes);
    if (paths.isEmpty())
        return std::nullopt;
    QString hash = contentHash(paths.join(u'\n').toUtf8());
    return Captured{ClipItem::Kind::file, {}, {}, {}, std::move(paths), std::move(hash)};
}

std::optional<Captured> Captured::fromPng(const QByteArray& bytes) {
    if (bytes.isEmpty())
        return std::nullopt;
    return Captured{ClipItem::Kind::image, {}, {}, bytes, {}, contentHash(bytes)};
}

std::optional<Captured> Captured::fromTiff(const QByteArray& bytes) {
    const auto image = decodeImage(bytes);
    return image ? fromPng(encodePng(*image)) : std::nullopt;
}

std::optional<Captured> Captured::fromText(const QByteArray& bytes) {
    QString text = decodeUtf8(bytes);
    if (QStringView(text).trimmed().isEmpty())
        return std::nullopt;
    const ClipItem::Kind kind = classify(text);
    // Where there were invalid bytes, the text is no longer what came.
    QByteArray utf8 = QByteArrayView(bytes).isValidUtf8() ? bytes : text.toUtf8();
    QString hash = contentHash(utf8);
    return Captured{kind, std::move(text), std::move(utf8), {}, {}, std::move(hash)};
}

ClipItem::Kind classify(QStringView text) {
    const QStringView trimmed = text.trimmed();
    if (isColorCode(trimmed))
        return ClipItem::Kind::color;
    if (trimmed.contains(u' ') || trimmed.contains(u'\n'))
        return ClipItem::Kind::text;
    return isWebAddress(trimmed) ? ClipItem::Kind::link : ClipItem::Kind::text;
}

QString contentHash(QByteArrayView bytes) {
    // Ten times as fast as QCryptographicHash, which does not use the processor's own instructions.
    sha256_ctx context;
    sha256_init(&context);
    sha256_update(&context, size_t(bytes.size()), reinterpret_cast<const uint8_t*>(bytes.data()));
    std::array<char, SHA256_DIGEST_SIZE> digest{};
    sha256_digest(&context, digest.size(), reinterpret_cast<uint8_t*>(digest.data()));
    return QString::fromLatin1(QByteArray::fromRawData(digest.data(), digest.size()).toHex());
}

} // namespace quillet

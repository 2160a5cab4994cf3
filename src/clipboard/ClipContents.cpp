#include "clipboard/ClipContents.h"
#include "clipboard/UriList.h"
#include "imaging/Bitmap.h"

namespace quillet {

namespace {

std::function<QByteArray()> constant(QByteArray bytes) {
    return [bytes = std::move(bytes)] { return bytes; };
}

PasteboardContent plainString(const ClipItem& item) {
    auto source = item.textSource();
    return {PasteboardType::string, source ? std::move(source) : constant(QByteArray(""))};
}

PasteboardContents linkContents(const ClipItem& item, bool plainText) {
    PasteboardContents contents{plainString(item)};
    const QString text = item.text().value_or(QString()).trimmed();
    const QUrl url(text);
    // As it was written where that is a URL to the letter; else with what is missing encoded.
    const bool isWhole = QUrl(text, QUrl::StrictMode).isValid() && text.toLatin1() == text.toUtf8();
    if (!plainText && url.isValid())
        contents.push_back(
            {PasteboardType::url, constant(isWhole ? text.toLatin1() : url.toEncoded())});
    return contents;
}

PasteboardContents imageContents(const ClipItem& item) {
    const auto source = item.imageSource();
    if (!source)
        return {};
    PasteboardContents contents{{PasteboardType::png, source}};
    if (item.isImageDecodable()) {
        // Made when somebody asks: most never do, and it takes many times the bytes.
        const auto tiff = [source] {
            const auto image = decodeImage(source());
            return image ? tiffData(*image) : QByteArray();
        };
        contents.push_back({PasteboardType::tiff, tiff});
    }
    return contents;
}

PasteboardContents fileContents(const ClipItem& item, bool plainText) {
    if (plainText)
        return {{PasteboardType::string, constant(item.filePaths().join(u'\n').toUtf8())}};
    return {{PasteboardType::fileURL, constant(uriList(item.fileURLs()))}};
}

} // namespace

PasteboardContents pasteboardContents(const ClipItem& item, bool plainText) {
    switch (item.kind()) {
    case ClipItem::Kind::text:
    case ClipItem::Kind::color:
        return {plainString(item)};
    case ClipItem::Kind::link:
        return linkContents(item, plainText);
    case ClipItem::Kind::image:
        return imageContents(item);
    case ClipItem::Kind::file:
        return fileContents(item, plainText);
    }
    return {};
}

} // namespace quillet

#include "platform/linux/x11/X11Targets.h"

#include "imaging/Bitmap.h"
#include "imaging/Png.h"

#include <array>
#include <QStringConverter>
#include <QUrl>

namespace quillet::X11Targets {

namespace {

using namespace Qt::StringLiterals;

using Conversion = std::optional<QByteArray> (*)(const QByteArray&);

std::optional<QByteArray> same(const QByteArray& bytes) {
    return bytes;
}

std::optional<QByteArray> utf8FromLatin1(const QByteArray& bytes) {
    return QString::fromLatin1(bytes).toUtf8();
}

std::optional<QByteArray> latin1FromUtf8(const QByteArray& bytes) {
    QStringEncoder latin1(QStringConverter::Latin1);
    const QByteArray encoded = latin1(QString::fromUtf8(bytes));
    if (latin1.hasError())
        return std::nullopt;
    return encoded.isNull() ? QByteArray("") : encoded;
}

/// File managers put the operation on the first line: "copy\nfile:///a\nfile:///b".
std::optional<QByteArray> uriListFromFileManagerList(const QByteArray& bytes) {
    return bytes.mid(bytes.indexOf('\n') + 1);
}

QList<QByteArray> uris(const QByteArray& uriList) {
    QList<QByteArray> lines = uriList.split('\n');
    for (QByteArray& line : lines)
        line = line.trimmed();
    lines.removeIf([](const QByteArray& line) { return line.isEmpty() || line.startsWith('#'); });
    return lines;
}

std::optional<QByteArray> fileManagerListFromUriList(const QByteArray& bytes) {
    return "copy\n" + uris(bytes).join('\n');
}

std::optional<QByteArray> copyNotCut(const QByteArray&) {
    return QByteArray("0");
}

std::optional<QByteArray> pathsFromUriList(const QByteArray& bytes) {
    QByteArrayList paths;
    for (const QByteArray& uri : uris(bytes))
        paths.append(QUrl::fromEncoded(uri).toLocalFile().toUtf8());
    return paths.join('\n');
}

std::optional<QByteArray> latin1PathsFromUriList(const QByteArray& bytes) {
    return latin1FromUtf8(*pathsFromUriList(bytes));
}

/// Browsers write the URL and, on a second line, the page's title, in UTF-16.
std::optional<QByteArray> urlFromTitledUrl(const QByteArray& bytes) {
    const QString text = QStringDecoder(QStringConverter::Utf16)(bytes);
    return text.section(u'\n', 0, 0).trimmed().toUtf8();
}

std::optional<QByteArray> titledUrlFromUrl(const QByteArray& bytes) {
    const QString url = QString::fromUtf8(bytes);
    const QByteArray encoded =
        QStringEncoder(QStringConverter::Utf16LE)(QString(url + u'\n' + url));
    return encoded;
}

std::optional<QByteArray> firstUri(const QByteArray& bytes) {
    const QList<QByteArray> all = uris(bytes);
    if (all.isEmpty())
        return std::nullopt;
    return all.first();
}

std::optional<QByteArray> uriListFromUrl(const QByteArray& bytes) {
    return bytes + "\r\n";
}

std::optional<QByteArray> pngFromPicture(const QByteArray& bytes) {
    const std::optional<QImage> image = decodeImage(bytes);
    if (!image)
        return std::nullopt;
    return encodePng(*image);
}

struct Row {
    QString type;
    QByteArray target;
    QByteArray propertyType;
    Conversion decode; ///< null: never read from this target
    Conversion encode; ///< null: never offered under this target
};

/// Best source first within a type.
const std::vector<Row>& table() {
    using namespace PasteboardType;
    static const QByteArray mozUrl = "text/x-moz-url";
    static const QByteArray uriList = "text/uri-list";
    static const std::vector<Row> rows = {
        {fileURL, uriList, uriList, same, same},
        {fileURL, "x-special/gnome-copied-files", "x-special/gnome-copied-files",
         uriListFromFileManagerList, fileManagerListFromUriList},
        {fileURL, "application/x-kde-cutselection", "application/x-kde-cutselection", nullptr,
         copyNotCut},
        {png, "image/png", "image/png", same, same},
        {tiff, "image/tiff", "image/tiff", same, same},
        {png, "image/bmp", "", pngFromPicture, nullptr},
        {png, "image/x-bmp", "", pngFromPicture, nullptr},
        {png, "image/x-MS-bmp", "", pngFromPicture, nullptr},
        {png, "image/webp", "", pngFromPicture, nullptr},
        {png, "image/jpeg", "", pngFromPicture, nullptr},
        {png, "image/gif", "", pngFromPicture, nullptr},
        {string, "UTF8_STRING", "UTF8_STRING", same, same},
        {string, "text/plain;charset=utf-8", "text/plain;charset=utf-8", same, same},
        {string, "text/plain;charset=UTF-8", "", same, nullptr},
        {string, "text/plain", "text/plain", same, same},
        {string, "STRING", "STRING", utf8FromLatin1, latin1FromUtf8},
        {string, "TEXT", "UTF8_STRING", nullptr, same},
        {url, mozUrl, mozUrl, urlFromTitledUrl, titledUrlFromUrl},
        {url, uriList, uriList, firstUri, uriListFromUrl},
        // Files also as text, for programs that take no files.
        {fileURL, "UTF8_STRING", "UTF8_STRING", nullptr, pathsFromUriList},
        {fileURL, "text/plain;charset=utf-8", "text/plain;charset=utf-8", nullptr,
         pathsFromUriList},
        {fileURL, "text/plain", "text/plain", nullptr, pathsFromUriList},
        {fileURL, "STRING", "STRING", nullptr, latin1PathsFromUriList},
    };
    return rows;
}

constexpr std::array aboutTheSelection = {"TARGETS", "MULTIPLE",     "TIMESTAMP",
                                          "DELETE",  "SAVE_TARGETS", "TARGET_SIZES"};

const Row* reading(const QString& type, const QByteArray& target) {
    for (const Row& row : table()) {
        if (row.decode && row.type == type && row.target == target)
            return &row;
    }
    return nullptr;
}

} // namespace

bool isAboutTheSelection(const QByteArray& target) {
    return std::find(aboutTheSelection.begin(), aboutTheSelection.end(), target) !=
           aboutTheSelection.end();
}

QStringList types(const QList<QByteArray>& targets) {
    // Another bitmap format counts only where the owner offers none of the two we know.
    const bool otherBitmapsCount =
        !targets.contains("image/png") && !targets.contains("image/tiff");
    QStringList found;
    for (const QByteArray& target : targets) {
        bool known = isAboutTheSelection(target);
        for (const Row& row : table()) {
            if (!row.decode || row.target != target)
                continue;
            known = true;
            if (row.decode == pngFromPicture && !otherBitmapsCount)
                continue;
            if (!found.contains(row.type))
                found.append(row.type);
        }
        if (!known)
            found.append(QString::fromLatin1(target));
    }
    return found;
}

QList<QByteArray> sources(const QString& type, const QList<QByteArray>& offered) {
    QList<QByteArray> best;
    for (const Row& row : table()) {
        if (row.decode && row.type == type && offered.contains(row.target))
            best.append(row.target);
    }
    const QByteArray ownName = type.toLatin1();
    if (best.isEmpty() && offered.contains(ownName))
        best.append(ownName);
    return best;
}

std::optional<QByteArray> decode(const QString& type, const QByteArray& target, QByteArray bytes) {
    const Row* row = reading(type, target);
    return row ? row->decode(bytes) : std::optional(std::move(bytes));
}

bool decodesPicture(const QString& type, const QByteArray& target) {
    const Row* row = reading(type, target);
    return row && row->decode == pngFromPicture;
}

std::vector<Answer> answers(const PasteboardContents& contents) {
    std::vector<Answer> all;
    const auto answered = [&all](const QByteArray& target) {
        return std::any_of(all.begin(), all.end(),
                           [&](const Answer& answer) { return answer.target == target; });
    };
    const auto offered = [&contents](const QString& type) {
        return std::find_if(contents.begin(), contents.end(),
                            [&](const PasteboardContent& content) { return content.type == type; });
    };
    for (const PasteboardContent& content : contents) {
        const bool known = std::any_of(table().begin(), table().end(),
                                       [&](const Row& row) { return row.type == content.type; });
        if (!known)
            all.push_back({content.type.toLatin1(), content.type.toLatin1(), content.bytes});
    }
    for (const Row& row : table()) {
        const auto content = offered(row.type);
        if (!row.encode || content == contents.end() || answered(row.target))
            continue;
        all.push_back({row.target, row.propertyType, [bytes = content->bytes, encode = row.encode] {
                           const QByteArray raw = bytes();
                           return raw.isNull() ? raw : encode(raw).value_or(QByteArray());
                       }});
    }
    return all;
}

} // namespace quillet::X11Targets

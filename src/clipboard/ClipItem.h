#pragma once

#include "clipboard/ClipPayload.h"

#include <array>
#include <optional>
#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <QUuid>

namespace quillet {

/// One remembered content of the clipboard. Items are shared: the context that stores them changes
/// them, everybody else reads, and one that was deleted stays a valid object for whoever still
/// shows it. Images and long texts are read from their files on demand and never kept in memory.
class ClipItem {
public:
    enum class Kind { text, link, image, file, color };
    static constexpr std::array kinds{Kind::text, Kind::link, Kind::image, Kind::file, Kind::color};
    static QString rawValue(Kind kind);
    static std::optional<Kind> kindWithRawValue(QStringView rawValue);

    /// Everything that is stored of an item. A text is either short, in `text`, or long, in
    /// `longText` as UTF-8.
    struct Fields {
        QUuid id;
        QString kindRaw;
        std::optional<QString> text;
        std::optional<ClipPayload> longText;
        std::optional<ClipPayload> imageData;
        QStringList filePaths;
        std::optional<QString> sourceBundleID;
        std::optional<QString> sourceAppName;
        QDateTime createdAt;
        bool isPinned = false;
        QString contentHash;
    };

    explicit ClipItem(Fields fields) : m_fields(std::move(fields)) {}

    const QUuid& id() const { return m_fields.id; }
    const QString& kindRaw() const { return m_fields.kindRaw; }
    std::optional<QString> text() const;         ///< reads a file where the text is long
    std::optional<QByteArray> imageData() const; ///< reads a file

    /// The text as far as its first `bytes` of UTF-8 go; empty where there is none.
    QString textBeginning(qint64 bytes) const;

    /// Whether the image bytes seem to decode, without reading them all.
    bool isImageDecodable() const;

    /// False when the file with the content is missing.
    bool isContentReadable() const;

    const QStringList& filePaths() const { return m_fields.filePaths; }
    const std::optional<QString>& sourceBundleID() const { return m_fields.sourceBundleID; }
    const std::optional<QString>& sourceAppName() const { return m_fields.sourceAppName; }
    const QDateTime& createdAt() const { return m_fields.createdAt; }
    bool isPinned() const { return m_fields.isPinned; }
    const QString& contentHash() const { return m_fields.contentHash; }

    /// What kindRaw() says; text where it says nothing known.
    Kind kind() const;

    QList<QUrl> fileURLs() const;

    /// What a search looks through: the text, the source application's name, the file names.
    QString searchText() const;

    /// The size of the image in bytes, without reading it; 0 where there is none.
    qint64 imageBytes() const { return m_fields.imageData ? m_fields.imageData->size() : 0; }

    /// The size of a text that is read from a file; 0 where it is at hand.
    qint64 longTextBytes() const { return m_fields.longText ? m_fields.longText->size() : 0; }

    /// Functions that yield the content in UTF-8 or PNG, also after the item was deleted. Null
    /// where there is none.
    std::function<QByteArray()> textSource() const;
    std::function<QByteArray()> imageSource() const;

private:
    friend class ClipContext;

    Fields m_fields;
};

} // namespace quillet

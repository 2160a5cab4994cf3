#pragma once

#include "clipboard/ClipItem.h"

namespace quillet {

/// What reading the pasteboard produced, before it is an item.
struct Captured {
    ClipItem::Kind kind = ClipItem::Kind::text;
    std::optional<QString> text;
    QByteArray utf8; ///< the same text encoded
    std::optional<QByteArray> imageData;
    QStringList filePaths;
    QString hash;

    // Each makes a record of one kind of content, or nothing where the bytes hold none of it. They
    // only use what they are given, so large content may be worked on off the main thread.
    static std::optional<Captured> fromUriList(const QByteArray& bytes);
    static std::optional<Captured> fromPng(const QByteArray& bytes);
    static std::optional<Captured> fromTiff(const QByteArray& bytes);
    static std::optional<Captured> fromText(const QByteArray& bytes);
};

/// The kind of a text that is not blank: a colour code, one web address, or any other text.
ClipItem::Kind classify(QStringView text);

/// SHA-256 of the bytes in lower-case hexadecimal digits.
QString contentHash(QByteArrayView bytes);

} // namespace quillet

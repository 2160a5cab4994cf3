#pragma once

#include <QString>
#include <QStringDecoder>

namespace quillet {

/// Text from UTF-8. Invalid sequences become U+FFFD; NUL and a leading U+FEFF are text like any
/// other, so that valid UTF-8 comes back from toUtf8() byte by byte.
inline QString decodeUtf8(QByteArrayView bytes) {
    QStringDecoder decoder(QStringConverter::Utf8, QStringConverter::Flag::ConvertInitialBom |
                                                       QStringConverter::Flag::Stateless);
    return decoder(bytes);
}

} // namespace quillet

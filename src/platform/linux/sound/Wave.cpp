#include "platform/linux/sound/Wave.h"

#include <cstring>
#include <QtEndian>

namespace quillet {

namespace {

constexpr qsizetype chunkHeader = 8;

/// The body of the first RIFF chunk of this kind; empty where there is none or it is cut short.
QByteArrayView chunk(QByteArrayView chunks, const char* kind) {
    while (chunks.size() >= chunkHeader) {
        const qsizetype size = qFromLittleEndian<quint32>(chunks.data() + 4);
        const QByteArrayView body = chunks.sliced(chunkHeader);
        if (size > body.size())
            return {};
        if (chunks.startsWith(kind))
            return body.first(size);
        chunks = body.sliced(std::min(size + size % 2, body.size()));
    }
    return {};
}

} // namespace

std::optional<std::span<const qint16>> waveSamples(QByteArrayView file) {
    if (!file.startsWith("RIFF") || file.size() < 12 || !file.sliced(8).startsWith("WAVE"))
        return std::nullopt;
    const QByteArrayView format = chunk(file.sliced(12), "fmt ");
    const QByteArrayView data = chunk(file.sliced(12), "data");
    if (format.size() < 16 || data.isEmpty())
        return std::nullopt;
    const auto field = [&](qsizetype offset) {
        return qFromLittleEndian<quint16>(format.data() + offset);
    };
    const bool known = field(0) == 1 && field(2) == 1 && field(14) == 16 &&
                       qFromLittleEndian<quint32>(format.data() + 4) == sampleRate;
    const bool aligned = reinterpret_cast<quintptr>(data.data()) % alignof(qint16) == 0;
    if (!known || !aligned)
        return std::nullopt;
    return std::span(reinterpret_cast<const qint16*>(data.data()),
                     static_cast<std::size_t>(data.size()) / sizeof(qint16));
}

} // namespace quillet

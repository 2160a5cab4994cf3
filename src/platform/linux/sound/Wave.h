#pragma once

#include <optional>
#include <QByteArrayView>
#include <span>

namespace quillet {

/// Samples a second. There is one rate only, as there is only the synthesizer to make sounds.
inline constexpr int sampleRate = 44100;

/// The samples inside a WAV file; absent when it is anything but 16-bit mono PCM at sampleRate.
/// They stay where they are, so `file` must outlive the span.
std::optional<std::span<const qint16>> waveSamples(QByteArrayView file);

} // namespace quillet

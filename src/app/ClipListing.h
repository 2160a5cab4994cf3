#pragma once

#include "clipboard/ClipContext.h"

namespace quillet {

/// Copies of clips at one moment, newest first. Any thread may list them.
using ClipSnapshot = std::vector<ClipItem>;

/// A JSON array, text in full.
QByteArray clipsAsJson(const ClipSnapshot& clips);

/// One line for each clip: number, pin, kind, beginning of the content, source, time.
QByteArray clipsAsLines(const ClipSnapshot& clips);

} // namespace quillet

#pragma once

#include "clipboard/ClipContext.h"

namespace quillet {

/// A clip list as JSON array, text in full; `limit` counts from the newest.
QByteArray clipsAsJson(const ClipItems& clips, size_t limit);

/// One line for each clip: number, pin, kind, beginning of the content, source, time.
QByteArray clipsAsLines(const ClipItems& clips, size_t limit);

} // namespace quillet

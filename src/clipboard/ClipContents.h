#pragma once

#include "clipboard/ClipItem.h"
#include "platform/Pasteboard.h"

namespace quillet {

/// What an item puts on the pasteboard. With `plainText` nothing but the text or the paths; images
/// have no plain form. The contents do not need the item any more.
PasteboardContents pasteboardContents(const ClipItem& item, bool plainText);

} // namespace quillet

#include "clipboard/ClipboardLog.h"

namespace quillet {

Q_LOGGING_CATEGORY(logClipboard, "quillet.clipboard", QtWarningMsg)

} // namespace quillet

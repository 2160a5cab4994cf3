#include "shelf/ShelfLog.h"

namespace quillet {

Q_LOGGING_CATEGORY(logShelf, "quillet.shelf", QtWarningMsg)

} // namespace quillet

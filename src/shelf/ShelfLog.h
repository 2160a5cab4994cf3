#pragma once

#include <QLoggingCategory>

namespace quillet {

Q_DECLARE_LOGGING_CATEGORY(logShelf)

} // namespace quillet

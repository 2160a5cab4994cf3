#pragma once

#include <QLoggingCategory>

namespace quillet {

Q_DECLARE_LOGGING_CATEGORY(logApp)

/// Only warnings and worse unless QT_LOGGING_RULES says otherwise.
void keepLogQuiet();

} // namespace quillet

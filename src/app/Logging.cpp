#include "app/Logging.h"

using namespace Qt::StringLiterals;

namespace quillet {

Q_LOGGING_CATEGORY(logApp, "quillet.app", QtWarningMsg)

void keepLogQuiet() {
    QLoggingCategory::setFilterRules(u"*.debug=false\n*.info=false"_s);
}

} // namespace quillet

#include "app/Identity.h"

namespace quillet {

QString Identity::version() {
    return QStringLiteral(QUILLET_VERSION);
}

QByteArray Identity::versionLine() {
    return "quillet " QUILLET_VERSION "\n";
}

} // namespace quillet

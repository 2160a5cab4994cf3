#pragma once

#include "platform/Preferences.h"

namespace quillet {

/// Preferences that end with the process.
class MemoryPreferences : public Preferences {
protected:
    void persist(const QVariantMap&) override {}
};

} // namespace quillet

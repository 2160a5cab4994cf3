#pragma once

#include "platform/Access.h"

#include <set>

namespace quillet {

/// Grants what a test says; everything to begin with.
class MemoryAccess : public Access {
public:
    bool isGranted(Kind kind) const override { return granted.contains(kind); }

    std::set<Kind> granted{Kind::screenRecording, Kind::accessibility};
};

} // namespace quillet

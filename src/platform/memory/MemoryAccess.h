#pragma once

#include "platform/Access.h"

#include <set>
#include <vector>

namespace quillet {

/// Grants what a test says; everything to begin with. Remembers what it was asked.
class MemoryAccess : public Access {
public:
    bool isGranted(Kind kind) const override { return granted.contains(kind); }
    QString cause(Kind kind) const override {
        return isGranted(kind) ? QString() : QStringLiteral("The test does not allow it.");
    }
    bool request(Kind kind) override {
        requested.push_back(kind);
        return isGranted(kind);
    }
    void openSettings(Kind kind) override { settingsOpened.push_back(kind); }

    std::set<Kind> granted{Kind::screenRecording, Kind::accessibility};
    std::vector<Kind> requested;
    std::vector<Kind> settingsOpened;
};

} // namespace quillet

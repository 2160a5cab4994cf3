#pragma once

#include "platform/Power.h"

#include <vector>

namespace quillet {

/// A machine that somebody keeps awake, or nobody. Outlives its assertions.
class MemoryPower : public Power {
public:
    struct Taken {
        AssertionType type;
        QString name;
        bool operator==(const Taken&) const = default;
    };

    std::unique_ptr<Assertion> assertion(AssertionType type, const QString& name) override;
    void sleepDisplay() override { displaySleeps += canSleepDisplay; }
    QString whyNoDisplaySleep() const override {
        return canSleepDisplay ? QString() : QStringLiteral("Not this display.");
    }
    void startScreenSaver() override { ++screenSaverStarts; }

    /// What keeps it awake now, oldest first.
    std::vector<Taken> held() const;

    /// The desktop takes everything back that is held.
    void loseAll();

    bool isAvailable = true;
    bool canSleepDisplay = true;

    std::size_t mostHeld = 0; ///< at any one time
    int displaySleeps = 0;
    int screenSaverStarts = 0;

private:
    class MemoryAssertion;

    std::vector<MemoryAssertion*> m_held;
};

} // namespace quillet

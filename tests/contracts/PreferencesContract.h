#pragma once

#include "platform/Preferences.h"

#include <gtest/gtest.h>
#include <limits>

namespace quillet {

/// What every Preferences promises. A Backend has `preferences()` and `reopen()`, after which
/// preferences() is what the next run of the program would see.
template<typename Backend>
class PreferencesContract : public testing::Test {
protected:
    template<typename T>
    static PreferenceKey<T> key(const char* name, T fallback = {}) {
        return {QString::fromLatin1(name), fallback};
    }

    template<typename T>
    void expectRoundTrip(const T& value) {
        const auto name = this->key("round.trip", T{});
        backend.preferences().set(name, value);
        backend.reopen();
        EXPECT_EQ(backend.preferences().value(name), value);
    }

    Backend backend;
};

TYPED_TEST_SUITE_P(PreferencesContract);

TYPED_TEST_P(PreferencesContract, aDefaultShowsWhileNothingIsStored) {
    Preferences& preferences = this->backend.preferences();
    const auto days = this->key("history.days", 30);
    EXPECT_EQ(preferences.value(days), 0) << "not registered yet";
    preferences.registerDefault(days);
    EXPECT_EQ(preferences.value(days), 30);
    EXPECT_FALSE(preferences.isStored(days.name));
    preferences.set(days, 30);
    EXPECT_TRUE(preferences.isStored(days.name));
    preferences.remove(days.name);
    EXPECT_EQ(preferences.value(days), 30);
    EXPECT_FALSE(preferences.isStored(days.name));
}

TYPED_TEST_P(PreferencesContract, valuesOfEveryTypeOutliveTheRun) {
    this->expectRoundTrip(true);
    this->expectRoundTrip(std::numeric_limits<int>::min());
    this->expectRoundTrip(std::numeric_limits<qint64>::max());
    this->expectRoundTrip(0.1);
    this->expectRoundTrip(3.0);
    this->expectRoundTrip(QStringLiteral("Grüße 🦉\n\"\\"));
    this->expectRoundTrip(QStringList{QStringLiteral("a"), QString(), QStringLiteral("c")});
    this->expectRoundTrip(QStringList());
    this->expectRoundTrip(QByteArray("\0\xff\x80{}", 5));
    this->expectRoundTrip(QByteArray());
}

TYPED_TEST_P(PreferencesContract, aValueOfAnotherTypeIsConvertedWhereThatMakesSense) {
    const auto converted = [&]<typename T>(const auto& stored, T) {
        this->backend.preferences().set(this->key("any", stored), stored);
        this->backend.reopen();
        return this->backend.preferences().value(this->key("any", T{}));
    };
    EXPECT_EQ(converted(QStringLiteral("42"), int{}), 42);
    EXPECT_EQ(converted(QStringLiteral("many"), int{}), 0);
    EXPECT_EQ(converted(4294967297.0, int{}), std::numeric_limits<int>::max());
    EXPECT_EQ(converted(1, bool{}), true);
    EXPECT_EQ(converted(1, double{}), 1.0);
    EXPECT_EQ(converted(QStringList(QStringLiteral("1")), int{}), 0);
    EXPECT_EQ(converted(0.5, QStringList{}), QStringList());
}

TYPED_TEST_P(PreferencesContract, observersHearEveryWriteUntilTheyLetGo) {
    Preferences& preferences = this->backend.preferences();
    const auto flag = this->key("flag", false);
    int heard = 0;
    auto observation = preferences.observe([&] { ++heard; });
    preferences.set(flag, true);
    preferences.set(flag, true);
    preferences.remove(flag.name);
    EXPECT_EQ(heard, 3);

    // A handler may write, and may end observations, its own among them.
    Preferences::Observation selfish = preferences.observe([&] {
        observation.reset();
        selfish.reset();
        preferences.set(flag, false);
    });
    preferences.set(flag, true);
    EXPECT_EQ(heard, 4);
    EXPECT_FALSE(preferences.value(flag));
}

REGISTER_TYPED_TEST_SUITE_P(PreferencesContract, aDefaultShowsWhileNothingIsStored,
                            valuesOfEveryTypeOutliveTheRun,
                            aValueOfAnotherTypeIsConvertedWhereThatMakesSense,
                            observersHearEveryWriteUntilTheyLetGo);

} // namespace quillet

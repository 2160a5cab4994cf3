#pragma once

#include "platform/Pasteboard.h"

#include <gtest/gtest.h>
#include <optional>
#include <utility>

namespace quillet {

/// What every Pasteboard promises. A Backend has
/// - `pasteboard()`;
/// - `copyElsewhere(items)`: another program copies these pairs of type and bytes;
/// - `pasteElsewhere(type)`: what another program gets, an optional QByteArray;
/// - `holdAnswers()`: the other program's later copies are offered, but not delivered;
/// - `quitElsewhere()`: that program is gone, and its content with it;
/// - `waitFor(condition)`: gives all that is under way the time to arrive; whether it did.
template<typename Backend>
class PasteboardContract : public testing::Test {
protected:
    using Items = std::vector<std::pair<QString, QByteArray>>;

    static PasteboardContents textContents(const QByteArray& text) {
        return {{PasteboardType::string, [text] { return text; }}};
    }

    void copyElsewhere(const Items& items) {
        const qint64 before = backend.pasteboard().changeCount();
        backend.copyElsewhere(items);
        ASSERT_TRUE(backend.waitFor([&] { return backend.pasteboard().changeCount() > before; }));
    }

    PasteboardReading read(const QString& type, qint64 maxBytes = 1 << 20) {
        std::optional<PasteboardReading> result;
        backend.pasteboard().read(type, maxBytes,
                                  [&](PasteboardReading reading) { result = reading; });
        EXPECT_TRUE(backend.waitFor([&] { return result.has_value(); }));
        return result.value_or(PasteboardReading{});
    }

    Backend backend;
};

TYPED_TEST_SUITE_P(PasteboardContract);

TYPED_TEST_P(PasteboardContract, aCopyElsewhereIsToldWithItsTypesAndReadOnDemand) {
    Pasteboard& pasteboard = this->backend.pasteboard();
    qint64 told = -1;
    QStringList types;
    pasteboard.onChange = [&] {
        told = pasteboard.changeCount();
        types = pasteboard.types();
    };
    const qint64 before = pasteboard.changeCount();
    this->copyElsewhere(
        {{PasteboardType::url, "https://example.org/"}, {PasteboardType::string, "example"}});
    EXPECT_GT(told, before);
    EXPECT_GE(types.indexOf(PasteboardType::url), 0);
    EXPECT_GT(types.indexOf(PasteboardType::string), types.indexOf(PasteboardType::url));

    EXPECT_EQ(this->read(PasteboardType::string).bytes, "example");
    EXPECT_EQ(this->read(PasteboardType::string, 7).outcome, PasteboardReading::Outcome::data);
    EXPECT_EQ(this->read(PasteboardType::string, 6).outcome, PasteboardReading::Outcome::tooLarge);
    EXPECT_EQ(this->read(PasteboardType::tiff).outcome, PasteboardReading::Outcome::absent);
}

TYPED_TEST_P(PasteboardContract, whatWeWriteIsPastedElsewhereAndToldOnce) {
    Pasteboard& pasteboard = this->backend.pasteboard();
    int told = 0;
    pasteboard.onChange = [&] { ++told; };
    const qint64 before = pasteboard.changeCount();
    ASSERT_TRUE(pasteboard.write({{PasteboardType::png, [] { return QByteArray("png bytes"); }},
                                  {PasteboardType::string, [] { return QByteArray("Grüße"); }}}));
    EXPECT_GT(pasteboard.changeCount(), before);
    EXPECT_EQ(pasteboard.types(), QStringList({PasteboardType::png, PasteboardType::string}));
    EXPECT_EQ(this->backend.pasteElsewhere(PasteboardType::string), QByteArray("Grüße"));
    EXPECT_EQ(this->backend.pasteElsewhere(PasteboardType::png), QByteArray("png bytes"));
    EXPECT_EQ(this->backend.pasteElsewhere(PasteboardType::url), std::nullopt);
    EXPECT_EQ(this->read(PasteboardType::string).bytes, "Grüße");
    EXPECT_EQ(told, 1);
    EXPECT_EQ(pasteboard.changeCount(), before + 1);
}

TYPED_TEST_P(PasteboardContract, aNewerChangeCancelsAReadBeforeTheCountRises) {
    Pasteboard& pasteboard = this->backend.pasteboard();
    this->backend.holdAnswers();
    this->copyElsewhere({{PasteboardType::string, "old"}});
    const qint64 oldCount = pasteboard.changeCount();
    int answers = 0;
    pasteboard.read(PasteboardType::string, 100, [&](PasteboardReading reading) {
        ++answers;
        EXPECT_EQ(reading.outcome, PasteboardReading::Outcome::cancelled);
        EXPECT_EQ(pasteboard.changeCount(), oldCount);
    });
    EXPECT_EQ(answers, 0);
    pasteboard.write(this->textContents("new"));
    EXPECT_EQ(answers, 1);
    EXPECT_GT(pasteboard.changeCount(), oldCount);
}

TYPED_TEST_P(PasteboardContract, whatAVanishedProgramLeftCanBeKeptButNothingIsTakenFromALivingOne) {
    Pasteboard& pasteboard = this->backend.pasteboard();
    int gone = 0;
    pasteboard.onOwnerGone = [&] { ++gone; };
    this->copyElsewhere({{PasteboardType::string, "theirs"}});
    const qint64 count = pasteboard.changeCount();
    const QStringList types = pasteboard.types();
    EXPECT_FALSE(pasteboard.keep(this->textContents("stolen")));
    EXPECT_EQ(this->read(PasteboardType::string).bytes, "theirs");

    this->backend.quitElsewhere();
    ASSERT_TRUE(this->backend.waitFor([&] { return gone > 0; }));
    EXPECT_TRUE(pasteboard.keep(this->textContents("theirs")));
    EXPECT_EQ(pasteboard.changeCount(), count);
    EXPECT_EQ(pasteboard.types(), types);
    EXPECT_EQ(this->backend.pasteElsewhere(PasteboardType::string), QByteArray("theirs"));
    EXPECT_FALSE(pasteboard.keep(this->textContents("again"))) << "we own it now";
}

REGISTER_TYPED_TEST_SUITE_P(PasteboardContract, aCopyElsewhereIsToldWithItsTypesAndReadOnDemand,
                            whatWeWriteIsPastedElsewhereAndToldOnce,
                            aNewerChangeCancelsAReadBeforeTheCountRises,
                            whatAVanishedProgramLeftCanBeKeptButNothingIsTakenFromALivingOne);

} // namespace quillet

#include "desktop/ClipboardDesktop.h"
#include "support/SamplePictures.h"
#include "support/StallProbe.h"
#include "support/XClient.h"

#include <csignal>

namespace quillet {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::ElementsAre;
using enum Offer::Manner;
using enum Offer::Ending;

/// Every test begins with one clip in the history, which no fault may cost.
struct FaultsDesktop : ClipboardDesktop {
    void SetUp() override {
        ClipboardDesktop::SetUp();
        // Under the sanitizer, freed memory must not count as memory that is held.
        ASSERT_TRUE(quillet.start({u"ASAN_OPTIONS=quarantine_size_mb=8"_s}));
        FakeOwner owner(display());
        owner.own(textOffers("kept"));
        ASSERT_THAT(historyOnceNewestIs("kept"), ElementsAre("kept"));
    }
};

Offer text(Offer offer) {
    offer.target = "UTF8_STRING";
    return offer;
}

const QByteArray digits = QByteArray("0123456789").repeated(30'000);

TEST_F(FaultsDesktop, aBadOwnerCostsNothingButItsOwnCopy) {
    const std::vector<std::pair<const char*, Offer>> cases{
        {"never says what it has", {.target = "TARGETS", .manner = ignored}},
        {"refuses to say what it has", {.target = "TARGETS", .manner = refused}},
        {"lists nonsense", {.target = "TARGETS", .bytes = "\1\2\3\4\5"}},
        {"never delivers", text({.manner = ignored})},
        {"refuses", text({.manner = refused})},
        {"stops", text({.bytes = digits, .manner = incremental, .chunks = 2, .ending = stalls})},
        {"dies", text({.bytes = digits, .manner = incremental, .chunks = 2, .ending = dies})},
        {"trickles", text({.bytes = digits, .manner = incremental, .chunk = 10, .pause = 5ms})},
        {"offers nonsense as TIFF", {.target = "image/tiff", .bytes = "II*"}},
    };
    for (const auto& [behaviour, offer] : cases) {
        SCOPED_TRACE(behaviour);
        FakeOwner owner(display());
        owner.own({offer});
        StallProbe probe(session().busAddress());
        EXPECT_THAT(historyAfterMarker(), ElementsAre("kept"));
        EXPECT_LE(probe.longest(), 500ms);
    }
}

TEST_F(FaultsDesktop, anOwnerThatLiesAboutTheSizeOrIsSlowIsStillReadToTheEnd) {
    const std::vector<Offer> offers{
        {.bytes = digits + "a", .manner = incremental, .announced = 0},
        {.bytes = digits + "b", .manner = incremental, .announced = 100},
        {.bytes = digits + "c", .manner = incremental, .announced = 1'000'000},
        {.bytes = "late", .pause = 700ms},
    };
    for (const Offer& offer : offers) {
        FakeOwner owner(display());
        owner.own({text(offer)});
        const std::string expected = offer.bytes.toStdString();
        EXPECT_TRUE(historyOnceNewestIs(expected).front() == expected)
            << offer.bytes.right(1).data();
    }
}

TEST_F(FaultsDesktop, aGigabyteOfTextIsRefusedWithoutBeingHeld) {
    const qint64 before = quillet.processFigure(u"status"_s, "VmHWM:");
    ASSERT_GT(before, 0);
    for (const uint32_t announced : {1u << 30, 0u}) {
        SCOPED_TRACE(announced);
        FakeOwner owner(display());
        owner.own({text({.bytes = QByteArray(1 << 20, 'x'),
                         .manner = incremental,
                         .announced = announced,
                         .repeat = 1024,
                         .chunk = 1 << 20})});
        ASSERT_TRUE(eventually([&] { return owner.requests("UTF8_STRING") > 0; }));
        EXPECT_THAT(historyAfterMarker(), ElementsAre("kept"));
    }
    EXPECT_LT(quillet.processFigure(u"status"_s, "VmHWM:") - before, 100 * 1024);
}

TEST_F(FaultsDesktop, oddContentsAreServedAsTheyCame) {
    const QByteArray png = pngOf(sampleScreenshot({64, 64}));
    const Offer offers[]{text({.bytes = QByteArray("nul\0inside", 10)}),
                         text({.bytes = QByteArray(1'000'000, 'l')}),
                         text({.bytes = "\xef\xbb\xbfwith a mark\r\nb\rc\n"}),
                         {.target = "image/png", .bytes = png.chopped(png.size() / 2)}};
    for (const Offer& offer : offers) {
        FakeOwner owner(display());
        const auto before = quillet.clips().size();
        owner.own({offer});
        ASSERT_TRUE(eventually([&] { return quillet.clips().size() > before; }));
        EXPECT_TRUE(quillet.content(1) == offer.bytes) << offer.bytes.left(20).constData();
        copyBack(1);
        EXPECT_TRUE(FakeRequestor(display()).read(offer.target) == offer.bytes);
    }
    EXPECT_FALSE(FakeRequestor(display()).read("image/tiff"));
}

TEST_F(FaultsDesktop, readingAndServingALargePictureNeverHoldsUpTheProgram) {
    // Other programs' load also makes an answer late, so the best of a few tries counts.
    auto reading = 1'000ms;
    auto serving = 1'000ms;
    for (quint32 attempt = 0; attempt < 5 && std::max(reading, serving) > 50ms; ++attempt) {
        const QByteArray png = pngOfSize(20 << 20, attempt);
        const auto before = quillet.clips().size();
        StallProbe readingProbe(session().busAddress());
        const auto owner = copy(png, u"image/png"_s);
        ASSERT_TRUE(eventually([&] { return quillet.clips().size() > before; }));
        reading = std::min(reading, readingProbe.longest());

        copyBack(1);
        StallProbe servingProbe(session().busAddress());
        EXPECT_TRUE(FakeRequestor(display()).read("image/png") == png);
        serving = std::min(serving, servingProbe.longest());
    }
    EXPECT_LE(reading, 50ms);
    EXPECT_LE(serving, 50ms);
}

/// A clipboard manager that never takes over what a program that ends has on the clipboard.
TEST_F(FaultsDesktop, aStartDuringALongEndRunsAfterIt) {
    quillet.quit();
    XClient manager(display());
    xcb_set_selection_owner(manager.connection(), manager.window(),
                            manager.atom("CLIPBOARD_MANAGER"), XCB_CURRENT_TIME);
    xcb_flush(manager.connection());
    ASSERT_TRUE(quillet.start());
    copyBack(1);
    ASSERT_EQ(kill(static_cast<pid_t>(quillet.pid()), SIGTERM), 0);
    ASSERT_TRUE(manager.wait(
        [](const auto& event) { return eventType(event) == XCB_SELECTION_REQUEST; }, 5s));

    const auto next = session().start(QStringLiteral(QUILLET_PROGRAM), {});
    EXPECT_TRUE(eventually([this] { return !quillet.isRunning(); }));
    EXPECT_TRUE(eventually([this] { return quillet.verb({u"status"_s}).exitCode == 0; }));
}

} // namespace
} // namespace quillet

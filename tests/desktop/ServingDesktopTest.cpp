#include "desktop/ClipboardDesktop.h"
#include "support/SamplePictures.h"

#include <future>

namespace quillet {
namespace {

using namespace Qt::StringLiterals;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;
using Content = std::optional<QByteArray>;

struct ServingDesktop : ClipboardDesktop {
    void SetUp() override {
        ClipboardDesktop::SetUp();
        ASSERT_TRUE(quillet.start());
    }

    /// Has the content recorded by a copy whose owner is gone afterwards, and its place taken.
    void record(const QByteArray& bytes, const QString& target) {
        const auto before = quillet.clips().size();
        auto owner = copy(bytes, target);
        ASSERT_TRUE(eventually([&] { return quillet.clips().size() > before; }));
        owner.reset();
        ASSERT_TRUE(eventually([&] { return !targets().empty(); }));
    }

    Content paste(const QByteArray& target) { return FakeRequestor(display()).read(target); }
    std::vector<QByteArray> targets() { return FakeRequestor(display()).targets(); }
};

QImage pixels(const QByteArray& bytes) {
    return QImage::fromData(bytes).convertToFormat(QImage::Format_RGB32);
}

TEST_F(ServingDesktop, aClipPutBackIsServedUnderEveryNameProgramsKnow) {
    const QByteArray link = "https://example.org/a?b=c";
    const QByteArray files = "file:///tmp/a%20b%23.txt\r\nfile:///tmp/%E4%B8%96.png\r\n";
    const QByteArray png = pngOf(sampleScreenshot({640, 480}));
    struct Case {
        QString target;
        QByteArray copied;
        std::vector<std::pair<QByteArray, QByteArray>> served;
        std::pair<QByteArray, QByteArray> servedPlain;
        QByteArray notServedPlain;
    };
    const Case cases[]{
        {u"UTF8_STRING"_s,
         "grüße\n",
         {{"UTF8_STRING", "grüße\n"},
          {"text/plain;charset=utf-8", "grüße\n"},
          {"STRING", "gr\xfc\xdf\x65\n"}},
         {"UTF8_STRING", "grüße\n"},
         "text/html"},
        {u"UTF8_STRING"_s, link, {{"UTF8_STRING", link}}, {"STRING", link}, "text/x-moz-url"},
        {u"text/uri-list"_s,
         files,
         {{"text/uri-list", files},
          {"x-special/gnome-copied-files",
           "copy\nfile:///tmp/a%20b%23.txt\nfile:///tmp/%E4%B8%96.png"},
          {"application/x-kde-cutselection", "0"}},
         {"UTF8_STRING", "/tmp/a b#.txt\n/tmp/世.png"},
         "text/uri-list"},
        {u"image/png"_s, png, {{"image/png", png}}, {"image/png", png}, "UTF8_STRING"},
    };
    FakeOwner other(display());
    for (const Case& each : cases) {
        SCOPED_TRACE(each.copied.left(40).toStdString());
        record(each.copied, each.target);
        other.own(textOffers("something else"));
        EXPECT_EQ(historyOnceNewestIs("something else").front(), "something else");
        copyBack(2);
        EXPECT_FALSE(other.ownsClipboard());
        for (const auto& [target, bytes] : each.served)
            EXPECT_TRUE(paste(target) == bytes) << target.constData();
        copyBack(1, {u"--plain"_s});
        EXPECT_TRUE(paste(each.servedPlain.first) == each.servedPlain.second);
        EXPECT_THAT(targets(), Not(Contains(each.notServedPlain)));
    }
}

TEST_F(ServingDesktop, requestsAreAnsweredByTheLetter) {
    const QByteArray png = pngOf(sampleScreenshot({160, 90}));
    record("text", u"UTF8_STRING"_s);
    record(png, u"image/png"_s);
    copyBack(1);
    EXPECT_EQ(pixels(paste("image/tiff").value_or("")), pixels(png));
    copyBack(2);
    EXPECT_THAT(targets(), testing::IsSupersetOf({"TARGETS", "TIMESTAMP", "MULTIPLE"}));
    FakeRequestor requestor(display());
    EXPECT_EQ(requestor.read("TIMESTAMP").value_or("").size(), 4);
    EXPECT_FALSE(requestor.read("image/png"));
    EXPECT_THAT(requestor.readTogether({"UTF8_STRING", "image/png", "STRING"}),
                ElementsAre(Content("text"), Content(), Content("text")));
}

TEST_F(ServingDesktop, aQtProgramUnderstandsUsAndWeIt) {
    const QString client = QStringLiteral(QUILLET_DESKTOP_CLIENT);
    const QByteArray png = pngOf(sampleScreenshot({300, 200}));
    for (const auto& [what, content] :
         {std::pair{u"text"_s, QByteArray("grüße\nworld")}, {u"image"_s, png}}) {
        SCOPED_TRACE(what.toStdString());
        const auto before = quillet.clips().size();
        const auto owner = session().start(client, {u"set"_s, what});
        owner->write(content);
        owner->closeWriteChannel();
        owner->waitForBytesWritten();
        ASSERT_TRUE(eventually([&] { return quillet.clips().size() > before; }));

        copyBack(1);
        const QByteArray got = session().run(client, {u"get"_s, what}).output;
        EXPECT_TRUE(what == u"image"_s ? pixels(got) == pixels(png) : got == content);
    }
}

TEST_F(ServingDesktop, whatAVanishedProgramCopiedCanStillBePasted) {
    for (const auto& [target, bytes] :
         {std::pair{u"UTF8_STRING"_s, QByteArray("grüße ").repeated(50'000)},
          {u"text/uri-list"_s, QByteArray("file:///tmp/a%20b\r\n")},
          {u"image/png"_s, pngOfSize(2 << 20)}}) {
        SCOPED_TRACE(target.toStdString());
        record(bytes, target);
        const QJsonArray listed = quillet.clips();
        ASSERT_TRUE(eventually([&] { return paste(target.toLatin1()) == bytes; }));
        letItBeNoticed();
        EXPECT_EQ(quillet.clips(), listed);
    }
}

TEST_F(ServingDesktop, theClipboardIsNotTakenFromALivingOwnerNorFromACopyUnderWay) {
    auto first = std::make_unique<FakeOwner>(display());
    first->own(textOffers("first"));
    historyOnceNewestIs("first");
    EXPECT_TRUE(first->ownsClipboard());
    // A program copies as of the key press, however long it takes to come round to it.
    FakeOwner second(display());
    const xcb_timestamp_t keyPress = second.now();
    first.reset();
    ASSERT_TRUE(eventually([&] { return paste("UTF8_STRING") == "first"; }));
    second.own(textOffers("second"), keyPress);
    EXPECT_TRUE(second.ownsClipboard());
    EXPECT_EQ(historyOnceNewestIs("second").front(), "second");
}

TEST_F(ServingDesktop, aProgramThatQuitsHandsItsContentOver) {
    const QByteArray html = QByteArray("<b>bold</b>").repeated(100'000);
    auto offers = textOffers("bold");
    offers.push_back({.target = "text/html", .bytes = html, .manner = Offer::Manner::incremental});
    for (const auto& list : {std::vector<QByteArray>{"UTF8_STRING", "text/html"}, {}}) {
        FakeOwner editor(display());
        editor.own(offers);
        EXPECT_TRUE(editor.handOver(list));
        editor.die();
        ASSERT_TRUE(eventually([&] { return paste("UTF8_STRING") == "bold"; }));
        EXPECT_TRUE(paste("text/html") == html);
    }
    EXPECT_THAT(historyAfterMarker(), ElementsAre("bold"));

    FakeOwner vault(display());
    offers.push_back({.target = "x-kde-passwordManagerHint", .bytes = "secret"});
    vault.own(offers);
    EXPECT_FALSE(vault.handOver({"UTF8_STRING"}));
    EXPECT_EQ(vault.requests("UTF8_STRING"), 0);
}

TEST_F(ServingDesktop, oneReaderThatDiesOrSleepsDoesNotDisturbTheOthers) {
    const QByteArray png = pngOfSize(60 << 20);
    record(png, u"image/png"_s);
    copyBack(1);
    const auto readAll = [&png] { return FakeRequestor(display()).read("image/png") == png; };
    auto first = std::async(std::launch::async, readAll);
    auto second = std::async(std::launch::async, readAll);
    FakeRequestor sleeper(display());
    EXPECT_TRUE(sleeper.readPartOf("image/png", 1 << 20));
    EXPECT_TRUE(FakeRequestor(display()).readPartOf("image/png", 5 << 20));
    EXPECT_TRUE(first.get());
    EXPECT_TRUE(second.get());
    EXPECT_TRUE(readAll());
}

} // namespace
} // namespace quillet

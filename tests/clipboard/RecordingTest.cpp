#include "clipboard/ClipboardPreferences.h"
#include "imaging/Bitmap.h"
#include "imaging/Png.h"
#include "support/World.h"

#include <gtest/gtest.h>

namespace quillet {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Kind = ClipItem::Kind;
using Outcome = PasteboardReading::Outcome;

namespace {

QByteArray somePng(int width = 12) {
    QImage image(width, 9, QImage::Format_RGB32);
    image.fill(Qt::darkCyan);
    return encodePng(image);
}

class RecordingTest : public testing::Test {
protected:
    World world;
    const QString png = PasteboardType::png;
    const QString tiff = PasteboardType::tiff;
    const QString string = PasteboardType::string;
    const QString files = PasteboardType::fileURL;
};

} // namespace

TEST_F(RecordingTest, aCopyIsRecordedWithItsSourceAndTheCopySound) {
    world.workspace.setFrontmost(RunningApplication{u"org.example.Editor"_s, u"Editor"_s, 42});
    world.pasteboard.copyText(u" hello\n"_s);
    EXPECT_TRUE(world.store->items().empty()) << "only a tick of the poll records";
    world.letPoll();
    ASSERT_EQ(world.store->items().size(), 1u);
    const ClipItem& item = *world.newest();
    EXPECT_EQ(item.text(), u" hello\n"_s);
    EXPECT_EQ(item.kindRaw(), u"text"_s);
    EXPECT_EQ(item.sourceBundleID(), u"org.example.Editor"_s);
    EXPECT_EQ(item.sourceAppName(), u"Editor"_s);
    EXPECT_FALSE(item.isPinned());
    EXPECT_FALSE(item.imageData());
    EXPECT_EQ(world.soundsPlayed(), 1u);
}

TEST_F(RecordingTest, copyingTheSameTextTwiceKeepsOneItemAtTheTop) {
    world.copy(u"a"_s);
    world.copy(u"b"_s);
    world.store->togglePin(world.store->items().back());
    world.workspace.setFrontmost(RunningApplication{u"other"_s, u"Other"_s, 1});
    world.copy(u"a"_s);
    EXPECT_EQ(world.texts(), QStringList({u"a"_s, u"b"_s}));
    EXPECT_EQ(world.soundsPlayed(), 3u);
    EXPECT_TRUE(world.newest()->isPinned());
    EXPECT_FALSE(world.newest()->sourceAppName()) << "the source is that of the first copy";

    world.copy(u"a "_s);
    EXPECT_EQ(world.store->items().size(), 3u);
}

TEST_F(RecordingTest, whatIsOnThePasteboardAtLaunchIsNeverRecorded) {
    world.quit();
    world.pasteboard.copyText(u"before"_s);
    world.launch();
    EXPECT_TRUE(world.store->items().empty());
}

TEST_F(RecordingTest, copiesMadeWhileRecordingIsOffAreConsumed) {
    world.preferences.set(ClipboardPreferences::enabled, false);
    world.copy(u"secret"_s);
    world.preferences.set(ClipboardPreferences::enabled, true);
    world.letPoll();
    EXPECT_TRUE(world.store->items().empty());
    world.copy(u"open"_s);
    EXPECT_EQ(world.texts(), QStringList(u"open"_s));
}

TEST_F(RecordingTest, privateCopiesAreNeitherRecordedNorTransferred) {
    for (const QString& marker : ClipboardStore::privateTypes())
        world.copy({{marker, "1"}, {string, "secret"}});
    EXPECT_TRUE(world.store->items().empty());
    EXPECT_TRUE(world.pasteboard.typesRead().isEmpty());
    EXPECT_EQ(world.soundsPlayed(), 0u);
}

TEST_F(RecordingTest, copiesOfIgnoredApplicationsAreLeftAlone) {
    for (const QString& id : {u"com.bitwarden.desktop"_s, u"keepassxc"_s}) {
        world.workspace.setFrontmost(RunningApplication{id, u"Vault"_s, 7});
        world.copy(u"secret"_s);
    }
    EXPECT_TRUE(world.store->items().empty());
    EXPECT_TRUE(world.pasteboard.typesRead().isEmpty());

    // What counts is who is frontmost at the poll, not who was at the copy.
    world.pasteboard.copyText(u"late"_s);
    world.workspace.setFrontmost(RunningApplication{u"org.example.Editor"_s, u"Editor"_s, 42});
    world.letPoll();
    EXPECT_EQ(world.texts(), QStringList(u"late"_s));
    EXPECT_EQ(world.newest()->sourceAppName(), u"Editor"_s);
}

TEST_F(RecordingTest, filesComeBeforeImagesAndImagesBeforeText) {
    world.copy({{string, "x"}, {png, somePng()}, {files, "file:///x"}});
    EXPECT_EQ(world.newest()->kind(), Kind::file);
    EXPECT_EQ(world.pasteboard.typesRead(), QStringList(files)) << "nothing else is transferred";

    world.copy({{string, "x"}, {tiff, "broken"}, {png, somePng()}});
    EXPECT_EQ(world.newest()->kind(), Kind::image);
    EXPECT_EQ(world.newest()->imageData(), somePng());
    EXPECT_EQ(world.newest()->contentHash(), contentHash(somePng()));

    world.copy({{string, "text"}, {tiff, tiffData(*decodeImage(somePng()))}});
    EXPECT_EQ(world.newest()->kind(), Kind::image);
    EXPECT_EQ(world.store->items().size(), 2u) << "the PNG made from the TIFF is the known one";
}

TEST_F(RecordingTest, aKindThatYieldsNothingGivesWayToTheNext) {
    world.copy({{files, "https://example.com\r\n"}, {string, "https://example.com"}});
    EXPECT_EQ(world.newest()->kind(), Kind::link);
    world.copy({{tiff, QByteArray(100'000, 'x')}, {string, "fallback"}});
    EXPECT_EQ(world.texts().front(), u"fallback"_s);
    world.copy({{png, ""}, {string, "#00ff00"}});
    EXPECT_EQ(world.newest()->kind(), Kind::color);

    world.copy({{u"text/html"_s, "<b>rich</b>"}, {string, " \n"}});
    EXPECT_EQ(world.store->items().size(), 3u);
    EXPECT_EQ(world.soundsPlayed(), 3u);
}

TEST_F(RecordingTest, whatIsTooLargeOrTooSlowIsNotRecordedAtAll) {
    world.preferences.set(ClipboardPreferences::maxTextBytes, 5);
    world.copy({{png, somePng()}});
    world.copy(u"123456"_s);
    EXPECT_EQ(world.store->items().size(), 1u);
    world.copy(u"12345"_s);
    EXPECT_EQ(world.store->items().size(), 2u);

    world.pasteboard.copyFrom({{png, somePng(99)}, {string, "alt"}});
    world.pasteboard.failReads(png, Outcome::timedOut);
    world.letPoll();
    EXPECT_EQ(world.store->items().size(), 2u) << "nor in a poorer kind";
    EXPECT_EQ(world.pasteboard.typesRead().last(), png);
}

TEST_F(RecordingTest, aNewerCopyReplacesTheOneStillBeingDelivered) {
    world.pasteboard.holdReads();
    world.copy(u"slow"_s);
    world.letPoll();
    world.pasteboard.copyText(u"newer"_s);
    world.pasteboard.releaseReads();
    world.letPoll();
    EXPECT_EQ(world.texts(), QStringList(u"newer"_s));
}

TEST_F(RecordingTest, copiesAreRecordedInOrderWhileALargeOneIsWorkedOn) {
    const QString large(300'000, u'x');
    world.pasteboard.copyText(large);
    world.letPoll();
    EXPECT_EQ(world.texts(), QStringList(large));
    EXPECT_EQ(world.newest()->contentHash(), contentHash(large.toUtf8()));

    world.scheduler.holdBackground();
    world.copy(large + u'y');
    world.copy(u"small"_s);
    EXPECT_EQ(world.store->items().size(), 1u);
    world.scheduler.releaseBackground();
    world.letPoll();
    EXPECT_EQ(world.texts(), QStringList({u"small"_s, large + u'y', large}));
}

TEST_F(RecordingTest, aKindTriedLateIsNotTakenFromANewerCopy) {
    world.scheduler.holdBackground();
    world.copy({{tiff, QByteArray(100'000, 'x')}, {string, "old"}});
    world.copy({{u"com.agilebits.onepassword"_s, "1"}, {string, "secret"}});
    world.scheduler.releaseBackground();
    world.letPoll();
    EXPECT_TRUE(world.store->items().empty());
    EXPECT_EQ(world.pasteboard.typesRead(), QStringList(tiff));
}

TEST_F(RecordingTest, thePollSleepsWhileNothingChangesAndKeepsItsGrid) {
    const int wakeUps = world.scheduler.wakeUps();
    world.scheduler.advance(1h);
    EXPECT_EQ(world.scheduler.wakeUps(), wakeUps);

    world.scheduler.advance(390ms);
    const auto start = world.scheduler.now();
    world.pasteboard.copyText(u"x"_s);
    for (int step = 0; step < 60 && world.store->items().empty(); ++step)
        world.scheduler.advance(10ms);
    ASSERT_EQ(world.store->items().size(), 1u);
    EXPECT_LE(start.msecsTo(world.newest()->createdAt()), 400);
    EXPECT_GE(start.msecsTo(world.newest()->createdAt()), 10) << "not at once, out of step";
}

TEST_F(RecordingTest, oddTextSurvivesRecordingAndARelaunchByteByByte) {
    const QByteArray odd("\0a\0\xef\xbb\xbf\xf0\x9f\x98\x80 \r\n", 13);
    const QByteArray line(1'000'000, 'l');
    for (const QByteArray& text : {odd, line, odd + line})
        world.copy({{string, text}});
    world.relaunch();
    ASSERT_EQ(world.store->items().size(), 3u);
    EXPECT_EQ(world.store->items()[2]->text()->toUtf8(), odd);
    EXPECT_EQ(world.store->items()[1]->text()->toUtf8(), line);
    EXPECT_EQ(world.store->items()[0]->text()->toUtf8(), odd + line);
}

} // namespace quillet

#include "app/ClipVerbs.h"
#include "support/World.h"

#include <gmock/gmock.h>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;
using testing::HasSubstr;
using testing::MatchesRegex;

namespace quillet {

/// A history of three clips, newest first: an image (1), files (2), a text with a tail of
/// control characters (3).
class ClipVerbs : public testing::Test {
protected:
    ClipVerbs() {
        world.scheduler.setNow(QDateTime(QDate(2026, 3, 29), QTime(0, 59, 59, 7), Qt::UTC));
        world.workspace.setFrontmost(RunningApplication{u"org.example.Editor"_s, u"Editor"_s, 1});
        world.copy(text);
        world.workspace.setFrontmost({});
        world.copy({{PasteboardType::fileURL, "file:///tmp/%C3%A4%20b.txt\nfile:///tmp/c"}});
        world.copy({{PasteboardType::png, image}});
    }

    VerbResult run(Command command) {
        VerbResult result = runClipVerb(command, *world.store);
        if (result.slowOutput)
            result.output = result.slowOutput();
        return result;
    }

    const QString text = u"one\ttwo%2F%5\x1b[31m\n"_s;
    const QByteArray image = QByteArray("\x89PNG\r\n\x1a\n\0rest", 13);
    World world;
};

TEST_F(ClipVerbs, theJsonListTellsEverythingAboutAClip) {
    const auto json = run({.verb = Verb::clipList, .json = true}).output;
    const QJsonArray clips = QJsonDocument::fromJson(json).array();
    ASSERT_EQ(clips.size(), 3);
    const ClipItem& oldest = *world.store->items()[2];
    EXPECT_EQ(clips.at(2).toObject(),
              (QJsonObject{{u"id"_s, oldest.id().toString(QUuid::WithoutBraces)},
                           {u"kind"_s, u"text"_s},
                           {u"text"_s, text},
                           {u"filePaths"_s, QJsonArray{}},
                           {u"imageBytes"_s, 0},
                           {u"sourceBundleID"_s, u"org.example.Editor"_s},
                           {u"sourceAppName"_s, u"Editor"_s},
                           {u"createdAt"_s, oldest.createdAt().toString(Qt::ISODateWithMs)},
                           {u"isPinned"_s, false},
                           {u"contentHash"_s, contentHash(text.toUtf8())}}));
    EXPECT_THAT(clips.at(2)["createdAt"_L1].toString().toStdString(),
                MatchesRegex("2026-03-29T..:..:..\\....Z"));
    EXPECT_EQ(clips.at(0)["kind"_L1], u"image"_s);
    EXPECT_EQ(clips.at(0)["imageBytes"_L1], 13);
    EXPECT_TRUE(clips.at(0)["text"_L1].isNull());
    EXPECT_EQ(clips.at(1)["filePaths"_L1], (QJsonArray{u"/tmp/ä b.txt"_s, u"/tmp/c"_s}));
}

TEST_F(ClipVerbs, thePlainListHasALineForEachClip) {
    run({.verb = Verb::clipPin, .clip = 3});
    const auto lines = run({.verb = Verb::clipList}).output.split('\n');
    ASSERT_EQ(lines.size(), 4);
    EXPECT_THAT(lines.at(0).toStdString(), HasSubstr("1   image 13 bytes"));
    EXPECT_THAT(lines.at(1).toStdString(), HasSubstr("2   file  /tmp/ä b.txt, /tmp/c"));
    EXPECT_THAT(lines.at(2).toStdString(),
                MatchesRegex("   3 \\* text  one two%2F%5 \\[31m +  Editor  2026-03-.*"));
    EXPECT_EQ(run({.verb = Verb::clipList, .limit = 2}).output.count('\n'), 2);
}

TEST_F(ClipVerbs, clipsAreShownCopiedDeletedAndCleared) {
    EXPECT_EQ(run({.verb = Verb::clipShow, .clip = 1}).output, image);
    EXPECT_EQ(run({.verb = Verb::clipCopy, .clip = 2, .plain = true}).code, ExitCode::done);
    EXPECT_EQ(world.pasteboard.text(), u"/tmp/ä b.txt\n/tmp/c"_s);
    EXPECT_EQ(world.pasteboard.bytes(PasteboardType::fileURL), std::nullopt);
    run({.verb = Verb::clipCopy, .clip = 1}); // the files are now the newest
    EXPECT_NE(world.pasteboard.bytes(PasteboardType::fileURL), std::nullopt);

    run({.verb = Verb::clipPin, .clip = 3});
    run({.verb = Verb::clipDelete, .clip = 2});
    EXPECT_EQ(world.texts(), QStringList({QString(), text}));
    run({.verb = Verb::clipClear, .keepPinned = true});
    EXPECT_EQ(world.texts(), QStringList(text));
    run({.verb = Verb::clipClear});
    EXPECT_TRUE(world.store->items().empty());
}

TEST_F(ClipVerbs, aClipThatIsNotThereIsNamed) {
    const VerbResult number = run({.verb = Verb::clipDelete, .clip = 4});
    EXPECT_EQ(number.code, ExitCode::failed);
    EXPECT_EQ(number.message, u"there is no clip 4; the history has 3"_s);
    const VerbResult id = run({.verb = Verb::clipCopy, .clip = QUuid::createUuid()});
    EXPECT_EQ(id.code, ExitCode::failed);
    EXPECT_EQ(id.message, u"no clip has this id"_s);
    EXPECT_EQ(world.store->items().size(), 3u);
}

} // namespace quillet

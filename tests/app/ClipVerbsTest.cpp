#include "app/ClipVerbs.h"
#include "clipboard/Captured.h"
#include "clipboard/ClipboardStore.h"
#include "clipboard/ClipContainer.h"
#include "platform/memory/MemoryPlatform.h"

#include <gmock/gmock.h>
#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;
using testing::HasSubstr;
using testing::MatchesRegex;

namespace quillet {

/// A history of three clips, newest first: an image (1), files (2), a text with a tail of
/// control characters (3).
class ClipVerbs : public testing::Test {
protected:
    ClipVerbs() {
        ClipContext& context = opening.container->mainContext();
        const QDateTime date(QDate(2026, 3, 29), QTime(0, 59, 59, 7), Qt::UTC);
        ClipItem::Fields textClip;
        textClip.id = QUuid::fromString(textID);
        textClip.kindRaw = u"text"_s;
        textClip.text = text;
        textClip.sourceBundleID = u"org.example.Editor"_s;
        textClip.sourceAppName = u"Editor"_s;
        textClip.createdAt = date;
        textClip.contentHash = contentHash(text.toUtf8());
        context.insert(textClip);

        ClipItem::Fields files;
        files.id = QUuid::createUuid();
        files.kindRaw = u"file"_s;
        files.filePaths = {u"/tmp/ä b.txt"_s, u"/tmp/c"_s};
        files.createdAt = date.addSecs(1);
        files.contentHash = u"f"_s;
        context.insert(files);

        ClipItem::Fields picture;
        picture.id = QUuid::createUuid();
        picture.kindRaw = u"image"_s;
        picture.imageData = ClipPayload(image);
        picture.createdAt = date.addSecs(2);
        picture.contentHash = u"i"_s;
        context.insert(picture);
        context.save();
        fakes.scheduler.setNow(date.addSecs(60));
        store = std::make_unique<ClipboardStore>(context, fakes.pasteboard, fakes.preferences,
                                                 fakes.scheduler, fakes.workspace, sounds);
    }

    VerbResult run(Command command) {
        VerbResult result = runClipVerb(command, *store);
        if (result.slowOutput)
            result.output = result.slowOutput();
        return result;
    }
    QJsonArray list() {
        return QJsonDocument::fromJson(run({.verb = Verb::clipList, .json = true}).output).array();
    }

    const QString textID = u"0f8fad5b-d9cb-469f-a165-70867728950e"_s;
    const QString text = u"one\ttwo%2F%5\x1b[31m\n"_s;
    const QByteArray image = QByteArray("\x89PNG\r\n\x1a\n\0rest", 13);
    QTemporaryDir folder;
    Platform platform = makeMemoryPlatform();
    MemoryFakes fakes{platform};
    Sounds sounds{fakes.preferences, fakes.sounds, fakes.scheduler};
    ClipContainer::Opening opening = ClipContainer::open(folder.path(), fakes.scheduler);
    std::unique_ptr<ClipboardStore> store;
};

TEST_F(ClipVerbs, theJsonListTellsEverythingAboutAClip) {
    const QJsonArray clips = list();
    ASSERT_EQ(clips.size(), 3);
    EXPECT_EQ(clips.at(2).toObject(),
              (QJsonObject{{u"id"_s, textID},
                           {u"kind"_s, u"text"_s},
                           {u"text"_s, text},
                           {u"filePaths"_s, QJsonArray{}},
                           {u"imageBytes"_s, 0},
                           {u"sourceBundleID"_s, u"org.example.Editor"_s},
                           {u"sourceAppName"_s, u"Editor"_s},
                           {u"createdAt"_s, u"2026-03-29T00:59:59.007Z"_s},
                           {u"isPinned"_s, false},
                           {u"contentHash"_s, contentHash(text.toUtf8())}}));
    EXPECT_EQ(clips.at(0)["kind"_L1], u"image"_s);
    EXPECT_EQ(clips.at(0)["imageBytes"_L1], 13);
    EXPECT_TRUE(clips.at(0)["text"_L1].isNull());
    EXPECT_TRUE(clips.at(0)["sourceAppName"_L1].isNull());
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
    EXPECT_EQ(run({.verb = Verb::clipList, .limit = 99}).output.count('\n'), 3);
}

TEST_F(ClipVerbs, copyPutsAClipBackAndMovesItToTheTop) {
    EXPECT_EQ(run({.verb = Verb::clipCopy, .clip = 2, .plain = true}).code, ExitCode::done);
    EXPECT_EQ(fakes.pasteboard.text(), u"/tmp/ä b.txt\n/tmp/c"_s);
    EXPECT_EQ(fakes.pasteboard.bytes(PasteboardType::fileURL), std::nullopt);
    EXPECT_EQ(list().at(0)["kind"_L1], u"file"_s);
    run({.verb = Verb::clipCopy, .clip = 1});
    EXPECT_NE(fakes.pasteboard.bytes(PasteboardType::fileURL), std::nullopt);
}

TEST_F(ClipVerbs, aClipThatIsNotThereIsNamed) {
    const VerbResult number = run({.verb = Verb::clipDelete, .clip = 4});
    EXPECT_EQ(number.code, ExitCode::failed);
    EXPECT_EQ(number.message, u"there is no clip 4; the history has 3"_s);
    const ClipReference unknown = QUuid::createUuid();
    const VerbResult id = run({.verb = Verb::clipCopy, .clip = unknown});
    EXPECT_EQ(id.code, ExitCode::failed);
    EXPECT_EQ(id.message, u"no clip has this id"_s);
    EXPECT_EQ(list().size(), 3);
}

} // namespace quillet

#include "desktop/ClipboardDesktop.h"
#include "support/SamplePictures.h"

#include <QBuffer>
#include <QDateTime>
#include <QDir>
#include <QFile>

namespace quillet {
namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

using RecordingDesktop = ClipboardDesktop;

QByteArray encoded(const QImage& image, const char* format) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return bytes;
}

void installApplication(const QString& dataFolder, const QString& id, const QString& entries) {
    QDir().mkpath(dataFolder + u"/applications"_s);
    QFile file(dataFolder + u"/applications/%1.desktop"_s.arg(id));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(u"[Desktop Entry]\nType=Application\nExec=true\n%1"_s.arg(entries).toUtf8());
}

TEST_F(RecordingDesktop, everyCopyIsRecordedAsWhatItIs) {
    struct Case {
        QString target;
        QByteArray copied;
        QString kind;
        QString text;
        QStringList paths;
    };
    const std::vector<Case> cases{
        {u"UTF8_STRING"_s, "  grüße, 世界 🌍\n", u"text"_s, u"  grüße, 世界 🌍\n"_s, {}},
        {u"text/plain;charset=utf-8"_s, "día", u"text"_s, u"día"_s, {}},
        {u"STRING"_s, "gr\xfc\xdf", u"text"_s, u"grüß"_s, {}},
        {u"UTF8_STRING"_s,
         "HTTPS://example.org/a?b=c#d",
         u"link"_s,
         u"HTTPS://example.org/a?b=c#d"_s,
         {}},
        {u"UTF8_STRING"_s, " #1a2B3c\n", u"color"_s, u" #1a2B3c\n"_s, {}},
        {u"text/uri-list"_s,
         "# a comment\r\nfile:///tmp/a%20b%23.txt\r\nhttp://example.org/x\r\n"
         "file:///tmp/%E4%B8%96.png\r\n",
         u"file"_s,
         {},
         {u"/tmp/a b#.txt"_s, u"/tmp/世.png"_s}},
        {u"x-special/gnome-copied-files"_s,
         "copy\nfile:///tmp/one\nfile:///tmp/two",
         u"file"_s,
         {},
         {u"/tmp/one"_s, u"/tmp/two"_s}},
    };
    ASSERT_TRUE(quillet.start());
    int recorded = 0;
    for (const Case& each : cases) {
        SCOPED_TRACE(each.copied.toStdString());
        const auto owner = copy(each.copied, each.target);
        ++recorded;
        ASSERT_TRUE(eventually([&] { return quillet.clips().size() == recorded; }));
        const QJsonObject clip = quillet.clips().first().toObject();
        EXPECT_EQ(clip["kind"_L1].toString(), each.kind);
        EXPECT_EQ(clip["text"_L1].toString(), each.text);
        EXPECT_EQ(clip["filePaths"_L1].toVariant().toStringList(), each.paths);
        EXPECT_EQ(clip["isPinned"_L1], QJsonValue(false));
        const auto age = QDateTime::fromString(clip["createdAt"_L1].toString(), Qt::ISODate)
                             .secsTo(QDateTime::currentDateTimeUtc());
        EXPECT_LE(std::abs(age), 10);
    }
}

TEST_F(RecordingDesktop, aPngIsKeptByteForByteWhateverItsSize) {
    ASSERT_TRUE(quillet.start());
    for (const qsizetype size : {300, 65'535, 65'536, 262'143, 1 << 20, 20 << 20}) {
        SCOPED_TRACE(size);
        const QByteArray png = pngOfSize(size, static_cast<quint32>(size));
        const auto owner = copy(png, u"image/png"_s);
        ASSERT_TRUE(eventually(
            [&] { return quillet.clips().first()["imageBytes"_L1].toInteger() == size; }));
        EXPECT_TRUE(quillet.content(1) == png);
        EXPECT_TRUE(FakeRequestor(display()).read("image/png") == png) << "the owner is gone";
    }
}

TEST_F(RecordingDesktop, otherPicturesBecomePng) {
    const QImage picture = sampleScreenshot({97, 41});
    ASSERT_TRUE(quillet.start());
    int recorded = 0;
    for (const auto& [target, bytes] : {std::pair{u"image/tiff"_s, tiffOf(picture)},
                                        {u"image/bmp"_s, encoded(picture.scaled(50, 50), "BMP")},
                                        {u"image/jpeg"_s, encoded(picture, "JPEG")}}) {
        SCOPED_TRACE(target.toStdString());
        const auto owner = copy(bytes, target);
        ++recorded;
        ASSERT_TRUE(eventually([&] { return quillet.clips().size() == recorded; }));
        const QByteArray png = quillet.content(1);
        EXPECT_TRUE(png.startsWith("\x89PNG"));
        const QImage expected = target == u"image/tiff"_s ? picture : QImage::fromData(bytes);
        EXPECT_EQ(QImage::fromData(png).convertToFormat(QImage::Format_RGB32),
                  expected.convertToFormat(QImage::Format_RGB32));
    }
}

TEST_F(RecordingDesktop, oneCopyIsOneClipAndAsksForOneContent) {
    const QByteArray png = pngOfSize(500);
    const QByteArray files = "file:///tmp/a\r\n";
    ASSERT_TRUE(quillet.start());
    FakeOwner browser(display());
    browser.own({{.target = "text/html", .bytes = "<img>"},
                 {.target = "text/plain", .bytes = "alt"},
                 {.target = "UTF8_STRING", .bytes = "alt"},
                 {.target = "image/png", .bytes = png}});
    EXPECT_THAT(historyOnceNewestIs("<image>"), ElementsAre("<image>"));
    EXPECT_TRUE(quillet.content(1) == png);
    EXPECT_EQ(browser.payloadRequests(), 1);

    FakeOwner fileManager(display());
    fileManager.own({{.target = "image/png", .bytes = png},
                     {.target = "UTF8_STRING", .bytes = "/tmp/a"},
                     {.target = "text/uri-list", .bytes = files}});
    EXPECT_THAT(historyOnceNewestIs("<file>"), ElementsAre("<file>", "<image>"));
    EXPECT_EQ(fileManager.payloadRequests(), 1);

    FakeOwner spreadsheet(display());
    spreadsheet.own({{.target = "text/html", .bytes = "<b>cell</b>"},
                     {.target = "UTF8_STRING", .bytes = "cell"},
                     {.target = "STRING", .bytes = "cell"}});
    EXPECT_THAT(historyOnceNewestIs("cell"), ElementsAre("cell", "<file>", "<image>"));
    EXPECT_EQ(spreadsheet.payloadRequests(), 1);
}

TEST_F(RecordingDesktop, privateCopiesAreNeverAskedFor) {
    ASSERT_TRUE(quillet.start());
    for (const QByteArray marker :
         {"x-kde-passwordManagerHint", "org.nspasteboard.ConcealedType",
          "org.nspasteboard.TransientType", "org.nspasteboard.AutoGeneratedType"}) {
        SCOPED_TRACE(marker.toStdString());
        FakeOwner vault(display());
        auto offers = textOffers("hunter2");
        offers.push_back({.target = marker, .bytes = "secret"});
        vault.own(offers);
        ASSERT_TRUE(eventually([&] { return vault.requests("TARGETS") > 0; }));
        EXPECT_THAT(historyAfterMarker(), testing::Not(testing::Contains("hunter2")));
        EXPECT_EQ(vault.payloadRequests() - vault.requests("x-kde-passwordManagerHint"), 0);
    }
    EXPECT_THAT(quillet.errors().toStdString(), testing::Not(testing::HasSubstr("hunter2")));

    for (const QByteArray& value : {QByteArray("secret", 7), QByteArray("Secret\n")}) {
        FakeOwner vault(display());
        auto offers = textOffers("hunter2");
        offers.push_back({.target = "x-kde-passwordManagerHint", .bytes = value});
        vault.own(offers);
        ASSERT_TRUE(eventually([&] { return vault.requests("TARGETS") > 0; }));
        EXPECT_THAT(historyAfterMarker(), testing::Not(testing::Contains("hunter2")));
    }

    FakeOwner open(display());
    auto offers = textOffers("not a secret");
    offers.push_back({.target = "x-kde-passwordManagerHint", .bytes = "public"});
    open.own(offers);
    EXPECT_EQ(historyOnceNewestIs("not a secret").front(), "not a secret");
}

TEST_F(RecordingDesktop, theSourceIsTheActiveApplicationUnlessItIsIgnored) {
    installApplication(session().dataFolder(), u"org.example.Writer"_s,
                       u"Name=Example Writer\nStartupWMClass=Writer\n"_s);
    installApplication(session().dataFolder(), u"org.keepassxc.KeePassXC"_s,
                       u"Name=KeePassXC\nStartupWMClass=keepassxc\n"_s);
    installApplication(session().dataFolder(), u"vault_vault"_s,
                       u"Name=Bitwarden\nStartupWMClass=Bitwarden\n"_s);
    ASSERT_TRUE(quillet.start());
    FakeOwner owner(display());
    const FakeApplication unlisted(display(), "Unlisted");
    owner.own(textOffers("from an unknown program"));
    historyOnceNewestIs("from an unknown program");
    const QJsonValue first = quillet.clips().first();
    EXPECT_EQ(first["sourceBundleID"_L1].toString().toStdString(), "Unlisted");

    const FakeApplication writer(display(), "Writer");
    owner.own(textOffers("from a known program"));
    historyOnceNewestIs("from a known program");
    const QJsonValue second = quillet.clips().first();
    EXPECT_EQ(second["sourceBundleID"_L1].toString().toStdString(), "org.example.Writer");
    EXPECT_EQ(second["sourceAppName"_L1].toString().toStdString(), "Example Writer");

    for (const QByteArray windowClass : {"Bitwarden", "keepassxc"}) {
        const FakeApplication vault(display(), windowClass);
        owner.own(textOffers("from " + windowClass));
        letItBeNoticed();
    }
    ASSERT_TRUE(eventually([&] { return writer.isActive(); }));
    EXPECT_THAT(historyAfterMarker(),
                ElementsAre("from a known program", "from an unknown program"));
}

TEST_F(RecordingDesktop, preferencesOfTheUserDecideWhatIsIgnored) {
    quillet.writePreferences({{u"clipboard.ignoredApps"_s, QJsonArray{u"Vault"_s}}});
    ASSERT_TRUE(quillet.start());
    FakeOwner owner(display());
    {
        const FakeApplication vault(display(), "Vault");
        owner.own(textOffers("ignored"));
        letItBeNoticed();
    }
    const FakeApplication other(display(), "Other");
    EXPECT_THAT(historyAfterMarker(), IsEmpty());
    quillet.quit();

    quillet.writePreferences({{u"clipboard.enabled"_s, false}});
    ASSERT_TRUE(quillet.start());
    const auto before = quillet.texts();
    owner.own(textOffers("switched off"));
    letItBeNoticed();
    EXPECT_EQ(quillet.texts(), before);
    EXPECT_EQ(owner.payloadRequests(), 0);
}

TEST_F(RecordingDesktop, copyingTheSameAgainMovesItsOnlyClipToTheTop) {
    ASSERT_TRUE(quillet.start());
    FakeOwner owner(display());
    for (const QByteArray text : {"one", "two", "one ", "one"}) {
        owner.own(textOffers(text));
        ASSERT_EQ(historyOnceNewestIs(text.toStdString()).front(), text.toStdString());
    }
    EXPECT_THAT(quillet.texts(), ElementsAre("one", "one ", "two"));
}

TEST_F(RecordingDesktop, whatWasThereAtLaunchIsNotRecordedButTheSameOwnersNextCopyIs) {
    FakeOwner owner(display());
    owner.own(textOffers("before the launch"));
    ASSERT_TRUE(quillet.start());
    letItBeNoticed();
    EXPECT_THAT(quillet.texts(), IsEmpty());
    owner.own(textOffers("after the launch"));
    EXPECT_THAT(historyOnceNewestIs("after the launch"), ElementsAre("after the launch"));
}

TEST_F(RecordingDesktop, whatWasListedIsThereAfterARestartAndAfterAKill) {
    ASSERT_TRUE(quillet.start());
    const QByteArray png = pngOfSize(100'000);
    const auto image = copy(png, u"image/png"_s);
    historyOnceNewestIs("<image>");
    const auto text = copy("text");
    historyOnceNewestIs("text");
    EXPECT_EQ(quillet.verb({u"clip"_s, u"pin"_s, u"2"_s}).exitCode, 0);
    const QJsonArray listed = quillet.clips();
    ASSERT_EQ(listed.size(), 2);
    EXPECT_EQ(listed[1]["isPinned"_L1], QJsonValue(true));

    quillet.kill();
    ASSERT_TRUE(quillet.start());
    EXPECT_EQ(quillet.clips(), listed);
    quillet.quit();
    EXPECT_FALSE(quillet.isRunning());
    ASSERT_TRUE(quillet.start());
    EXPECT_EQ(quillet.clips(), listed);
    EXPECT_TRUE(quillet.content(2) == png);
}

TEST_F(RecordingDesktop, theHistoryKeepsToItsLimitAndToWhatIsPinned) {
    quillet.writePreferences({{u"clipboard.maxItems"_s, 2}});
    ASSERT_TRUE(quillet.start());
    FakeOwner owner(display());
    for (const QByteArray text : {"a", "b", "c", "d"}) {
        owner.own(textOffers(text));
        historyOnceNewestIs(text.toStdString());
        if (text == "a")
            quillet.verb({u"clip"_s, u"pin"_s, u"1"_s});
    }
    EXPECT_THAT(quillet.texts(), ElementsAre("d", "c", "a"));
    EXPECT_EQ(quillet.verb({u"clip"_s, u"delete"_s, u"1"_s}).exitCode, 0);
    EXPECT_THAT(quillet.texts(), ElementsAre("c", "a"));
    EXPECT_EQ(quillet.verb({u"clip"_s, u"clear"_s, u"--keep-pinned"_s}).exitCode, 0);
    EXPECT_THAT(quillet.texts(), ElementsAre("a"));
    EXPECT_EQ(quillet.verb({u"clip"_s, u"clear"_s}).exitCode, 0);
    EXPECT_THAT(quillet.texts(), IsEmpty());
}

TEST_F(RecordingDesktop, thePrimarySelectionIsNotTheClipboard) {
    ASSERT_TRUE(quillet.start());
    XClient mouse(display());
    for (int i = 0; i < 50; ++i) {
        xcb_set_selection_owner(mouse.connection(), mouse.window(), XCB_ATOM_PRIMARY,
                                mouse.serverTime());
    }
    const auto primary = session().start(u"xclip"_s, {u"-quiet"_s, u"-selection"_s, u"primary"_s});
    primary->write("selected");
    primary->closeWriteChannel();
    EXPECT_THAT(historyAfterMarker(), IsEmpty());
}

TEST_F(RecordingDesktop, ofAStormOfCopiesTheLastIsTheNewest) {
    ASSERT_TRUE(quillet.start());
    FakeOwner first(display());
    FakeOwner second(display());
    auto next = std::chrono::steady_clock::now();
    for (int i = 1; i <= 200; ++i) {
        (i % 2 == 0 ? first : second).own(textOffers("copy " + QByteArray::number(i)));
        std::this_thread::sleep_until(next += std::chrono::milliseconds(10));
    }
    EXPECT_EQ(historyOnceNewestIs("copy 200").front(), "copy 200");
}

TEST_F(RecordingDesktop, twoProgramsThatEchoEachOtherMakeOneClip) {
    ASSERT_TRUE(quillet.start());
    FakeOwner first(display());
    FakeOwner second(display());
    first.takeBack(100);
    second.takeBack(100);
    second.own(textOffers("echo"));
    first.own(textOffers("echo"));
    historyOnceNewestIs("echo");
    EXPECT_THAT(historyAfterMarker(), ElementsAre("echo"));
}

TEST_F(RecordingDesktop, nothingWakesItUpWhileNothingChanges) {
    ASSERT_TRUE(quillet.start());
    const auto owner = copy("text");
    historyOnceNewestIs("text");
    // Work that a copy leaves behind may still end; a program that wakes up never comes to rest.
    EXPECT_TRUE(eventually(
        [this] {
            const qint64 before = quillet.contextSwitches();
            std::this_thread::sleep_for(std::chrono::seconds(2));
            return quillet.contextSwitches() == before;
        },
        std::chrono::seconds(15)));
}

} // namespace
} // namespace quillet

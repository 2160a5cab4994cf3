#include "clipboard/Captured.h"
#include "clipboard/ClipboardStore.h"
#include "clipboard/IgnoredApplications.h"
#include "clipboard/UriList.h"
#include "imaging/Bitmap.h"

#include <gtest/gtest.h>
#include <QSysInfo>

namespace quillet {

using namespace Qt::StringLiterals;
using Kind = ClipItem::Kind;

TEST(ClassifyTest, textsAreToldFromColorsAndLinks) {
    const std::pair<QString, Kind> table[]{
        {u"#1a2B3c"_s, Kind::color},
        {u"1a2b3c"_s, Kind::color},
        {u"123456"_s, Kind::color},
        {u"  #ABCDEF \n"_s, Kind::color},
        {u"#1a2b3"_s, Kind::text},
        {u"#1a2b3cd"_s, Kind::text},
        {u"##a2b3c"_s, Kind::text},
        {u"1a2b3g"_s, Kind::text},
        {u"１２３４５６"_s, Kind::text},
        {u"https://example.com/a/b?c=d#e"_s, Kind::link},
        {u"\thttp://example.com\r\n"_s, Kind::link},
        {u"HTTPS://EXAMPLE.COM"_s, Kind::link},
        {u"https://bücher.example/ü"_s, Kind::link},
        {u"http://[::1]:8080/"_s, Kind::link},
        {u"https://"_s, Kind::text},
        {u"https:///path"_s, Kind::text},
        {u"http:example.com"_s, Kind::text},
        {u"http://example.com:port"_s, Kind::text},
        {u"https://example.com and more"_s, Kind::text},
        {u"https://example.com\nhttps://example.com"_s, Kind::text},
        {u"ftp://example.com/x"_s, Kind::text},
        {u"mailto:a@example.com"_s, Kind::text},
        {u"file:///etc/hosts"_s, Kind::text},
        {u"example.com"_s, Kind::text},
    };
    for (const auto& [text, kind] : table)
        EXPECT_EQ(ClipboardStore::classify(text), kind) << qPrintable(text);
}

TEST(HashTest, isTheSha256OfTheExactBytes) {
    EXPECT_EQ(ClipboardStore::hash("abc"),
              u"ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"_s);
    EXPECT_NE(ClipboardStore::hash("abc"), ClipboardStore::hash("abc\n"));
}

TEST(CapturedTest, textIsKeptExactlyAndBlankTextIsNothing) {
    const QByteArray odd("\xef\xbb\xbf"
                         "a\0b\r\n \xf0\x9f\x98\x80",
                         14);
    const auto captured = Captured::fromText(odd);
    ASSERT_TRUE(captured);
    EXPECT_EQ(captured->text->toUtf8(), odd) << "with the mark at its start and the NUL";
    EXPECT_EQ(captured->hash, contentHash(odd));

    for (const char* blank : {"", " ", "\n\t\r\n", "\xc2\xa0\xe2\x80\xa9"})
        EXPECT_FALSE(Captured::fromText(blank)) << blank;
}

TEST(CapturedTest, invalidUtf8BecomesReplacementCharacters) {
    for (const char* bytes : {"a\xff"
                              "b",
                              "a\xed\xa0\x80"
                              "b",
                              "a\xc0\x80"
                              "b",
                              "ab\xf0\x9f\x98"}) {
        const auto captured = Captured::fromText(bytes);
        ASSERT_TRUE(captured);
        EXPECT_TRUE(captured->text->contains(QChar::ReplacementCharacter)) << bytes;
        EXPECT_TRUE(captured->text->startsWith(u'a') && captured->text->contains(u'b'));
        EXPECT_EQ(captured->hash, contentHash(captured->text->toUtf8()));
    }
}

TEST(CapturedTest, filesAreHashedInTheirOrder) {
    const auto captured = Captured::fromUriList("file:///a/b.txt\r\nfile:///c\r\n");
    ASSERT_TRUE(captured);
    EXPECT_EQ(captured->kind, Kind::file);
    EXPECT_EQ(captured->hash, contentHash("/a/b.txt\n/c"));
    EXPECT_NE(captured->hash, Captured::fromUriList("file:///c\r\nfile:///a/b.txt\r\n")->hash);
}

TEST(UriListTest, namesTheFilesOfThisMachineAndPassesOverTheRest) {
    const QString host = QSysInfo::machineHostName();
    EXPECT_EQ(localFilesInUriList("# comment\r\n"
                                  "file:///plain\r\n"
                                  "\r\n"
                                  "https://example.com/x\n"
                                  "FILE:///upper\n"
                                  "file://localhost/local\n"
                                  "file://" +
                                  host.toUtf8() +
                                  "/own\n"
                                  "file://elsewhere.example/far\n"
                                  "file:///with%20space%23and%25\n"
                                  "file:///%C3%BC/\xc3\xa4\n"
                                  "file:///plain\n"
                                  "file:///folder/\n"
                                  "file:///nul%00byte\n"
                                  "file:relative\n"
                                  "file:///"),
              QStringList({u"/plain"_s, u"/upper"_s, u"/local"_s, u"/own"_s, u"/with space#and%"_s,
                           u"/ü/ä"_s, u"/plain"_s, u"/folder"_s, u"/"_s}));
    EXPECT_TRUE(localFilesInUriList("").isEmpty());
    EXPECT_TRUE(localFilesInUriList(QByteArray("\0\xff\n\n", 4)).isEmpty());
}

TEST(UriListTest, whatIsWrittenIsReadBack) {
    const QStringList paths{u"/a b/ü#?%41.txt"_s, u"/c\nd"_s, u"/"_s};
    QList<QUrl> urls;
    for (const QString& path : paths)
        urls.append(QUrl::fromLocalFile(path));
    EXPECT_EQ(localFilesInUriList(uriList(urls)), paths);
}

TEST(ClipItemTest, isFoundByTextSourceAndFileNames) {
    ClipItem::Fields fields;
    EXPECT_EQ(ClipItem(fields).searchText(), QString());
    fields.filePaths = QStringList{u"/a/b.txt"_s, u"/c/d.png"_s};
    fields.sourceAppName = u"Files"_s;
    EXPECT_EQ(ClipItem(fields).searchText(), u"Files b.txt d.png"_s);
    EXPECT_EQ(ClipItem(fields).fileURLs().at(0).toString(), u"file:///a/b.txt"_s);
    fields.text = u"hello"_s;
    fields.filePaths.clear();
    EXPECT_EQ(ClipItem(fields).searchText(), u"hello Files "_s);
}

TEST(IgnoredApplicationsTest, aListedIdentifierAlsoMeansTheSameApplicationHere) {
    const auto isIgnored = [](const QStringList& identifiers, const QString& listed) {
        return isIgnoredApplication({identifiers.first(), {}, 0, identifiers.sliced(1)}, {listed});
    };
    const QString keychain = u"com.apple.keychainaccess"_s;
    EXPECT_TRUE(isIgnored({keychain}, keychain));
    EXPECT_TRUE(isIgnored({u"org.gnome.seahorse.Application"_s}, keychain));
    EXPECT_TRUE(isIgnored({u"Seahorse"_s}, keychain));
    EXPECT_FALSE(isIgnored({u"Bitwarden"_s}, keychain)) << "its entry was removed";
    // A launcher of a name of its own, for a window that tells who it is.
    EXPECT_TRUE(isIgnored({u"vault_vault"_s, u"Bitwarden"_s}, u"com.bitwarden.desktop"_s));
    EXPECT_TRUE(isIgnored({u"org.example.Own"_s}, u"org.example.Own"_s));
    EXPECT_FALSE(isIgnored({QString()}, QString()));
}

} // namespace quillet

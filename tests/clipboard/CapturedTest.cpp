#include "clipboard/Captured.h"
#include "clipboard/ClipboardStore.h"
#include "clipboard/IgnoredApplications.h"
#include "clipboard/UriList.h"

#include <gtest/gtest.h>
#include <QSysInfo>

namespace quillet {

using namespace Qt::StringLiterals;
using Kind = ClipItem::Kind;

TEST(ClassifyTest, textsAreToldFromColorsAndLinks) {
    const std::pair<QString, Kind> table[]{
        {u"#1a2B3c"_s, Kind::color},
        {u"123456"_s, Kind::color},
        {u"  #ABCDEF \n"_s, Kind::color},
        {u"#1a2b3cd"_s, Kind::text},
        {u"1a2b3g"_s, Kind::text},
        {u"１２３４５６"_s, Kind::text},
        {u"https://example.com/a/b?c=d#e"_s, Kind::link},
        {u"\thttp://example.com\r\n"_s, Kind::link},
        {u"https://bücher.example/ü"_s, Kind::link},
        {u"http://[::1]:8080/"_s, Kind::link},
        {u"https://"_s, Kind::text},
        {u"http:example.com"_s, Kind::text},
        {u"http://example.com:port"_s, Kind::text},
        {u"https://example.com and more"_s, Kind::text},
        {u"https://example.com\nhttps://example.com"_s, Kind::text},
        {u"file:///etc/hosts"_s, Kind::text},
        {u"example.com"_s, Kind::text},
    };
    for (const auto& [text, kind] : table)
        EXPECT_EQ(ClipboardStore::classify(text), kind) << qPrintable(text);
}

TEST(CapturedTest, textIsKeptExactlyAndBlankTextIsNothing) {
    EXPECT_EQ(Captured::fromText("abc")->hash,
              u"ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"_s);
    const QByteArray odd("\xef\xbb\xbf"
                         "a\0b\r\n \xf0\x9f\x98\x80",
                         14);
    const auto captured = Captured::fromText(odd);
    ASSERT_TRUE(captured);
    EXPECT_EQ(captured->text->toUtf8(), odd) << "with the mark at its start and the NUL";
    EXPECT_EQ(captured->hash, contentHash(odd));

    for (const char* blank : {"", " ", "\n\t\r\n", "\xc2\xa0\xe2\x80\xa9"})
        EXPECT_FALSE(Captured::fromText(blank)) << blank;

    for (const char* invalid : {"a\xff!", "a\xed\xa0\x80!", "a\xc0\x80!", "a!\xf0\x9f\x98"}) {
        const QString text = Captured::fromText(invalid)->text.value();
        EXPECT_TRUE(text.contains(QChar::ReplacementCharacter)) << invalid;
        EXPECT_TRUE(text.startsWith(u'a') && text.contains(u'!')) << invalid;
    }
}

TEST(CapturedTest, filesAreHashedInTheirOrder) {
    const auto captured = Captured::fromUriList("file:///a/b.txt\r\nfile:///c\r\n");
    ASSERT_TRUE(captured);
    EXPECT_EQ(captured->kind, Kind::file);
    EXPECT_EQ(captured->hash, contentHash("/a/b.txt\n/c"));
}

TEST(UriListTest, namesTheFilesOfThisMachineAndPassesOverTheRest) {
    const std::pair<QByteArray, QStringList> table[]{
        {"# comment\r\nfile:///a\r\n\r\nFILE:///b\nfile:///a", {u"/a"_s, u"/b"_s, u"/a"_s}},
        {"https://example.com/x\nfile:relative\nfile://elsewhere.example/far", {}},
        {"file://localhost/local\nfile://" + QSysInfo::machineHostName().toUtf8() + "/own",
         {u"/local"_s, u"/own"_s}},
        {"file:///with%20space%23and%25\nfile:///%C3%BC/\xc3\xa4\nfile:///folder/\nfile:///",
         {u"/with space#and%"_s, u"/ü/ä"_s, u"/folder"_s, u"/"_s}},
        {"file:///nul%00byte", {}},
        {QByteArray("\0\xff\n\n", 4), {}},
    };
    for (const auto& [list, files] : table)
        EXPECT_EQ(localFilesInUriList(list), files) << list.constData();
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
    fields.filePaths = QStringList{u"/a/b.txt"_s, u"/c/d.png"_s};
    fields.sourceAppName = u"Files"_s;
    EXPECT_EQ(ClipItem(fields).searchText(), u"Files b.txt d.png"_s);
    fields.text = u"hello"_s;
    EXPECT_EQ(ClipItem(fields).searchText(), u"hello Files b.txt d.png"_s);
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
    EXPECT_FALSE(isIgnored({QString()}, QString()));
}

} // namespace quillet

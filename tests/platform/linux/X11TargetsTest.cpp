#include "platform/linux/x11/X11Targets.h"

#include <gtest/gtest.h>

namespace quillet {
namespace {

using namespace Qt::StringLiterals;
using namespace PasteboardType;

PasteboardContents contents(const QString& type, const QByteArray& bytes) {
    return {{type, [bytes] { return bytes; }}};
}

/// What a requestor gets for a target; nothing where it is not offered, null where refused.
std::optional<QByteArray> served(const PasteboardContents& contents, const QByteArray& target) {
    for (const auto& answer : X11Targets::answers(contents)) {
        if (answer.target == target)
            return answer.bytes();
    }
    return std::nullopt;
}

TEST(X11Targets, aListOfTargetsBecomesTypesInItsOrder) {
    struct Row {
        QList<QByteArray> targets;
        QStringList types;
    };
    const Row rows[] = {
        {{"TIMESTAMP", "TARGETS", "MULTIPLE", "UTF8_STRING", "STRING"}, {string}},
        {{"text/html", "text/plain", "image/png"}, {u"text/html"_s, string, png}},
        {{"x-special/gnome-copied-files", "text/uri-list"}, {fileURL, url}},
        {{"image/tiff", "image/bmp"}, {tiff}},
        {{"image/jpeg", "image/bmp"}, {png}},
        {{"image/bmp", "image/png"}, {png}},
        {{"org.nspasteboard.ConcealedType", "STRING"}, {concealed, string}},
        {{}, {}},
    };
    for (const Row& row : rows)
        EXPECT_EQ(X11Targets::types(row.targets), row.types) << row.targets.join(' ').toStdString();
}

TEST(X11Targets, deliveriesAreDecodedToTheTypesForm) {
    EXPECT_EQ(X11Targets::sources(string, {"STRING", "TEXT", "UTF8_STRING"}),
              (QList<QByteArray>{"UTF8_STRING", "STRING"}));
    EXPECT_EQ(X11Targets::decode(string, "STRING", "\xe9t\xe9"), "été");
    EXPECT_EQ(X11Targets::decode(fileURL, "x-special/gnome-copied-files",
                                 "cut\nfile:///a%20b\nfile:///c"),
              "file:///a%20b\nfile:///c");
    const QString titled = u"https://a.example/\nA page"_s;
    EXPECT_EQ(X11Targets::decode(
                  url, "text/x-moz-url",
                  QByteArray(reinterpret_cast<const char*>(titled.utf16()), titled.size() * 2)),
              "https://a.example/");
    EXPECT_EQ(X11Targets::decode(png, "image/bmp", "BM but nothing more"), std::nullopt);
}

TEST(X11Targets, textIsServedInEveryEncodingThatCanHoldItAndALinkAsAUrl) {
    EXPECT_EQ(served(contents(string, "né"), "text/plain;charset=utf-8"), "né");
    EXPECT_EQ(served(contents(string, "né"), "STRING"), "n\xe9");
    const auto refused = served(contents(string, "漢"), "STRING");
    ASSERT_TRUE(refused);
    EXPECT_TRUE(refused->isNull()) << "Latin-1 cannot hold the text, and it must not be mangled";
    const auto empty = served(contents(string, ""), "STRING");
    EXPECT_TRUE(empty && empty->isEmpty() && !empty->isNull());

    const auto link = contents(url, "https://a.example/x");
    EXPECT_EQ(served(link, "text/uri-list"), "https://a.example/x\r\n");
    EXPECT_EQ(served(link, "x-special/gnome-copied-files"), std::nullopt);
}

} // namespace
} // namespace quillet

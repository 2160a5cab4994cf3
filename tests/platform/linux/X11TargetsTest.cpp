#include "platform/linux/x11/X11Targets.h"

#include "imaging/Png.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <QBuffer>
#include <QImage>

namespace quillet {
namespace {

using namespace Qt::StringLiterals;
using namespace PasteboardType;

QByteArray picture(const char* format) {
    QImage image(3, 2, QImage::Format_RGB32);
    image.fill(Qt::red);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return bytes;
}

PasteboardContent content(const QString& type, const QByteArray& bytes) {
    return {type, [bytes] { return bytes; }};
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

TEST(X11Targets, theBestSourceOfATypeComesFirst) {
    EXPECT_EQ(X11Targets::sources(string, {"STRING", "TEXT", "UTF8_STRING"}),
              (QList<QByteArray>{"UTF8_STRING", "STRING"}));
    EXPECT_EQ(X11Targets::sources(fileURL, {"x-special/gnome-copied-files"}),
              QList<QByteArray>{"x-special/gnome-copied-files"});
    EXPECT_EQ(X11Targets::sources(u"text/html"_s, {"text/html"}), QList<QByteArray>{"text/html"});
    EXPECT_TRUE(X11Targets::sources(png, {"UTF8_STRING"}).isEmpty());
}

TEST(X11Targets, deliveriesAreDecodedToTheTypesForm) {
    EXPECT_EQ(X11Targets::decode(string, "STRING", "\xe9t\xe9"), "été");
    EXPECT_EQ(X11Targets::decode(fileURL, "x-special/gnome-copied-files",
                                 "cut\nfile:///a%20b\nfile:///c"),
              "file:///a%20b\nfile:///c");
    const QString titled = u"https://a.example/\nA page"_s;
    EXPECT_EQ(X11Targets::decode(
                  url, "text/x-moz-url",
                  QByteArray(reinterpret_cast<const char*>(titled.utf16()), titled.size() * 2)),
              "https://a.example/");
}

TEST(X11Targets, otherBitmapsAreHandedOnAsPng) {
    for (const char* format : {"bmp", "jpeg"}) {
        const QByteArray target = QByteArray("image/") + format;
        ASSERT_TRUE(X11Targets::decodesPicture(png, target));
        const auto decoded = X11Targets::decode(png, target, picture(format));
        ASSERT_TRUE(decoded) << format;
        EXPECT_EQ(QImage::fromData(*decoded, "png").size(), QSize(3, 2));
    }
    EXPECT_FALSE(X11Targets::decodesPicture(png, "image/png"));
    EXPECT_EQ(X11Targets::decode(png, "image/bmp", "BM but nothing more"), std::nullopt);
}

TEST(X11Targets, textIsServedInEveryEncodingThatCanHoldIt) {
    const PasteboardContents latin = {content(string, "né")};
    EXPECT_EQ(served(latin, "UTF8_STRING"), "né");
    EXPECT_EQ(served(latin, "text/plain;charset=utf-8"), "né");
    EXPECT_EQ(served(latin, "STRING"), "n\xe9");
    const auto refused = served({content(string, "漢")}, "STRING");
    ASSERT_TRUE(refused);
    EXPECT_TRUE(refused->isNull()) << "Latin-1 cannot hold the text, and it must not be mangled";
    const auto empty = served({content(string, "")}, "STRING");
    EXPECT_TRUE(empty && empty->isEmpty() && !empty->isNull());
}

TEST(X11Targets, aLinkIsServedAsTextAndAsUrl) {
    const PasteboardContents link = {content(string, "https://a.example/x"),
                                     content(url, "https://a.example/x")};
    EXPECT_EQ(served(link, "UTF8_STRING"), "https://a.example/x");
    EXPECT_EQ(served(link, "text/uri-list"), "https://a.example/x\r\n");
    const QByteArray titled = served(link, "text/x-moz-url").value();
    EXPECT_EQ(X11Targets::decode(url, "text/x-moz-url", titled), "https://a.example/x");
    EXPECT_EQ(served(link, "x-special/gnome-copied-files"), std::nullopt);
}

} // namespace
} // namespace quillet

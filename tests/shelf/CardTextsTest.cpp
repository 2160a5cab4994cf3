#include "shelf/CardTexts.h"

#include <gtest/gtest.h>

namespace quillet {
namespace {

using namespace Qt::StringLiterals;

TEST(CardTextsTest, datesAreToldInTheirLargestUnit) {
    const QDateTime now(QDate(2025, 3, 31), QTime(12, 0));
    const auto ago = [&now](qint64 seconds) { return relativeDate(now.addSecs(-seconds), now); };
    EXPECT_EQ(ago(0), u"0 sec. ago"_s);
    EXPECT_EQ(ago(59), u"59 sec. ago"_s);
    EXPECT_EQ(ago(60), u"1 min. ago"_s);
    EXPECT_EQ(ago(3599), u"59 min. ago"_s);
    EXPECT_EQ(ago(3600), u"1 hr. ago"_s);
    EXPECT_EQ(ago(86400 - 1), u"23 hr. ago"_s);
    EXPECT_EQ(relativeDate(now.addDays(-1), now), u"1 day ago"_s);
    EXPECT_EQ(relativeDate(now.addDays(-6), now), u"6 days ago"_s);
    EXPECT_EQ(relativeDate(now.addDays(-7), now), u"1 wk. ago"_s);
    EXPECT_EQ(relativeDate(now.addDays(-30), now), u"4 wk. ago"_s) << "1 March to 31 March";
    EXPECT_EQ(relativeDate(now.addMonths(-1), now), u"1 mo. ago"_s);
    EXPECT_EQ(relativeDate(now.addDays(-365), now), u"1 yr. ago"_s);
    EXPECT_EQ(relativeDate(now.addSecs(120), now), u"in 2 min."_s);
}

TEST(CardTextsTest, charactersAreCountedAsReadersSeeThem) {
    EXPECT_EQ(characterCount(u""_s), 0);
    EXPECT_EQ(characterCount(u"a\nb"_s), 3);
    EXPECT_EQ(characterCount(u"e\u0301"_s), 1);
    EXPECT_EQ(characterCount(u"🇩🇪🇫🇷"_s), 2);
    EXPECT_EQ(characterCount(u"👩‍👩‍👧👍🏽"_s), 2);
    EXPECT_EQ(characterCount(u"\r\n"_s), 1);
}

TEST(CardTextsTest, hexColoursAreReadAndOthersAreNot) {
    EXPECT_EQ(colorFromHex(u" #2F9e8F\n"_s), QColor(0x2f, 0x9e, 0x8f));
    EXPECT_EQ(colorFromHex(u"0000ff"_s), QColor(0, 0, 255));
    for (const QString& text : {u"#fff"_s, u"#12345g"_s, u"0x1234"_s, u"+12345"_s, u"12 456"_s,
                                u"#2F9E8F80"_s, QString()})
        EXPECT_EQ(colorFromHex(text), std::nullopt) << qPrintable(text);
}

TEST(CardTextsTest, footersBadgesAndHostsFollowTheItem) {
    EXPECT_EQ(fileFooter(1), u"1 file"_s);
    EXPECT_EQ(fileFooter(6), u"6 files"_s);
    EXPECT_EQ(imageFooter(QSize(1600, 1000)), u"1600 × 1000"_s);
    EXPECT_EQ(imageFooter(std::nullopt), u"Image"_s);
    EXPECT_EQ(characterFooter(227), u"227 characters"_s);
    EXPECT_EQ(quickPasteBadge(8), u"⌘9"_s);
    EXPECT_EQ(quickPasteBadge(9), QString());
    EXPECT_EQ(linkHost(u"https://Journal.example.org:8080/a?b=c"_s), u"journal.example.org"_s);
    EXPECT_EQ(linkHost(u"mailto:a@example.org"_s), QString());
}

} // namespace
} // namespace quillet

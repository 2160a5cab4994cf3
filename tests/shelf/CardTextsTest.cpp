#include "shelf/CardTexts.h"

#include <gtest/gtest.h>

namespace quillet {
namespace {

using namespace Qt::StringLiterals;

TEST(CardTextsTest, datesAreToldInTheirLargestUnit) {
    const QDateTime now(QDate(2025, 3, 31), QTime(12, 0));
    const std::pair<QDateTime, const char*> rows[] = {
        {now.addSecs(-59), "59 sec. ago"}, {now.addSecs(-60), "1 min. ago"},
        {now.addSecs(-3600), "1 hr. ago"}, {now.addSecs(-86400 + 1), "23 hr. ago"},
        {now.addDays(-1), "1 day ago"},    {now.addDays(-6), "6 days ago"},
        {now.addDays(-7), "1 wk. ago"},    {now.addDays(-30), "4 wk. ago"},
        {now.addMonths(-1), "1 mo. ago"},  {now.addDays(-365), "1 yr. ago"},
        {now.addSecs(120), "in 2 min."}};
    for (const auto& [date, text] : rows)
        EXPECT_EQ(relativeDate(date, now), QLatin1StringView(text));
}

TEST(CardTextsTest, charactersAreCountedAsReadersSeeThem) {
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

TEST(CardTextsTest, badgesAndHostsFollowTheItem) {
    EXPECT_EQ(quickPasteBadge(8), u"⌘9"_s);
    EXPECT_EQ(quickPasteBadge(9), QString());
    EXPECT_EQ(linkHost(u"https://Journal.example.org:8080/a?b=c"_s), u"journal.example.org"_s);
    EXPECT_EQ(linkHost(u"mailto:a@example.org"_s), QString());
}

} // namespace
} // namespace quillet

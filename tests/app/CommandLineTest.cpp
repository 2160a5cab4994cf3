#include "app/CommandLine.h"
#include "app/Printable.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace quillet {

namespace {

QStringList words(const char* line) {
    return QString::fromUtf8(line).split(u' ', Qt::SkipEmptyParts);
}

constexpr auto id = "0f8fad5b-d9cb-469f-a165-70867728950e";

} // namespace

TEST(CommandLine, eachVerbIsReadWithItsOptions) {
    const ClipReference byId = QUuid::fromString(QLatin1StringView(id));
    const std::vector<std::pair<std::string, Command>> table{
        {"", {.verb = Verb::start}},
        {"--service", {.verb = Verb::service}},
        {"status", {.verb = Verb::status}},
        {"quit", {.verb = Verb::quit}},
        {"--version", {.verb = Verb::version}},
        {"--help", {.verb = Verb::help}},
        {"-h", {.verb = Verb::help}},
        {"clip --help", {.verb = Verb::help, .topic = u"clip"_s}},
        {"clip list", {.verb = Verb::clipList}},
        {"clip list --json --limit 3", {.verb = Verb::clipList, .limit = 3, .json = true}},
        {"clip list --limit=20", {.verb = Verb::clipList, .limit = 20}},
        {"clip copy 1", {.verb = Verb::clipCopy, .clip = 1}},
        {"clip copy --plain 12", {.verb = Verb::clipCopy, .clip = 12, .plain = true}},
        {std::string("clip show ") + id, {.verb = Verb::clipShow, .clip = byId}},
        {"clip pin {0F8FAD5B-D9CB-469F-A165-70867728950E}", {.verb = Verb::clipPin, .clip = byId}},
        {"clip delete 2", {.verb = Verb::clipDelete, .clip = 2}},
        {"clip clear --keep-pinned", {.verb = Verb::clipClear, .keepPinned = true}},
        {"snap next-display", {.verb = Verb::snap, .choice = u"next-display"_s}},
        {"awake on", {.verb = Verb::awakeOn}},
        {"awake on 2h", {.verb = Verb::awakeOn, .choice = u"2h"_s}},
        {"awake --allow-display-sleep off",
         {.verb = Verb::awakeAllowDisplaySleep, .choice = u"off"_s}},
        {"hidden toggle", {.verb = Verb::hidden, .choice = u"toggle"_s}},
        {"stats --watch --json", {.verb = Verb::stats, .json = true, .watch = true}},
    };
    for (const auto& [line, expected] : table) {
        const auto parsed = parseCommandLine(words(line.c_str()));
        ASSERT_TRUE(std::holds_alternative<Command>(parsed)) << line;
        EXPECT_EQ(std::get<Command>(parsed), expected) << line;
    }
}

TEST(CommandLine, whatIsNotUnderstoodIsNamedInOneLine) {
    const std::vector<std::pair<std::string, std::string>> table{
        {"klip", R"(unknown verb "klip")"},
        {"--frobnicate", R"(unknown option "--frobnicate")"},
        {"clip", "list, copy, show, pin, delete, clear"},
        {"clip paste", "list, copy, show, pin, delete, clear"},
        {"status now", R"("status" has no use for "now")"},
        {"clip list --plain", R"("clip list" has no option "--plain")"},
        {"clip list --limit", "whole number from 1"},
        {"clip list --limit 0", "whole number from 1"},
        {"clip list --limit=+3", "whole number from 1"},
        {"clip list --limit 99999999999", "whole number from 1"},
        {"snap", R"("snap" needs one of: left, right)"},
        {"snap west", R"("snap" needs one of: left, right)"},
        {"dark on off", R"("dark" has no use for "off")"},
        {"awake", "on, off, toggle, --allow-display-sleep"},
        {"awake on 3h", R"("awake on" needs one of: 30m, 1h, 2h, 4h)"},
        {"clip copy", "needs the number or the id"},
        {"clip copy 0", "neither the number nor the id"},
        {"clip copy -1", R"(no option "-1")"},
        {"clip copy 1 2", R"(no use for "2")"},
        {"clip show abc", R"("abc" is neither)"},
        {std::string("clip show ") + id + "0", "neither the number nor the id"},
        {std::string("clip show {") + id, "neither the number nor the id"},
        {"clip show 00000000-0000-0000-0000-000000000000", "neither the number nor the id"},
    };
    for (const auto& [line, expected] : table) {
        const auto parsed = parseCommandLine(words(line.c_str()));
        ASSERT_TRUE(std::holds_alternative<UsageError>(parsed)) << line;
        EXPECT_NE(std::get<UsageError>(parsed).text.toStdString().find(expected), std::string::npos)
            << line << ": " << std::get<UsageError>(parsed).text.toStdString();
    }
    const auto parsed = parseCommandLine({u"two\nlines\x1b[31m"_s});
    EXPECT_EQ(std::get<UsageError>(parsed).text,
              u"unknown verb \"two lines [31m\" (see quillet --help)"_s);
}

TEST(CommandLine, helpNamesTheVerbsOfItsTopic) {
    EXPECT_TRUE(helpText({}).contains(u"quit"_s));
    EXPECT_FALSE(helpText({}).contains(u"--service"_s));
    EXPECT_TRUE(helpText(u"clip"_s).contains(u"clip clear [--keep-pinned]"_s));
    EXPECT_FALSE(helpText(u"clip"_s).contains(u"quit"_s));
}

TEST(Printable, foreignTextStaysOnOneLineAndCannotSteerTheTerminal) {
    EXPECT_EQ(printable(u"  a\r\n\tb\u2028c\u0000d "_s), u"a b c d"_s);
    EXPECT_EQ(printable(u"\u202Egnp.exe\u2066\u200B"_s), u"gnp.exe"_s);
    EXPECT_EQ(printable(u"\x1b]0;title\a"_s), u"]0;title"_s);
}

TEST(Printable, aPreviewEndsBetweenCharacters) {
    EXPECT_EQ(preview(u"short"_s, 5), u"short"_s);
    EXPECT_EQ(preview(u"longer"_s, 5), u"longe\u2026"_s);
    EXPECT_EQ(preview(u"ab\U0001F600c"_s, 3), u"ab\u2026"_s);
    EXPECT_EQ(preview(QString(100'000, u' ') + u'x', 5), u"\u2026"_s);
    EXPECT_EQ(preview(QString(), 5), QString());
}

} // namespace quillet

#include "app/CommandLine.h"
#include "app/Printable.h"

#include <clocale>
#include <gmock/gmock.h>

using namespace Qt::StringLiterals;
using testing::HasSubstr;

namespace quillet {

namespace {

const std::string id = "0f8fad5b-d9cb-469f-a165-70867728950e";

auto parsed(const std::string& line) {
    return parseCommandLine(QString::fromStdString(line).split(u' ', Qt::SkipEmptyParts));
}

} // namespace

TEST(CommandLine, eachVerbIsReadWithItsOptions) {
    const ClipReference byId = QUuid::fromString(QString::fromStdString(id));
    const std::vector<std::pair<std::string, Command>> table{
        {"", {.verb = Verb::start}},
        {"--service", {.verb = Verb::service}},
        {"status", {.verb = Verb::status}},
        {"-h", {.verb = Verb::help}},
        {"clip --help", {.verb = Verb::help, .topic = u"clip"_s}},
        {"clip list --json --limit 3", {.verb = Verb::clipList, .limit = 3, .json = true}},
        {"clip list --limit=20", {.verb = Verb::clipList, .limit = 20}},
        {"clip copy --plain 12", {.verb = Verb::clipCopy, .clip = 12, .plain = true}},
        {"clip show " + id, {.verb = Verb::clipShow, .clip = byId}},
        {"clip pin {0F8FAD5B-D9CB-469F-A165-70867728950E}", {.verb = Verb::clipPin, .clip = byId}},
        {"clip clear --keep-pinned", {.verb = Verb::clipClear, .keepPinned = true}},
        {"snap next-display", {.verb = Verb::snap, .choice = u"next-display"_s}},
        {"awake on 2h", {.verb = Verb::awakeOn, .choice = u"2h"_s}},
        {"awake --allow-display-sleep off",
         {.verb = Verb::awakeAllowDisplaySleep, .choice = u"off"_s}},
        {"hidden toggle", {.verb = Verb::hidden, .choice = u"toggle"_s}},
        {"stats --watch --json", {.verb = Verb::stats, .json = true, .watch = true}},
    };
    for (const auto& [line, expected] : table) {
        const auto result = parsed(line);
        ASSERT_TRUE(std::holds_alternative<Command>(result)) << line;
        EXPECT_EQ(std::get<Command>(result), expected) << line;
    }
}

TEST(CommandLine, whatIsNotUnderstoodIsNamedInOneLine) {
    const std::vector<std::pair<std::string, std::string>> table{
        {"klip", R"(unknown verb "klip")"},
        {"--frobnicate", R"(unknown option "--frobnicate")"},
        {"clip", "list, copy, show, pin, delete, clear"},
        {"status now", R"("status" has no use for "now")"},
        {"clip list --plain", R"("clip list" has no option "--plain")"},
        {"clip list --limit 0", "whole number from 1"},
        {"clip list --limit 99999999999", "whole number from 1"},
        {"snap west", R"("snap" needs one of: left, right)"},
        {"dark on off", R"("dark" has no use for "off")"},
        {"awake", "on, off, toggle, --allow-display-sleep"},
        {"awake on 3h", R"("awake on" needs one of: 30m, 1h, 2h, 4h)"},
        {"clip copy 0", "neither the number nor the id"},
        {"clip copy -1", R"(no option "-1")"},
        {"clip show abc", R"("abc" is neither)"},
        {"clip show " + id + "0", "neither the number nor the id"},
        {"clip show 00000000-0000-0000-0000-000000000000", "neither the number nor the id"},
    };
    for (const auto& [line, expected] : table) {
        const auto result = parsed(line);
        ASSERT_TRUE(std::holds_alternative<UsageError>(result)) << line;
        EXPECT_THAT(std::get<UsageError>(result).text.toStdString(), HasSubstr(expected)) << line;
    }
    EXPECT_EQ(std::get<UsageError>(parsed("two\nlines\x1b[31m")).text,
              u"unknown verb \"two lines [31m\" (see quillet --help)"_s);
}

TEST(CommandLine, helpNamesTheVerbsOfItsTopic) {
    EXPECT_FALSE(helpText({}).contains(u"--service"_s));
    EXPECT_TRUE(helpText(u"clip"_s).contains(u"clip clear [--keep-pinned]"_s));
    EXPECT_FALSE(helpText(u"clip"_s).contains(u"quit"_s));
}

TEST(Printable, foreignTextStaysOnOneLineAndCannotSteerTheTerminal) {
    EXPECT_EQ(printable(u"  a\r\n\tb\u2028c\u0000d "_s), u"a b c d"_s);
    EXPECT_EQ(printable(u"\u202Egnp.exe\u2066\u200B"_s), u"gnp.exe"_s);
}

TEST(Printable, aPreviewEndsBetweenCharacters) {
    std::setlocale(LC_CTYPE, "C.UTF-8");
    EXPECT_EQ(preview(u"longer"_s, 5), u"longe\u2026"_s);
    EXPECT_EQ(preview(u"ab\U0001F600c"_s, 3), u"ab\u2026"_s);
    EXPECT_EQ(preview(u"\u6F22\u5B57\u6F22"_s, 5), u"\u6F22\u5B57\u2026"_s) << "two columns each";
    EXPECT_EQ(preview(u"u\u0308u\u0308x"_s, 2), u"u\u0308u\u0308\u2026"_s) << "accents take none";
    EXPECT_EQ(columns(u"a\u0308\U0001F600\u5B57"_s), 5);
    EXPECT_EQ(preview(QString(100'000, u' ') + u'x', 5), u"\u2026"_s);
}

} // namespace quillet

#include "hotkeys/Shortcut.h"

#include <gtest/gtest.h>

namespace quillet {

using namespace Qt::StringLiterals;
using namespace ModifierFlag;

constexpr quint64 capsLock = 1U << 16;
constexpr quint64 function = 1U << 23;

TEST(ShortcutTest, aPressedKeyIsNamedByItsCodeElseByItsCharacters) {
    const struct {
        KeyDown event;
        QString display; ///< null where there is no shortcut
    } rows[] = {
        {{19, shift | command, u"@"_s}, u"⇧⌘2"_s},
        {{0, command | shift | option | control | capsLock, u"a"_s}, u"⌃⌥⇧⌘A"_s},
        {{123, control | option | function, {}}, u"⌃⌥←"_s},
        {{12, option, u"й"_s}, u"⌥Й"_s},
        {{200, command, {}}, u"⌘?"_s},
        {{200, command, u""_s}, u"⌘"_s},
        {{0, 0, u"a"_s}, {}},
        {{0, shift | capsLock | function, u"a"_s}, {}},
    };
    for (const auto& row : rows) {
        const auto shortcut = Shortcut::fromEvent(row.event);
        EXPECT_EQ(shortcut.has_value(), !row.display.isNull()) << row.event.keyCode;
        EXPECT_EQ(shortcut ? shortcut->display() : QString(), row.display);
    }
}

TEST(ShortcutTest, onlyACompleteJsonObjectIsAShortcut) {
    const Shortcut shortcut{0x1'0000'0001, -5, u"Ü \"↩"_s};
    EXPECT_EQ(Shortcut::fromJson(shortcut.toJson()), shortcut);
    EXPECT_EQ(Shortcut::fromJson(R"({"keyName":"V","other":1,"modifiers":768,"keyCode":9})"),
              (Shortcut{9, 0x300, u"V"_s}));
    for (const char* broken : {"", "[]", "{", R"({"keyCode":9,"modifiers":768})",
                               R"({"keyCode":"9","modifiers":768,"keyName":"V"})",
                               R"({"keyCode":1e30,"modifiers":768,"keyName":"V"})",
                               R"({"keyCode":9,"modifiers":768,"keyName":null})"})
        EXPECT_FALSE(Shortcut::fromJson(broken)) << broken;
}

} // namespace quillet

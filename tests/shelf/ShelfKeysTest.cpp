#include "shelf/ShelfKeys.h"

#include <gtest/gtest.h>

namespace quillet {
namespace {

using namespace Qt::StringLiterals;
using Kind = ShelfAction::Kind;

TEST(ShelfKeysTest, keysMeanWhatTheShelfPromises) {
    struct Row {
        const char* name;
        ShelfKey key;
        std::optional<ShelfAction> action;
    };
    const Row rows[] = {
        {"Return", {36, false, false, u"\r"_s}, ShelfAction{Kind::pasteSelected, 0, false}},
        {"Shift-Return", {36, true, false, u"\r"_s}, ShelfAction{Kind::pasteSelected, 0, true}},
        {"Enter", {76, false, true, u"\r"_s}, ShelfAction{Kind::pasteSelected, 0, false}},
        {"Command-Delete", {51, false, true, {}}, ShelfAction{Kind::remove}},
        {"Escape", {53, true, true, {}}, ShelfAction{Kind::cancel}},
        {"right", {124, true, true, {}}, ShelfAction{Kind::moveSelection, +1}},
        {"Command-1", {18, false, true, u"1"_s}, ShelfAction{Kind::pasteNumber, 1, false}},
        {"Command-Shift-9", {25, true, true, u"9"_s}, ShelfAction{Kind::pasteNumber, 9, true}},
        {"Command-0", {29, false, true, u"0"_s}, std::nullopt},
        {"Command-Shift-1 on most layouts", {18, true, true, u"!"_s}, std::nullopt},
        {"1", {18, false, false, u"1"_s}, std::nullopt},
        {"Command-P", {35, false, true, u"p"_s}, ShelfAction{Kind::togglePin}},
        {"Command-Shift-P", {35, true, true, u"P"_s}, std::nullopt},
    };
    for (const Row& row : rows)
        EXPECT_EQ(shelfAction(row.key), row.action) << row.name;
}

} // namespace
} // namespace quillet

#include "shelf/ShelfKeys.h"

namespace quillet {

using Kind = ShelfAction::Kind;

namespace {

namespace KeyCode {
constexpr uint16_t returnKey = 36;
constexpr uint16_t deleteKey = 51;
constexpr uint16_t escape = 53;
constexpr uint16_t keypadEnter = 76;
constexpr uint16_t leftArrow = 123;
constexpr uint16_t rightArrow = 124;
} // namespace KeyCode

std::optional<ShelfAction> commandAction(const ShelfKey& key) {
    bool isNumber = false;
    const int number = key.characters.toInt(&isNumber);
    if (isNumber && number >= 1 && number <= 9)
        return ShelfAction{Kind::pasteNumber, number, key.shift};
    if (key.characters == QLatin1String("p"))
        return ShelfAction{Kind::togglePin};
    return std::nullopt;
}

} // namespace

std::optional<ShelfAction> shelfAction(const ShelfKey& key) {
    switch (key.keyCode) {
    case KeyCode::returnKey:
    case KeyCode::keypadEnter:
        return ShelfAction{Kind::pasteSelected, 0, key.shift};
    case KeyCode::deleteKey:
        return key.command ? std::optional(ShelfAction{Kind::remove}) : std::nullopt;
    case KeyCode::escape:
        return ShelfAction{Kind::cancel};
    case KeyCode::leftArrow:
        return ShelfAction{Kind::moveSelection, -1};
    case KeyCode::rightArrow:
        return ShelfAction{Kind::moveSelection, +1};
    default:
        return key.command ? commandAction(key) : std::nullopt;
    }
}

} // namespace quillet

#pragma once

#include <cstdint>
#include <optional>
#include <QString>

namespace quillet {

/// A key that went down while the shelf has the keyboard.
struct ShelfKey {
    uint16_t keyCode = 0; ///< virtual key code
    bool shift = false;
    bool command = false;
    QString characters; ///< what the key types without modifiers other than Shift
};

/// What a key asks of the shelf.
struct ShelfAction {
    enum class Kind { pasteSelected, pasteNumber, remove, cancel, moveSelection, togglePin };
    Kind kind = Kind::cancel;
    int number = 0; ///< the card's number from 1 for pasteNumber; the step for moveSelection
    bool plainText = false;
    bool operator==(const ShelfAction&) const = default;
};

/// Absent for keys that belong to the search field.
std::optional<ShelfAction> shelfAction(const ShelfKey& key);

} // namespace quillet

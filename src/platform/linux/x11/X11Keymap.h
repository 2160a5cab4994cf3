#pragma once

#include "platform/linux/x11/KeyCodes.h"
#include "platform/linux/x11/X11Connection.h"

#include <array>
#include <initializer_list>
#include <optional>

struct xkb_keymap;

namespace quillet {

/// The keyboard as the server maps it at the moment of asking. A keymap never changes; after a
/// change of the layout ask for another.
class X11Keymap {
public:
    /// Null where the server lacks the keyboard extension.
    static std::unique_ptr<X11Keymap> current(X11Connection& connection);

    ~X11Keymap();
    X11Keymap(const X11Keymap&) = delete;
    X11Keymap& operator=(const X11Keymap&) = delete;

    /// The keys that a shortcut means: those with the symbol in the first Latin layout, else in
    /// any, without modifiers before with them; where no layout has it, the key at its place.
    std::vector<xcb_keycode_t> shortcutKeys(const KeyMeaning& key) const;

    /// The character that a key stands for in shortcuts: that of the first Latin layout, else the
    /// one at its place on an American keyboard; 0 for none.
    char32_t shortcutSymbol(uint32_t key) const;

    /// The key that types a symbol without modifiers in the layout in use now.
    std::optional<xcb_keycode_t> typingKey(xcb_keysym_t symbol) const;

    /// A key with any of these symbols; for modifiers, which all layouts share.
    std::optional<xcb_keycode_t> keyWith(std::initializer_list<xcb_keysym_t> symbols) const;

    /// The real modifiers that keys with any of these symbols set.
    uint16_t modifiersOf(std::initializer_list<xcb_keysym_t> symbols) const;

    /// The modifiers that a shortcut ignores: the locks.
    uint16_t locks() const;

    /// All keys that set modifiers outside `without`.
    std::vector<xcb_keycode_t> modifierKeys(uint16_t without) const;

    /// A key without any symbol.
    std::optional<xcb_keycode_t> unusedKey() const;

private:
    X11Keymap(xkb_keymap* keymap, uint32_t layout);

    bool types(xcb_keycode_t key, uint32_t layout, uint32_t level, xcb_keysym_t symbol) const;
    bool hasSymbol(xcb_keycode_t key, std::initializer_list<xcb_keysym_t> symbols) const;
    bool isLatin(uint32_t layout) const;
    std::vector<xcb_keycode_t> keys() const;

    /// Without keys that have no place on a keyboard and yet type a character: a program, perhaps
    /// this one, has lent it to them for a moment.
    std::vector<xcb_keycode_t> keysOfLayouts() const;
    bool typesCharacter(xcb_keycode_t key) const;

    xkb_keymap* m_keymap;
    uint32_t m_layout;                                     ///< in use
    std::vector<uint32_t> m_layouts;                       ///< the Latin one first
    std::array<std::vector<xcb_keycode_t>, 8> m_modifiers; ///< keys by real modifier
};

} // namespace quillet

#include "platform/linux/x11/X11Keymap.h"

#include "platform/linux/x11/XcbXkb.h"

#include <algorithm>
#include <xkbcommon/xkbcommon-x11.h>

namespace quillet {

std::unique_ptr<X11Keymap> X11Keymap::current(X11Connection& connection) {
    xcb_connection_t* xcb = connection.xcb();
    if (!xkb_x11_setup_xkb_extension(
            xcb, XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
            XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, nullptr, nullptr))
        return nullptr;
    const auto stateAsked = xcb_xkb_get_state(xcb, XCB_XKB_ID_USE_CORE_KBD);
    const auto modifiersAsked = xcb_get_modifier_mapping(xcb);
    const XcbOwned<xcb_xkb_get_state_reply_t> state(
        xcb_xkb_get_state_reply(xcb, stateAsked, nullptr));
    const XcbOwned<xcb_get_modifier_mapping_reply_t> modifiers(
        xcb_get_modifier_mapping_reply(xcb, modifiersAsked, nullptr));
    if (!state || !modifiers)
        return nullptr;
    // No files are read: the server tells all.
    xkb_context* context = xkb_context_new(static_cast<xkb_context_flags>(
        XKB_CONTEXT_NO_DEFAULT_INCLUDES | XKB_CONTEXT_NO_ENVIRONMENT_NAMES));
    xkb_keymap* compiled = xkb_x11_keymap_new_from_device(
        context, xcb, xkb_x11_get_core_keyboard_device_id(xcb), XKB_KEYMAP_COMPILE_NO_FLAGS);
    xkb_context_unref(context);
    if (!compiled)
        return nullptr;

    std::unique_ptr<X11Keymap> keymap(new X11Keymap(compiled, state->group));
    const xcb_keycode_t* key = xcb_get_modifier_mapping_keycodes(modifiers.get());
    for (auto& keysOfModifier : keymap->m_modifiers) {
        for (int i = 0; i < modifiers->keycodes_per_modifier; ++i, ++key) {
            if (*key != 0)
                keysOfModifier.push_back(*key);
        }
    }
    return keymap;
}

X11Keymap::X11Keymap(xkb_keymap* keymap, uint32_t layout) : m_keymap(keymap), m_layout(layout) {
    for (uint32_t i = 0; i < xkb_keymap_num_layouts(m_keymap); ++i)
        m_layouts.push_back(i);
    std::stable_partition(m_layouts.begin(), m_layouts.end(),
                          [this](uint32_t candidate) { return isLatin(candidate); });
}

X11Keymap::~X11Keymap() {
    xkb_keymap_unref(m_keymap);
}

std::vector<xcb_keycode_t> X11Keymap::shortcutKeys(const KeyMeaning& wanted) const {
    constexpr uint32_t levels = 4;
    std::vector<xcb_keycode_t> found;
    for (const uint32_t layout : m_layouts) {
        for (uint32_t level = 0; level < levels && found.empty(); ++level) {
            for (const xcb_keycode_t key : keysOfLayouts()) {
                if (types(key, layout, level, wanted.keysym))
                    found.push_back(key);
            }
        }
    }
    if (found.empty())
        found.push_back(wanted.position);
    return found;
}

char32_t X11Keymap::shortcutSymbol(uint32_t key) const {
    if (m_layouts.empty() || !isLatin(m_layouts.front())) {
        const std::optional<KeyMeaning> meaning = keyMeaningAt(key);
        return meaning ? xkb_keysym_to_utf32(meaning->keysym) : 0;
    }
    const xkb_keysym_t* symbols = nullptr;
    const int count =
        xkb_keymap_key_get_syms_by_level(m_keymap, key, m_layouts.front(), 0, &symbols);
    return count == 1 ? xkb_keysym_to_utf32(symbols[0]) : 0;
}

std::optional<xcb_keycode_t> X11Keymap::typingKey(xcb_keysym_t symbol) const {
    for (const xcb_keycode_t key : keys()) {
        if (types(key, m_layout, 0, symbol))
            return key;
    }
    return std::nullopt;
}

std::optional<xcb_keycode_t> X11Keymap::keyWith(std::initializer_list<xcb_keysym_t> symbols) const {
    for (const xcb_keycode_t key : keys()) {
        if (hasSymbol(key, symbols))
            return key;
    }
    return std::nullopt;
}

uint16_t X11Keymap::modifiersOf(std::initializer_list<xcb_keysym_t> symbols) const {
    unsigned mask = 0;
    for (size_t modifier = 0; modifier < m_modifiers.size(); ++modifier) {
        for (const xcb_keycode_t key : m_modifiers[modifier]) {
            if (hasSymbol(key, symbols))
                mask |= 1U << modifier;
        }
    }
    return static_cast<uint16_t>(mask);
}

uint16_t X11Keymap::locks() const {
    return static_cast<uint16_t>(XCB_MOD_MASK_LOCK |
                                 modifiersOf({XKB_KEY_Num_Lock, XKB_KEY_Scroll_Lock}));
}

std::vector<xcb_keycode_t> X11Keymap::modifierKeys(uint16_t without) const {
    std::vector<xcb_keycode_t> found;
    for (size_t modifier = 0; modifier < m_modifiers.size(); ++modifier) {
        if (!(without & (1U << modifier)))
            found.insert(found.end(), m_modifiers[modifier].begin(), m_modifiers[modifier].end());
    }
    return found;
}

std::optional<xcb_keycode_t> X11Keymap::unusedKey() const {
    const std::vector<xcb_keycode_t> all = keys();
    const auto unused = std::find_if(all.rbegin(), all.rend(), [this](xcb_keycode_t key) {
        return xkb_keymap_num_layouts_for_key(m_keymap, key) == 0;
    });
    return unused == all.rend() ? std::nullopt : std::optional(*unused);
}

bool X11Keymap::types(xcb_keycode_t key, uint32_t layout, uint32_t level,
                      xcb_keysym_t symbol) const {
    const xkb_keysym_t* symbols = nullptr;
    const int count = xkb_keymap_key_get_syms_by_level(m_keymap, key, layout, level, &symbols);
    return count == 1 && symbols[0] == symbol;
}

bool X11Keymap::hasSymbol(xcb_keycode_t key, std::initializer_list<xcb_keysym_t> symbols) const {
    return std::any_of(symbols.begin(), symbols.end(), [&](xcb_keysym_t symbol) {
        return types(key, 0, 0, symbol) || types(key, 0, 1, symbol);
    });
}

bool X11Keymap::isLatin(uint32_t layout) const {
    const std::vector<xcb_keycode_t> all = keysOfLayouts();
    return std::any_of(all.begin(), all.end(),
                       [&](xcb_keycode_t key) { return types(key, layout, 0, XKB_KEY_a); });
}

std::vector<xcb_keycode_t> X11Keymap::keysOfLayouts() const {
    std::vector<xcb_keycode_t> found = keys();
    std::erase_if(found, [this](xcb_keycode_t key) {
        // Keys that have a place on keyboards are named after it, the others I and a number.
        const char* name = xkb_keymap_key_get_name(m_keymap, key);
        const bool hasPlace = name && !(name[0] == 'I' && name[1] >= '0' && name[1] <= '9');
        return !hasPlace && typesCharacter(key);
    });
    return found;
}

bool X11Keymap::typesCharacter(xcb_keycode_t key) const {
    const xkb_keysym_t* symbols = nullptr;
    const int count = xkb_keymap_key_get_syms_by_level(m_keymap, key, 0, 0, &symbols);
    return count == 1 && xkb_keysym_to_utf32(symbols[0]) != 0;
}

std::vector<xcb_keycode_t> X11Keymap::keys() const {
    std::vector<xcb_keycode_t> all;
    for (xkb_keycode_t key = xkb_keymap_min_keycode(m_keymap);
         key <= std::min<xkb_keycode_t>(xkb_keymap_max_keycode(m_keymap), 255); ++key)
        all.push_back(static_cast<xcb_keycode_t>(key));
    return all;
}

} // namespace quillet

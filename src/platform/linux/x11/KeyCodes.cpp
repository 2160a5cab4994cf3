#include "platform/linux/x11/KeyCodes.h"

#include <algorithm>
#include <iterator>
#include <xkbcommon/xkbcommon-keysyms.h>

namespace quillet {

namespace {

constexpr KeyMeaning meanings[] = {
    // letters
    {0, XKB_KEY_a, 38},
    {11, XKB_KEY_b, 56},
    {8, XKB_KEY_c, 54},
    {2, XKB_KEY_d, 40},
    {14, XKB_KEY_e, 26},
    {3, XKB_KEY_f, 41},
    {5, XKB_KEY_g, 42},
    {4, XKB_KEY_h, 43},
    {34, XKB_KEY_i, 31},
    {38, XKB_KEY_j, 44},
    {40, XKB_KEY_k, 45},
    {37, XKB_KEY_l, 46},
    {46, XKB_KEY_m, 58},
    {45, XKB_KEY_n, 57},
    {31, XKB_KEY_o, 32},
    {35, XKB_KEY_p, 33},
    {12, XKB_KEY_q, 24},
    {15, XKB_KEY_r, 27},
    {1, XKB_KEY_s, 39},
    {17, XKB_KEY_t, 28},
    {32, XKB_KEY_u, 30},
    {9, XKB_KEY_v, 55},
    {13, XKB_KEY_w, 25},
    {7, XKB_KEY_x, 53},
    {16, XKB_KEY_y, 29},
    {6, XKB_KEY_z, 52},
    // digits
    {18, XKB_KEY_1, 10},
    {19, XKB_KEY_2, 11},
    {20, XKB_KEY_3, 12},
    {21, XKB_KEY_4, 13},
    {23, XKB_KEY_5, 14},
    {22, XKB_KEY_6, 15},
    {26, XKB_KEY_7, 16},
    {28, XKB_KEY_8, 17},
    {25, XKB_KEY_9, 18},
    {29, XKB_KEY_0, 19},
    // punctuation
    {27, XKB_KEY_minus, 20},
    {24, XKB_KEY_equal, 21},
    {33, XKB_KEY_bracketleft, 34},
    {30, XKB_KEY_bracketright, 35},
    {41, XKB_KEY_semicolon, 47},
    {39, XKB_KEY_apostrophe, 48},
    {50, XKB_KEY_grave, 49},
    {42, XKB_KEY_backslash, 51},
    {43, XKB_KEY_comma, 59},
    {47, XKB_KEY_period, 60},
    {44, XKB_KEY_slash, 61},
    {10, XKB_KEY_less, 94},
    // editing and movement
    {36, XKB_KEY_Return, 36},
    {48, XKB_KEY_Tab, 23},
    {49, XKB_KEY_space, 65},
    {51, XKB_KEY_BackSpace, 22},
    {53, XKB_KEY_Escape, 9},
    {114, XKB_KEY_Insert, 118},
    {117, XKB_KEY_Delete, 119},
    {115, XKB_KEY_Home, 110},
    {119, XKB_KEY_End, 115},
    {116, XKB_KEY_Page_Up, 112},
    {121, XKB_KEY_Page_Down, 117},
    {123, XKB_KEY_Left, 113},
    {124, XKB_KEY_Right, 114},
    {125, XKB_KEY_Down, 116},
    {126, XKB_KEY_Up, 111},
    // function keys; the three after F12 carry other names here
    {122, XKB_KEY_F1, 67},
    {120, XKB_KEY_F2, 68},
    {99, XKB_KEY_F3, 69},
    {118, XKB_KEY_F4, 70},
    {96, XKB_KEY_F5, 71},
    {97, XKB_KEY_F6, 72},
    {98, XKB_KEY_F7, 73},
    {100, XKB_KEY_F8, 74},
    {101, XKB_KEY_F9, 75},
    {109, XKB_KEY_F10, 76},
    {103, XKB_KEY_F11, 95},
    {111, XKB_KEY_F12, 96},
    {105, XKB_KEY_Print, 107},
    {107, XKB_KEY_Scroll_Lock, 78},
    {113, XKB_KEY_Pause, 127},
    // keypad
    {82, XKB_KEY_KP_0, 90},
    {83, XKB_KEY_KP_1, 87},
    {84, XKB_KEY_KP_2, 88},
    {85, XKB_KEY_KP_3, 89},
    {86, XKB_KEY_KP_4, 83},
    {87, XKB_KEY_KP_5, 84},
    {88, XKB_KEY_KP_6, 85},
    {89, XKB_KEY_KP_7, 79},
    {91, XKB_KEY_KP_8, 80},
    {92, XKB_KEY_KP_9, 81},
    {65, XKB_KEY_KP_Decimal, 91},
    {67, XKB_KEY_KP_Multiply, 63},
    {69, XKB_KEY_KP_Add, 86},
    {71, XKB_KEY_Num_Lock, 77},
    {75, XKB_KEY_KP_Divide, 106},
    {76, XKB_KEY_KP_Enter, 104},
    {78, XKB_KEY_KP_Subtract, 82},
    {81, XKB_KEY_KP_Equal, 125},
};

} // namespace

std::optional<KeyMeaning> keyMeaning(uint32_t keyCode) {
    const auto* meaning = std::ranges::find(meanings, keyCode, &KeyMeaning::keyCode);
    return meaning == std::end(meanings) ? std::nullopt : std::optional(*meaning);
}

std::optional<KeyMeaning> keyMeaningAt(uint32_t position) {
    const auto* meaning = std::ranges::find(meanings, position, &KeyMeaning::position);
    return meaning == std::end(meanings) ? std::nullopt : std::optional(*meaning);
}

} // namespace quillet

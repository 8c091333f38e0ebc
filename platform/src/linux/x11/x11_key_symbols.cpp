// The table of key symbols.
#include "x11_key_symbols.h"

#include <xkbcommon/xkbcommon-keysyms.h>

#include <algorithm>
#include <iterator>
#include <utility>

namespace brindlehum {
namespace {

using Row = std::pair<uint16_t, uint32_t>;

// "delete" is the key that deletes backwards, "enter" that of the number pad.
constexpr Row rows[] = {
    {0, XKB_KEY_a},
    {1, XKB_KEY_s},
    {2, XKB_KEY_d},
    {3, XKB_KEY_f},
    {4, XKB_KEY_h},
    {5, XKB_KEY_g},
    {6, XKB_KEY_z},
    {7, XKB_KEY_x},
    {8, XKB_KEY_c},
    {9, XKB_KEY_v},
    {11, XKB_KEY_b},
    {12, XKB_KEY_q},
    {13, XKB_KEY_w},
    {14, XKB_KEY_e},
    {15, XKB_KEY_r},
    {16, XKB_KEY_y},
    {17, XKB_KEY_t},
    {31, XKB_KEY_o},
    {32, XKB_KEY_u},
    {34, XKB_KEY_i},
    {35, XKB_KEY_p},
    {37, XKB_KEY_l},
    {38, XKB_KEY_j},
    {40, XKB_KEY_k},
    {45, XKB_KEY_n},
    {46, XKB_KEY_m},
    {18, XKB_KEY_1},
    {19, XKB_KEY_2},
    {20, XKB_KEY_3},
    {21, XKB_KEY_4},
    {22, XKB_KEY_6},
    {23, XKB_KEY_5},
    {25, XKB_KEY_9},
    {26, XKB_KEY_7},
    {28, XKB_KEY_8},
    {29, XKB_KEY_0},
    {24, XKB_KEY_equal},
    {27, XKB_KEY_minus},
    {30, XKB_KEY_bracketright},
    {33, XKB_KEY_bracketleft},
    {39, XKB_KEY_apostrophe},
    {41, XKB_KEY_semicolon},
    {42, XKB_KEY_backslash},
    {43, XKB_KEY_comma},
    {44, XKB_KEY_slash},
    {47, XKB_KEY_period},
    {50, XKB_KEY_grave},
    {36, XKB_KEY_Return},
    {48, XKB_KEY_Tab},
    {49, XKB_KEY_space},
    {51, XKB_KEY_BackSpace},
    {53, XKB_KEY_Escape},
    {76, XKB_KEY_KP_Enter},
    {67, XKB_KEY_KP_Multiply},
    {69, XKB_KEY_KP_Add},
    {78, XKB_KEY_KP_Subtract},
    {82, XKB_KEY_KP_0},
    {83, XKB_KEY_KP_1},
    {84, XKB_KEY_KP_2},
    {85, XKB_KEY_KP_3},
    {115, XKB_KEY_Home},
    {116, XKB_KEY_Prior},
    {119, XKB_KEY_End},
    {121, XKB_KEY_Next},
    {123, XKB_KEY_Left},
    {124, XKB_KEY_Right},
    {125, XKB_KEY_Down},
    {126, XKB_KEY_Up},
    {111, XKB_KEY_F12},
};

}  // namespace

std::optional<uint32_t> x11Symbol(uint16_t code) {
    const auto* row = std::ranges::find(rows, code, &Row::first);
    return row == std::end(rows) ? std::nullopt : std::optional(row->second);
}

}  // namespace brindlehum

// The table of channel layout tags, from the channel layout chapter of the Core Audio Format documentation.
#include "speakers/layout_tags.h"

#include <algorithm>

namespace brindlehum::layout_tags {

namespace {

constexpr uint32_t tag(uint32_t id, uint32_t channels) {
    return id << 16 | channels;
}

// Channel labels. The surround labels don't say side or back; the "direct" ones are at the side.
enum Label : uint8_t {
    L = 1,
    R = 2,
    C = 3,
    LFE = 4,
    Ls = 5,
    Rs = 6,
    Lc = 7,
    Rc = 8,
    Cs = 9,
    Lsd = 10,
    Rsd = 11,
    Ts = 12,   // top centre surround
    Vhl = 13,  // vertical height: top front
    Vhc = 14,
    Vhr = 15,
    Rls = 33,  // rear surround
    Rrs = 34,
    Lw = 35,
    Rw = 36,
    Lt = 38,  // matrix-encoded totals
    Rt = 39,
    Mono = 42,
    Ltm = 49,  // top middle
    Rtm = 51,
    Ltr = 52,  // top rear
    Rtr = 54,
    W = 200,  // Ambisonic B-format
    X = 201,
    Y = 202,
    Z = 203,
    Mid = 204,
    Side = 205,
    XyX = 206,
    XyY = 207,
    BinauralL = 208,
    BinauralR = 209,
};

// clang-format off
constexpr LayoutTag table[] = {
    {tag(100, 1), {Mono}},
    {tag(101, 2), {L, R}},
    {tag(103, 2), {Lt, Rt}},
    {tag(104, 2), {Mid, Side}},
    {tag(105, 2), {XyX, XyY}},
    {tag(106, 2), {BinauralL, BinauralR}},
    {tag(107, 4), {W, X, Y, Z}},
    {tag(108, 4), {L, R, Ls, Rs}},                              // quadraphonic
    {tag(109, 5), {L, R, Ls, Rs, C}},                           // pentagonal
    {tag(110, 6), {L, R, Ls, Rs, C, Cs}},                       // hexagonal
    {tag(113, 3), {L, R, C}},                                   // MPEG 3.0 A, B
    {tag(114, 3), {C, L, R}},
    {tag(115, 4), {L, R, C, Cs}},                               // MPEG 4.0 A, B
    {tag(116, 4), {C, L, R, Cs}},
    {tag(117, 5), {L, R, C, Ls, Rs}},                           // MPEG 5.0 A to D
    {tag(118, 5), {L, R, Ls, Rs, C}},
    {tag(119, 5), {L, C, R, Ls, Rs}},
    {tag(120, 5), {C, L, R, Ls, Rs}},
    {tag(121, 6), {L, R, C, LFE, Ls, Rs}},                      // MPEG 5.1 A to D
    {tag(122, 6), {L, R, Ls, Rs, C, LFE}},
    {tag(123, 6), {L, C, R, Ls, Rs, LFE}},
    {tag(124, 6), {C, L, R, Ls, Rs, LFE}},
    {tag(125, 7), {L, R, C, LFE, Ls, Rs, Cs}},                  // MPEG 6.1 A
    {tag(126, 8), {L, R, C, LFE, Ls, Rs, Lc, Rc}},              // MPEG 7.1 A to C
    {tag(127, 8), {C, Lc, Rc, L, R, Ls, Rs, LFE}},
    {tag(128, 8), {L, R, C, LFE, Ls, Rs, Rls, Rrs}},
    {tag(129, 8), {L, R, Ls, Rs, C, LFE, Lc, Rc}},              // Emagic 7.1
    {tag(130, 8), {L, R, C, LFE, Ls, Rs, Lt, Rt}},              // SMPTE DTV
    {tag(131, 3), {L, R, Cs}},                                  // ITU 2.1, 2.2
    {tag(132, 4), {L, R, Ls, Rs}},
    {tag(133, 3), {L, R, LFE}},                                 // DVD 4 to 6
    {tag(134, 4), {L, R, LFE, Cs}},
    {tag(135, 5), {L, R, LFE, Ls, Rs}},
    {tag(136, 4), {L, R, C, LFE}},                              // DVD 10, 11, 18
    {tag(137, 5), {L, R, C, LFE, Cs}},
    {tag(138, 5), {L, R, Ls, Rs, LFE}},
    {tag(139, 6), {L, R, Ls, Rs, C, Cs}},                       // AudioUnit 6.0, 7.0
    {tag(140, 7), {L, R, Ls, Rs, C, Rls, Rrs}},
    {tag(141, 6), {C, L, R, Ls, Rs, Cs}},                       // AAC 6.0, 6.1, 7.0, octagonal
    {tag(142, 7), {C, L, R, Ls, Rs, Cs, LFE}},
    {tag(143, 7), {C, L, R, Ls, Rs, Rls, Rrs}},
    {tag(144, 8), {C, L, R, Ls, Rs, Rls, Rrs, Cs}},
    {tag(148, 7), {L, R, Ls, Rs, C, Lc, Rc}},                   // AudioUnit 7.0 front
    {tag(149, 2), {C, LFE}},                                    // AC-3
    {tag(150, 3), {L, C, R}},
    {tag(151, 4), {L, C, R, Cs}},
    {tag(152, 4), {L, C, R, LFE}},
    {tag(153, 4), {L, R, Cs, LFE}},
    {tag(154, 5), {L, C, R, Cs, LFE}},
    {tag(155, 6), {L, C, R, Ls, Rs, Cs}},                       // E-AC-3
    {tag(156, 7), {L, C, R, Ls, Rs, Rls, Rrs}},
    {tag(157, 7), {L, C, R, Ls, Rs, LFE, Cs}},
    {tag(158, 7), {L, C, R, Ls, Rs, LFE, Ts}},
    {tag(159, 7), {L, C, R, Ls, Rs, LFE, Vhc}},
    {tag(160, 8), {L, C, R, Ls, Rs, LFE, Rls, Rrs}},
    {tag(161, 8), {L, C, R, Ls, Rs, LFE, Lc, Rc}},
    {tag(162, 8), {L, C, R, Ls, Rs, LFE, Lsd, Rsd}},
    {tag(163, 8), {L, C, R, Ls, Rs, LFE, Lw, Rw}},
    {tag(164, 8), {L, C, R, Ls, Rs, LFE, Vhl, Vhr}},
    {tag(165, 8), {L, C, R, Ls, Rs, LFE, Cs, Ts}},
    {tag(166, 8), {L, C, R, Ls, Rs, LFE, Cs, Vhc}},
    {tag(167, 8), {L, C, R, Ls, Rs, LFE, Ts, Vhc}},
    {tag(168, 4), {C, L, R, LFE}},                              // DTS
    {tag(169, 5), {C, L, R, Cs, LFE}},
    {tag(170, 6), {Lc, Rc, L, R, Ls, Rs}},
    {tag(173, 7), {Lc, Rc, L, R, Ls, Rs, LFE}},
    {tag(176, 7), {Lc, C, Rc, L, R, Ls, Rs}},
    {tag(177, 8), {Lc, C, Rc, L, R, Ls, Rs, LFE}},
    {tag(182, 7), {C, L, R, Ls, Rs, LFE, Cs}},
    {tag(183, 8), {C, L, R, Ls, Rs, Rls, Rrs, LFE}},            // AAC 7.1 B, C
    {tag(184, 8), {C, L, R, Ls, Rs, LFE, Vhl, Vhr}},
    {tag(185, 4), {L, R, Rls, Rrs}},                            // WAVE 4.0 B to 7.1
    {tag(186, 5), {L, R, C, Rls, Rrs}},
    {tag(187, 6), {L, R, C, LFE, Rls, Rrs}},
    {tag(188, 7), {L, R, C, LFE, Cs, Ls, Rs}},
    {tag(189, 8), {L, R, C, LFE, Rls, Rrs, Ls, Rs}},
    {tag(192, 12), {L, R, C, LFE, Ls, Rs, Rls, Rrs, Vhl, Vhr, Ltr, Rtr}},  // Atmos 7.1.4, 9.1.6, 5.1.2, 5.1.4, 7.1.2
    {tag(193, 16), {L, R, C, LFE, Ls, Rs, Rls, Rrs, Lw, Rw, Vhl, Vhr, Ltm, Rtm, Ltr, Rtr}},
    {tag(194, 8), {L, R, C, LFE, Ls, Rs, Ltm, Rtm}},
    {tag(195, 10), {L, R, C, LFE, Ls, Rs, Vhl, Vhr, Ltr, Rtr}},
    {tag(196, 10), {L, R, C, LFE, Ls, Rs, Rls, Rrs, Ltm, Rtm}},
};
// clang-format on

}  // namespace

std::span<const LayoutTag> all() {
    return table;
}

const LayoutTag* find(uint32_t tag) {
    const auto* at = std::ranges::find_if(table, [&](const LayoutTag& e) { return e.tag == tag; });
    return at == std::end(table) ? nullptr : at;
}

}  // namespace brindlehum::layout_tags

// Speaker positions, speaker layouts and directions, which all other parts use to describe channels.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brindlehum {

// Degrees. Azimuth 0 is ahead and positive to the left (L is +30); elevation is positive upward.
struct Direction {
    double az = 0;
    double el = 0;
    bool operator==(const Direction&) const = default;

    // Great-circle angle in degrees, 0 to 180.
    double angle(const Direction& to) const;
    // (x forward, y left, z up).
    std::array<double, 3> unitVector() const;
    static Direction fromVector(const std::array<double, 3>& v);
};

enum class SpeakerID : uint8_t { L, R, C, LFE, Ls, Rs, Lrs, Rrs, Lw, Rw, Ltf, Rtf, Ltm, Rtm, Ltr, Rtr, Lc, Rc, Cs, Tc };
inline constexpr int speakerCount = 20;

using SpeakerList = std::vector<SpeakerID>;

// True for a list with Lrs or Rrs. In such a list Ls and Rs are side speakers (90 degrees, "Lss" and "Rss").
bool isRearLayout(const SpeakerList& list);

std::string_view rawValue(SpeakerID speaker);
std::optional<SpeakerID> speakerFromRaw(std::string_view raw);
Direction direction(SpeakerID speaker, const SpeakerList& in);
std::string label(SpeakerID speaker, const SpeakerList& in);

enum class LayoutID : uint8_t { stereo, l51, l71, l514, l712, l714, l916 };
inline constexpr std::array<LayoutID, 7> allLayouts = {LayoutID::stereo, LayoutID::l51,  LayoutID::l71, LayoutID::l514,
                                                       LayoutID::l712,   LayoutID::l714, LayoutID::l916};

std::string_view rawValue(LayoutID layout);
std::optional<LayoutID> layoutFromRaw(std::string_view raw);
std::string_view displayName(LayoutID layout);
// The channel order of the layout, in which output channels are counted everywhere.
const SpeakerList& speakers(LayoutID layout);
// The film order (centre second, LFE after the bed) of 5.1, 7.1 and 7.1.4; null for the other layouts.
const SpeakerList* filmOrder(LayoutID layout);

}  // namespace brindlehum

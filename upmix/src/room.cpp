// Room: directions, indices and levels of speakers.
#include "room.h"

#include <algorithm>

namespace brindlehum::UpmixPlanner {
namespace {

constexpr double gateDb = -40;

// The level of a fill speaker's group; none for L, R, C and LFE, which are never gated.
std::optional<double> groupLevel(SpeakerID speaker, const UpmixParams& p) {
    using enum SpeakerID;
    switch (speaker) {
        case Ls:
        case Rs:
            return p.sideDB;
        case Lrs:
        case Rrs:
        case Cs:
            return p.rearDB;
        case Lw:
        case Rw:
        case Lc:
        case Rc:
            return p.wideDB;
        case Ltf:
        case Rtf:
            return p.heightDB + 3 * p.heightTilt;
        case Ltm:
        case Rtm:
        case Tc:
            return p.heightDB;
        case Ltr:
        case Rtr:
            return p.heightDB - 3 * p.heightTilt;
        case L:
        case R:
        case C:
        case LFE:
            break;
    }
    return std::nullopt;
}

}  // namespace

Room::Room(const SpeakerList& list) : speakers(list) {
    for (const SpeakerID speaker : list) { dirs.push_back(direction(speaker, list)); }
}

std::optional<int> Room::find(SpeakerID speaker) const {
    return indexOf(speakers, speaker);
}

std::optional<int> indexOf(const SpeakerList& list, SpeakerID speaker) {
    const auto found = std::ranges::find(list, speaker);
    if (found == list.end()) { return std::nullopt; }
    return int(found - list.begin());
}

std::optional<double> ambienceLevel(SpeakerID speaker, const UpmixParams& params) {
    const auto level = groupLevel(speaker, params);
    if (!level) { return 0; }
    return *level > gateDb ? level : std::nullopt;
}

}  // namespace brindlehum::UpmixPlanner

// The gain that makes two outputs equally loud.
#include "monitor/state/level_match.h"

#include <algorithm>
#include <cmath>

#include "analysis/loudness/loudness.h"
#include "monitor/state/monitor_matrix.h"

namespace brindlehum::LevelMatch {
namespace {

// What both profiles share cancels out.
MonitorState compared(MonitorState state) {
    state.mute = false;
    state.volumeDB = 0;
    state.dim = false;
    state.upmix.enabled = false;
    return state;
}

std::vector<double> known(const MonitorState& state, const std::vector<double>& busPowers) {
    const size_t count = channels(state.source).size();
    const bool isHeard = std::ranges::any_of(busPowers, [](double p) { return p > 0; });
    return busPowers.size() == count && isHeard ? busPowers : std::vector<double>(count, 1.0);
}

}  // namespace

double power(const MonitorState& state, const OutputProfile& profile, const std::vector<double>& busPowers) {
    const MonitorState plain = compared(state);
    const std::vector<double> powers = known(plain, busPowers);
    const SpeakerList room = MonitorMatrix::room(plain, profile);
    const std::vector<double> weights = Loudness::weights(SourceFormat::speakers(room), int(room.size()));
    const Matrix gains = MonitorMatrix::gains(plain, profile);
    const bool trimmed = profile.kind == OutputProfile::Kind::speakers;
    double sum = 0;
    for (size_t r = 0; r < gains.size(); ++r) {
        const double trim = trimmed && r < profile.trimsDB.size() ? std::pow(10.0, profile.trimsDB[r] / 10) : 1;
        for (size_t c = 0; c < gains[r].size(); ++c) {
            sum += weights[r] * trim * gains[r][c] * gains[r][c] * powers[c];
        }
    }
    return sum;
}

double gainDB(const MonitorState& state, const OutputProfile& heard, const OutputProfile& other,
              const std::vector<double>& busPowers) {
    const double ours = power(state, heard, busPowers);
    const double theirs = power(state, other, busPowers);
    return ours > 0 && theirs > 0 ? std::min(10 * std::log10(theirs / ours), 0.0) : 0;
}

}  // namespace brindlehum::LevelMatch

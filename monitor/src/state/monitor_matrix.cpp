// MonitorMatrix: fold-down, heights, expansion to the room, solo, mute and volume, multiplied into one.
#include "monitor/state/monitor_matrix.h"

#include <algorithm>
#include <cmath>

#include "spatial/layout_matrix.h"
#include "upmix/upmix_planner.h"

namespace brindlehum::MonitorMatrix {
namespace {

constexpr double heightElevation = 20;  // degrees; speakers above it are heights

double linear(double db) {
    return std::pow(10.0, db / 20);
}

bool isHeadphones(const OutputProfile& profile) {
    return profile.kind == OutputProfile::Kind::headphones;
}

// Heard from the places of its speakers: what has more channels than ears.
bool isBinaural(const MonitorState& state, const OutputProfile& profile) {
    const bool folded = state.check != MonitorCheck::none || state.headphonesFold ||
                        state.mode == MonitorMode::stereo || state.mode == MonitorMode::mono;
    return isHeadphones(profile) && !folded && channels(state.source).size() > 2;
}

bool upmixes(const MonitorState& state, const OutputProfile& profile) {
    return state.upmix.enabled && upmixApplies(state.source, profile);
}

Matrix fold(const SpeakerList& from, const SpeakerList& to) {
    return MixBuilder::layoutMatrix(SourceFormat::speakers(from), int(from.size()), to, ListenMode::normal, {}, true);
}

// All channels but the LFE in one speaker, at the power that they have apart.
Matrix monoFold(const SpeakerList& from) {
    const auto heard = double(from.size()) - double(std::ranges::count(from, SpeakerID::LFE));
    std::vector<double> row(from.size(), 1 / std::sqrt(std::max(heard, 1.0)));
    for (size_t c = 0; c < from.size(); ++c) {
        if (from[c] == SpeakerID::LFE) { row[c] = 0; }
    }
    return {row};
}

// Left and right, each replaced by half their sum or half their difference.
Matrix checked(Matrix rows, MonitorCheck check) {
    const double sign = check == MonitorCheck::side ? -1 : 1;
    for (size_t c = 0; c < rows[0].size(); ++c) { rows[0][c] = 0.5 * (rows[0][c] + sign * rows[1][c]); }
    rows[1] = rows[0];
    return rows;
}

void scale(std::vector<double>& row, double gain) {
    for (double& v : row) { v *= gain; }
}

double master(const MonitorState& state) {
    return state.mute ? 0 : linear(state.levelDB());
}

MixConfig silent(int channels, int rows) {
    MixConfig config;
    config.inChannels = channels;
    config.rows = rows;
    config.matrix.assign(size_t(std::max(rows, 0)) * size_t(std::max(channels, 0)), 0.0F);
    return config;
}

}  // namespace

Matrix multiply(const Matrix& a, const Matrix& b) {
    if (a.empty() || b.empty()) { return {}; }
    Matrix out(a.size(), std::vector<double>(b[0].size(), 0.0));
    for (size_t r = 0; r < a.size(); ++r) {
        for (size_t k = 0; k < std::min(a[r].size(), b.size()); ++k) {
            for (size_t c = 0; c < b[k].size(); ++c) { out[r][c] += a[r][k] * b[k][c]; }
        }
    }
    return out;
}

SpeakerList room(const MonitorState& state, const OutputProfile& profile) {
    if (isBinaural(state, profile)) { return channels(state.source); }
    return speakers(isHeadphones(profile) ? LayoutID::stereo : profile.layout);
}

bool upmixApplies(MonitorSource source, const OutputProfile& profile) {
    return !isHeadphones(profile) && UpmixPlanner::applies(channels(source), speakers(profile.layout));
}

Matrix gains(const MonitorState& state, const OutputProfile& profile) {
    const SpeakerList target = room(state, profile);
    const SpeakerList& source = upmixes(state, profile) ? target : channels(state.source);
    const bool checks = state.check != MonitorCheck::none;
    const MonitorMode mode = checks ? MonitorMode::stereo : state.mode;
    const SpeakerList& folded = foldList(mode, target);
    Matrix reduction = mode == MonitorMode::mono ? monoFold(source) : fold(source, folded);
    if (checks) { reduction = checked(std::move(reduction), state.check); }
    for (size_t r = 0; r < folded.size(); ++r) {
        if (direction(folded[r], folded).el > heightElevation) { scale(reduction[r], linear(state.heightTrimDB)); }
    }
    Matrix out = multiply(fold(folded, target), reduction);
    for (size_t r = 0; r < target.size(); ++r) {
        const bool isOthersSolo = !state.solo.empty() && !state.solo.contains(target[r]);
        const bool isOff = isOthersSolo || state.muted.contains(target[r]);
        scale(out[r], isOff ? 0 : master(state));
    }
    return out;
}

MixConfig build(const MonitorState& state, int inputChannels, const OutputProfile& profile, int deviceChannels) {
    const bool headphones = isHeadphones(profile);
    const bool upmix = upmixes(state, profile);
    const SpeakerList target = room(state, profile);
    Matrix rows = gains(state, profile);
    std::vector<Direction> places;
    if (isBinaural(state, profile)) {
        auto around = MixBuilder::binauralMatrix(SourceFormat::speakers(target), int(target.size()), {});
        rows = multiply(around.matrix, rows);
        places = std::move(around.dirs);
    }
    const bool binaural = !places.empty();
    MixConfig config =
        silent(upmix ? int(target.size()) : inputChannels, binaural ? int(places.size()) : deviceChannels);
    const std::vector<int> outputs =
        headphones ? std::vector{profile.headphoneLeft, profile.headphoneRight} : profile.outputs;
    const int offset = std::max(state.sourceOffset, 0);
    for (size_t r = 0; r < rows.size(); ++r) {
        const int output = binaural || r >= outputs.size() ? int(r) : outputs[r];
        if (output < 0 || output >= config.rows) { continue; }
        const double trim = !headphones && r < profile.trimsDB.size() ? linear(profile.trimsDB[r]) : 1;
        for (size_t c = 0; c < rows[r].size(); ++c) {
            const int column = int(c) + (upmix ? 0 : offset);
            if (rows[r][c] == 0 || column >= config.inChannels) { continue; }
            config.matrix[size_t(output) * size_t(config.inChannels) + size_t(column)] += float(trim * rows[r][c]);
        }
    }
    config.toBinaural = binaural;
    config.binLeft = headphones ? profile.headphoneLeft : 0;
    config.binRight = headphones ? profile.headphoneRight : 1;
    config.virtualDirections = std::move(places);
    if (upmix) {
        config.upmix = UpmixRequest{channels(state.source), target, state.upmix.params};
        config.upmixOffset = offset;
    }
    return config;
}

std::set<SpeakerID> unreached(MonitorState state, const OutputProfile& profile) {
    if (isBinaural(state, profile)) { return {}; }
    state.solo.clear();
    state.muted.clear();
    state.mute = false;
    std::set<SpeakerID> out;
    const SpeakerList target = room(state, profile);
    const Matrix rows = gains(state, profile);
    for (size_t r = 0; r < rows.size(); ++r) {
        if (std::ranges::all_of(rows[r], [](double gain) { return gain == 0; })) { out.insert(target[r]); }
    }
    return out;
}

std::vector<SpeakerAlignment> alignment(const MonitorState& state, const OutputProfile& profile, int deviceChannels) {
    std::vector<SpeakerAlignment> out(size_t(std::max(deviceChannels, 0)));
    if (isHeadphones(profile)) { return out; }
    const SpeakerList& list = speakers(profile.layout);
    for (size_t r = 0; r < list.size(); ++r) {
        const auto found = state.alignment.find(list[r]);
        const int output = r < profile.outputs.size() ? profile.outputs[r] : int(r);
        if (found == state.alignment.end() || output < 0 || output >= deviceChannels) { continue; }
        out[size_t(output)] = found->second;
    }
    return out;
}

}  // namespace brindlehum::MonitorMatrix

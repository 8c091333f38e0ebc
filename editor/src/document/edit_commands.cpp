// The edits of the user: cuts and their joins, pastes, effects.
#include "editor/document/edit_commands.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "dsp/resampler.h"

namespace brindlehum {
namespace {

constexpr double zeroReachSeconds = 0.005;
constexpr double overlapSeconds = 0.004;

FrameRange atZeros(const Sound& sound, const FrameRange& range, double sampleRate) {
    const FrameRange moved{risingZeroNear(sound, range.lower, sampleRate),
                           risingZeroNear(sound, range.upper, sampleRate)};
    return moved.lower < moved.upper ? moved : range;
}

// The sound without the range, its two sides overlapped around the join: what lies before fades out over the frames
// that follow it, what lies after fades in over those before. At equal power, since the two are seldom alike.
Sound overlapped(const Sound& sound, const FrameRange& range, double sampleRate) {
    const int64_t half =
        std::min({int64_t(sampleRate * overlapSeconds / 2), range.lower, sound.frames() - range.upper, range.length()});
    const Sound joined = EditOps::splice(sound, range.lower, range.upper);
    if (half < 1) { return joined; }
    auto out = sound.gather(range.lower - half, range.lower + half);
    const auto in = sound.gather(range.upper - half, range.upper + half);
    for (size_t c = 0; c < out.size(); ++c) {
        for (size_t i = 0; i < out[c].size(); ++i) {
            const double phase = (double(i) + 0.5) / double(out[c].size()) * std::numbers::pi / 2;
            out[c][i] = float(double(out[c][i]) * std::cos(phase) + double(in[c][i]) * std::sin(phase));
        }
    }
    return EditOps::replaceRegion(joined, range.lower - half, range.lower + half, Sound(out));
}

std::optional<EditStep> without(const EditState& state, double sampleRate, CutStyle style, const char* name) {
    if (!state.selection) { return std::nullopt; }
    FrameRange range = *state.selection;
    if (style == CutStyle::zeroCrossing) { range = atZeros(state.sound, range, sampleRate); }
    Sound sound = style == CutStyle::crossfade ? overlapped(state.sound, range, sampleRate)
                                               : EditOps::splice(state.sound, range.lower, range.upper);
    return EditStep{{std::move(sound), std::nullopt, range.lower, replaced(state.marks, range, 0)},
                    name,
                    EditStep::Moved{range, 0}};
}

// The clip with the channels of a document and at its rate.
Sound converted(const Clip& clip, int channels, double sampleRate) {
    std::vector<Track> tracks(clip.sound.tracks().begin(), clip.sound.tracks().end());
    tracks.resize(std::min(tracks.size(), size_t(channels)));
    if (clip.sampleRate != sampleRate) {
        for (Track& track : tracks) {
            std::vector<float> samples(size_t(track.length()));
            track.read(0, samples);
            track = Track(Resampler::convert(samples, clip.sampleRate, sampleRate));
        }
    }
    const Track rest = tracks.size() == 1 ? tracks[0] : Track::silence(tracks[0].length());
    tracks.resize(size_t(channels), rest);
    return Sound(std::move(tracks));
}

}  // namespace

std::optional<Clip> EditCommands::copy(const EditState& state, double sampleRate) {
    if (!state.selection) { return std::nullopt; }
    return Clip{EditOps::slice(state.sound, state.selection->lower, state.selection->upper), sampleRate};
}

std::optional<EditStep> EditCommands::cut(const EditState& state, double sampleRate, CutStyle style) {
    return without(state, sampleRate, style, "Cut");
}

std::optional<EditStep> EditCommands::remove(const EditState& state, double sampleRate, CutStyle style) {
    return without(state, sampleRate, style, "Delete");
}

std::optional<EditStep> EditCommands::paste(const EditState& state, double sampleRate, const Clip& clip) {
    if (clip.sound.frames() == 0 || state.sound.channels() == 0) { return std::nullopt; }
    const Sound pasted = converted(clip, state.sound.channels(), sampleRate);
    const FrameRange over = state.selection.value_or(FrameRange{state.cursor, state.cursor});
    EditState next{EditOps::replaceRegion(state.sound, over.lower, over.upper, pasted),
                   FrameRange{over.lower, over.lower + pasted.frames()}, state.cursor,
                   replaced(state.marks, over, pasted.frames())};
    return EditStep{fitted(std::move(next)), "Paste", EditStep::Moved{over, pasted.frames()}};
}

std::optional<EditStep> EditCommands::trim(const EditState& state, double sampleRate, CutStyle style) {
    if (!state.selection) { return std::nullopt; }
    const FrameRange kept =
        style == CutStyle::zeroCrossing ? atZeros(state.sound, *state.selection, sampleRate) : *state.selection;
    return EditStep{{EditOps::slice(state.sound, kept.lower, kept.upper), std::nullopt, 0,
                     trimmed(state.marks, kept, state.sound.frames())},
                    "Trim",
                    EditStep::Moved{{0, kept.lower}, 0},
                    true};
}

std::optional<EditStep> EditCommands::silence(const EditState& state) {
    if (!state.selection) { return std::nullopt; }
    EditState next = state;
    next.sound = EditOps::silence(state.sound, state.selection->lower, state.selection->upper);
    return EditStep{std::move(next), "Silence", std::nullopt};
}

std::optional<EditStep> EditCommands::insertSilence(const EditState& state, int64_t frames) {
    if (frames < 1) { return std::nullopt; }
    const std::vector<Track> tracks(size_t(state.sound.channels()), Track::silence(frames));
    EditState next{EditOps::insert(state.sound, state.cursor, Sound(tracks)),
                   FrameRange{state.cursor, state.cursor + frames}, state.cursor,
                   replaced(state.marks, {state.cursor, state.cursor}, frames)};
    return EditStep{std::move(next), "Insert Silence", EditStep::Moved{{state.cursor, state.cursor}, frames}};
}

std::optional<EditStep> EditCommands::normalize(const EditState& state, double peakDb, const EditOps::Lanes& lanes) {
    const FrameRange range = state.range();
    std::vector<Track> tracks(state.sound.tracks().begin(), state.sound.tracks().end());
    float peak = 0;
    const auto isTouched = [&](size_t c) { return !lanes || std::ranges::find(*lanes, int(c)) != lanes->end(); };
    for (size_t c = 0; c < tracks.size(); ++c) {
        if (isTouched(c)) { peak = std::max(peak, peakOf(Sound({tracks[c]}), range)); }
    }
    const double gain = peak > 0 ? std::pow(10, peakDb / 20) / double(peak) : 1;
    for (size_t c = 0; c < tracks.size(); ++c) {
        if (!isTouched(c)) { continue; }
        std::vector<float> samples(size_t(range.length()));
        tracks[c].read(range.lower, samples);
        for (float& x : samples) { x = float(double(x) * gain); }
        tracks[c] = Track::joined(std::array{tracks[c].slice(0, range.lower), Track(samples),
                                             tracks[c].slice(range.upper, tracks[c].length())});
    }
    EditState next = state;
    next.sound = Sound(std::move(tracks));
    return EditStep{std::move(next), "Normalize", std::nullopt};
}

std::optional<EditStep> EditCommands::apply(const EditState& state, double sampleRate, const std::string& effect,
                                            const EditOps::Lanes& lanes) {
    const EditOps::Effect* found = EditOps::effect(effect);
    if (!found) { return std::nullopt; }
    EditState next = state;
    const FrameRange range = state.range();
    next.sound = found->apply(state.sound, sampleRate, range.lower, range.upper, lanes);
    // In some lanes only, the others still have the points where they were.
    if (effect == "reverse" && !lanes) { next.marks = reversed(state.marks, range); }
    return EditStep{std::move(next), found->name, std::nullopt};
}

EditState fitted(EditState state) {
    state.cursor = std::min(state.cursor, state.sound.frames());
    if (state.selection && state.selection->upper > state.sound.frames()) { state.selection.reset(); }
    return state;
}

float peakOf(const Sound& sound, const FrameRange& range) {
    float peak = 0;
    for (const Track& track : sound.tracks()) {
        const PeakRange found = track.peaks(range.lower, range.upper);
        peak = std::max({peak, std::abs(found.low), std::abs(found.high)});
    }
    return peak;
}

int64_t risingZeroNear(const Sound& sound, int64_t frame, double sampleRate) {
    const auto reach = int64_t(sampleRate * zeroReachSeconds);
    const int64_t first = std::max<int64_t>(frame - reach - 1, 0);
    const int64_t last = std::min(frame + reach + 1, sound.frames());
    std::vector<double> sum(size_t(last - first));
    for (const auto& x : sound.gather(first, last)) {
        for (size_t i = 0; i < x.size(); ++i) { sum[i] += double(x[i]); }
    }
    int64_t best = frame;
    int64_t distance = reach + 1;
    for (size_t i = 1; i < sum.size(); ++i) {
        const int64_t at = first + int64_t(i);
        if (sum[i - 1] < 0 && sum[i] >= 0 && std::abs(at - frame) < distance) {
            best = at;
            distance = std::abs(at - frame);
        }
    }
    return best;
}

}  // namespace brindlehum

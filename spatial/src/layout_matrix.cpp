// Gain matrices from source channels to a speaker list, and to the virtual speakers of headphone playback.
#include "spatial/layout_matrix.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace brindlehum::MixBuilder {
namespace {

using enum SpeakerID;

// -3 dB to four digits; a fold-down applies it once for channels behind the listener and once for channels above.
constexpr double minus3dB = 0.7071;

// Angles that differ by less count as equal: rounding errors must not decide between mirror-symmetric speakers.
constexpr double sameAngle = 1e-9;  // degrees

std::optional<size_t> indexOf(const SpeakerList& list, SpeakerID speaker) {
    const auto found = std::ranges::find(list, speaker);
    if (found == list.end()) { return std::nullopt; }
    return size_t(found - list.begin());
}

// A target layout and the rows of its front speakers.
struct Target {
    explicit Target(const SpeakerList& list)
        : speakers(list), left(indexOf(list, L)), right(indexOf(list, R)), center(indexOf(list, C)) {}
    bool isPair() const { return speakers.size() == 2 && left && right; }

    const SpeakerList& speakers;
    std::optional<size_t> left;
    std::optional<size_t> right;
    std::optional<size_t> center;
};

void routeMono(const Target& target, bool monoToCenter, Matrix& m) {
    if (monoToCenter && target.center) {
        m[*target.center][0] = 1;
    } else if (target.left && target.right) {
        m[*target.left][0] = minus3dB;
        m[*target.right][0] = minus3dB;
    } else if (!m.empty()) {
        m[0][0] = 1;
    }
}

// A target of one speaker gets the sum of both sides.
void routeStereo(const Target& target, ListenMode listen, Matrix& m) {
    if (m.empty()) { return; }
    const auto monitored = matrix(listen);
    const size_t rowL = target.left.value_or(0);
    const size_t rowR = target.right.value_or(m.size() > 1 ? 1 : 0);
    for (size_t c = 0; c < 2; ++c) {
        m[rowL][c] += monitored[0][c];
        m[rowR][c] += monitored[1][c];
    }
}

void routeSpeaker(const SpeakerList& source, size_t channel, const Target& target, Matrix& m) {
    const SpeakerID speaker = source[channel];
    if (const auto same = indexOf(target.speakers, speaker)) {
        m[*same][channel] = 1;
        return;
    }
    if (speaker == LFE) { return; }
    const Direction d = direction(speaker, source);
    if (target.isPair()) {
        const auto [l, r] = stereoGains(d);
        m[*target.left][channel] = l;
        m[*target.right][channel] = r;
    } else if (const auto row = nearest(d, target.speakers)) {
        m[size_t(*row)][channel] = 1;
    }
}

void routeSpeakers(const SpeakerList& source, int channels, const Target& target, ListenMode listen, bool monoToCenter,
                   Matrix& m) {
    if (source == SpeakerList{C} && channels == 1) { return routeMono(target, monoToCenter, m); }
    if (source == SpeakerList{L, R} && channels == 2) { return routeStereo(target, listen, m); }
    const size_t count = std::min(source.size(), size_t(channels));
    for (size_t i = 0; i < count; ++i) { routeSpeaker(source, i, target, m); }
}

// A decoder row times the conversion from the file's channels, cut or zero-padded to `channels`.
std::vector<double> convertedRow(const std::vector<double>& row, const Matrix& conversion, size_t channels) {
    std::vector<double> out(channels, 0.0);
    const size_t inner = std::min(row.size(), conversion.size());
    for (size_t c = 0; c < std::min(channels, conversion.size()); ++c) {
        for (size_t k = 0; k < inner; ++k) { out[c] += row[k] * conversion[k][c]; }
    }
    return out;
}

// The decoder for the virtual speakers at lebedev26().
Matrix gridDecoder(int order, const Rotation& rotation) {
    const Ambisonics::Grid& grid = Ambisonics::lebedev26();
    return Ambisonics::samplingDecoder(order, grid.dirs, grid.weights, rotation, true);
}

// The virtual speakers folded down to a pair: left and right row.
Matrix pairDecoder(int order, const Rotation& rotation) {
    const Matrix virtualRows = gridDecoder(order, rotation);
    Matrix pair(2, std::vector<double>(virtualRows[0].size(), 0.0));
    for (size_t i = 0; i < virtualRows.size(); ++i) {
        const auto [l, r] = stereoGains(Ambisonics::lebedev26().dirs[i]);
        for (size_t k = 0; k < virtualRows[i].size(); ++k) {
            pair[0][k] += l * virtualRows[i][k];
            pair[1][k] += r * virtualRows[i][k];
        }
    }
    return pair;
}

void routeAmbisonic(const Ambisonic& source, const Target& target, const Rotation& rotation, Matrix& m) {
    std::vector<size_t> rows;
    Matrix decoder;
    if (target.isPair()) {
        rows = {*target.left, *target.right};
        decoder = pairDecoder(source.order, rotation);
    } else {
        std::vector<Direction> directions;
        for (size_t i = 0; i < target.speakers.size(); ++i) {
            if (target.speakers[i] == LFE) { continue; }
            rows.push_back(i);
            directions.push_back(direction(target.speakers[i], target.speakers));
        }
        decoder = Ambisonics::allradDecoder(source.order, directions, rotation);
    }
    const Matrix conversion = Ambisonics::toSN3D(source.order, source.norm);
    for (size_t i = 0; i < rows.size(); ++i) { m[rows[i]] = convertedRow(decoder[i], conversion, m[rows[i]].size()); }
}

}  // namespace

std::pair<double, double> stereoGains(const Direction& direction) {
    const double az = direction.az;
    const double folded = az > 90 ? 180 - az : az < -90 ? -180 - az : az;
    const double t = folded / 30;
    const double angle = t >= 1 ? 0.0 : (1 - std::max(t, -1.0)) * std::numbers::pi / 4;
    const bool rear = std::abs(az) > 60.5;
    const bool high = direction.el > 20;
    const double scale = (rear ? minus3dB : 1) * (high ? minus3dB : 1);
    return {std::cos(angle) * scale, std::sin(angle) * scale};
}

std::optional<int> nearest(const Direction& direction, const SpeakerList& in) {
    std::optional<int> best;
    double bestAngle = 0;
    for (size_t i = 0; i < in.size(); ++i) {
        if (in[i] == LFE) { continue; }
        const double angle = direction.angle(brindlehum::direction(in[i], in));
        if (best && angle >= bestAngle - sameAngle) { continue; }
        best = int(i);
        bestAngle = angle;
    }
    return best;
}

Matrix layoutMatrix(const SourceFormat& source, int channels, const SpeakerList& target, ListenMode listen,
                    const Rotation& rotation, bool monoToCenter) {
    Matrix m(target.size(), std::vector<double>(size_t(channels), 0.0));
    const Target rows(target);
    if (const SpeakerList* list = source.asSpeakers()) {
        routeSpeakers(*list, channels, rows, listen, monoToCenter, m);
    } else if (const Ambisonic* ambisonic = source.asAmbisonic()) {
        routeAmbisonic(*ambisonic, rows, rotation, m);
    } else {
        for (size_t i = 0; i < std::min(m.size(), size_t(channels)); ++i) { m[i][i] = 1; }
    }
    return m;
}

BinauralMatrix binauralMatrix(const SourceFormat& source, int channels, const Rotation& rotation) {
    BinauralMatrix out;
    const auto width = size_t(channels);
    if (const SpeakerList* list = source.asSpeakers()) {
        out.matrix.assign(list->size(), std::vector<double>(width, 0.0));
        for (size_t i = 0; i < list->size(); ++i) {
            out.dirs.push_back(direction((*list)[i], *list));
            // The LFE plays as a frontal speaker at half gain.
            if (i < width) { out.matrix[i][i] = (*list)[i] == LFE ? 0.5 : 1.0; }
        }
    } else if (const Ambisonic* ambisonic = source.asAmbisonic()) {
        out.dirs = Ambisonics::lebedev26().dirs;
        const Matrix conversion = Ambisonics::toSN3D(ambisonic->order, ambisonic->norm);
        for (const auto& row : gridDecoder(ambisonic->order, rotation)) {
            out.matrix.push_back(convertedRow(row, conversion, width));
        }
    }
    return out;
}

}  // namespace brindlehum::MixBuilder

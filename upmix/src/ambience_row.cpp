// One side's ambience over its fill speakers.
#include <algorithm>
#include <cmath>

#include "plan_parts.h"
#include "spatial/layout_matrix.h"

namespace brindlehum::UpmixPlanner {
namespace {

double linear(double db) {
    return std::pow(10, db / 20);
}

std::vector<double> fillLevels(const Side& side, const Room& room, const UpmixParams& params) {
    std::vector<double> levels;
    for (const int fill : side.fills) {
        levels.push_back(linear(ambienceLevel(room.speakers[size_t(fill)], params).value_or(0)));
    }
    return levels;
}

// Share of the ambience that stays in front, 0 to 1.
double frontShare(const UpmixParams& params) {
    return std::clamp(params.frontAmbience, 0.0, 1.0);
}

std::vector<float> energyRow(const Side& side, const std::vector<double>& levels, int outs, const UpmixParams& params) {
    const double s = strengthOf(params);
    double energy = 0;
    for (const double level : levels) { energy += level * level; }
    const double stays = energy > 0 ? frontShare(params) : 1;
    std::vector<double> gains(size_t(outs), 0.0);
    gains[size_t(side.own)] = std::sqrt(stays);
    for (size_t j = 0; j < levels.size() && energy > 0; ++j) {
        gains[size_t(side.fills[j])] = linear(params.ambienceDB) * std::sqrt((1 - stays) / energy) * levels[j];
    }
    std::vector<float> row;
    for (int i = 0; i < outs; ++i) {
        const double gain = gains[size_t(i)];
        row.push_back(float(std::sqrt((i == side.own ? 1 - s : 0) + s * gain * gain)));
    }
    return row;
}

std::vector<float> exactRow(const Side& side, const std::vector<double>& levels, int outs, const UpmixParams& params) {
    double folded = 0;
    for (size_t j = 0; j < levels.size(); ++j) { folded += levels[j] * side.fold[size_t(side.fills[j])]; }
    std::vector<float> row(size_t(outs), 0.0F);
    if (folded <= 0) { return row; }
    const double moved = std::min(linear(params.ambienceDB) * (1 - frontShare(params)), 1.0);
    for (size_t j = 0; j < levels.size(); ++j) {
        row[size_t(side.fills[j])] = float(strengthOf(params) * moved * levels[j] / folded);
    }
    return row;
}

}  // namespace

std::vector<float> ambienceRow(const Side& side, const Room& room, const UpmixParams& params) {
    const std::vector<double> levels = fillLevels(side, room, params);
    return params.exact ? exactRow(side, levels, room.size(), params) : energyRow(side, levels, room.size(), params);
}

double strengthOf(const UpmixParams& params) {
    return std::clamp(params.strength, 0.0, 1.0);
}

float kappaOf(const UpmixParams& params) {
    return float(1 / std::max(params.focus, 0.1));
}

std::vector<std::vector<double>> foldDown(const SpeakerList& from, const SpeakerList& to) {
    return MixBuilder::layoutMatrix(SourceFormat::speakers(from), int(from.size()), to, ListenMode::normal, Rotation{},
                                    true);
}

void append(std::vector<float>& list, const std::vector<double>& values) {
    for (const double value : values) { list.push_back(float(value)); }
}

}  // namespace brindlehum::UpmixPlanner

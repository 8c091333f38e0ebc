// What finishes a plan: the fills' curves, the turns that make them unlike each other, and delays.
#include <algorithm>
#include <cmath>
#include <numbers>

#include "plan_parts.h"
#include "random_numbers.h"

namespace brindlehum::UpmixPlanner {
namespace {

// Degrees, above which a speaker counts as overhead.
constexpr double highElevation = 20;
// Degrees, beyond which a speaker counts as behind.
constexpr double backAzimuth = 75;
constexpr double longestTurnSeconds = 0.0015;
constexpr int binsPerNode = 8;

struct Place {
    bool fill, back, high;
};

Place placeOf(int i, const Room& room, const Roles& roles) {
    const SpeakerID speaker = room.speakers[size_t(i)];
    const Direction& d = room.dirs[size_t(i)];
    const bool high = d.el > highElevation;
    const bool fill = !roles.owned[size_t(i)] && speaker != SpeakerID::C && speaker != SpeakerID::LFE;
    return {fill, high || std::abs(d.az) > backAzimuth, high};
}

// A high shelf that is straight in decibels, and the magnitude of a Butterworth high-pass of the second order.
double curveAt(double hertz, const Place& place, const UpmixParams& params) {
    double gain = 1;
    if (place.back && params.shelfHz > 0 && params.shelfDB != 0) {
        const double r = hertz / params.shelfHz;
        gain = std::pow(10, r * r / (r * r + 1) * params.shelfDB / 20);
    }
    if (place.high && params.heightHPFHz > 0) {
        const double q = hertz / params.heightHPFHz;
        gain *= q * q / std::sqrt(q * q * q * q + 1);
    }
    return gain;
}

void addCurves(UpmixPlan& plan, const std::vector<Place>& places, const UpmixParams& params,
               const UpmixTransform& transform) {
    std::vector<float> curve(size_t(plan.outs) * size_t(plan.bins), 1.0F);
    bool flat = true;
    for (int i = 0; i < plan.outs; ++i) {
        if (!places[size_t(i)].fill) { continue; }
        for (int k = 0; k < plan.bins; ++k) {
            const double gain = curveAt(transform.hertz(k), places[size_t(i)], params);
            curve[size_t(i) * size_t(plan.bins) + size_t(k)] = float(gain);
            flat = flat && gain == 1;
        }
    }
    if (!flat) { plan.curve = std::move(curve); }
}

// An all-pass whose group delay wanders between 0 and 1.5 ms, straight between nodes eight bins apart. The speaker's
// name seeds it, so that it is the same in every run.
void addTurn(UpmixPlan& plan, int out, SpeakerID speaker, const UpmixTransform& transform) {
    SplitMix64 random(fnv1a(rawValue(speaker)) + uint64_t(out));
    std::vector<double> delays(size_t(plan.bins / binsPerNode + 2));
    for (double& delay : delays) { delay = random.uniform() * transform.sampleRate * longestTurnSeconds; }
    const double omega = 2 * std::numbers::pi / transform.size;
    float* const re = plan.decorRe.data() + size_t(out) * size_t(plan.bins);
    float* const im = plan.decorIm.data() + size_t(out) * size_t(plan.bins);
    double phase = -omega * delays[0];
    for (int k = 1; k < plan.bins - 1; ++k) {
        const auto node = size_t(k / binsPerNode);
        const double part = double(k % binsPerNode) / binsPerNode;
        phase -= omega * ((1 - part) * delays[node] + part * delays[node + 1]);
        re[k] = float(std::cos(phase));
        im[k] = float(std::sin(phase));
    }
}

void addTurns(UpmixPlan& plan, const Room& room, const std::vector<Place>& places, const UpmixTransform& transform) {
    if (std::ranges::none_of(places, &Place::fill)) { return; }
    plan.decorRe.assign(size_t(plan.outs) * size_t(plan.bins), 1.0F);
    plan.decorIm.assign(plan.decorRe.size(), 0.0F);
    for (int i = 0; i < plan.outs; ++i) {
        if (places[size_t(i)].fill) { addTurn(plan, i, room.speakers[size_t(i)], transform); }
    }
}

// The share of the room's delay in a speaker: unequal, so that no two fills arrive together.
double roomShare(SpeakerID speaker) {
    using enum SpeakerID;
    switch (speaker) {
        case Ls:
            return 0.45;
        case Rs:
            return 0.55;
        case Lrs:
            return 0.78;
        case Rrs:
            return 0.9;
        case Lw:
            return 0.25;
        case Rw:
            return 0.32;
        case Ltf:
            return 0.38;
        case Rtf:
            return 0.5;
        case Ltm:
            return 0.62;
        case Rtm:
            return 0.7;
        case Ltr:
            return 0.85;
        case Rtr:
            return 1.0;
        case Lc:
            return 0.2;
        case Rc:
            return 0.27;
        case Cs:
            return 0.66;
        case Tc:
            return 0.58;
        case L:
        case R:
        case C:
        case LFE:
            break;
    }
    return 0;
}

void addDelays(UpmixPlan& plan, const Room& room, const std::vector<Place>& places, const Roles& roles,
               const UpmixParams& params, const UpmixTransform& transform) {
    for (size_t i = 0; i < places.size(); ++i) {
        double ms = 0;
        if (places[i].fill && places[i].back) { ms += params.surroundDelayMs; }
        if (places[i].fill && roles.ambienceOnly[i]) { ms += params.roomMs * roomShare(room.speakers[i]); }
        plan.delay[i] = float(transform.sampleRate * ms / 1000);
    }
}

}  // namespace

void finish(UpmixPlan& plan, const Room& room, const Roles& roles, const UpmixParams& params,
            const UpmixTransform& transform) {
    std::vector<Place> places;
    for (int i = 0; i < plan.outs; ++i) { places.push_back(placeOf(i, room, roles)); }
    addCurves(plan, places, params, transform);
    plan.delay.assign(places.size(), 0.0F);
    if (plan.exact) { return; }
    addTurns(plan, room, places, transform);
    addDelays(plan, room, places, roles, params, transform);
}

}  // namespace brindlehum::UpmixPlanner

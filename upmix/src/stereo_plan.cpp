// The plan of a stereo source: its direct part is panned over the room's ring, each side's ambience over that side.
#include <algorithm>
#include <cmath>
#include <numbers>

#include "plan_parts.h"
#include "ring_panner.h"

namespace brindlehum::UpmixPlanner {
namespace {

using enum SpeakerID;

// The front speakers of the room that a stereo plan needs; C may be missing.
struct Front {
    int left, right;
    std::optional<int> center;
};

std::vector<RingSpeaker> ringOf(const Room& room) {
    std::vector<RingSpeaker> ring;
    for (int i = 0; i < room.size(); ++i) {
        const Direction& d = room.dirs[size_t(i)];
        if (room.speakers[size_t(i)] != LFE && d.el <= 20) { ring.push_back({i, d.az}); }
    }
    return ring;
}

// A pan of the stereo pair at 30 degrees by the tangent law, as an azimuth on the stage.
double stageAzimuth(double left, double right, const UpmixParams& params) {
    constexpr double base = 30;
    const double tangent = std::tan(base * std::numbers::pi / 180);
    const double angle = std::atan((left - right) * tangent / std::max(left + right, 1e-9));
    return angle * 180 / std::numbers::pi * params.stage / base;
}

void widenCenter(std::vector<double>& gains, const Front& front, const UpmixParams& params) {
    const double width = std::clamp(params.centerWidth, 0.0, 1.0);
    if (width <= 0 || !front.center) { return; }
    double& center = gains[size_t(*front.center)];
    gains[size_t(front.left)] += std::sqrt(width / 2) * center;
    gains[size_t(front.right)] += std::sqrt(width / 2) * center;
    center *= std::sqrt(1 - width);
    normalize(gains);
}

// Gains of the direct part that lies in the pair with these gains.
std::vector<double> directRow(double left, double right, const std::vector<RingSpeaker>& ring, int outs,
                              const Front& front, const UpmixParams& params) {
    const double s = strengthOf(params);
    std::vector<double> gains = vbap(stageAzimuth(left, right, params), ring, outs);
    widenCenter(gains, front, params);
    for (double& gain : gains) { gain *= s; }
    gains[size_t(front.left)] += (1 - s) * left;
    gains[size_t(front.right)] += (1 - s) * right;
    normalize(gains);
    return gains;
}

// Only the centre takes a direct part; L and R are what its fold-down leaves.
std::vector<double> exactRow(double left, double right, int outs, const Front& front, const UpmixParams& params) {
    std::vector<double> gains(size_t(outs), 0.0);
    const double width = std::clamp(params.centerWidth, 0.0, 1.0);
    if (front.center) {
        gains[size_t(*front.center)] = std::min(left, right) * std::numbers::sqrt2 * (1 - width) * strengthOf(params);
    }
    return gains;
}

std::vector<float> directGains(const Room& room, const Front& front, const UpmixParams& params) {
    const auto ring = ringOf(room);
    std::vector<float> direct(size_t(room.size() * UpmixPlan::steps));
    for (int step = 0; step < UpmixPlan::steps; ++step) {
        const double theta = double(step) / (UpmixPlan::steps - 1) * std::numbers::pi / 2;
        const double left = std::cos(theta);
        const double right = std::sin(theta);
        const auto row = params.exact ? exactRow(left, right, room.size(), front, params)
                                      : directRow(left, right, ring, room.size(), front, params);
        for (int i = 0; i < room.size(); ++i) { direct[size_t(i * UpmixPlan::steps + step)] = float(row[size_t(i)]); }
    }
    return direct;
}

// `sign` is +1 for the left side.
Side sideOf(int own, int sign, std::vector<double> fold, const Room& room, const UpmixParams& params) {
    Side side{own, {}, std::move(fold)};
    for (int i = 0; i < room.size(); ++i) {
        const SpeakerID speaker = room.speakers[size_t(i)];
        if (i == own || speaker == LFE || sign * room.dirs[size_t(i)].az <= 0.5) { continue; }
        if (ambienceLevel(speaker, params)) { side.fills.push_back(i); }
    }
    return side;
}

Roles rolesOf(const UpmixPlan& plan, const Front& front) {
    constexpr float nothing = 1e-4F;
    Roles roles{std::vector<bool>(size_t(plan.outs)), std::vector<bool>(size_t(plan.outs))};
    for (int i = 0; i < plan.outs; ++i) {
        const auto* gains = plan.direct.data() + size_t(i * UpmixPlan::steps);
        const bool owned = i == front.left || i == front.right;
        roles.owned[size_t(i)] = owned;
        roles.ambienceOnly[size_t(i)] =
            !owned && std::all_of(gains, gains + UpmixPlan::steps, [](float g) { return std::abs(g) < nothing; });
    }
    return roles;
}

// Magnitudes of a Linkwitz-Riley crossover of the fourth order (Linkwitz 1976): low and high part add up to 1.
void sendBass(UpmixPlan& plan, const Room& room, const UpmixParams& params, const UpmixTransform& transform) {
    const double s = strengthOf(params);
    const auto lfe = room.find(LFE);
    if (params.exact || params.lfe != UpmixParams::LFEMode::split || !lfe || s <= 0) { return; }
    constexpr double sendDb = -10;  // what a reproduction chain adds to the LFE (ITU-R BS.775)
    plan.lfeOut = *lfe;
    plan.lfeGain = float(s * std::pow(10, (params.lfeDB + sendDb) / 20));
    for (int k = 0; k < plan.bins; ++k) {
        const double low = 1 / (1 + std::pow(transform.hertz(k) / std::max(params.lfeHz, 20.0), 4));
        plan.lfeLP.push_back(float(low));
        plan.mainHP.push_back(float(1 - s * low));
    }
}

}  // namespace

UpmixPlan stereoPlan(const UpmixRequest& request, const UpmixTransform& transform) {
    const UpmixParams& params = request.params;
    const Room room(request.target);
    const auto left = room.find(L);
    const auto right = room.find(R);
    if (!left || !right) { return {}; }
    const Front front{*left, *right, room.find(C)};
    const auto fold = foldDown(request.target, {L, R});

    UpmixPlan plan;
    plan.outs = room.size();
    plan.bins = transform.bins();
    plan.pairIn = {0, 1};
    plan.exact = params.exact;
    plan.kappa = {kappaOf(params)};
    plan.ownL = {front.left};
    plan.ownR = {front.right};
    append(plan.foldL, fold[0]);
    append(plan.foldR, fold[1]);
    plan.direct = directGains(room, front, params);
    plan.ambL = ambienceRow(sideOf(front.left, 1, fold[0], room, params), room, params);
    plan.ambR = ambienceRow(sideOf(front.right, -1, fold[1], room, params), room, params);
    plan.home = {strengthOf(params) == 0 ? 1 : 0};
    finish(plan, room, rolesOf(plan, front), params, transform);
    sendBass(plan, room, params, transform);
    return plan;
}

}  // namespace brindlehum::UpmixPlanner

// The plan of a bed: every speaker that the room has keeps its place, and the pairs' ambience fills the others.
#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "plan_parts.h"
#include "spatial/layout_matrix.h"
#include "upmix/upmix_planner.h"

namespace brindlehum::UpmixPlanner {
namespace {

using enum SpeakerID;

constexpr std::array<std::pair<SpeakerID, SpeakerID>, 8> pairIDs = {
    {{L, R}, {Ls, Rs}, {Lrs, Rrs}, {Lw, Rw}, {Ltf, Rtf}, {Ltm, Rtm}, {Ltr, Rtr}, {Lc, Rc}}};

// Indices of a pair's speakers in the source and in the room.
struct Pair {
    int sourceLeft, sourceRight;
    int roomLeft, roomRight;
};

std::vector<Pair> pairsOf(const SpeakerList& source, const Room& room) {
    std::vector<Pair> pairs;
    for (const auto& [left, right] : pairIDs) {
        const auto sl = indexOf(source, left);
        const auto sr = indexOf(source, right);
        const auto tl = room.find(left);
        const auto tr = room.find(right);
        if (sl && sr && tl && tr) { pairs.push_back({*sl, *sr, *tl, *tr}); }
    }
    return pairs;
}

// What isn't in a pair goes to its own speaker, or to the nearest one.
void addRoutes(UpmixPlan& plan, const SpeakerList& source, const Room& room, const std::vector<Pair>& pairs) {
    for (int i = 0; i < int(source.size()); ++i) {
        const auto isIn = [i](const Pair& pair) { return pair.sourceLeft == i || pair.sourceRight == i; };
        if (std::ranges::any_of(pairs, isIn)) { continue; }
        const SpeakerID speaker = source[size_t(i)];
        auto target = room.find(speaker);
        if (!target && speaker != LFE) { target = MixBuilder::nearest(direction(speaker, source), room.speakers); }
        if (!target) { continue; }
        plan.routeIn.push_back(i);
        plan.routeOut.push_back(*target);
        plan.routeGain.push_back(1);
    }
}

// Angles that differ by less count as equal: rounding errors must not decide between mirror-symmetric speakers.
constexpr double sameAngle = 1e-9;  // degrees

// The source channel whose ambience a fill speaker gets: the nearest speaker of all pairs, the first of equals.
int ownerOf(const Direction& fill, const SpeakerList& source, const std::vector<Pair>& pairs) {
    int owner = -1;
    double least = 0;
    for (const Pair& pair : pairs) {
        for (const int channel : {pair.sourceLeft, pair.sourceRight}) {
            const double angle = fill.angle(direction(source[size_t(channel)], source));
            if (owner >= 0 && angle >= least - sameAngle) { continue; }
            owner = channel;
            least = angle;
        }
    }
    return owner;
}

// The fill speakers of each source channel, ascending.
std::vector<std::vector<int>> fillsOf(const SpeakerList& source, const Room& room, const std::vector<Pair>& pairs,
                                      const UpmixParams& params) {
    std::vector<std::vector<int>> owned(source.size());
    for (const int fill : fills(source, room.speakers)) {
        const int owner = ownerOf(room.dirs[size_t(fill)], source, pairs);
        if (owner >= 0 && ambienceLevel(room.speakers[size_t(fill)], params)) { owned[size_t(owner)].push_back(fill); }
    }
    return owned;
}

// The direct part never leaves its pair.
std::vector<float> directGains(const Pair& pair, int outs) {
    std::vector<float> direct(size_t(outs * UpmixPlan::steps), 0.0F);
    for (int step = 0; step < UpmixPlan::steps; ++step) {
        const double theta = double(step) / (UpmixPlan::steps - 1) * std::numbers::pi / 2;
        direct[size_t(pair.roomLeft * UpmixPlan::steps + step)] = float(std::cos(theta));
        direct[size_t(pair.roomRight * UpmixPlan::steps + step)] = float(std::sin(theta));
    }
    return direct;
}

template <typename T>
void extend(std::vector<T>& list, const std::vector<T>& more) {
    list.insert(list.end(), more.begin(), more.end());
}

Roles rolesOf(const UpmixPlan& plan) {
    Roles roles{std::vector<bool>(size_t(plan.outs)), std::vector<bool>(size_t(plan.outs), true)};
    for (const auto* list : {&plan.ownL, &plan.ownR, &plan.routeOut}) {
        for (const int32_t out : *list) {
            roles.owned[size_t(out)] = true;
            roles.ambienceOnly[size_t(out)] = false;
        }
    }
    return roles;
}

}  // namespace

UpmixPlan layoutPlan(const UpmixRequest& request, const UpmixTransform& transform) {
    const SpeakerList& source = request.source;
    const UpmixParams& params = request.params;
    const Room room(request.target);
    const auto pairs = pairsOf(source, room);
    const auto fold = foldDown(request.target, source);
    const auto ambience = fillsOf(source, room, pairs, params);

    UpmixPlan plan;
    plan.outs = room.size();
    plan.bins = transform.bins();
    plan.exact = params.exact;
    addRoutes(plan, source, room, pairs);
    for (const Pair& pair : pairs) {
        const auto left = size_t(pair.sourceLeft);
        const auto right = size_t(pair.sourceRight);
        extend(plan.pairIn, {pair.sourceLeft, pair.sourceRight});
        plan.ownL.push_back(pair.roomLeft);
        plan.ownR.push_back(pair.roomRight);
        plan.kappa.push_back(kappaOf(params));
        plan.home.push_back(1);
        append(plan.foldL, fold[left]);
        append(plan.foldR, fold[right]);
        extend(plan.direct, directGains(pair, plan.outs));
        extend(plan.ambL, ambienceRow({pair.roomLeft, ambience[left], fold[left]}, room, params));
        extend(plan.ambR, ambienceRow({pair.roomRight, ambience[right], fold[right]}, room, params));
    }
    finish(plan, room, rolesOf(plan), params, transform);
    return plan;
}

}  // namespace brindlehum::UpmixPlanner

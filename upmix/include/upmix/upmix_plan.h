// UpmixPlan: every gain, curve and delay of an upmix, as lists that the processor reads without further thought.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

namespace brindlehum {

// P pairs, N outputs in the order of the target, K bins. An empty list stands for an absent one. What each list means
// is told by mn_upmix_plan, which has the same fields.
struct UpmixPlan {
    static constexpr int steps = 65;

    int outs = 0;
    int bins = 0;
    std::vector<int32_t> pairIn;  // 2 P
    int panSteps = steps;
    std::vector<float> direct;            // P x N x panSteps
    std::vector<float> ambL, ambR;        // P x N
    std::vector<float> curve;             // N x K
    std::vector<float> decorRe, decorIm;  // N x K
    std::vector<float> kappa;             // P
    bool exact = false;                   // the fold-down gives the source back
    std::vector<int32_t> ownL, ownR;      // P
    std::vector<float> foldL, foldR;      // P x N
    std::vector<int32_t> routeIn, routeOut;
    std::vector<float> routeGain;
    int lfeOut = -1;
    float lfeGain = 0;
    std::vector<float> lfeLP, mainHP;  // K
    std::vector<float> delay;          // N, samples
    std::vector<int32_t> home;         // P

    bool operator==(const UpmixPlan&) const = default;
};

// The transform that a plan is made for.
struct UpmixTransform {
    int size = 1024;  // samples, N
    double sampleRate = 48000;
    int bins() const { return size / 2 + 1; }
    double hertz(int bin) const { return bin * sampleRate / size; }
};

}  // namespace brindlehum

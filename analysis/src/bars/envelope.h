// Envelope: reads an onset envelope at times in seconds.
#pragma once

#include <span>
#include <vector>

namespace brindlehum::bars {

// The attack of a click follows its peak in the envelope by this, since the envelope's window hears it approach.
// Seconds.
inline constexpr double attackDelay = 0.043;

// The largest entry within two frames of `t` seconds in the envelope's time; 0 outside the envelope.
double accent(std::span<const float> env, double t);
// The envelope at `t` seconds in its own time, on a straight line between entries; 0 outside.
double valueAt(std::span<const float> env, double t);
double meanAccent(std::span<const float> env, std::span<const double> times);

// Seconds in the envelope's time of the peak at entry `i`, refined by a parabola; of the entry when it isn't a peak.
double peakTime(std::span<const float> env, size_t i);

struct Peak {
    double t = 0;  // seconds in the envelope's time, refined
    double height = 0;
};
// The local maxima above 0.06.
std::vector<Peak> peaks(std::span<const float> env);

// Seconds of the first and of the last attack above 0.12; the envelope's ends without any.
double firstAttack(std::span<const float> env);
double lastAttack(std::span<const float> env);

// How alike the envelope is to itself `seconds` later, relative to no delay: at most 1, 0 for a flat envelope.
double likeness(std::span<const float> env, double seconds);

}  // namespace brindlehum::bars

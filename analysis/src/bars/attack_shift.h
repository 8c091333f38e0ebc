// Attack shift: how far the attacks lie behind the peaks of the onset envelope.
#pragma once

#include <span>

namespace brindlehum::bars {

// Where beats are too few to measure it, seconds.
inline constexpr double usualAttackShift = 0.040;

// Seconds from `beats`, in the envelope's time, to where the level starts to rise, -0.04 to 0.047. `levels` are those
// of GridBuilder::PulseLevels::attacks. Within 5 ms for notes that take up to 30 ms to speak.
double attackShift(std::span<const float> levels, std::span<const double> beats, std::span<const float> env);

}  // namespace brindlehum::bars

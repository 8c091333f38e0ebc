// RulerTicks: where a time ruler puts its marks.
#pragma once

#include <string>
#include <vector>

namespace brindlehum::RulerTicks {

struct Tick {
    double seconds = 0;
    bool major = false;  // carries a label
};

// Seconds between labels, a round number, such that they stand at least `minSpacing` pixels apart.
double step(double seconds, double width, double minSpacing);
// All ticks from 0 through `seconds`, five parts (or four, or three: whole units) between labels.
std::vector<Tick> ticks(double seconds, double width, double minSpacing);
// "m:ss", with tenths to thousandths as the step needs them, "h:mm:ss" from one hour on.
std::string label(double seconds, double step);

}  // namespace brindlehum::RulerTicks

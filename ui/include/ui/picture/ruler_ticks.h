// RulerTicks: the positions and labels of a time ruler's marks.
#pragma once

#include <string>
#include <vector>

namespace brindlehum::RulerTicks {

struct Tick {
    double seconds = 0;
    bool major = false;  // carries a label
};

// The smallest round number of seconds between labels that puts them at least `minSpacing` pixels apart, where `width`
// pixels show `seconds`. At least 10 microseconds.
double step(double seconds, double width, double minSpacing);
// All ticks from `first` through `first + seconds`, with five parts between labels, or four or three where those are
// whole units.
std::vector<Tick> ticks(double first, double seconds, double width, double minSpacing);
// "m:ss", with up to five decimals as the step needs them, "h:mm:ss" from one hour on.
std::string label(double seconds, double step);

}  // namespace brindlehum::RulerTicks

// Panning over a horizontal ring of speakers: VBAP in two dimensions (Pulkki 1997).
#pragma once

#include <vector>

namespace brindlehum::UpmixPlanner {

struct RingSpeaker {
    int index;
    double az;  // degrees
};

// `count` gains of unit power, on the two speakers around the azimuth, or on one: the only one, or the nearest where no
// arc of less than 180 degrees holds the azimuth. All 0 for an empty ring.
std::vector<double> vbap(double azimuth, std::vector<RingSpeaker> ring, int count);

// Unit power; gains that are all 0 stay.
void normalize(std::vector<double>& gains);

}  // namespace brindlehum::UpmixPlanner

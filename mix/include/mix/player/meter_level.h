// MeterLevel: the ballistics of a peak meter, as a pure function.
#pragma once

namespace brindlehum {

// One channel, as the meter shows it.
struct MeterLevel {
    static constexpr double floor = -60;         // dBFS: what shows as nothing
    static constexpr double decay = 20.0 / 1.7;  // dB per second, the return time of IEC 60268-18
    static constexpr double holdSeconds = 2;

    double level = floor;  // dBFS
    double hold = floor;   // dBFS: the highest level of the last 2 s, then it falls, too
    double held = 0;       // seconds since the hold was set
    bool isOver = false;   // a sample was beyond full scale, or not a number; stays until it is cleared

    bool isAtRest() const { return level <= floor && hold <= floor; }
    bool operator==(const MeterLevel&) const = default;
};

// After `seconds` in which the largest magnitude was `peak` (1 is full scale).
MeterLevel metered(const MeterLevel& before, float peak, double seconds);

}  // namespace brindlehum

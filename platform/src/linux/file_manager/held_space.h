// HeldSpace: tells the repeats of a held key from presses in quick succession, where a request says only that there was
// one.
#pragma once

namespace brindlehum {

// Times in seconds, on any clock. After a request the key is looked at every lookSeconds until it is up.
class HeldSpace {
public:
    static constexpr double lookSeconds = 0.015;

    // A request that came now, while the key is down or not, from a keyboard that repeats after `delay`. True if it is
    // a repeat.
    bool isRepeat(double now, bool isDown, double delay) {
        const double since = now - lastRequest_;
        lastRequest_ = now;
        const bool cameAtOnce = since < atOnce;  // as requests do that a busy file manager has kept back
        const bool cameUnseen = !isLookedAt_ && isDown;
        const bool mayBe = now - seenUp_ > delay && (isHeld_ || cameAtOnce || cameUnseen);
        const bool isLate = wasRepeat_ && since < repeatPeriod && now - up_ < lateness;
        wasRepeat_ = mayBe || isLate;
        isLookedAt_ = false;
        return wasRepeat_;
    }
    // True while it has to be looked at again.
    bool look(double now, bool isDown) {
        if (!isDown) { seenUp_ = now; }
        if (isHeld_ && !isDown) { up_ = now; }
        isLookedAt_ = true;
        return isHeld_ = isDown;
    }

private:
    static constexpr double atOnce = 0.02;       // no keyboard repeats that fast, nor does a hand
    static constexpr double repeatPeriod = 0.1;  // of slow keyboards
    static constexpr double lateness = 0.25;     // of a request after the key

    double lastRequest_ = -1e9;
    double seenUp_ = -1e9;
    double up_ = -1e9;        // the end of a stroke that a look saw
    bool isHeld_ = false;     // at the last look
    bool isLookedAt_ = true;  // since the last request
    bool wasRepeat_ = false;
};

}  // namespace brindlehum

// KeyGrab: takes the Space key away from the program in front, while it is armed.
#pragma once

#include <cstdint>
#include <functional>

namespace brindlehum {

// Main thread.
class KeyGrab {
public:
    struct Heard {
        // Space went down. Swallowed: the program in front doesn't get it, nor its release.
        std::function<void(bool isRepeat, bool swallowed)> press;
        std::function<void()> refusal;  // isRefused has changed
    };
    virtual ~KeyGrab() = default;
    // Once. False: this desktop can't.
    virtual bool start(Heard heard) = 0;
    // Only Space without modifiers counts, whatever the lock keys say.
    virtual void setArmed(bool armed) = 0;
    // Presses are answered from this alone, without the main thread.
    virtual void setSwallows(bool swallows) = 0;
    // Another program holds the key.
    virtual bool isRefused() const = 0;
};

enum class KeyEvent : uint8_t { spacePress, spaceRelease, otherPress, rest };  // rest: other releases, modifiers

// What is to be done with a key event that waits for our answer.
struct KeyAnswer {
    bool swallowed = false;  // false: the program in front gets it, and the keyboard back
    bool isRepeat = false;   // of a press of Space
    bool operator==(const KeyAnswer&) const = default;
};

// `held`: a swallowed Space is down. Press, repeats and release go to the same side; the first other key that is
// pressed while Space is held ends the hold, so that no key is lost. The release of Space then goes to the program in
// front.
inline KeyAnswer decideKey(KeyEvent event, bool& held, bool swallows) {
    const bool wasHeld = held;
    switch (event) {
        case KeyEvent::spacePress:
            held = wasHeld || swallows;
            return {held, wasHeld};
        case KeyEvent::spaceRelease:
        case KeyEvent::otherPress:
            held = false;
            return {wasHeld && event == KeyEvent::spaceRelease, false};
        case KeyEvent::rest:
            break;
    }
    return {wasHeld, false};
}

}  // namespace brindlehum

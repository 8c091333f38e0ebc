// MediaSession: what plays, told to the desktop's media keys, lock screen and remote controls, and their wishes.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace brindlehum {

struct MediaStatus {
    enum class Playback : uint8_t { stopped, paused, playing };
    Playback playback = Playback::stopped;
    std::string title;  // empty: nothing is loaded
    double length = 0;  // seconds
    bool loops = false;
    double volume = 1;  // linear; 1 leaves the sound as it is
    bool operator==(const MediaStatus&) const = default;
};

// Main thread.
class MediaSession {
public:
    struct Wishes {
        std::function<void()> play, pause, playPause, stop, raise, quit;
        std::function<void(double seconds)> seek;
        std::function<void(bool loops)> setLoop;
        std::function<void(double volume)> setVolume;
        std::function<double()> position;  // seconds; asked when the desktop asks
    };
    virtual ~MediaSession() = default;
    // Appears on the desktop. Once; the wishes must outlive this object.
    virtual void start(Wishes wishes) = 0;
    // Tells what differs from before, and nothing if nothing does.
    virtual void show(const MediaStatus& status) = 0;
    // The position isn't where playing on would have brought it.
    virtual void jumped() = 0;
};

}  // namespace brindlehum

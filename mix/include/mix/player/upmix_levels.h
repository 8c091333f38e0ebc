// UpmixLevels: how much of the direct sound and of the ambience each speaker gets from the upmix that plays.
#pragma once

#include <QObject>
#include <string>
#include <vector>

#include "mix/player/listening_setup.h"
#include "mix/player/meter_level.h"
#include "mix/player/transport.h"

namespace brindlehum {

// Main thread. While it is shown, takes the levels 30 times a second as long as the player plays, and on until they
// have fallen; the processor measures nothing else.
class UpmixLevels : public QObject {
    Q_OBJECT
public:
    struct Speaker {
        SpeakerID id;
        std::string label;
        Direction at;
        MeterLevel direct, ambience;  // RMS; a sine at full scale is at -3 dBFS
    };

    UpmixLevels(const PlaybackEngine& engine, const ListeningSetup& listening, Transport& transport, MainLoop& loop);

    // Of the room that the upmix plays in, or would: on headphones the virtual one.
    const std::vector<Speaker>& speakers() const { return speakers_; }
    void show(bool shown);

Q_SIGNALS:
    void changed();  // the levels, or the speakers

private:
    void refresh();
    void tick();

    const PlaybackEngine& engine_;
    const ListeningSetup& listening_;
    Transport& transport_;
    MainLoop& loop_;
    std::vector<Speaker> speakers_;
    bool isShown_ = false;
    double last_ = 0;  // seconds, of the last tick
    TimerHandle timer_;
};

}  // namespace brindlehum

// EngineSeat: one user's place at the playback engine. The seat that is taken gets the engine's callbacks, and it alone
// changes what the engine plays.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "mix/engine/playback_engine.h"

namespace brindlehum {

// Main thread. The player and the editor have a seat each at the one engine, and at most one seat is taken. An owner
// takes its seat before it starts to play and keeps it while it rests, so that it hears of its device; it loses it when
// another owner starts. The engine must outlive its seats.
class EngineSeat {
public:
    // Each call may leave the seat, take it again, or destroy it.
    struct Calls {
        std::function<void()> onDeviceChange;     // as PlaybackEngine::onDeviceChange
        std::function<void()> onBinauralMissing;  // as PlaybackEngine::onBinauralMissing
        // Another seat was taken. The engine has stopped: only the owner's own state is left to bring to rest.
        std::function<void()> onLost;
    };

    EngineSeat(PlaybackEngine& engine, Calls calls);
    ~EngineSeat();  // leaves
    EngineSeat(const EngineSeat&) = delete;
    EngineSeat& operator=(const EngineSeat&) = delete;

    // Takes the seat from whoever has it: stops the engine, so that no sound outlasts its owner, and calls the former
    // owner's onLost.
    void take();
    // The same, but only when no seat is taken. True when this one is taken afterwards.
    bool takeIfFree();
    // Stops the engine and leaves it to nobody.
    void leave();
    bool isTaken() const { return engine_.seat_ == this; }

    // The engine's operations of the same names. configure and play throw what the engine throws. None does anything
    // while the seat isn't taken.
    void configure(const std::optional<std::string>& deviceUID, bool force);
    void setConfig(const MixConfig& config);
    void play(std::shared_ptr<StreamReader> reader, double startPosition);
    void stop();

    // The linear output gain. It belongs to the listener and needs no seat.
    void setGain(double gain) { engine_.ctx().setGain(gain); }
    // What may be asked whether the seat is taken or not.
    const PlaybackEngine& engine() const { return engine_; }

private:
    PlaybackEngine& engine_;
    Calls calls_;
};

}  // namespace brindlehum

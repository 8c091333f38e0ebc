// EngineSeat: one user's place at the playback engine. Only the seat that is taken gets the engine's callbacks and
// changes what the engine plays.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "mix/engine/playback_engine.h"

namespace brindlehum {

// Main thread. The player and the editor share the one engine and have a seat each; at most one seat is taken. An owner
// takes its seat before it starts to play. It keeps the seat after playing, so that it still hears about its device,
// and loses it when another owner starts. The engine must outlive its seats.
class EngineSeat {
public:
    // Each callback may leave the seat, take it again, or destroy it.
    struct Calls {
        std::function<void()> onDeviceChange;     // as PlaybackEngine::onDeviceChange
        std::function<void()> onBinauralMissing;  // as PlaybackEngine::onBinauralMissing
        // Another seat was taken. The engine has already stopped: the owner only has to reset its own state.
        std::function<void()> onLost;
    };

    EngineSeat(PlaybackEngine& engine, Calls calls);
    ~EngineSeat();  // leaves the seat
    EngineSeat(const EngineSeat&) = delete;
    EngineSeat& operator=(const EngineSeat&) = delete;

    // Takes the seat from its present owner, if any: stops the engine, so that no sound outlasts its owner, and calls
    // that owner's onLost.
    void take();
    // Takes the seat only when no seat is taken. Returns whether this seat is taken afterwards.
    bool takeIfFree();
    // Stops the engine and leaves the seat free.
    void leave();
    bool isTaken() const { return engine_.seat_ == this; }

    // The engine's operations of the same names. configure and play throw what the engine throws. All do nothing while
    // the seat isn't taken.
    void configure(const std::optional<std::string>& deviceUID, bool force);
    void setConfig(const MixConfig& config);
    void play(std::shared_ptr<StreamReader> reader, double startPosition);
    void stop();

    // The linear output gain. It belongs to the listener and needs no seat.
    void setGain(double gain) { engine_.ctx().setGain(gain); }
    // Queries that need no seat.
    const PlaybackEngine& engine() const { return engine_; }

private:
    PlaybackEngine& engine_;
    Calls calls_;
};

}  // namespace brindlehum

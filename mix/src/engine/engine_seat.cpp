// EngineSeat: hands the engine over, and runs its operations for the seat that is taken.
#include "mix/engine/engine_seat.h"

#include <utility>

namespace brindlehum {

EngineSeat::EngineSeat(PlaybackEngine& engine, Calls calls) : engine_(engine), calls_(std::move(calls)) {}

EngineSeat::~EngineSeat() {
    leave();
}

void EngineSeat::take() {
    if (isTaken()) { return; }
    EngineSeat* former = std::exchange(engine_.seat_, this);
    engine_.onDeviceChange = calls_.onDeviceChange;
    engine_.onBinauralMissing = calls_.onBinauralMissing;
    if (former == nullptr) { return; }
    engine_.stop();
    if (const auto lost = former->calls_.onLost) { lost(); }
}

bool EngineSeat::takeIfFree() {
    if (engine_.seat_ == nullptr) { take(); }
    return isTaken();
}

void EngineSeat::leave() {
    if (!isTaken()) { return; }
    engine_.stop();
    engine_.seat_ = nullptr;
    engine_.onDeviceChange = nullptr;
    engine_.onBinauralMissing = nullptr;
}

void EngineSeat::configure(const std::optional<std::string>& deviceUID, bool force) {
    if (isTaken()) { engine_.configure(deviceUID, force); }
}

void EngineSeat::setConfig(const MixConfig& config) {
    if (isTaken()) { engine_.setConfig(config); }
}

void EngineSeat::play(std::shared_ptr<StreamReader> reader, double startPosition) {
    if (isTaken()) { engine_.play(std::move(reader), startPosition); }
}

void EngineSeat::stop() {
    if (isTaken()) { engine_.stop(); }
}

}  // namespace brindlehum

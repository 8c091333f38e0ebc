#include "engine/binaural_loader.h"

#include <exception>

namespace brindlehum {

BinauralLoader::BinauralLoader(MainLoop& loop, Make make, std::function<void(double)> onDone)
    : loop_(loop), make_(std::move(make)), onDone_(std::move(onDone)) {}

BinauralLoader::~BinauralLoader() = default;

void BinauralLoader::prepare(double sampleRate) {
    const auto known = entries_.find(sampleRate);
    if (known != entries_.end() && known->second.state != State::failed) { return; }
    entries_[sampleRate] = {};
    queue_.async([this, sampleRate, make = make_, &loop = loop_, alive = std::weak_ptr(alive_)] {
        std::shared_ptr<BinauralStage> stage;
        try {
            stage = make(sampleRate);
        } catch (const std::exception&) {
            // No usable set: failed() says so, and who plays on headphones tells the user.
        }
        loop.post([this, sampleRate, stage, alive] {
            if (alive.lock()) { finish(sampleRate, stage); }
        });
    });
}

void BinauralLoader::finish(double sampleRate, std::shared_ptr<BinauralStage> stage) {
    entries_[sampleRate] = {stage ? State::ready : State::failed, std::move(stage)};
    onDone_(sampleRate);
}

std::shared_ptr<BinauralStage> BinauralLoader::stage(double sampleRate) const {
    const auto entry = entries_.find(sampleRate);
    return entry == entries_.end() ? nullptr : entry->second.stage;
}

bool BinauralLoader::failed(double sampleRate) const {
    const auto entry = entries_.find(sampleRate);
    return entry != entries_.end() && entry->second.state == State::failed;
}

}  // namespace brindlehum

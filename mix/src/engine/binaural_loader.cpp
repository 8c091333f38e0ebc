// BinauralLoader: one entry per sample rate, filled in the background.
#include "engine/binaural_loader.h"

#include <exception>

namespace brindlehum {

BinauralLoader::BinauralLoader(MainLoop& loop, Make make, std::function<void(double)> onDone)
    : make_(std::move(make)), onDone_(std::move(onDone)), disk_(loop, "Brindlehum.hrtf") {}

void BinauralLoader::prepare(double sampleRate) {
    const auto known = entries_.find(sampleRate);
    if (known != entries_.end() && known->second.state != State::failed) { return; }
    entries_[sampleRate] = {};
    disk_.queue().run(
        [make = make_, sampleRate] { return make(sampleRate); },
        [this, sampleRate, version = version_](std::shared_ptr<BinauralStage> stage) {
            finish(version, sampleRate, std::move(stage));
        },
        // No usable set: the player asks failed() and informs the user.
        [this, sampleRate, version = version_](const std::exception&) { finish(version, sampleRate, nullptr); });
}

void BinauralLoader::forget() {
    entries_.clear();
    ++version_;
}

void BinauralLoader::finish(int version, double sampleRate, std::shared_ptr<BinauralStage> stage) {
    if (version != version_) { return; }
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

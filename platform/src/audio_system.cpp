// The watchers of an audio system.
#include "platform/audio_system.h"

namespace brindlehum {

std::shared_ptr<void> AudioSystem::watch(std::function<void()> heard) {
    auto watcher = std::make_shared<std::function<void()>>(std::move(heard));
    std::erase_if(watchers_, [](const auto& each) { return each.expired(); });
    watchers_.push_back(watcher);
    return watcher;
}

void AudioSystem::announce() {
    // Iterate over a copy, since a watcher may add others.
    for (const auto& each : std::vector(watchers_)) {
        if (const auto watcher = each.lock()) { (*watcher)(); }
    }
}

}  // namespace brindlehum

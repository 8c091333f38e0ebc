// WaveformCache: overviews of the most recently loaded files.
#include <algorithm>

#include "audio/wave/waveform.h"

namespace brindlehum {

namespace {
constexpr size_t maxEntries = 48;
}

WaveformCache& WaveformCache::shared() {
    static WaveformCache cache;
    return cache;
}

WaveformPtr WaveformCache::get(const std::filesystem::path& path, const FileVersion& version) const {
    const auto entry = items_.find(path);
    return entry == items_.end() || entry->second.version != version ? nullptr : entry->second.data;
}

void WaveformCache::set(const std::filesystem::path& path, const FileVersion& version, WaveformPtr data) {
    std::erase(order_, path);
    items_[path] = {version, std::move(data)};
    order_.push_back(path);
    while (order_.size() > maxEntries) {
        items_.erase(order_.front());
        order_.pop_front();
    }
}

}  // namespace brindlehum

// WaveformCache: overviews of the files that were looked at last.
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

WaveformPtr WaveformCache::get(const std::filesystem::path& url) const {
    const auto entry = items_.find(url);
    return entry == items_.end() ? nullptr : entry->second;
}

void WaveformCache::set(const std::filesystem::path& url, WaveformPtr data) {
    order_.erase(std::remove(order_.begin(), order_.end(), url), order_.end());
    if (!data) {
        items_.erase(url);
        return;
    }
    items_[url] = std::move(data);
    order_.push_back(url);
    while (order_.size() > maxEntries) {
        items_.erase(order_.front());
        order_.pop_front();
    }
}

}  // namespace brindlehum

// Numbers for URIs, both ways.
#include "lv2_urids.h"

namespace brindlehum {

LV2_URID Lv2Urids::map(const char* uri) {
    const std::lock_guard guard(lock_);
    if (const auto known = numbers_.find(std::string_view(uri)); known != numbers_.end()) { return known->second; }
    uris_.emplace_back(uri);
    return numbers_[uri] = LV2_URID(uris_.size());
}

const char* Lv2Urids::unmap(LV2_URID number) {
    const std::lock_guard guard(lock_);
    return number > 0 && number <= uris_.size() ? uris_[number - 1].c_str() : nullptr;
}

}  // namespace brindlehum

// Lv2Urids: the numbers that stand for URIs between a host and its plug-ins.
#pragma once

#include <lv2/urid/urid.h>

#include <deque>
#include <map>
#include <mutex>
#include <string>

namespace brindlehum {

// Any thread. A plug-in may ask from its worker; none may in its audio callback.
class Lv2Urids {
public:
    Lv2Urids() = default;
    Lv2Urids(const Lv2Urids&) = delete;
    Lv2Urids& operator=(const Lv2Urids&) = delete;

    LV2_URID map(const char* uri);
    const char* unmap(LV2_URID number);  // null when it is unknown
    LV2_URID_Map* mapFeature() { return &map_; }
    LV2_URID_Unmap* unmapFeature() { return &unmap_; }

private:
    std::mutex lock_;
    std::map<std::string, LV2_URID, std::less<>> numbers_;
    std::deque<std::string> uris_;  // number 1 first; a text never moves
    LV2_URID_Map map_{this,
                      [](LV2_URID_Map_Handle self, const char* uri) { return static_cast<Lv2Urids*>(self)->map(uri); }};
    LV2_URID_Unmap unmap_{
        this, [](LV2_URID_Unmap_Handle self, LV2_URID number) { return static_cast<Lv2Urids*>(self)->unmap(number); }};
};

}  // namespace brindlehum

// Insert: one effect in the chain behind the monitor's matrix, as the user has set it.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

#include "platform/plugin_host.h"
#include "settings/uuid.h"

namespace brindlehum {

struct Insert {
    UUID id;
    std::string uri;     // of the plug-in
    std::string bundle;  // where it lay when it was added
    std::string name;    // "Maker: Name"
    bool isBypassed = false;
    PluginSettings settings;
    bool operator==(const Insert&) const = default;
};

// JSON objects with the field names as keys. Reading throws nlohmann's exception on what isn't such an object.
void to_json(nlohmann::json& json, const Insert& insert);
void from_json(const nlohmann::json& json, Insert& insert);
void to_json(nlohmann::json& json, const PluginInfo& info);
void from_json(const nlohmann::json& json, PluginInfo& info);

// "Maker: Name"
std::string displayName(const PluginInfo& info);

}  // namespace brindlehum

// The LV2 effects of this machine.
#pragma once

#include <memory>
#include <vector>

#include "platform/plugin_host.h"

namespace brindlehum {

std::unique_ptr<PluginHost> makePluginHost();

// Any thread. All installed effects with audio inputs and outputs, by maker and name; reads descriptions only and loads
// no foreign code. Takes some milliseconds each. Returns early when asked to stop.
std::vector<PluginInfo> scanPlugins(const std::stop_token& stop);
// Any thread. Changes when something is installed, removed or updated; a quick look at the folders.
std::string pluginsFingerprint();

}  // namespace brindlehum

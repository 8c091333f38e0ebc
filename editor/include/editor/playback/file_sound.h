// A file as a sound that can be heard in place of a document.
#pragma once

#include <filesystem>
#include <functional>

#include "dsp/sound.h"

namespace brindlehum {

// At the rate and with the channels of the document. A mono file is doubled, channels that the document lacks are left
// out, and a mono document gets the mean. Throws Error. Blocking; ends early once `isStopped` returns true.
Sound fileSound(const std::filesystem::path& file, double sampleRate, int channels,
                const std::function<bool()>& isStopped);

}  // namespace brindlehum

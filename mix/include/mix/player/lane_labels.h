// The captions of a waveform's lanes.
#pragma once

#include <string>
#include <vector>

#include "audio/speakers/source_format.h"

namespace brindlehum {

// One text per lane: the speakers' labels, the components of a sound field, or numbers from 1; an empty text for mono.
// A format with fewer channels than the file returns fewer texts.
std::vector<std::string> laneLabels(const SourceFormat& format, int channels);

}  // namespace brindlehum

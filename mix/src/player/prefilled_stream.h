// A stream with its first audio in the ring.
#pragma once

#include <functional>
#include <memory>

#include "audio/stream/stream_reader.h"
#include "mix/player/play_span.h"

namespace brindlehum {

// Fills the ring so far that the first block of the device finds audio; gives up early once `stop` says true. The
// reader's own thread isn't started. Any thread; throws Error as StreamReader does.
std::shared_ptr<StreamReader> prefilledStream(std::unique_ptr<FrameSource> source, double outputRate,
                                              const PlaySpan& span, bool loop, const std::function<bool()>& stop);

}  // namespace brindlehum

// A stream whose ring already holds its first audio.
#pragma once

#include <functional>
#include <memory>

#include "audio/stream/stream_reader.h"
#include "mix/player/play_span.h"

namespace brindlehum {

// Fills the ring far enough that the device's first block finds audio; gives up early once `stop` returns true. Doesn't
// start the reader's own thread. Any thread; throws Error as StreamReader does.
std::shared_ptr<StreamReader> prefilledStream(std::unique_ptr<FrameSource> source, double outputRate,
                                              const PlaySpan& span, bool loop, const std::function<bool()>& stop);

}  // namespace brindlehum

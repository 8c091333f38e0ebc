// Prefills a stream, block by block.
#include "mix/player/prefilled_stream.h"

namespace brindlehum {

std::shared_ptr<StreamReader> prefilledStream(std::unique_ptr<FrameSource> source, double outputRate,
                                              const PlaySpan& span, bool loop, const std::function<bool()>& stop) {
    constexpr int prefilled = 8192;  // frames
    constexpr int fillBlock = 4096;  // frames that one call of fillOnce may write
    const auto [lower, upper] = span.range;
    auto reader = std::make_shared<StreamReader>(std::move(source), outputRate, span.start, upper, loop, lower, upper);
    const mn_ring* ring = reader->ring();
    while (!stop() && mn_ring_available(ring) < prefilled && mn_ring_write_space(ring) >= fillBlock) {
        if (!reader->fillOnce()) { break; }
    }
    return reader;
}

}  // namespace brindlehum

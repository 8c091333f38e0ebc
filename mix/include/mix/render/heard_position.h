// HeardPosition: which position of the source is heard, when the sound comes some frames after it was read.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace brindlehum {

// Remembers where the last blocks ended. No allocation; one thread.
class HeardPosition {
public:
    // A new source: what was read of the one before is no longer asked for.
    void restart() noexcept { count_ = 0; }
    bool hasStarted() const noexcept { return count_ > 0; }
    // A block of `frames` frames has been read, the last of them at `position` in the source. Blocks without a frame of
    // the source keep the position of the one before.
    void add(int32_t frames, double position) noexcept;
    // The position of the frame that was read `latency` frames before the last one; none while it wasn't read yet, or
    // longer ago than some hundred blocks.
    std::optional<double> at(int32_t latency) const noexcept;

private:
    static constexpr size_t blocks = 512;
    struct Block {
        int64_t end = 0;  // frames read up to here
        int32_t frames = 0;
        double position = 0;
    };
    const Block& block(size_t back) const noexcept { return blocks_[(count_ - 1 - back) % blocks]; }

    std::array<Block, blocks> blocks_{};
    size_t count_ = 0;  // added since the restart
};

}  // namespace brindlehum

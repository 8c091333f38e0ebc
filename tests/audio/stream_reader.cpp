// StreamReader without its thread: which frames reach the ring, and the positions they carry.
#include "audio/stream/stream_reader.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "audio/stream/memory_source.h"
#include "support/audio_files.h"
#include "support/refusal.h"
#include "support/signals.h"
#include "support/stream_sources.h"

namespace brindlehum::test {
namespace {

struct Plan {
    int64_t promised, actual, start, end;
    bool loop = false;
    int64_t loopStart = 0, loopEnd = 0;
};

std::ostream& operator<<(std::ostream& out, const Plan& p) {
    return out << "source " << p.actual << " of " << p.promised << ", from " << p.start << " to " << p.end << ", loop "
               << p.loop << ' ' << p.loopStart << "..." << p.loopEnd;
}

// The frames to be heard, walked one at a time.
std::vector<int64_t> framesOf(const Plan& p, size_t most) {
    std::vector<int64_t> frames;
    const int64_t end = std::min(p.end, p.promised);
    const int64_t loopStart = std::max<int64_t>(p.loopStart, 0);
    const int64_t loopEnd = std::min(p.loopEnd, p.promised);
    const bool loop = p.loop && loopStart < loopEnd;
    int64_t at = std::max<int64_t>(std::min(p.start, std::max<int64_t>(end, 0)), 0);
    while (frames.size() < most) {
        if (loop && (at >= loopEnd || at >= p.actual)) { at = loopStart; }
        if (at >= p.actual || (!loop && at >= end)) { break; }
        frames.push_back(at++);
    }
    return frames;
}

Heard hear(StreamReader& reader, size_t most) {
    Heard heard;
    bool more = true;
    while (more && heard.positions.size() < most) {
        more = reader.fillOnce();
        heard.take(reader.ring());
    }
    EXPECT_EQ(mn_ring_eof(reader.ring()), more ? 0 : 1);
    return heard;
}

void expectFrames(const Plan& plan, int channels, size_t most) {
    CountingSource::Log log;
    auto source = std::make_unique<CountingSource>(channels, 48000, plan.promised, plan.actual, log);
    StreamReader reader(std::move(source), 48000, plan.start, plan.end, plan.loop, plan.loopStart, plan.loopEnd);
    const Heard heard = hear(reader, most);
    const std::vector<int64_t> wanted = framesOf(plan, heard.positions.size() < most ? most : heard.positions.size());
    ASSERT_EQ(heard.positions.size(), wanted.size()) << plan;
    for (size_t i = 0; i < wanted.size(); ++i) {
        ASSERT_EQ(heard.positions[i], double(wanted[i])) << plan << ", frame " << i;
        for (int c = 0; c < channels; ++c) {
            ASSERT_EQ(heard.channels[size_t(c)][i], float(c % 2 == 0 ? wanted[i] : -wanted[i])) << plan << ' ' << i;
        }
    }
    if (plan.loop && std::max<int64_t>(plan.loopStart, 0) < std::min(plan.loopEnd, plan.promised)) {
        for (const auto& [position, frames] : log.asked) {
            ASSERT_LE(position + frames, plan.loopEnd) << plan << ": a block crosses the loop's end";
        }
    }
}

TEST(StreamReader, DeliversTheFramesOfItsRange) {
    for (const Plan& plan : {
             Plan{10000, 10000, 0, far},
             Plan{10000, 10000, -50, 4096},
             Plan{10000, 10000, 9999, far},
             Plan{10000, 10000, 10000, far},
             Plan{10000, 10000, 500, 400},
             Plan{10000, 10000, 0, -1},
             Plan{0, 0, 0, far},
             Plan{10000, 4100, 0, far},                        // breaks off
             Plan{10000, 0, 0, far},                           // nothing behind the promise
             Plan{10000, 10000, 200, far, true, 5000, 9000},   // runs into the loop
             Plan{10000, 10000, 9500, far, true, 5000, 9000},  // starts behind it
             Plan{10000, 10000, 9000, far, true, 5000, 9000},  // starts at its end
             Plan{10000, 10000, 0, 100, true, 5000, 9000},     // the loop wins over the end
             Plan{10000, 10000, 0, far, true, 7, 8},
             Plan{10000, 10000, 0, far, true, -5, far},
             Plan{10000, 10000, 9990, 9995, true, 5000, 5000},
             Plan{10000, 10000, 0, 50, true, 20000, 30000},
             Plan{10000, 7000, 0, far, true, 5000, 9000},  // the loop's end is missing
             Plan{10000, 4000, 0, far, true, 5000, 9000},  // the whole loop is missing
         }) {
        expectFrames(plan, 1, 40000);
        expectFrames(plan, 3, 40000);
    }
    const uint32_t seed = std::random_device()();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 engine(seed);
    for (int round = 0; round < 100; ++round) {
        const auto upTo = [&](int64_t most) { return std::uniform_int_distribution<int64_t>(0, most)(engine); };
        const int64_t promised = upTo(20000);
        expectFrames({promised, upTo(3) == 0 ? upTo(promised) : promised, upTo(21000) - 500, upTo(25000) - 1000,
                      upTo(2) != 0, upTo(22000) - 1000, upTo(22000)},
                     1, 30000);
    }
}

constexpr std::pair<double, double> rates[] = {
    {44100, 48000}, {48000, 44100}, {96000, 48000}, {48000, 192000}, {22050, 96000}};

// Without the first and the last `margin` frames.
std::vector<float> inner(const std::vector<float>& x, size_t margin) {
    return {x.begin() + ptrdiff_t(margin), x.end() - ptrdiff_t(margin)};
}

TEST(StreamReader, ConvertedLoopHasNoClickAtItsSeam) {
    for (const auto& [in, out] : rates) {
        const int64_t start = 1000;
        const int64_t loopFrames = std::llround(in / 5);  // twenty periods of 100 Hz
        const int64_t end = start + loopFrames;
        for (const int64_t from : {int64_t(0), start + 17, end + 5}) {
            const std::vector<float> tone = sine(size_t(end) + 3000, 100, in, 0.5);
            StreamReader reader(std::make_unique<MemorySource>(Planes{tone}, in), out, from, far, true, start, end);
            const Heard heard = hear(reader, size_t(3.3 * double(loopFrames) * out / in));
            const double first = double(from >= end ? start : from);
            std::vector<float> wanted;
            for (size_t i = 0; i < heard.positions.size(); ++i) {
                const double at = first + double(i) * in / out;
                wanted.push_back(float(0.5 * std::sin(2 * std::numbers::pi * 100 * at / in)));
                const double wrapped =
                    at < double(end) ? at : double(start) + std::fmod(at - double(start), double(loopFrames));
                const double off = std::abs(heard.positions[i] - wrapped);
                // Rounding may put the two on either side of the wrap.
                ASSERT_LT(std::min(off, std::abs(off - double(loopFrames))), 1e-4) << i;
                ASSERT_LT(heard.positions[i], double(end));
            }
            const auto margin = size_t(out * 0.05);
            EXPECT_LT(errorDb(inner(heard.channels[0], margin), inner(wanted, margin)), -90) << in << " to " << out;
        }
    }
}

TEST(StreamReader, RefusesSourcesAndRatesThatItCannotPlay) {
    struct Case {
        int channels;
        double rate, outputRate;
        ErrorKind kind;
        const char* text;
    };
    const char* noConverter = "Can't resample this file";
    for (const Case& c :
         {Case{0, 48000, 48000, ErrorKind::channelCount, "Unsupported channel count (0)"},
          Case{65, 48000, 44100, ErrorKind::channelCount, "Unsupported channel count (65)"},
          Case{1, 48000, 1e12, ErrorKind::ring, ""}, Case{2, 48000, 0, ErrorKind::resampling, noConverter}}) {
        CountingSource::Log log;
        const Refusal refusal = refusalOf([&] {
            StreamReader(std::make_unique<CountingSource>(c.channels, c.rate, 9, 9, log), c.outputRate, 0, far, false,
                         0, 0);
        });
        EXPECT_EQ(refusal.kind, c.kind) << c.channels << ' ' << c.outputRate;
        EXPECT_EQ(refusal.text, c.text);
        EXPECT_TRUE(log.gone) << "a refused source is let go";
    }
}

}  // namespace
}  // namespace brindlehum::test

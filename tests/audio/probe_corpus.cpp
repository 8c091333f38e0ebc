// The fuzzer's seeds, and each of them cut short and scrambled, through the same code as the fuzzer's.
#include <gtest/gtest.h>

#include <random>

#include "fuzz/probe_input.h"
#include "support/audio_files.h"

namespace brindlehum {
namespace {

using namespace test;

TEST(ProbeCorpus, SeedsAreReadAndDamagedOnesAreHarmless) {
    const TempFolder folder;
    int seeds = 0;
    for (const auto& entry : std::filesystem::directory_iterator(BRINDLEHUM_CORPUS "/probe")) {
        SCOPED_TRACE(entry.path().filename());
        const std::string whole = readBytes(entry.path());
        const auto probe = [&](const std::string& bytes) { probeBytes(bytes, folder.path()); };
        probe(whole);
        if (!entry.path().filename().string().starts_with("found-")) {
            EXPECT_GT(AudioFileInfo::load(entry.path()).frames, 0);
            ++seeds;
        }
        std::mt19937 engine(5);
        for (int round = 0; round < 12; ++round) {
            std::string bytes = whole;
            bytes.resize(engine() % (bytes.size() + 1));
            probe(bytes);
            bytes = whole;
            for (int hit = 0; hit < 6; ++hit) {
                bytes[engine() % std::min<size_t>(bytes.size(), 400)] = char(engine());
            }
            probe(bytes);
        }
    }
    EXPECT_GE(seeds, 20);
}

}  // namespace
}  // namespace brindlehum

// The fuzzers' seeds, and each of them cut short and scrambled, through the same code as the fuzzers'.
#include <gtest/gtest.h>

#include <random>

#include "fuzz/meta_text_input.h"
#include "fuzz/riff_meta_input.h"
#include "support/audio_files.h"

namespace brindlehum {
namespace {

using namespace test;

int replay(const char* corpus, const std::function<void(const std::string&)>& look) {
    int seeds = 0;
    for (const auto& entry : std::filesystem::directory_iterator(std::string(BRINDLEHUM_CORPUS "/") + corpus)) {
        const std::string whole = readBytes(entry.path());
        look(whole);
        ++seeds;
        std::mt19937 engine(5);
        for (int round = 0; round < 20; ++round) {
            look(whole.substr(0, engine() % (whole.size() + 1)));
            std::string bytes = whole;
            for (int hit = 0; hit < 4; ++hit) { bytes[engine() % bytes.size()] = char(engine()); }
            look(bytes);
        }
    }
    return seeds;
}

TEST(MetaCorpus, SeedsAndDamagedSeedsBreakNoRule) {
    const TempFolder folder;
    EXPECT_GE(replay("riff_meta", [&](const std::string& bytes) { riffMetaBytes(bytes, folder.path()); }), 12);
    EXPECT_GE(replay("meta_text", metaText), 6);
}

}  // namespace
}  // namespace brindlehum

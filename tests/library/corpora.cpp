// The fuzzers' seeds, and each of them cut short and scrambled, through the same code as the fuzzers'.
#include "fuzz/change_log_input.h"
#include "fuzz/match_input.h"
#include "fuzz/meta_text_input.h"
#include "fuzz/riff_meta_input.h"

namespace brindlehum::test {
namespace {

TEST(Corpora, SeedsAndDamagedSeedsBreakNoRule) {
    const struct {
        const char* corpus;
        void (*look)(const std::string&, const std::filesystem::path&);
        int seeds;
    } inputs[] = {{"change_log", changeLogBytes, 5},
                  {"match", matchBytes, 6},
                  {"meta_text", metaTextBytes, 6},
                  {"riff_meta", riffMetaBytes, 12}};
    static const TempFolder folder;  // the probes keep theirs
    for (const auto& [corpus, look, least] : inputs) {
        const std::filesystem::path own = folder / corpus;
        std::filesystem::create_directory(own);
        int seeds = 0;
        for (const auto& entry : std::filesystem::directory_iterator(std::string(BRINDLEHUM_CORPUS "/") + corpus)) {
            SCOPED_TRACE(entry.path());
            const std::string whole = readBytes(entry.path());
            look(whole, own);
            ++seeds;
            std::mt19937 engine(5);
            for (int round = 0; round < 20; ++round) {
                look(whole.substr(0, engine() % (whole.size() + 1)), own);
                std::string bytes = whole;
                for (int hit = 0; hit < 4; ++hit) { bytes[engine() % bytes.size()] = char(engine()); }
                look(bytes, own);
            }
        }
        EXPECT_GE(seeds, least);
    }
    std::string many = "x";
    for (int i = 0; i < 400; ++i) { many += " -n" + std::to_string(i) + " p" + std::to_string(i); }
    matchBytes(many, {});
}

}  // namespace
}  // namespace brindlehum::test

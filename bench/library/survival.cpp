// Whether saves harm files: bench_survival [KILLS [FILES [SEED]]]. First writes records into FILES files with random
// tags of other programs, in every format; then kills KILLS saves at random moments. After each, the sound and the
// foreign tags are compared with those before, by ffmpeg and ffprobe, and those of the first part by ExifTool too.
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <map>

#include "library/meta/meta_io.h"
#include "support/meter.h"
#include "support/tagged_files.h"

using namespace brindlehum;
using namespace brindlehum::test;

namespace {

struct Kept {
    std::string sound;
    std::set<std::string> tags;
};

Kept keptOf(const fs::path& file, const fs::path& scratch, bool exifTool) {
    return {soundDigest(file, scratch), foreignTags(file, scratch, exifTool)};
}

bool isHarmed(const fs::path& file, const Kept& before, const fs::path& scratch, bool exifTool) {
    try {
        const Kept now = keptOf(file, scratch, exifTool);
        return now.sound != before.sound || !std::ranges::includes(now.tags, before.tags);
    } catch (const std::exception&) { return true; }
}

int writeAll(int files, Random& random, const TempFolder& folder) {
    int harmed = 0, differing = 0, refused = 0;
    std::map<std::string, int> perFormat;
    for (int i = 0; i < files; ++i) {
        const TaggedFormat& format = taggedFormats[size_t(i) % std::size(taggedFormats)];
        const fs::path file = folder / format.name, scratch = folder / "said";
        makeTagged(file, format, random);
        const Kept before = keptOf(file, scratch, true);
        for (int round = 0; round < 2; ++round) {
            const SoundMeta meta = drawnRecord(random);
            try {
                MetaIO::write(meta, file);
                differing += int(MetaIO::read(file) != meta);
            } catch (const std::exception& error) {
                std::printf("%s: %s\n", format.name, error.what());
                ++refused;
            }
        }
        if (isHarmed(file, before, scratch, true)) {
            ++harmed;
            ++perFormat[format.name];
        }
    }
    std::printf("%d files written twice: %d harmed, %d records read back otherwise, %d refused\n", files, harmed,
                differing, refused);
    for (const auto& [name, count] : perFormat) { std::printf("  harmed %s: %d\n", name.c_str(), count); }
    return harmed + differing + refused;
}

// Kills the save after that time, or not at all. False when it had ended before.
bool killedSave(const SoundMeta& meta, const fs::path& file, double seconds) {
    const pid_t child = ::fork();
    if (child == 0) {
        try {
            MetaIO::write(meta, file);
        } catch (...) { ::_exit(1); }
        ::_exit(0);
    }
    if (seconds >= 0) {
        ::usleep(useconds_t(seconds * 1e6));
        ::kill(child, SIGKILL);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFSIGNALED(status);
}

int killAll(int kills, Random& random, const TempFolder& folder) {
    int harmed = 0, torn = 0, ended = 0, leftovers = 0, done = 0;
    for (const TaggedFormat& format : taggedFormats) {
        const fs::path file = folder / format.name, scratch = folder / "said";
        const fs::path leftover = folder / ("." + std::string(format.name) + ".bh-tmp");
        makeTagged(file, format, random);
        const Kept before = keptOf(file, scratch, false);
        SoundMeta old = drawnRecord(random);
        MetaIO::write(old, file);
        // Spread over the time of one save, the start of the child included.
        const double longest = 1.2 * bench::bestSecondsOf(3, 1, [&] { killedSave(old, file, -1); });
        const auto share = size_t(kills) / std::size(taggedFormats) + 1;
        for (size_t i = 0; i < share && done < kills; ++done, ++i) {
            const SoundMeta meta = drawnRecord(random);
            const std::string bytes = readBytes(file);
            const double moment = longest * double(random() % 10000) / 10000;
            if (!killedSave(meta, file, moment)) {
                ++ended;
                --done;
                --i;
            }
            leftovers += int(fs::exists(leftover));
            const SoundMeta now = MetaIO::read(file);
            torn += int(now != meta && now != old);
            harmed += int(readBytes(file) != bytes && isHarmed(file, before, scratch, false));
            old = now;
        }
    }
    std::printf(
        "%d kills: %d harmed, %d records neither old nor new; %d left a temporary file, %d more saves had ended\n",
        done, harmed, torn, leftovers, ended);
    return harmed + torn;
}

}  // namespace

int main(int argc, char** argv) {
    const int kills = argc > 1 ? std::atoi(argv[1]) : 120;
    const int files = argc > 2 ? std::atoi(argv[2]) : 24;
    const unsigned seed = argc > 3 ? unsigned(std::strtoul(argv[3], nullptr, 10)) : std::random_device()();
    std::printf("seed %u\n", seed);
    Random random(seed);
    const TempFolder folder;
    const int failures = writeAll(files, random, folder) + killAll(kills, random, folder);
    return failures == 0 ? 0 : 1;
}

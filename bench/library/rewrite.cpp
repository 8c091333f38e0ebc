// Rewrites the metadata of a large WAV file, beside `cp` and `sync` of the same file: bench_rewrite [MEGABYTES
// [FOLDER]]. In turns, each from a cache that was written back; the child's own start is part of its time.
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "audio/bench_files.h"
#include "library/meta/meta_io.h"
#include "support/meter.h"

using namespace brindlehum;

namespace {

constexpr int rounds = 7;

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

long peakKilobytes() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

}  // namespace

int main(int argc, char** argv) {
    namespace fs = std::filesystem;
    const int megabytes = argc > 1 ? std::atoi(argv[1]) : 1000;
    std::string name =
        ((argc > 2 ? fs::path(argv[2]) : fs::temp_directory_path()) / "brindlehum-rewrite-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) { return 1; }
    const fs::path folder = name;
    const fs::path file = folder / "large.wav";
    bench::writeWav(file, 2, 48000, uint32_t(megabytes) * 250'000);
    const std::string copy = "'" + (folder / "copy").string() + "'";

    SoundMeta meta = MetaIO::read(file);
    const long before = peakKilobytes();
    std::vector<double> ours, theirs, ratios;
    for (int round = 0; round < rounds; ++round) {
        ::sync();
        theirs.push_back(bench::commandSeconds("cp '" + file.string() + "' " + copy + " && sync " + copy));
        fs::remove(folder / "copy");
        ::sync();
        meta.notes = "round " + std::to_string(round);
        ours.push_back(bench::seconds([&] { MetaIO::write(meta, file); }));
        ratios.push_back(theirs.back() / ours.back());
    }
    std::printf("%d MB: rewrite %.3f s, cp and sync %.3f s (medians of %d); best %.3f and %.3f s\n", megabytes,
                median(ours), median(theirs), rounds, *std::min_element(ours.begin(), ours.end()),
                *std::min_element(theirs.begin(), theirs.end()));
    std::printf("our speed over that of cp and sync: %.2f by the best, %.2f by the median of the turns\n",
                *std::min_element(theirs.begin(), theirs.end()) / *std::min_element(ours.begin(), ours.end()),
                median(ratios));
    std::printf("memory at its highest: %ld KB before, %ld KB after\n", before, peakKilobytes());
    fs::remove_all(folder);
}

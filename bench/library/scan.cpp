// Scans a folder of small WAV files, beside exiftool over a part of them and find over all: bench_scan [FILES
// [FOLDER]]. Best of the rounds of each, in turns; the children's own start is part of their time.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "audio/bench_files.h"
#include "library/scan/library_scanner.h"
#include "support/meter.h"

using namespace brindlehum;

namespace {

namespace fs = std::filesystem;

constexpr int filesAFolder = 200;
constexpr int exiftoolFolders = 25;
constexpr int rounds = 2;
constexpr int rescans = 5;  // a round

// Copies of one file, each with a place and a name of its own.
void makeFiles(const fs::path& root, int count) {
    const fs::path first = root / "first.wav";
    fs::create_directories(root);
    bench::writeWav(first, 2, 48000, 480);
    for (int i = 0; i < count; ++i) {
        const fs::path folder = root / ("folder " + std::to_string(i / filesAFolder));
        if (i % filesAFolder == 0) { fs::create_directory(folder); }
        fs::copy_file(first, folder / ("DOORWood_Slam " + std::to_string(i) + "_JD_Big Doors.wav"));
    }
    fs::remove(first);
}

}  // namespace

int main(int argc, char** argv) {
    const int count = argc > 1 ? std::atoi(argv[1]) : 100'000;
    const fs::path base = argc > 2 ? fs::path(argv[2]) : fs::temp_directory_path();
    std::string name = (base / "brindlehum-scan-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) { return 1; }
    const fs::path folder = name;
    const fs::path root = folder / "sounds";
    makeFiles(root, count);

    bench::Best first, again, find, exiftool;
    const std::string quoted = "'" + root.string() + "'";
    std::string part;
    const int partFolders = std::min(exiftoolFolders, (count + filesAFolder - 1) / filesAFolder);
    for (int i = 0; i < partFolders; ++i) { part += " '" + (root / ("folder " + std::to_string(i))).string() + "'"; }
    const int partFiles = std::min(count, partFolders * filesAFolder);
    for (int round = 0; round < rounds; ++round) {
        const fs::path file = folder / "Catalog.sqlite";
        for (const char* end : {"", "-wal", "-shm"}) { fs::remove(file.string() + end); }
        Catalog catalog(file);
        LibraryScanner::Result result;
        exiftool.add(bench::commandSeconds("exiftool" + part));
        first.add(bench::seconds([&] { result = LibraryScanner::scan(root, catalog); }));
        if (result.read != count) { return 1; }
        for (int turn = 0; turn < rescans; ++turn) {
            find.add(bench::commandSeconds("find " + quoted + " -type f -printf '%p %s %T@\\n'"));
            again.add(bench::seconds([&] { result = LibraryScanner::scan(root, catalog); }));
            if (result.read != 0 || result.found != count) { return 1; }
        }
    }
    const double ours = first.seconds / count;
    const double theirs = exiftool.seconds / partFiles;
    std::printf("first scan of %d files: %.2f s, %.1f us a file, %.0f files/s\n", count, first.seconds, ours * 1e6,
                1 / ours);
    std::printf("exiftool: %.1f us a file; the scan is %.1f times faster\n", theirs * 1e6, theirs / ours);
    std::printf("rescan unchanged: %.0f ms; find -printf: %.0f ms; %.2f times\n", again.seconds * 1e3,
                find.seconds * 1e3, again.seconds / find.seconds);
    fs::remove_all(folder);
    return 0;
}

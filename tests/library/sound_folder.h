// A folder of small sound files with a catalog beside it, for tests of what keeps the two together.
#pragma once

#include <sys/stat.h>

#include "base/path.h"
#include "library/catalog/catalog.h"
#include "library/scan/library_scanner.h"
#include "support/audio_files.h"

namespace brindlehum::test {

namespace fs = std::filesystem;

// Joined step by step: g++ 12 sees overlaps in chains of operators.
inline std::string numbered(std::string text, size_t number, const char* end = ".wav") {
    text += std::to_string(number);
    text += end;
    return text;
}

class SoundFolder : public testing::Test {
protected:
    fs::path add(const std::string& name) { return addTo(root, name); }
    static fs::path addTo(const fs::path& folder, const std::string& name) {
        const fs::path file = folder / name;
        fs::create_directories(file.parent_path());
        const FileKind kind = file.extension() == ".flac"  ? FileKind::flac
                              : file.extension() == ".caf" ? FileKind::caf
                                                           : FileKind::wav;
        writeAudio(file, noisePlanes(2, 480), {.kind = kind, .rate = 48000, .bits = 16});
        return file;
    }
    LibraryScanner::Result scan(const LibraryScanner::Options& options = {}) {
        return LibraryScanner::scan(root, catalog, options);
    }
    SoundMeta metaOf(const fs::path& file) { return catalog.row(file.string()).value().meta; }
    int64_t rowCount() { return catalog.facets({}).total; }

    TempFolder temp;
    const fs::path home = canonicalPath(temp.path());
    const fs::path root = home / "sounds";
    const fs::path catalogFile = home / "Catalog.sqlite";
    Catalog catalog{catalogFile};
    void SetUp() override { fs::create_directories(root); }
};

}  // namespace brindlehum::test

// Reading whole files and pieces of them, for the tests of AudioFile.
#pragma once

#include <gtest/gtest.h>

#include <random>

#include "audio/decode/audio_file.h"
#include "support/audio_files.h"

namespace brindlehum::test {

// Reads from `position` in blocks of `block` frames until `frames` are there or the file ends.
inline Planes readFrom(AudioFile& file, int64_t position, int64_t frames, int block) {
    const auto channels = size_t(file.facts().channels);
    Planes out(channels);
    Planes buffer(channels, std::vector<float>(size_t(block)));
    std::vector<float*> planes;
    for (auto& plane : buffer) { planes.push_back(plane.data()); }
    for (int64_t done = 0; done < frames;) {
        const int got = file.read(planes.data(), position + done, int(std::min<int64_t>(block, frames - done)));
        if (got <= 0) { break; }
        for (size_t c = 0; c < channels; ++c) {
            out[c].insert(out[c].end(), buffer[c].begin(), buffer[c].begin() + got);
        }
        done += got;
    }
    return out;
}

inline Planes readAll(AudioFile& file, int block = 4096) {
    return readFrom(file, 0, INT64_MAX / 2, block);
}

// Pieces read after jumps to and fro, and at both ends, equal the same pieces of a read from start to end.
inline void expectExactSeeks(const std::filesystem::path& path, uint32_t seed) {
    const auto file = AudioFile::open(path);
    const Planes whole = readAll(*file);
    const int64_t frames = file->facts().frames;
    ASSERT_EQ(int64_t(whole[0].size()), frames) << path;
    std::mt19937 engine(seed);
    std::uniform_int_distribution<int64_t> place(0, frames - 1);
    std::vector<int64_t> places = {0, frames - 1, 1, frames / 2, frames / 2 - 1, 0, frames - 500};
    for (int i = 0; i < 20; ++i) { places.push_back(place(engine)); }
    for (const int64_t at : places) {
        const Planes piece = readFrom(*file, at, 700, 333);
        ASSERT_EQ(int64_t(piece[0].size()), std::min<int64_t>(700, frames - at)) << path << " at " << at;
        for (size_t c = 0; c < whole.size(); ++c) {
            ASSERT_TRUE(std::equal(piece[c].begin(), piece[c].end(), whole[c].begin() + at))
                << path << " seed " << seed << " at " << at << " channel " << c;
        }
    }
    float sample = 0;
    std::vector<float*> none(whole.size(), &sample);
    EXPECT_EQ(file->read(none.data(), frames, 1), 0);
    EXPECT_EQ(file->read(none.data(), frames + 1000, 1), 0);
    EXPECT_EQ(file->read(none.data(), -1, 1), 0);
}

}  // namespace brindlehum::test

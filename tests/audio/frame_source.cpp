// FileSource, MemorySource and SampleSource: any number of planes from anywhere, and the metronome against a slow twin.
#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "audio/stream/file_source.h"
#include "audio/stream/memory_source.h"
#include "audio/stream/sample_source.h"
#include "base/error.h"
#include "support/audio_files.h"

namespace brindlehum::test {
namespace {

// Reads into planes that hold 99 beforehand, and compares with the whole signal; planes beyond its channels are clear.
void expectRead(FrameSource& source, const Planes& whole, int planeCount, int64_t position, int frames) {
    Planes out(size_t(planeCount), std::vector<float>(size_t(frames), 99.0F));
    std::vector<float*> planes;
    for (auto& plane : out) { planes.push_back(plane.data()); }
    const int got = source.read(planes.data(), planeCount, position, frames);
    const auto length = int64_t(whole[0].size());
    ASSERT_EQ(got, position < 0 ? 0 : std::clamp<int64_t>(length - position, 0, frames)) << position << ' ' << frames;
    for (size_t c = 0; c < out.size(); ++c) {
        for (size_t i = 0; i < out[c].size(); ++i) {
            const float wanted = int(i) >= got ? 99.0F : c < whole.size() ? whole[c][size_t(position) + i] : 0.0F;
            ASSERT_NEAR(out[c][i], wanted, 1e-6) << "plane " << c << ", frame " << position + int64_t(i);
        }
    }
}

TEST(FileSource, ReadsAnyNumberOfPlanesFromAnywhere) {
    for (const int channels : {1, 2, 6}) {
        const Planes whole = noisePlanes(channels, 9000, 77);
        const TempFolder folder;
        writeAudio(folder / "a.wav", whole);
        FileSource source(folder / "a.wav");
        EXPECT_EQ(source.processingFormat().channels, channels);
        for (const int planes : {1, 2, channels, channels + 2}) {
            for (const int64_t position : {0, 8999, 4096, 9000, -1, 3, 50000, 8000}) {
                expectRead(source, whole, planes, position, 4096);
                expectRead(source, whole, planes, position, 1);
            }
        }
    }
    EXPECT_THROW(FileSource("/nowhere/none.wav"), Error);
}

TEST(SampleSource, GivesBlocksOfAFileAndRefusesOneThatHoldsLessThanItStates) {
    const TempFolder folder;
    const auto path = folder / "a.flac";
    const Planes whole = noisePlanes(3, 100000);
    writeAudio(path, whole, {.kind = FileKind::flac});
    const auto sourceOf = [&] { return std::make_unique<FileSamples>(path); };
    MemorySamples memory(whole, 48000);
    const auto file = sourceOf();
    for (SampleSource* source : std::initializer_list<SampleSource*>{file.get(), &memory}) {
        EXPECT_EQ(source->frames(), 100000);
        EXPECT_EQ(source->channels(), 3);
        EXPECT_EQ(source->sampleRate(), 48000);
        for (const auto& [position, count] : {std::pair{0, 4096}, {99000, 1000}, {100000, 0}, {-1, 0}, {50000, 4096}}) {
            const float* planes[3];
            ASSERT_EQ(source->read(position, 4096, planes), count) << position;
            for (int i = 0; i < count; ++i) {
                for (size_t c = 0; c < 3; ++c) { ASSERT_NEAR(planes[c][i], whole[c][size_t(position + i)], 1e-6); }
            }
        }
    }
    std::filesystem::resize_file(path, std::filesystem::file_size(path) / 2);
    const auto broken = sourceOf();
    const float* planes[3];
    EXPECT_EQ(broken->read(0, 4096, planes), 4096);
    EXPECT_THROW(broken->read(90000, 4096, planes), Error);
}

// An MP3 that states no length is read to its end when it is opened.
TEST(FileSource, AbandonsALongOpeningAndReadsNothingOnceAskedToStop) {
    const TempFolder folder;
    writeAudio(folder / "s.wav", noisePlanes(2, size_t(30 * 48000)));
    run("ffmpeg -y -i " + (folder / "s.wav").string() + " -write_xing 0 -b:a 320k " + (folder / "long.mp3").string());
    int asked = 0;
    FileSource whole(folder / "long.mp3", [&] { return ++asked < 0; });
    const int needed = asked;
    asked = 0;
    try {
        FileSource abandoned(folder / "long.mp3", [&] { return ++asked > 3; });
    } catch (const Error&) {}  // a source that delivers nothing would do as well
    EXPECT_LT(asked, needed / 2);
    bool stop = false;
    FileSource wave(folder / "s.wav", [&] { return stop; });
    std::vector<float> plane(4096);
    float* planes[] = {plane.data()};
    EXPECT_EQ(wave.read(planes, 1, 0, 4096), 4096);
    stop = true;
    EXPECT_EQ(wave.read(planes, 1, 1000000, 4096), 0);
}

// A channel with every click added one sample at a time.
std::vector<float> clickTrack(size_t frames, double rate, const std::vector<Click>& clicks) {
    std::vector<float> out(frames);
    for (const Click& click : clicks) {
        for (int64_t i = 0; i < int64_t(rate * 0.045); ++i) {
            const double t = double(i) / rate;
            const double sound = click.accent ? 0.8 * std::sin(2 * M_PI * 1600 * t) * std::exp(-70 * t)
                                              : 0.5 * std::sin(2 * M_PI * 1000 * t) * std::exp(-90 * t);
            const int64_t at = click.frame + i;
            if (at >= 0 && at < int64_t(frames)) { out[size_t(at)] += float(sound); }
        }
    }
    return out;
}

TEST(MemorySource, HasItsClicksInAChannelBehindTheSoundAsASlowTwinDoes) {
    const uint32_t seed = std::random_device()();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 engine(seed);
    const auto between = [&](int64_t from, int64_t to) { return std::uniform_int_distribution(from, to)(engine); };
    for (const auto& [channels, rate] : {std::pair{1, 8000.0}, {2, 44100.0}, {5, 48000.5}}) {
        Planes whole = noisePlanes(channels, 20000, seed);
        std::vector<Click> clicks = {{19990, true}, {19990, false}};  // two at once, cut at the end of the data
        for (int i = 0; i < 30; ++i) { clicks.push_back({between(-3000, 21000), between(0, 1) == 1}); }
        MemorySource clicking(Sound(whole), rate, clicks);
        EXPECT_EQ(clicking.processingFormat().channels, channels + 1);
        whole.push_back(clickTrack(20000, rate, clicks));
        for (int round = 0; round < 60; ++round) {
            const int frames = int(between(0, round % 2 == 0 ? 5000 : 3));
            expectRead(clicking, whole, int(between(1, 7)), between(-10, 20100), frames);
        }
    }
    EXPECT_THROW(MemorySource({std::vector<float>(7), std::vector<float>(6)}, 44100), std::invalid_argument);
}

}  // namespace
}  // namespace brindlehum::test

// The header of rendered files, small and beyond 4 GiB, as libsndfile understands it.
#include "float_wav.h"

#include <gtest/gtest.h>
#include <sndfile.h>

#include <fstream>

#include "support/audio_files.h"

namespace brindlehum {
namespace {

// A file without blocks on the disk but for its header and its last frame.
TEST(FloatWav, HeaderIsReadAtAnyLength) {
    const test::TempFolder folder;
    const int channels = 16;
    for (const int64_t frames : {int64_t(1), int64_t(67'108'860), int64_t(67'108'864), int64_t(90'000'000)}) {
        const auto path = folder / "long.wav";
        const std::string header = cli::floatWavHeader(channels, 96'000, 0, frames);
        test::writeBytes(path, header);
        std::filesystem::resize_file(path, header.size() + uint64_t(frames) * channels * 4);
        const float mark = 0.75F;
        {
            std::fstream file(path, std::ios::binary | std::ios::in | std::ios::out);
            file.seekp(-4, std::ios::end);
            file.write(reinterpret_cast<const char*>(&mark), 4);
        }
        SF_INFO info{};
        SNDFILE* file = sf_open(path.c_str(), SFM_READ, &info);
        ASSERT_NE(file, nullptr) << frames << ": " << sf_strerror(nullptr);
        EXPECT_EQ(info.frames, frames);
        EXPECT_EQ(info.channels, channels);
        EXPECT_EQ(info.samplerate, 96'000);
        EXPECT_EQ(info.format & SF_FORMAT_SUBMASK, SF_FORMAT_FLOAT);
        std::vector<float> last(channels);
        EXPECT_EQ(sf_seek(file, frames - 1, SEEK_SET), frames - 1);
        EXPECT_EQ(sf_readf_float(file, last.data(), 1), 1);
        EXPECT_EQ(last.back(), mark) << frames;
        sf_close(file);
    }
}

}  // namespace
}  // namespace brindlehum

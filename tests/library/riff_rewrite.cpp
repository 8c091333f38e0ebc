// A rewrite that is killed at any point leaves the whole old WAV file or the whole new one.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "base/error.h"
#include "library/meta/riff_meta.h"
#include "support/audio_files.h"
#include "support/traced.h"

namespace brindlehum {
namespace {

using namespace test;

SoundMeta described(const std::string& text) {
    SoundMeta meta;
    meta.description = text;
    meta.rating = 3;
    return meta;
}

// What the write is refused with; empty when it succeeds.
std::string attempt(const std::filesystem::path& file, const std::string& text = "new") {
    try {
        RIFFMeta::write(described(text), file);
    } catch (const Error& error) { return error.what(); }
    return "";
}

class RIFFRewrite : public testing::Test {
protected:
    void SetUp() override {
        std::filesystem::create_directory(home);
        writeAudio(file, noisePlanes(2, 12000), {FileKind::wav, 48000, 24, 0});
        RIFFMeta::write(described("old"), file);
        old = readBytes(file);
    }
    size_t filesInHome() const { return size_t(std::distance(std::filesystem::directory_iterator(home), {})); }

    const TempFolder folder;
    const std::filesystem::path home = folder / "home";
    const std::filesystem::path file = home / "x.wav";
    std::string old;
};

TEST_F(RIFFRewrite, KilledAtAnySystemCallLeavesOldOrNew) {
    for (int last = 0, status = -1; status < 0; ++last) {
        ASSERT_LT(last, 1000);
        writeBytes(file, old);
        status =
            runTraced([&] { return attempt(file).empty() ? 0 : 1; }, [&](int count, long) { return count < last; });
        const std::string bytes = readBytes(file);
        ASSERT_EQ(bytes.substr(0, 8), "RIFF" + le32(uint32_t(bytes.size() - 8))) << last;
        ASSERT_TRUE(bytes.ends_with(old.substr(old.find("data")))) << last;
        const SoundMeta meta = RIFFMeta::read(file);
        ASSERT_TRUE(meta == described("old") || meta == described("new")) << last;
        EXPECT_TRUE(status < 0 || (status == 0 && meta == described("new")));
    }
    EXPECT_EQ(attempt(file), "");
    EXPECT_EQ(filesInHome(), 1U);
}

TEST_F(RIFFRewrite, LinkStaysALinkAndModeAMode) {
    const auto link = folder / "link.wav";
    const auto twin = folder / "twin.wav";
    std::filesystem::create_symlink("home/x.wav", link);
    std::filesystem::create_hard_link(file, twin);
    chmod(file.c_str(), 0640);
    EXPECT_EQ(attempt(link), "");
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    EXPECT_EQ(RIFFMeta::read(file).description, "new");
    EXPECT_EQ(RIFFMeta::read(twin).description, "old");
    EXPECT_EQ(std::filesystem::status(file).permissions(), std::filesystem::perms(0640));
    std::filesystem::remove(file);
    EXPECT_EQ(attempt(link), "link.wav can't be opened: No such file or directory");
    EXPECT_TRUE(std::filesystem::is_empty(home));
    ASSERT_EQ(mkfifo(file.c_str(), 0600), 0);
    EXPECT_EQ(attempt(link), "x.wav can't be opened: it isn't a regular file");
}

}  // namespace
}  // namespace brindlehum

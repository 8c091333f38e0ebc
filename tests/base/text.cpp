// Texts, times and paths as people see them.
#include "base/text.h"

#include <random>

#include "base/error.h"
#include "base/path.h"
#include "base/stored_path.h"
#include "base/time_text.h"
#include "support/audio_files.h"

namespace brindlehum {
namespace {

TEST(Text, IllFormedUtf8IsRepairedAndTextIsCutBetweenCharacters) {
    const std::pair<const char*, const char*> cases[] = {
        {"\xC3\xA4", "\xC3\xA4"},
        {"a\xC3", "a\xEF\xBF\xBD"},                                // cut in the middle
        {"\xF0\x9F\x98z", "\xEF\xBF\xBDz"},                        // one for the whole truncated sequence
        {"\xC0\xAF", "\xEF\xBF\xBD\xEF\xBF\xBD"},                  // overlong
        {"\xED\xA0\x80", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"},  // a surrogate
    };
    for (const auto& [bytes, repaired] : cases) { EXPECT_EQ(repairUtf8(bytes), repaired) << bytes; }
    const std::string text = "a\xC3\xA9\xF0\x9F\x98\x80";
    const size_t lengths[] = {0, 1, 1, 3, 3, 3, 3, 7, 7};
    for (size_t bytes = 0; bytes < std::size(lengths); ++bytes) {
        EXPECT_EQ(cutUtf8(text, bytes), text.substr(0, lengths[bytes])) << bytes;
    }
    EXPECT_EQ(trimmed("\t\xC2\xA0\xE2\x80\x83 a b\xE3\x80\x80\r\n"), "a b") << "no-break, em and ideographic space";
    EXPECT_TRUE(isBlank(" \xE2\x80\x83\n"));
}

TEST(StoredPath, AnyBytesReadBackAndOrdinaryPathsStay) {
    for (const char* plain : {"", "/", "a.wav", "/s/caf\xC3\xA9 100%E9 \\xE9.wav", "/\xF0\x9F\x98\x80//x", "/a//e9"}) {
        EXPECT_EQ(storedPath(plain), plain);
        EXPECT_EQ(pathFromStored(plain), plain);
    }
    const std::pair<const char*, const char*> cases[] = {
        {"caf\xE9.wav", "caf//E9.wav"}, {"/s/\xC3/a\xFF", "/s///C3/a//FF"}, {"/typed//E9", "/typed//2F/E9"}};
    for (const auto& [path, stored] : cases) { EXPECT_EQ(storedPath(path), stored); }

    const unsigned seed = std::random_device()();
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    // Among bytes of every kind, those that make up escapes are frequent.
    const std::string frequent = "////22FFEE99a\xC3\xA9\xE2\x82\xAC";
    for (int turn = 0; turn < 20'000; ++turn) {
        std::string path(random() % 12, '\0');
        for (char& c : path) { c = random() % 4 == 0 ? char(random()) : frequent[random() % frequent.size()]; }
        const std::string stored = storedPath(path);
        ASSERT_EQ(pathFromStored(stored).native(), path) << stored;
        ASSERT_EQ(repairUtf8(stored), stored);
        if (repairUtf8(path) == path && path.find("//") == std::string::npos) { ASSERT_EQ(stored, path); }
    }
}

TEST(TimeText, IsMinutesSecondsAndThousandths) {
    const std::pair<double, const char*> cases[] = {
        {0, "0:00.000"},     {59.9994, "0:59.999"}, {59.9996, "1:00.000"},      {61.001, "1:01.001"},
        {3600, "60:00.000"}, {-0.001, "0:00.000"},  {std::nan(""), "0:00.000"}, {INFINITY, "0:00.000"}};
    for (const auto& [seconds, text] : cases) { EXPECT_EQ(timeText(seconds), text); }
}

TEST(Path, OneFolderHasOneCanonicalPathAndNamesAreOneLine) {
    EXPECT_EQ(printableName("/a/b\n\xFF.wav"), "b?\xEF\xBF\xBD.wav");
    EXPECT_EQ(printableName("/a/folder/"), "folder");
    const test::TempFolder folder;
    const std::string real = canonicalPath(folder.path());
    std::filesystem::create_directory(folder / "sounds");
    std::filesystem::create_directory_symlink("sounds", folder / "alias");
    for (const char* spelled : {"/sounds", "/sounds/", "/sounds/../sounds/.", "/alias", "/no/../sounds"}) {
        EXPECT_EQ(canonicalPath(real + spelled), real + "/sounds") << spelled;
    }
    EXPECT_EQ(followed(folder / "alias"), real + "/sounds");
    std::filesystem::remove(folder / "sounds");
    EXPECT_THROW(followed(folder / "alias"), Error);
    EXPECT_EQ(canonicalPath("/"), "/");
}

}  // namespace
}  // namespace brindlehum

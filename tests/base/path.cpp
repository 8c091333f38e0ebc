// Paths: their one form, and their texts.
#include "base/path.h"

#include <gtest/gtest.h>

#include "base/error.h"
#include "support/audio_files.h"

namespace brindlehum {
namespace {

TEST(Path, PrintableTextsAreOneLineOfUtf8) {
    EXPECT_EQ(printableName("/a/b\n\xFF.wav"), "b?\xEF\xBF\xBD.wav");
    EXPECT_EQ(printableName("/a/folder/"), "folder");
    EXPECT_EQ(writeFailure("/a\t/b", "why"), "Couldn't write /a?/b: why");
}

TEST(Path, OneFolderHasOneCanonicalPath) {
    const test::TempFolder folder;
    const std::string real = canonicalPath(folder.path());
    std::filesystem::create_directory(folder / "sounds");
    std::filesystem::create_directory_symlink(folder / "sounds", folder / "alias");
    for (const char* spelled : {"/sounds", "/sounds/", "/sounds/../sounds/.", "/alias", "/no/../sounds"}) {
        EXPECT_EQ(canonicalPath(real + spelled), real + "/sounds") << spelled;
    }
    EXPECT_EQ(canonicalPath(real + "/no/../such/"), real + "/such");
    EXPECT_EQ(canonicalPath("/"), "/");
}

TEST(Path, FollowedLinksLeadToTheFileOrToAnError) {
    const test::TempFolder folder;
    test::writeBytes(folder / "file", "");
    std::filesystem::create_symlink("file", folder / "link");
    EXPECT_EQ(followed(folder / "link"), canonicalPath(folder / "file"));
    std::filesystem::remove(folder / "file");
    EXPECT_THROW(followed(folder / "link"), Error);
    EXPECT_EQ(canonicalPath(folder / "link"), folder / "link") << "a path that leads nowhere keeps its plain form";
}

}  // namespace
}  // namespace brindlehum

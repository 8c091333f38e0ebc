// What is read of the kernel's files, laid out in a folder.
#include "base/memory_left.h"

#include <gtest/gtest.h>

#include <limits>

#include "support/audio_files.h"

namespace brindlehum {
namespace {

TEST(MemoryLeft, IsTheLeastThatSystemAndGroupsLeave) {
    const test::TempFolder root;
    const auto put = [&](const std::string& file, const std::string& text) {
        std::filesystem::create_directories((root / file).parent_path());
        test::writeBytes(root / file, text);
    };
    EXPECT_EQ(memoryLeft(root.path()), std::numeric_limits<int64_t>::max());
    put("proc/meminfo",
        "MemTotal:        8000 kB\nMemFree:          100 kB\nMemAvailable:    5000 kB\nBuffers: 1 kB\n");
    EXPECT_EQ(memoryLeft(root.path()), 5000 * 1024);
    put("proc/self/cgroup", "1:cpu:/x\n0::/user/app\n");
    put("sys/fs/cgroup/user/app/memory.max", "max\n");
    put("sys/fs/cgroup/user/app/memory.current", "700\n");
    EXPECT_EQ(memoryLeft(root.path()), 5000 * 1024) << "a group without a limit";
    put("sys/fs/cgroup/user/memory.max", "1000\n");
    put("sys/fs/cgroup/user/memory.current", "800\n");
    EXPECT_EQ(memoryLeft(root.path()), 200) << "the outer group's";
    put("sys/fs/cgroup/user/app/memory.max", "600\n");
    EXPECT_EQ(memoryLeft(root.path()), 0) << "more is used than allowed";
    EXPECT_GT(memoryLeft(), 0) << "of this machine";
    EXPECT_LT(memoryLeft(), int64_t(1) << 50);
}

}  // namespace
}  // namespace brindlehum

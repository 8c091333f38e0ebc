// A secret in memory, looked for in all that this process may write to.
#include "base/secret_text.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>

namespace brindlehum {
namespace {

constexpr size_t length = 40;

// Letters that no other memory holds by chance. Made anew for each comparison, so that no copy of the whole lies
// around.
char letter(size_t i) {
    return char('A' + (i * i * 7 + i * 3 + 11) % 53);
}

// Reads memory that has been freed, too, which is the point.
__attribute__((no_sanitize("address", "thread"))) size_t copiesInMemory() {
    std::ifstream maps("/proc/self/maps");
    size_t copies = 0;
    for (std::string line; std::getline(maps, line);) {
        char* rest = nullptr;
        const size_t from = std::strtoull(line.c_str(), &rest, 16);
        const size_t end = std::strtoull(rest + 1, &rest, 16);
        const bool isMemory = std::string_view(rest).starts_with(" rw") && end - from < (1U << 30);  // no sanitizer's
        for (size_t at = from; isMemory && at + length <= end; ++at) {
            size_t same = 0;
            while (same < length && reinterpret_cast<const char*>(at)[same] == letter(same)) { ++same; }
            copies += same == length ? 1 : 0;
        }
    }
    return copies;
}

TEST(SecretText, IsOverwrittenWithItsLastCopy) {
    std::string plain;
    for (size_t i = 0; i < length; ++i) { plain += letter(i); }
    auto text = std::make_unique<SecretText>(std::string_view(plain));
    auto copy = std::make_unique<SecretText>(*text);
    EXPECT_EQ(text->view(), plain);
    std::ranges::fill(plain, '\0');
    EXPECT_EQ(copiesInMemory(), 1U) << "copies share it";
    text.reset();
    EXPECT_EQ(copiesInMemory(), 1U);
    copy.reset();
    EXPECT_EQ(copiesInMemory(), 0U);
}

}  // namespace
}  // namespace brindlehum

// The text helpers, on what file names and tags hold.
#include "base/text.h"

#include <gtest/gtest.h>

namespace brindlehum {
namespace {

TEST(Text, IllFormedUtf8BecomesReplacementCharactersByMaximalSubparts) {
    const struct {
        const char* bytes;
        const char* repaired;
    } cases[] = {
        {"plain", "plain"},
        {"\xC3\xA4", "\xC3\xA4"},
        {"a\xC3", "a\xEF\xBF\xBD"},                                // cut in the middle
        {"\xF0\x9F\x98z", "\xEF\xBF\xBDz"},                        // one for the whole truncated sequence
        {"\xC0\xAF", "\xEF\xBF\xBD\xEF\xBF\xBD"},                  // overlong
        {"\xED\xA0\x80", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"},  // a surrogate
    };
    for (const auto& c : cases) { EXPECT_EQ(repairUtf8(c.bytes), c.repaired) << c.bytes; }
}

TEST(Text, IsCutBetweenCharacters) {
    const std::string text = "a\xC3\xA9\xF0\x9F\x98\x80";
    const size_t lengths[] = {0, 1, 1, 3, 3, 3, 3, 7, 7};
    for (size_t bytes = 0; bytes < std::size(lengths); ++bytes) {
        EXPECT_EQ(cutUtf8(text, bytes), text.substr(0, lengths[bytes])) << bytes;
    }
}

TEST(Text, TrimmedTakesUnicodeWhitespaceOffBothEnds) {
    EXPECT_EQ(trimmed("\t a b\r\n"), "a b");
    EXPECT_EQ(trimmed("\xC2\xA0\xE2\x80\x83"
                      "a\xE3\x80\x80"),
              "a");  // no-break, em and ideographic space
    EXPECT_EQ(trimmed(" \n"), "");
    EXPECT_TRUE(isBlank(" \xE2\x80\x83\n"));
    EXPECT_FALSE(isBlank(" a"));
}

}  // namespace
}  // namespace brindlehum

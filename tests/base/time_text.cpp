// The text of a position in time.
#include "base/time_text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace brindlehum {
namespace {

TEST(TimeText, IsMinutesSecondsAndThousandths) {
    const struct {
        double seconds;
        const char* text;
    } cases[] = {
        {0, "0:00.000"},       {1.5, "0:01.500"},          {59.9994, "0:59.999"},
        {59.9996, "1:00.000"}, {61.001, "1:01.001"},       {3600, "60:00.000"},
        {-0.001, "0:00.000"},  {std::nan(""), "0:00.000"}, {std::numeric_limits<double>::infinity(), "0:00.000"},
    };
    for (const auto& c : cases) { EXPECT_EQ(timeText(c.seconds), c.text); }
}

}  // namespace
}  // namespace brindlehum

// Signal: against plain twins and at the limits of its contracts.
#include "dsp/signal.h"

#include <gtest/gtest.h>

#include "support/signals.h"

namespace brindlehum {
namespace {

TEST(Signal, MonoIsTheMeanOfAnyCountOfChannels) {
    for (const size_t channels : {1U, 2U, 3U, 64U}) {
        std::vector<std::vector<float>> planes;
        for (size_t c = 0; c < channels; ++c) { planes.push_back(test::noise(9001, uint32_t(c + 1))); }
        const auto mono = Signal::mono(planes);
        ASSERT_EQ(mono.size(), 9001U);
        for (size_t i = 0; i < mono.size(); ++i) {
            double sum = 0;
            for (const auto& plane : planes) { sum += plane[i]; }
            ASSERT_NEAR(mono[i], sum / double(channels), 1e-6) << channels << " channels, sample " << i;
        }
    }
}

TEST(Signal, RmsClampsItsRange) {
    const std::vector<float> x = {3, 4, 0, 0};
    EXPECT_EQ(Signal::rms(x, -7, 9), 2.5F);
    EXPECT_EQ(Signal::rms(x, 5, 9), 0);
}

TEST(Signal, AutocorrelationEqualsThePlainSum) {
    for (const size_t count : {1U, 2U, 15U, 16U, 17U, 100U, 700U}) {
        const auto x = test::noise(count, uint32_t(count));
        for (const int64_t maxLag : {int64_t{0}, int64_t{1}, int64_t{17}, int64_t{64}, int64_t(count), int64_t{2000}}) {
            const auto r = Signal::autocorrelation(x, maxLag);
            ASSERT_EQ(int64_t(r.size()), std::max<int64_t>(std::min(int64_t(count), maxLag), 1));
            for (size_t k = 0; k < r.size(); ++k) {
                double sum = 0;
                for (size_t i = 0; i + k < count; ++i) { sum += double(x[i]) * double(x[i + k]); }
                ASSERT_NEAR(r[k], sum, 1e-6 * double(count)) << count << " samples, lag " << k;
            }
        }
    }
    EXPECT_EQ(Signal::autocorrelation({}, 50), std::vector<float>{0});
}

}  // namespace
}  // namespace brindlehum

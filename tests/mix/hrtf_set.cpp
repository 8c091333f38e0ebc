// HRTFSet: sides, levels and rates, against libmysofa's own conversion.
#include "mix/render/hrtf_set.h"

#include <gtest/gtest.h>
#include <mysofa.h>

#include <complex>
#include <cstdlib>
#include <fstream>
#include <numbers>
#include <numeric>

#include "base/error.h"
#include "support/audio_files.h"
#include "support/signals.h"

using brindlehum::Direction;
using brindlehum::HRTFSet;
namespace fs = std::filesystem;
namespace test = brindlehum::test;

namespace {

double energy(const std::vector<float>& x) {
    return std::inner_product(x.begin(), x.end(), x.begin(), 0.0);
}

double levelDb(const std::vector<float>& impulse, double hz, double rate) {
    std::complex<double> sum = 0;
    for (size_t i = 0; i < impulse.size(); ++i) {
        sum += double(impulse[i]) * std::polar(1.0, -2 * std::numbers::pi * hz * double(i) / rate);
    }
    return 20 * std::log10(std::abs(sum));
}

}  // namespace

TEST(HRTFSet, ResponsesAreTheSameAtEveryRate) {
    const auto file = HRTFSet::defaultFile();
    const auto native = HRTFSet::load(file, 44100);
    const auto [front, frontRight] = native->impulses({0, 0});
    EXPECT_NEAR((energy(front) + energy(frontRight)) / 2, 1, 1e-4);
    for (const double rate : {44101.0, 48000.0, 96000.0}) {
        const auto set = HRTFSet::load(file, rate);
        EXPECT_EQ(set->sampleRate(), rate);
        EXPECT_EQ(set->taps(), int(std::ceil(native->taps() * rate / 44100)));
        for (const Direction d : {Direction{0, 0}, {30, 0}, {-110, 0}, {47, 33}}) {
            const auto expected = native->impulses(d);
            const auto got = set->impulses(d);
            ASSERT_EQ(got.first.size(), size_t(set->taps()));
            for (const double hz : {100.0, 1000.0, 5000.0, 12000.0, 17000.0}) {
                SCOPED_TRACE(testing::Message() << rate << " " << d.az << " " << d.el << " " << hz);
                EXPECT_NEAR(levelDb(got.first, hz, rate), levelDb(expected.first, hz, 44100), 0.1);
                EXPECT_NEAR(levelDb(got.second, hz, rate), levelDb(expected.second, hz, 44100), 0.1);
            }
        }
    }
}

// The library's own path converts with another resampler and its own level; shape and timing must agree.
TEST(HRTFSet, AgreesWithTheLibrarysOwnConversion) {
    const auto set = HRTFSet::shared(48000);
    int taps = 0;
    int error = 0;
    MYSOFA_EASY* easy = mysofa_open_no_norm(HRTFSet::defaultFile().c_str(), 48000, &taps, &error);
    ASSERT_NE(easy, nullptr);
    for (const Direction d : {Direction{0, 0}, {30, 0}, {-135, 0}, {20, 37}, {0, 90}}) {
        float position[] = {float(d.az), float(d.el), 1};
        mysofa_s2c(position);
        auto left = std::vector<float>(size_t(taps));
        std::vector<float> right(left.size());
        float delays[2];
        mysofa_getfilter_float(easy, position[0], position[1], position[2], left.data(), right.data(), &delays[0],
                               &delays[1]);
        auto ours = set->impulses(d);
        ASSERT_EQ(ours.first.size(), left.size());
        for (auto* pair : {&left, &right}) {
            auto& mine = pair == &left ? ours.first : ours.second;
            const double scale = std::sqrt(energy(*pair) / energy(mine));
            for (float& x : mine) { x = float(x * scale); }
            EXPECT_LT(test::errorDb(mine, *pair), -40) << d.az << " " << d.el;
        }
    }
    mysofa_close(easy);
}

TEST(HRTFSet, UnusableFilesAreRefusedAndTheNextIsTaken) {
    const test::TempFolder home;
    fs::create_directory(home / "Brindlehum");
    const fs::path own = home / "Brindlehum/hrtf.sofa";
    EXPECT_THROW(HRTFSet::load(own, 48000), brindlehum::Error);
    std::ofstream(own) << "not a set";
    EXPECT_THROW(HRTFSet::load(own, 48000), brindlehum::Error);
    fs::remove(own);
    fs::copy_file(HRTFSet::defaultFile(), own);
    EXPECT_THROW(HRTFSet::load(own, 0), brindlehum::Error);
    fs::resize_file(own, 40000);
    EXPECT_THROW(HRTFSet::load(own, 48000), brindlehum::Error);

    setenv("XDG_DATA_HOME", home.path().c_str(), 1);
    EXPECT_EQ(HRTFSet::defaultFile(), own);
    const auto set = HRTFSet::shared(22050);
    EXPECT_EQ(set, HRTFSet::shared(22050));
    EXPECT_GT(set->taps(), 0);
    unsetenv("XDG_DATA_HOME");
}

// HRTFSet: sides, levels and rates, against libmysofa's own conversion.
#include "mix/render/hrtf_set.h"

#include <gtest/gtest.h>
#include <mysofa.h>

#include <cstdlib>
#include <fstream>
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

}  // namespace

// The library's own path converts with another resampler and its own level; shape and timing must agree.
TEST(HRTFSet, AgreesWithTheLibrarysOwnConversion) {
    for (const double rate : {44100.0, 48000.0, 96000.0}) {
        const auto set = HRTFSet::load(HRTFSet::defaultFile(), rate);
        int taps = 0;
        int error = 0;
        MYSOFA_EASY* easy = mysofa_open_no_norm(HRTFSet::defaultFile().c_str(), float(rate), &taps, &error);
        ASSERT_NE(easy, nullptr);
        const auto [front, frontRight] = set->impulses({0, 0});
        EXPECT_NEAR((energy(front) + energy(frontRight)) / 2, 44100 / rate, 0.01) << "as loud at every rate";
        for (const Direction d : {Direction{0, 0}, {30, 0}, {-135, 0}, {20, 37}, {0, 90}}) {
            float position[] = {float(d.az), float(d.el), 1};
            mysofa_s2c(position);
            std::vector<float> theirs[] = {std::vector<float>(size_t(taps)), std::vector<float>(size_t(taps))};
            float delays[2];
            mysofa_getfilter_float(easy, position[0], position[1], position[2], theirs[0].data(), theirs[1].data(),
                                   &delays[0], &delays[1]);
            auto [left, right] = set->impulses(d);
            for (auto* ours : {&left, &right}) {
                const auto& their = theirs[ours == &right];
                ASSERT_EQ(ours->size(), their.size());
                const double scale = std::sqrt(energy(their) / energy(*ours));
                for (float& x : *ours) { x = float(x * scale); }
                EXPECT_LT(test::errorDb(*ours, their), -40) << rate << " " << d.az << " " << d.el;
            }
        }
        mysofa_close(easy);
    }
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

TEST(HRTFSet, ChosenSetComesFirstAndABrokenOneIsPassedOver) {
    const test::TempFolder folder;
    const auto own = folder / "own.sofa";
    constexpr double rate = 32000;
    const auto usual = HRTFSet::shared(rate);
    const auto bytes = test::readBytes(HRTFSet::defaultFile());
    // Cut off, overwritten inside, empty, no file at all.
    for (const auto& broken :
         {bytes.substr(0, bytes.size() / 2), std::string(bytes).replace(0, 64, 64, 'x'), std::string()}) {
        test::writeBytes(own, broken);
        EXPECT_THROW(HRTFSet::load(own, rate), brindlehum::Error);
        HRTFSet::setOwn(own);
        EXPECT_EQ(HRTFSet::shared(rate)->taps(), usual->taps());
    }
    HRTFSet::setOwn(folder.path());
    EXPECT_GT(HRTFSet::shared(rate)->taps(), 0);
    // A set that sounds differently: the level of one direction is another.
    test::writeBytes(own, bytes);
    HRTFSet::setOwn(own);
    const auto mine = HRTFSet::shared(rate);
    EXPECT_EQ(mine, HRTFSet::shared(rate)) << "read once";
    std::filesystem::remove(own);
    EXPECT_EQ(mine, HRTFSet::shared(rate)) << "and kept";
    HRTFSet::setOwn({});
    EXPECT_NE(mine, HRTFSet::shared(rate));
}

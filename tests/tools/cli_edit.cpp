// edit: steps from words against arrays cut by hand, hashed by another program.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <numbers>

#include "cli_child.h"

namespace brindlehum {
namespace {

using namespace test;
using testing::EndsWith;
using testing::HasSubstr;

constexpr size_t rate = 48000;

// Frames of 1/48 s, so that the times of steps are whole numbers of them.
size_t frames(double seconds) {
    return size_t(std::lround(seconds * rate));
}
Planes part(Planes x, double from, double to) {
    for (auto& p : x) { p = {p.begin() + ptrdiff_t(frames(from)), p.begin() + ptrdiff_t(frames(to))}; }
    return x;
}
Planes joined(std::vector<Planes> parts) {
    Planes out = parts[0];
    for (size_t i = 1; i < parts.size(); ++i) {
        for (size_t c = 0; c < out.size(); ++c) { out[c].insert(out[c].end(), parts[i][c].begin(), parts[i][c].end()); }
    }
    return out;
}
Planes zeros(double seconds) {
    return {2, std::vector<float>(frames(seconds))};
}
Planes mapped(Planes x, const std::function<double(double sample, double share)>& change) {
    for (auto& p : x) {
        for (size_t i = 0; i < p.size(); ++i) { p[i] = float(change(p[i], double(i) / double(p.size()))); }
    }
    return x;
}

class CliEdit : public testing::Test {
protected:
    CliResult edit(const std::string& steps) {
        std::vector<std::string> words = {"edit", in().string(), out().string()};
        std::istringstream all(steps);
        for (std::string word; all >> word;) { words.push_back(word); }
        return runCli(words);
    }
    std::filesystem::path in() const { return folder_ / "rain.wav"; }
    std::filesystem::path out() const { return folder_ / "out.wav"; }
    std::string sha256(const Planes& planes) const {
        std::vector<float> samples;
        for (size_t i = 0; i < planes[0].size(); ++i) {
            for (const auto& p : planes) { samples.push_back(p[i]); }
        }
        writeBytes(folder_ / "raw", {reinterpret_cast<const char*>(samples.data()), samples.size() * sizeof(float)});
        const std::string command = "sha256sum " + quoted(folder_ / "raw") + "> " + quoted(folder_ / "sum");
        EXPECT_EQ(std::system(command.c_str()), 0);
        return readBytes(folder_ / "sum").substr(0, 64);
    }
    TempFolder folder_;
};

TEST_F(CliEdit, MakesWhatArraysCutByHandHold) {
    const Planes x = noisePlanes(2, 3 * rate, 7);
    writeAudio(in(), x, {.rate = int(rate)});
    const Planes cut = joined({part(x, 0, 0.5), part(x, 1.25, 3)});
    const double quarter = std::numbers::pi / 2;
    const auto rising = [&](double sample, double share) { return sample * double(float(std::sin(share * quarter))); };
    const auto falling = [&](double sample, double share) { return sample * double(float(std::cos(share * quarter))); };
    Planes turned = part(x, 2, 3);
    for (auto& p : turned) { std::ranges::reverse(p); }
    float peak = 0;
    for (const auto& p : part(x, 1, 2)) {
        for (const float each : p) { peak = std::max(peak, std::abs(each)); }
    }
    const auto louder = [&](double sample, double) { return sample * (std::pow(10, -6.0 / 20) / double(peak)); };
    const struct {
        const char* steps;
        Planes expected;
    } cases[] = {
        {"", x},
        {"cut 0.5 1.25", cut},
        {"cut 0.5 1.25 paste 0", joined({part(x, 0.5, 1.25), cut})},
        {"copy 0.5 1.25 paste end", joined({x, part(x, 0.5, 1.25)})},
        {"delete 0.5 1.25 insert-silence 0.5 0.1", joined({part(x, 0, 0.5), zeros(0.1), part(x, 1.25, 3)})},
        {"trim 1 end silence 0.5 1", joined({part(x, 1, 1.5), zeros(0.5), part(x, 2, 3)})},
        {"fade-in 0 0.5 fade-out 2 end",
         joined({mapped(part(x, 0, 0.5), rising), part(x, 0.5, 2), mapped(part(x, 2, 3), falling)})},
        {"reverse 2 3", joined({part(x, 0, 2), turned})},
        {"normalize -6 1 2", joined({part(x, 0, 1), mapped(part(x, 1, 2), louder), part(x, 2, 3)})},
        {"swap 0 1", joined({{part(x, 0, 1)[1], part(x, 0, 1)[0]}, part(x, 1, 3)})},
        {"cut 0.5 1.25 reverse undo undo", x},
        {"cut 0.5 1.25 reverse undo undo redo", cut},
    };
    for (const auto& c : cases) {
        const auto result = edit(std::string(c.steps) + " float");
        ASSERT_EQ(result.exitCode, 0) << c.steps << testing::PrintToString(result.errors);
        const auto& json = result.objects.at(0);
        EXPECT_EQ(json.at("frames"), c.expected[0].size()) << c.steps;
        EXPECT_EQ(json.at("channels"), 2);
        EXPECT_EQ(json.at("sha256"), sha256(c.expected)) << c.steps;
        EXPECT_EQ(readAudio(out()).planes, c.expected) << c.steps;
    }
    EXPECT_NEAR(edit("normalize").objects.at(0).at("peak").get<double>(), std::pow(10, -0.3 / 20), 1e-6);
    const auto hall = [&] { return edit("seed 5 trim 0 0.1 verb-tail").objects.at(0).at("sha256"); };
    EXPECT_EQ(hall(), hall());
}

TEST_F(CliEdit, WhatLiesOutsideTheEditsComesOutBitByBit) {
    // Full scale, where the two scales of 24-bit samples differ.
    const auto louder = mapped(noisePlanes(1, rate, 9), [](double sample, double) { return sample * 1.99; });
    writeAudio(in(), louder, {.kind = FileKind::wav, .rate = int(rate), .bits = 24});
    ASSERT_EQ(edit("cut 0 0.5").exitCode, 0);
    EXPECT_EQ(readAudio(out()).planes, part(readAudio(in()).planes, 0.5, 1));
}

TEST_F(CliEdit, AStepThatCannotBeDoneIsNamedAndNothingIsWritten) {
    writeAudio(in(), noisePlanes(2, rate, 7), {.rate = int(rate)});
    const std::string before = readBytes(in());
    const struct {
        const char* steps;
        const char* error;
    } cases[] = {
        {"cut 0 0.5 cut 0.2 5", R"(step 2, "cut 0.2 5": the sound ends at 0.500000 s)"},
        {"cut 0.5 0.5", R"(step 1, "cut 0.5 0.5": there is nothing between these times)"},
        {"paste 0", R"(step 1, "paste 0": nothing was cut or copied before)"},
        {"reverse undo undo", R"(step 3, "undo": there is nothing to undo)"},
        {"reverse redo", R"(step 2, "redo": there is nothing to redo)"},
        {"seamless-loop 0 0.0001", R"(step 1, "seamless-loop 0 0.0001": the range is too short to loop)"},
        {"reverse explode", R"(step 2: unknown step "explode"; usage)"},
        {"cut 1", R"(step 1, "cut 1": cut takes 2 values; usage)"},
        {"hi-pass 0 1", R"(step 1, "hi-pass 0 1": hi-pass takes 0 values; usage)"},
        {"fade-in 1", R"(step 1, "fade-in 1": fade-in takes 0 or 2 values; usage)"},
        {"cut -1 2", R"(step 1, cut can't be "-1"; usage)"},
    };
    for (const auto& c : cases) {
        const auto result = edit(c.steps);
        EXPECT_EQ(result.exitCode, 1) << c.steps;
        ASSERT_EQ(result.errors.size(), 1U) << c.steps;
        EXPECT_THAT(result.errors[0], HasSubstr(c.error));
        EXPECT_FALSE(std::filesystem::exists(out()));
    }
    const auto over = [&](std::vector<std::string> more) {
        more.insert(more.begin(), {"edit", in().string(), (folder_ / "." / "rain.wav").string()});
        return runCli(more);
    };
    EXPECT_EQ(over({"reverse"}).exitCode, 1);
    EXPECT_EQ(readBytes(in()), before);
    EXPECT_EQ(over({"trim", "0", "0.5", "overwrite"}).exitCode, 0);
    EXPECT_EQ(readAudio(in()).planes[0].size(), rate / 2);
}

}  // namespace
}  // namespace brindlehum

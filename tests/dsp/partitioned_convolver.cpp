// The convolver against the defining sum, over block sizes, filter lengths and changes of filter.
#include <gtest/gtest.h>

#include <memory>

#include "dsp/partitioned_convolver.h"
#include "spectral_sum.h"
#include "support/signals.h"

using brindlehum::ConvolverFilter;
using brindlehum::PartitionedConvolver;
namespace test = brindlehum::test;

namespace {

constexpr int partition = 256;
constexpr int total = 9000;
const double limitDb = -115;  // single precision leaves about -130

using Signal = std::vector<float>;

struct Source {
    Signal signal;
    std::vector<Signal> impulses;  // one an output
    std::shared_ptr<const ConvolverFilter> filter;
};

Source makeSource(uint32_t seed, int taps, int outputs) {
    Source source{test::noise(total, seed), {}, nullptr};
    for (int o = 0; o < outputs; ++o) { source.impulses.push_back(test::noise(size_t(taps), seed + 50 + uint32_t(o))); }
    source.filter = std::make_shared<ConvolverFilter>(source.impulses, partition);
    return source;
}

std::vector<double> convolve(const Signal& x, const Signal& h) {
    std::vector<double> y(x.size());
    test::convolveInto(y, x, h);
    return y;
}

Signal expectedSum(const std::vector<Source>& sources, size_t output) {
    std::vector<double> sum(total);
    for (const Source& s : sources) { test::convolveInto(sum, s.signal, s.impulses[output]); }
    return {sum.begin(), sum.end()};
}

// Runs the whole signal through in blocks whose sizes repeat; `change` may name other filters for each block.
struct Filters {
    std::vector<const ConvolverFilter*> now, before;
};
template <class Change>
std::vector<Signal> run(PartitionedConvolver& convolver, const std::vector<Source>& sources, int outputs,
                        const std::vector<int>& blocks, Change change) {
    auto result = std::vector<Signal>(size_t(outputs), Signal(total));
    size_t block = 0;
    int n = 0;
    for (int at = 0; at < total; at += n, ++block) {
        n = std::min(blocks[block % blocks.size()], total - at);
        std::vector<const float*> in;
        std::vector<float*> out;
        for (const Source& s : sources) { in.push_back(s.signal.data() + at); }
        for (Signal& s : result) { out.push_back(s.data() + at); }
        const Filters filters = change(at);
        convolver.process(in.data(), filters.now.data(), filters.before.empty() ? nullptr : filters.before.data(),
                          out.data(), n);
    }
    return result;
}

std::vector<const ConvolverFilter*> filtersOf(const std::vector<Source>& sources) {
    std::vector<const ConvolverFilter*> filters;
    for (const Source& s : sources) { filters.push_back(s.filter.get()); }
    return filters;
}

}  // namespace

TEST(PartitionedConvolver, EqualsTheDefiningSumAtEveryBlockSize) {
    // Shorter than a partition, exactly one, one more, and one that is cut where the third partition ends.
    std::vector<Source> sources = {makeSource(1, 1, 2), makeSource(2, 256, 2), makeSource(3, 257, 2),
                                   makeSource(4, 900, 2)};
    for (Signal& impulse : sources[3].impulses) { impulse.resize(size_t(3 * partition)); }
    const Signal expected[] = {expectedSum(sources, 0), expectedSum(sources, 1)};
    const std::vector<int> sizes[] = {{1},   {17},  {64},   {255},  {256},
                                      {257}, {480}, {1024}, {4096}, {3, 256, 1, 700, 128, 128, 511, 2000}};
    for (const auto& blocks : sizes) {
        SCOPED_TRACE(testing::PrintToString(blocks));
        PartitionedConvolver convolver(4, 2, partition, 700);
        const Filters filters{filtersOf(sources), {}};
        for (int round = 0; round < 2; ++round) {
            const auto out = run(convolver, sources, 2, blocks, [&](int) { return filters; });
            EXPECT_LT(test::errorDb(out[0], expected[0]), limitDb);
            EXPECT_LT(test::errorDb(out[1], expected[1]), limitDb);
            convolver.reset();
        }
    }
}

// One source keeps its filter, one changes to another and back, one starts from nothing. The changing call fades
// linearly between the two convolutions of everything heard so far.
TEST(PartitionedConvolver, ChangesFadeOverTheCallBetweenBothConvolutions) {
    const std::vector<Source> sources = {makeSource(5, 600, 1), makeSource(6, 90, 1), makeSource(7, 300, 1)};
    Source other = sources[1];
    other.impulses = {test::noise(513, 99)};
    other.filter = std::make_shared<ConvolverFilter>(other.impulses, partition);
    for (const int block : {64, 256, 480, 1000}) {
        SCOPED_TRACE(block);
        std::vector<const ConvolverFilter*> last = {sources[0].filter.get(), sources[1].filter.get(), nullptr};
        const auto filtersAt = [&](int at) {
            const bool odd = (at / 1000) % 2 == 1;
            return std::vector<const ConvolverFilter*>{sources[0].filter.get(),
                                                       odd ? other.filter.get() : sources[1].filter.get(),
                                                       at >= 5000 ? sources[2].filter.get() : nullptr};
        };
        const std::vector<double> y[] = {
            convolve(sources[0].signal, sources[0].impulses[0]), convolve(sources[1].signal, sources[1].impulses[0]),
            convolve(sources[2].signal, sources[2].impulses[0]), convolve(sources[1].signal, other.impulses[0])};
        const auto pick = [&](const std::vector<const ConvolverFilter*>& f, size_t i) {
            return y[0][i] + (f[1] == other.filter.get() ? y[3][i] : y[1][i]) + (f[2] != nullptr ? y[2][i] : 0);
        };
        Signal expected(total);
        PartitionedConvolver convolver(3, 1, partition, 600);
        const auto out = run(convolver, sources, 1, {block}, [&](int at) {
            Filters filters{filtersAt(at), last};
            const int n = std::min(block, total - at);
            for (int i = 0; i < n; ++i) {
                const double up = double(i + 1) / n;
                expected[size_t(at + i)] =
                    float(pick(filters.before, size_t(at + i)) * (1 - up) + pick(filters.now, size_t(at + i)) * up);
            }
            last = filters.now;
            return filters;
        });
        EXPECT_LT(test::errorDb(out[0], expected), limitDb);
    }
}

// Stretches of exact silence take a short cut: the sound before them must still ring out, and the sound after them
// start anew.
TEST(PartitionedConvolver, SilentStretchesRingOutAndWakeUp) {
    std::vector<Source> sources = {makeSource(8, 700, 1), makeSource(9, 700, 1)};
    std::fill(sources[0].signal.begin() + 1000, sources[0].signal.begin() + 4000, 0.0F);
    std::fill(sources[1].signal.begin() + 1100, sources[1].signal.begin() + 6000, 0.0F);
    for (const std::vector<int>& blocks : {std::vector<int>{256}, {100}, {300, 7}}) {
        PartitionedConvolver convolver(2, 1, partition, 700);
        const auto out = run(convolver, sources, 1, blocks, [&](int) { return Filters{filtersOf(sources), {}}; });
        EXPECT_LT(test::errorDb(out[0], expectedSum(sources, 0)), limitDb);
        EXPECT_EQ(out[0][3000], 0.0F);
    }
}

TEST(SpectralSum, EveryVersionAgreesWithTheSumInDoubles) {
    using Pair = brindlehum::SpectrumPair;
    const int bins = 5 * brindlehum::tileBins;
    const int terms = 7;
    const int values = 3 * terms + 2;  // spectra of noise; four more for the sums
    auto spectra = brindlehum::makeAligned<std::complex<float>>(size_t(bins) * (values + 4));
    const std::vector<float> random = test::noise(size_t(bins) * 2 * values, 31);
    for (size_t i = 0; i < random.size() / 2; ++i) { spectra[i] = {random[2 * i], random[2 * i + 1]}; }
    const auto at = [&](int i) { return spectra.get() + int64_t(i) * bins; };
    std::vector<brindlehum::SpectralTerm> list;
    for (int t = 0; t < terms; ++t) { list.push_back({at(3 * t), {at(3 * t + 1), at(3 * t + 2)}}); }
    const Pair bases = {at(3 * terms), at(3 * terms + 1)};
    const Pair plain = {at(values), at(values + 1)};
    const Pair fast = {at(values + 2), at(values + 3)};
    for (const bool based : {false, true}) {
        brindlehum::spectralSumPlain(list.data(), terms, based ? &bases : nullptr, bins, plain);
        brindlehum::fastestSpectralSum()(list.data(), terms, based ? &bases : nullptr, bins, fast);
        for (size_t o = 0; o < 2; ++o) {
            for (int k = 0; k < bins; ++k) {
                std::complex<double> expected = based ? std::complex<double>(bases[o][k]) : 0;
                for (const auto& term : list) {
                    expected += std::complex<double>(term.input[k]) * std::complex<double>(term.filters[o][k]);
                }
                EXPECT_LT(std::abs(std::complex<double>(plain[o][k]) - expected), 5e-6);
                EXPECT_LT(std::abs(std::complex<double>(fast[o][k]) - expected), 5e-6);
            }
        }
    }
}

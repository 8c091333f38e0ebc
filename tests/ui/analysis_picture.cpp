// The page of a music analysis, as pixels: beats at their times, and pieces with little to draw.
#include "ui/picture/analysis_picture.h"

#include <gtest/gtest.h>

#include <QImage>
#include <cmath>
#include <map>
#include <set>

#include "support/music.h"

namespace brindlehum {
namespace {

using AnalysisPicture::Content;
using AnalysisPicture::draw;
using AnalysisPicture::pageSize;
using Planes = std::vector<std::vector<float>>;

MusicAnalysis clicks() {
    const Planes x(1, test::clickTrack(test::beatTimes(0.3, 16, [](double) { return 110.0; }), 4, 0, 16));
    MemorySamples samples(x, test::musicRate);
    return *analyzeMusic({samples, std::nullopt, "clicks.wav", std::nullopt, std::nullopt}).analysis;
}

Content contentOf(const MusicAnalysis& analysis) {
    return {"clicks.wav", "facts", analysis.mono22k, test::musicRate, &analysis, {}, {}};
}

// Columns of a row from `left` to `right` whose colour isn't the row's most frequent one.
std::set<int> inked(const QImage& image, int row, int left, int right) {
    std::map<QRgb, int> colors;
    for (int x = left; x < right; ++x) { ++colors[image.pixel(x, row)]; }
    const auto ground =
        std::max_element(colors.begin(), colors.end(), [](auto& a, auto& b) { return a.second < b.second; })->first;
    std::set<int> columns;
    for (int x = left; x < right; ++x) {
        if (image.pixel(x, row) != ground) { columns.insert(x); }
    }
    return columns;
}

TEST(AnalysisPicture, BeatMarksStandAtTheBeats) {
    const MusicAnalysis analysis = clicks();
    ASSERT_GT(analysis.grid.beats.size(), 25U);
    for (const QSize size : {pageSize, QSize(800, 600), QSize(3000, 1300)}) {
        const QImage image = draw(contentOf(analysis), Theme::lightTheme(), size);
        const auto column = [&](double seconds) {
            return int(std::floor(AnalysisPicture::xAt(seconds, analysis.seconds, size)));
        };
        std::set<int> beats;
        for (const double beat : analysis.grid.beats) { beats.insert(column(beat)); }
        std::set<int> bars;
        for (const double bar : analysis.grid.boundaries()) { bars.insert(column(bar)); }
        // One row of pixels has a mark at every beat, and nothing else but the bar lines.
        bool found = false;
        for (int row = 0; row < size.height() && !found; ++row) {
            std::set<int> marks = inked(image, row, column(0), column(analysis.seconds) + 1);
            for (const int bar : bars) {
                if (!beats.contains(bar)) { marks.erase(bar); }
            }
            found = marks == beats;
        }
        EXPECT_TRUE(found) << size.width();
    }
}

TEST(AnalysisPicture, OddPiecesAreDrawnToo) {
    MusicAnalysis bare;
    bare.grid.downbeats = {0};
    bare.seconds = bare.grid.duration = 1.5;
    MusicAnalysis wild = clicks();
    wild.structure.pins = {9, -3, 99, 1 << 30, 2, 1, 0, false};
    wild.structure.loopCandidates.assign(80, {1 << 30, 1e9, 7, std::nullopt, false, {std::string(500, 'x')}});
    wild.structure.notes.assign(90, "a note that says the same again and again ");
    wild.loudness = {};
    wild.structure.novelty = {2, -1};
    MusicAnalysis empty;
    const std::vector<float> odd = {1e38F, std::nanf(""), -INFINITY};
    for (const MusicAnalysis* analysis : std::initializer_list<const MusicAnalysis*>{&bare, &wild, &empty, nullptr}) {
        for (const std::span<const float> mono : {std::span<const float>(), std::span<const float>(odd)}) {
            const Content content = {"\u202Ename\n", {}, mono, 2, analysis, "no pulse", {}};
            const QImage image = draw(content, Theme::darkTheme());
            EXPECT_EQ(image.size(), pageSize);
            EXPECT_GT(inked(image, 50, 0, 1600).size(), 10U) << "the name stands there";
        }
    }
}

}  // namespace
}  // namespace brindlehum

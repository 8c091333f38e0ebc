// TempEdits: whole files, those that can't be done, and the order of a batch on two threads.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

#include "edits/temp_edits.h"
#include "song.h"
#include "support/audio_files.h"

namespace brindlehum {
namespace {

namespace fs = std::filesystem;
using TempEdits::Job;
using TempEdits::Status;
using TempEdits::Step;
using test::TempFolder;
using testing::HasSubstr;

// Twelve bars, in stereo.
const test::Planes& song() {
    static const test::Planes made = [] {
        std::vector<float> x = test::song();
        x.resize(size_t(12 * test::barFrames));
        return test::Planes(2, x);
    }();
    return made;
}

Job jobFor(const fs::path& path) {
    return {path, TempEditExporter::editsFolder(path, true, "/nowhere")};
}

// Everything under a folder but times, in headers and records, and the sheets' lines with paths.
std::map<std::string, std::string> contentsOf(const fs::path& folder) {
    std::map<std::string, std::string> out;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        if (!entry.is_regular_file() || entry.path().extension() == ".json") { continue; }
        std::string bytes = test::readBytes(entry.path());
        if (entry.path().extension() == ".wav" && bytes.size() >= 678) { bytes.erase(0, 678); }
        const size_t source = bytes.find("Source: ");
        if (source != std::string::npos) { bytes.erase(source, bytes.find('\n', source) - source); }
        out[fs::relative(entry.path(), folder)] = bytes;
    }
    return out;
}

std::vector<Job> mixedJobs(const TempFolder& folder) {
    const test::FileShape wav{.rate = int(test::songRate)};
    const test::Planes mono = {song()[0]};
    test::writeAudio(folder / "Song.wav", song(), wav);
    test::writeAudio(folder / "second.wav", test::noisePlanes(2, 48000));
    test::writeBytes(folder / "broken.wav", "RIFF");
    test::writeAudio(folder / "Mono.wav", mono, wav);
    test::writeAudio(folder / "blocked.wav", mono, wav);
    test::writeBytes(folder / "blocked Edits", "a file");
    test::writeAudio(folder / "Song.aiff", mono, {.kind = test::FileKind::aiff, .rate = int(test::songRate)});
    std::vector<Job> jobs;  // the last would have the folder of the first
    for (const char* name :
         {"Song.wav", "second.wav", "broken.wav", "vanished.wav", "Mono.wav", "blocked.wav", "Song.aiff"}) {
        jobs.push_back(jobFor(folder / name));
    }
    return jobs;
}

// One length, which is faster.
TempEditOptions brief() {
    TempEditOptions options;
    options.targets = {15};
    options.extended.reset();
    return options;
}

constexpr Status expected[] = {Status::done, Status::tooShort,  Status::unread, Status::unread,
                               Status::done, Status::unwritten, Status::done};

TEST(TempEditBatch, GivesTheSameOnOneThreadAndOnTwo) {
    std::map<std::string, std::string> contents[2];
    for (const unsigned workers : {1U, 2U}) {
        const TempFolder folder;
        const std::vector<Job> jobs = mixedJobs(folder);
        std::vector<size_t> started;
        std::vector<size_t> finished;
        std::vector<std::string> written(jobs.size());
        const auto watch = [&](const Step& step) {
            if (step.kind == Step::Kind::started) { started.push_back(step.index); }
            if (step.kind == Step::Kind::finished) { finished.push_back(step.index); }
            if (step.kind == Step::Kind::writing) { written[step.index] += step.file + "\n"; }
        };
        const auto outcomes = TempEdits::makeAll(jobs, brief(), watch, {}, {.workers = workers});
        ASSERT_EQ(outcomes.size(), jobs.size());
        for (size_t i = 0; i < outcomes.size(); ++i) {
            EXPECT_EQ(outcomes[i].status, expected[i]) << jobs[i].url << ": " << outcomes[i].reason;
            EXPECT_EQ(outcomes[i].reason.empty(), expected[i] == Status::done) << outcomes[i].reason;
            std::string names;
            for (const auto& file : outcomes[i].result.files) { names += file.filename().string() + "\n"; }
            EXPECT_EQ(written[i], names);
        }
        EXPECT_THAT(started, testing::ElementsAre(0, 1, 2, 3, 4, 5, 6));
        EXPECT_THAT(finished, testing::UnorderedElementsAre(0, 1, 2, 3, 4, 5, 6));
        EXPECT_EQ(TempEdits::closingText(outcomes), "Temp edits: 3 written, 4 skipped (no steady pulse)");
        for (const auto& [index, name] : {std::pair(0, "Song Edits"), {6, "Song.aiff Edits"}}) {
            EXPECT_EQ(outcomes[size_t(index)].result.notes, folder / name / "Song - Edit Notes.txt");
            EXPECT_THAT(test::readBytes(outcomes[size_t(index)].result.notes),
                        HasSubstr("Source: " + jobs[size_t(index)].url.string() + "\n"));
        }
        contents[workers - 1] = contentsOf(folder.path());
    }
    EXPECT_GE(contents[0].size(), 3 * 4 + 6U) << "edits and sheets, and the files themselves";
    EXPECT_TRUE(contents[0] == contents[1]);
}

TEST(TempEditBatch, StopsWithinAFileWhenCancelled) {
    const TempFolder folder;
    const std::vector<Job> jobs = mixedJobs(folder);
    std::stop_source stop;
    const auto stopAtThird = [&stop](const Step& step) {
        if (step.kind == Step::Kind::writing && step.plan == 2) { stop.request_stop(); }
    };
    const auto outcomes = TempEdits::makeAll(jobs, brief(), stopAtThird, stop.get_token(), {.workers = 1});
    for (const auto& outcome : outcomes) { EXPECT_EQ(outcome.status, Status::cancelled); }
    EXPECT_EQ(outcomes[0].result.files.size(), 2U);
}

TEST(TempEditBatch, KeepsToItsLimitOfMemory) {
    const TempFolder folder;
    std::vector<Job> jobs;
    for (int i = 0; i < 6; ++i) {
        const auto path = folder / (std::to_string(i) + ".wav");
        test::writeAudio(path, test::noisePlanes(1, 40000), {.rate = 8000});
        jobs.push_back(jobFor(path));
    }
    const auto most = [&jobs](int64_t memoryBytes) {
        size_t atWork = 0;
        size_t peak = 0;
        const auto count = [&](const Step& step) {
            if (step.kind == Step::Kind::started) { peak = std::max(peak, ++atWork); }
            if (step.kind == Step::Kind::finished) { --atWork; }
        };
        (void)TempEdits::makeAll(jobs, brief(), count, {}, {.workers = 3, .memoryBytes = memoryBytes});
        return peak;
    };
    // 40,000 frames and 15 seconds of the longest edit, 4 bytes each: 0.64 MB.
    EXPECT_EQ(most(1), 1U) << "even one too large is done, alone";
    EXPECT_EQ(most(1'200'000), 1U);
    EXPECT_LE(most(1'300'000), 2U);
}

}  // namespace
}  // namespace brindlehum

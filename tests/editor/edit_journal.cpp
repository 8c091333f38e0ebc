// EditJournal: killed at any write, it brings back every finished step and none that wasn't.
#include "editor/document/edit_journal.h"

#include <gtest/gtest.h>
#include <sys/syscall.h>

#include <algorithm>
#include <array>
#include <utility>

#include "base/error.h"
#include "dsp/edit_ops.h"
#include "editor/document/save_document.h"
#include "support/audio_files.h"
#include "support/full_disk.h"
#include "support/signals.h"
#include "support/traced.h"

namespace brindlehum {
namespace {

namespace fs = std::filesystem;
using Channels = EditOps::Channels;

const EditJournal::About about = [] {
    WavNotes notes{.originator = "Rec\xFF", .date = "2019-03-04"};
    notes.timeReference = 1ULL << 40;
    notes.cues = {{7, 10, 5, std::string("labl\0\xFF", 6)}, {9, 90000, 0, ""}};
    return EditJournal::About{fs::path("/sounds/caf\xE9.wav"), 44100, 1700000000, notes};
}();

Content document() {
    return {Sound(Channels{test::noise(150000, 1), test::noise(150000, 2)}), {about.notes.cues, 0}};
}

EditHistory cutHistory(EditHistory history) {
    history.push("Cut",
                 {EditOps::splice(history.now(), 20000, 90000), replaced(history.content().marks, {20000, 90000}, 0)});
    return history;
}

// The script that is journalled: what stands after each of its steps.
std::vector<EditHistory> script() {
    std::vector<EditHistory> after = {EditHistory(document())};
    const auto next = [&]() -> EditHistory& { return after.emplace_back(after.back()); };
    after.push_back(cutHistory(after.back()));
    next().push("Silence", EditOps::silence(after[1].now(), 10, 60000));
    next().undo();
    next().redo();
    next().markSaved();
    next().push("Paste", EditOps::insert(after[5].now(), 100, Sound(Channels{test::noise(300, 5)})));
    return after;
}

// Writes the script into a journal that stays behind, as after a crash.
int write(const fs::path& folder, const std::vector<EditHistory>& after) {
    EditJournal journal(folder, about, after[0].content());
    for (const size_t step : {1U, 2U}) { journal.push(after[step].undoName(), after[step].content()); }
    journal.undo();
    journal.redo();
    journal.saved();
    journal.push("Paste", after[6].now());
    return 0;
}

bool isSame(const EditHistory& a, const EditHistory& b) {
    return a.now().gather() == b.now().gather() && a.content().marks == b.content().marks && a.names() == b.names() &&
           a.position() == b.position() && a.isDirty() == b.isDirty();
}

TEST(EditJournal, BringsBackTheWholeHistory) {
    const test::TempFolder home;
    const fs::path folder = home.path() / "state/editor";
    const auto after = script();
    EXPECT_TRUE(EditJournal::abandoned(folder).empty());
    {
        EditJournal alive(folder, about, after[0].content());
        EXPECT_TRUE(EditJournal::abandoned(folder).empty()) << "a living one isn't offered";
        EditJournal::discard(folder / fs::path(std::to_string(getpid()) + "-1.edits"));
        alive.push("Cut", after[1].now());
    }
    ASSERT_EQ(EditJournal::abandoned(folder).size(), 1U);
    write(folder, after);
    auto found = EditJournal::abandoned(folder);
    ASSERT_EQ(found.size(), 2U);
    EditJournal::discard(folder / fs::path(std::to_string(getpid()) + "-1.edits"));
    found = EditJournal::abandoned(folder);
    ASSERT_EQ(found.size(), 1U);
    std::ofstream(found[0], std::ios::app) << R"({"do":"push","name":"torn")";
    {
        auto recovered = EditJournal::recover(found[0]);
        EXPECT_EQ(recovered.about, about);
        EXPECT_FALSE(recovered.isWhole);
        EXPECT_TRUE(isSame(recovered.history, after.back()));
        recovered.history.undo();
        recovered.journal.undo();
        recovered.history.push("Cut", EditOps::splice(recovered.history.now(), 5, 500));
        recovered.journal.push("Cut", recovered.history.now());
        EXPECT_THROW(EditJournal::recover(found[0]), Error) << "it is in use";
    }
    const auto again = EditJournal::recover(found[0]);
    EXPECT_TRUE(again.isWhole);
    EXPECT_EQ(again.history.undoName(), "Cut");
    EXPECT_EQ(again.history.now().gather(), EditOps::splice(after[5].now(), 5, 500).gather());
    // Cuts cost no samples: the two channels once, and the pasted frames.
    EXPECT_EQ(fs::file_size(found[0].parent_path() / (found[0].stem().string() + ".blocks")),
              sizeof(float) * (2 * 150000 + 300));
}

TEST(EditJournal, KilledAtAnySystemCallItKeepsEveryFinishedStep) {
    const auto after = script();
    // Syncs to disk until each state of the script is safe: two for a state, of its blocks and its line, else one.
    constexpr std::array safeAfter = {2, 4, 6, 7, 8, 9, 11};
    bool isKilled = true;
    int last = 0;
    for (; isKilled; ++last) {
        const test::TempFolder home;
        int synced = 0;
        bool inSync = false;
        const auto goOn = [&](int count, long call) {
            if (call == -1 && std::exchange(inSync, false)) { ++synced; }
            inSync = inSync || call == SYS_fdatasync;
            return count < last;
        };
        isKilled = test::runTraced([&] { return write(home.path() / "editor", after); }, goOn) != 0;
        const auto safe = std::ranges::upper_bound(safeAfter, synced) - safeAfter.begin();
        const auto found = EditJournal::abandoned(home.path() / "editor");
        if (safe == 0 && (found.empty() || fs::file_size(found[0]) == 0)) { continue; }
        ASSERT_EQ(found.size(), 1U) << "killed at call " << last;
        const auto recovered = EditJournal::recover(found[0]);
        const auto same = std::find_if(after.begin() + std::max<int64_t>(safe - 1, 0), after.end(),
                                       [&](const auto& each) { return isSame(recovered.history, each); });
        ASSERT_NE(same, after.end()) << "killed at call " << last << " after " << synced << " syncs";
        if (!isKilled) { EXPECT_EQ(same, after.end() - 1); }
    }
    EXPECT_GT(last, 30);
}

// Saves an edit over its source.
int saveOver(const fs::path& file, const fs::path& folder, const std::vector<EditHistory>& after) {
    EditJournal journal(folder, about, after[0].content());
    journal.push("Cut", after[1].content());
    saveDocument(file, {file, {}, 44100, after[1].content()}, [](double) { return true; });
    journal.saved();
    return 0;
}

TEST(SaveDocument, KilledAtAnySystemCallTheFileIsOldOrNewAndTheDocumentCanBeRecovered) {
    const Sound opened(Channels{test::noise(3000, 1)});
    std::vector<EditHistory> after = {EditHistory(opened), EditHistory(opened)};
    after[1].push("Cut", EditOps::splice(opened, 1000, 2000));
    const test::TempFolder model;
    saveDocument(model / "old.wav", {"x", {}, 44100, opened}, [](double) { return true; });
    saveDocument(model / "new.wav", {"x", {}, 44100, after[1].content()}, [](double) { return true; });
    const auto oldSamples = test::readAudio(model / "old.wav").planes;
    const auto newSamples = test::readAudio(model / "new.wav").planes;
    bool isKilled = true;
    int calls = 0, olds = 0, news = 0;
    for (; isKilled; ++calls) {
        const test::TempFolder home;
        const fs::path file = home / "rain.wav";
        fs::copy(model / "old.wav", file);
        // A kill at the return from a call is the same as one at the entry into the next.
        const auto goOn = [&, entered = 0](int, long call) mutable { return call == -1 || entered++ < calls; };
        isKilled = test::runTraced([&] { return saveOver(file, home / "editor", after); }, goOn) != 0;
        const auto now = test::readAudio(file).planes;
        const bool isNew = now == newSamples;
        ASSERT_TRUE(isNew || now == oldSamples) << "killed at call " << calls;
        ++(isNew ? news : olds);
        const auto found = EditJournal::abandoned(home / "editor");
        if (isNew) {
            ASSERT_EQ(found.size(), 1U) << "killed at call " << calls;
            EXPECT_EQ(EditJournal::recover(found[0]).history.now().gather(), after[1].now().gather());
        }
        // What the crash left doesn't stand in the way of the next save.
        saveDocument(file, {file, {}, 44100, after[1].content()}, [](double) { return true; });
        ASSERT_EQ(test::readAudio(file).planes, newSamples);
        ASSERT_FALSE(fs::exists(home / ".rain.wav.bh-tmp"));
    }
    EXPECT_GT(olds, 30);
    EXPECT_GT(news, 3);
}

TEST(EditJournal, AFullDiskIsSaidAndWhatWasWrittenStays) {
    const test::TempFolder home;
    const auto after = script();
    {
        EditJournal journal(home.path() / "editor", about, after[0].content());
        journal.push("Cut", after[1].content());
        const test::FullDisk full(sizeof(float) * 300010);
        EXPECT_THROW(journal.push("Paste", after[6].now()), Error);
    }
    const auto recovered = EditJournal::recover(home.path() / "editor" / (std::to_string(getpid()) + "-1.edits"));
    EXPECT_TRUE(isSame(recovered.history, after[1]));
    std::ofstream(home.path() / "editor/1-1.edits") << "{\"do\":\"push\"";
    EXPECT_THROW(EditJournal::recover(home.path() / "editor/1-1.edits"), Error);
}

}  // namespace
}  // namespace brindlehum

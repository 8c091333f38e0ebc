// EditJournal: the steps of an unsaved document on disk, so that a crash loses none of them.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "base/descriptor.h"
#include "editor/document/edit_history.h"

namespace brindlehum {

// Two files in a folder of its own choice: `<name>.blocks`, to which each block of samples is appended once, and
// `<name>.edits`, a line of JSON for each step with the pieces of its channels and its
// marks. A step's line is written after its
// blocks are on disk. The edits are locked while the journal lives, so that a dead process's can be told from others.
// Not thread-safe; blocking I/O. All calls throw Error when the system refuses; after that a journal can only be kept
// as it is or removed.
class EditJournal {
public:
    // What the document came from.
    struct About {
        std::filesystem::path url;
        double sampleRate = 0;  // Hz
        int64_t opened = 0;     // seconds since 1970
        WavNotes notes = {};    // which a save over that file would have changed
        bool operator==(const About&) const = default;
    };

    // Makes the folder, which only the user may read, and writes the sound as the first state.
    EditJournal(const std::filesystem::path& folder, const About& about, const Content& opened);
    EditJournal(EditJournal&&) = default;
    EditJournal& operator=(EditJournal&&) = default;
    ~EditJournal() = default;  // keeps the files

    // As the calls of EditHistory.
    void push(const std::string& name, const Content& content);
    void undo() { writeLine(R"({"do":"undo"})"); }
    void redo() { writeLine(R"({"do":"redo"})"); }
    void saved() { writeLine(R"({"do":"saved"})"); }
    // Deletes the files: the document is saved, or its edits aren't wanted.
    void remove();

    struct Recovered;
    // The journals of processes that are gone, the newest first. Empty for a missing folder.
    static std::vector<std::filesystem::path> abandoned(const std::filesystem::path& folder);
    // Takes over an abandoned journal by its `.edits`. Throws Error when another process has it, and when not even the
    // first state can be read.
    static Recovered recover(const std::filesystem::path& edits);
    // Deletes an abandoned journal; one that is in use stays.
    static void discard(const std::filesystem::path& edits);

private:
    EditJournal() = default;
    using BlockIDs = std::map<std::weak_ptr<const SoundBlock>, int64_t, std::owner_less<>>;
    std::string step(const std::string& name, const Content& content);
    int64_t offsetOf(const std::shared_ptr<const SoundBlock>& block);
    void writeLine(const std::string& line);

    std::filesystem::path edits_;
    Descriptor editsFile_;
    Descriptor blocksFile_;
    int64_t blocksEnd_ = 0;  // samples
    BlockIDs offsets_;       // of the first sample of each block in the file
};

struct EditJournal::Recovered {
    About about;
    EditHistory history;
    bool isWhole = true;  // false: the last step was torn by the crash, and the history ends before it
    EditJournal journal;  // goes on from there
};

}  // namespace brindlehum

// JournalKeeper: keeps the journal of the open document, in the background.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "editor/document/edit_journal.h"
#include "platform/background.h"

namespace brindlehum {

// Main thread. Steps are written in their order on the queue "Brindlehum.journal". Whatever fails is said once; the
// next step then begins a new journal, and the old one stays until that is written.
class JournalKeeper {
public:
    using Said = std::function<void(const std::string& problem)>;
    JournalKeeper(std::filesystem::path folder, MainLoop& loop, Said said);

    // A document has been opened or brought back; nothing is written before its first step.
    void begin(const EditJournal::About& about);
    // A step from the state before it.
    void pushed(const Content& before, const std::string& name, const Content& after);
    void undone();
    void redone();
    void saved();
    // The document is closed and nothing of it is wanted: removes the journal.
    void close();

    // Work of earlier processes that ended without a goodbye, the newest first.
    void findAbandoned(std::function<void(std::vector<std::filesystem::path>)> found);
    struct Recovered {
        EditJournal::About about;
        EditHistory history;
        bool isWhole = true;
    };
    // Takes over that journal; the document that was open must have been closed before.
    void recover(const std::filesystem::path& edits, std::function<void(Recovered)> done);
    void discard(const std::filesystem::path& edits);
    // Waits, for up to `patience` seconds, until all steps are on disk.
    void finish(double patience) { queue_.drainFor(patience); }

private:
    struct Files;  // used on the queue alone
    void write(std::function<void(Files&)> work);

    std::filesystem::path folder_;
    Said said_;
    std::shared_ptr<Files> files_;
    bool wasSaid_ = false;
    Background queue_;
};

}  // namespace brindlehum

// JournalKeeper: writes the steps one after another on its queue.
#include "editor/document/journal_keeper.h"

#include <vector>

namespace brindlehum {

struct JournalKeeper::Files {
    EditJournal::About about;
    std::optional<EditJournal> journal;
    std::vector<EditJournal> failed;  // of this document; removed once a new one is written, or with the document

    void removeFailed() {
        for (EditJournal& each : failed) { each.remove(); }
        failed.clear();
    }
    // A journal whose step failed takes no more.
    void giveUp() {
        if (journal) { failed.push_back(std::move(*journal)); }
        journal.reset();
    }
};

JournalKeeper::JournalKeeper(std::filesystem::path folder, MainLoop& loop, Said said)
    : folder_(std::move(folder)),
      said_(std::move(said)),
      files_(std::make_shared<Files>()),
      queue_(loop, "Brindlehum.journal") {}

void JournalKeeper::write(std::function<void(Files&)> work) {
    queue_.run(
        [files = files_, work = std::move(work)] {
            try {
                work(*files);
            } catch (...) {
                files->giveUp();
                throw;
            }
        },
        [this] { wasSaid_ = false; },
        [this](const std::exception& error) {
            if (!std::exchange(wasSaid_, true)) { said_(error.what()); }
        });
}

void JournalKeeper::begin(const EditJournal::About& about) {
    close();
    write([about](Files& files) { files.about = about; });
}

void JournalKeeper::pushed(const Content& before, const std::string& name, const Content& after) {
    write([folder = folder_, before, name, after](Files& files) {
        if (!files.journal) { files.journal.emplace(folder, files.about, before); }
        files.journal->push(name, after);
        files.removeFailed();
    });
}

void JournalKeeper::undone() {
    write([](Files& files) {
        if (files.journal) { files.journal->undo(); }
    });
}

void JournalKeeper::redone() {
    write([](Files& files) {
        if (files.journal) { files.journal->redo(); }
    });
}

void JournalKeeper::saved() {
    write([](Files& files) {
        if (files.journal) { files.journal->saved(); }
    });
}

void JournalKeeper::close() {
    write([](Files& files) {
        files.giveUp();
        files.removeFailed();
    });
}

void JournalKeeper::findAbandoned(std::function<void(std::vector<std::filesystem::path>)> found) {
    queue_.run([folder = folder_] { return EditJournal::abandoned(folder); }, std::move(found));
}

void JournalKeeper::recover(const std::filesystem::path& edits, std::function<void(Recovered)> done) {
    queue_.run(
        [files = files_, edits] {
            auto found = EditJournal::recover(edits);
            files->about = found.about;
            files->journal = std::move(found.journal);
            return Recovered{std::move(found.about), std::move(found.history), found.isWhole};
        },
        std::move(done), [this](const std::exception& error) { said_(error.what()); });
}

void JournalKeeper::discard(const std::filesystem::path& edits) {
    queue_.run([edits] { EditJournal::discard(edits); }, [] {});
}

}  // namespace brindlehum

// EditJournal: writes blocks and steps, and reads them back after a crash.
#include "editor/document/edit_journal.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <functional>
#include <nlohmann/json.hpp>
#include <system_error>

#include "base/error.h"
#include "base/file_handle.h"
#include "base/stored_path.h"
#include "document/journal_notes.h"

namespace brindlehum {
namespace {

using nlohmann::json;
namespace fs = std::filesystem;

constexpr int silenceOffset = -1;

[[noreturn]] void fail(int error) {
    throw Error("Unsaved edits can't be kept safe: " + std::generic_category().message(error));
}

Descriptor open(const fs::path& path, int flags) {
    Descriptor file(::open(path.c_str(), flags | O_CLOEXEC | O_NOFOLLOW, 0600));
    if (!file.isOpen()) { fail(errno); }
    return file;
}

void writeAll(int file, const char* bytes, size_t count) {
    while (count > 0) {
        const ssize_t written = ::write(file, bytes, count);
        if (written < 0 && errno == EINTR) { continue; }
        if (written < 0) { fail(errno); }
        bytes += written;
        count -= size_t(written);
    }
}

fs::path blocksOf(fs::path edits) {
    return edits.replace_extension(".blocks");
}

// The first free name; the edits' file is then ours and locked.
std::pair<fs::path, Descriptor> freshFile(const fs::path& folder) {
    for (int number = 1;; ++number) {
        const fs::path path = folder / (std::to_string(::getpid()) + "-" + std::to_string(number) + ".edits");
        Descriptor file(::open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
        if (!file.isOpen() && errno == EEXIST) { continue; }
        if (!file.isOpen() || ::flock(file.number(), LOCK_EX | LOCK_NB) != 0) { fail(errno); }
        return {path, std::move(file)};
    }
}

// Blocks of a journal, each read once.
class BlockReader {
public:
    explicit BlockReader(const fs::path& file) : file_(file) {}

    Track track(const json& pieces) {
        std::vector<Track> parts;
        for (const json& piece : pieces) {
            const auto from = piece.at(0).get<int64_t>(), size = piece.at(1).get<int64_t>();
            const auto offset = piece.at(2).get<int64_t>(), count = piece.at(3).get<int64_t>();
            if (offset < 0 || count < 1 || size < 0 || size > SoundBlock::longest ||
                (from != silenceOffset && offset + count > size)) {
                throw Error("a piece lies outside its block");
            }
            parts.push_back(from == silenceOffset ? Track::silence(count)
                                                  : Track::of(block(from, size), offset, count));
        }
        return Track::joined(parts);
    }

    const std::map<int64_t, std::shared_ptr<const SoundBlock>>& blocks() const { return blocks_; }

private:
    std::shared_ptr<const SoundBlock> block(int64_t from, int64_t size) {
        auto& found = blocks_[from];
        if (!found) {
            std::vector<float> samples(size_t(size), 0.0F);
            if (!file_.readExactly(from * int64_t(sizeof(float)), samples.data(), samples.size() * sizeof(float))) {
                throw Error("a block is missing");
            }
            found = std::make_shared<const SoundBlock>(std::move(samples));
        }
        return found;
    }

    FileHandle file_;
    std::map<int64_t, std::shared_ptr<const SoundBlock>> blocks_;
};

Sound soundOf(const json& step, BlockReader& blocks) {
    std::vector<Track> tracks;
    for (const json& pieces : step.at("tracks")) { tracks.push_back(blocks.track(pieces)); }
    return Sound(std::move(tracks));
}

void replay(const json& step, BlockReader& blocks, const WavNotes& notes, EditHistory& history) {
    const auto what = step.at("do").get<std::string>();
    if (what == "push") {
        history.push(step.at("name").get<std::string>(), {soundOf(step, blocks), marksOf(step, notes)});
    } else if (what == "undo") {
        history.undo();
    } else if (what == "redo") {
        history.redo();
    } else if (what == "saved") {
        history.markSaved();
    }
}

}  // namespace

EditJournal::EditJournal(const fs::path& folder, const About& about, const Content& opened) {
    std::error_code error;
    fs::create_directories(folder.parent_path(), error);
    if (::mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST) { fail(errno); }
    std::tie(edits_, editsFile_) = freshFile(folder);
    try {
        blocksFile_ = open(blocksOf(edits_), O_WRONLY | O_APPEND | O_CREAT | O_TRUNC);
        json first = json::parse(step("open", opened));
        first["url"] = storedPath(about.url);
        first["sampleRate"] = about.sampleRate;
        first["opened"] = about.opened;
        first["notes"] = toJson(about.notes);
        writeLine(first.dump());
    } catch (...) {
        remove();
        throw;
    }
}

int64_t EditJournal::offsetOf(const std::shared_ptr<const SoundBlock>& block) {
    const auto [at, isNew] = offsets_.try_emplace(block, blocksEnd_);
    if (isNew) {
        writeAll(blocksFile_.number(), reinterpret_cast<const char*>(block->samples.data()),
                 block->samples.size() * sizeof(float));
        blocksEnd_ += int64_t(block->samples.size());
    }
    return at->second;
}

// One line for a state: for each channel the pieces as [first sample of the block in the file, its length, offset in
// it, count].
std::string EditJournal::step(const std::string& name, const Content& content) {
    std::erase_if(offsets_, [](const auto& known) { return known.first.expired(); });
    json tracks = json::array();
    for (const Track& track : content.sound.tracks()) {
        json pieces = json::array();
        for (const Track::Piece& piece : track.pieces()) {
            if (piece.block) {
                pieces.push_back({offsetOf(piece.block), piece.block->samples.size(), piece.offset, piece.count});
            } else {
                pieces.push_back({silenceOffset, 0, 0, piece.count});
            }
        }
        tracks.push_back(std::move(pieces));
    }
    if (::fdatasync(blocksFile_.number()) != 0) { fail(errno); }
    return json{{"do", "push"}, {"name", name}, {"tracks", std::move(tracks)}, {"marks", toJson(content.marks)}}.dump();
}

void EditJournal::push(const std::string& name, const Content& content) {
    writeLine(step(name, content));
}

void EditJournal::writeLine(const std::string& line) {
    const std::string whole = line + "\n";
    writeAll(editsFile_.number(), whole.data(), whole.size());
    if (::fdatasync(editsFile_.number()) != 0) { fail(errno); }
}

void EditJournal::remove() {
    ::unlink(blocksOf(edits_).c_str());
    ::unlink(edits_.c_str());
}

std::vector<fs::path> EditJournal::abandoned(const fs::path& folder) {
    std::vector<std::pair<fs::file_time_type, fs::path>> found;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(folder, error)) {
        if (entry.path().extension() != ".edits") { continue; }
        const Descriptor file(::open(entry.path().c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
        if (!file.isOpen() || ::flock(file.number(), LOCK_EX | LOCK_NB) != 0) { continue; }
        found.emplace_back(entry.last_write_time(error), entry.path());
    }
    std::ranges::sort(found, std::greater<>());
    std::vector<fs::path> out;
    for (auto& [time, path] : found) { out.push_back(std::move(path)); }
    return out;
}

EditJournal::Recovered EditJournal::recover(const fs::path& edits) {
    Recovered out;
    EditJournal& journal = out.journal;
    journal.edits_ = edits;
    journal.editsFile_ = open(edits, O_RDWR | O_APPEND);
    if (::flock(journal.editsFile_.number(), LOCK_EX | LOCK_NB) != 0) { fail(errno); }
    journal.blocksFile_ = open(blocksOf(edits), O_RDWR | O_APPEND);
    try {
        BlockReader blocks(blocksOf(edits));
        std::ifstream lines(edits);
        std::string line;
        std::getline(lines, line);
        const json first = json::parse(line);
        out.about = {pathFromStored(first.at("url").get<std::string>()), first.at("sampleRate"), first.at("opened"),
                     notesOf(first)};
        out.history = EditHistory({soundOf(first, blocks), marksOf(first, out.about.notes)});
        auto end = off_t(line.size() + 1);
        try {
            for (; std::getline(lines, line); end += off_t(line.size() + 1)) {
                replay(json::parse(line), blocks, out.about.notes, out.history);
            }
        } catch (const std::exception&) { out.isWhole = false; }
        for (const auto& [from, block] : blocks.blocks()) {
            journal.offsets_[block] = from;
            journal.blocksEnd_ = std::max(journal.blocksEnd_, from + int64_t(block->samples.size()));
        }
        // What the crash tore goes, so that the next step follows whole ones.
        if (::ftruncate(journal.editsFile_.number(), end) != 0 ||
            ::ftruncate(journal.blocksFile_.number(), journal.blocksEnd_ * off_t(sizeof(float))) != 0) {
            fail(errno);
        }
    } catch (const std::exception& error) {
        throw Error("The unsaved edits can't be read: " + std::string(error.what()));
    }
    return out;
}

void EditJournal::discard(const fs::path& edits) {
    const Descriptor file(::open(edits.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    if (!file.isOpen() || ::flock(file.number(), LOCK_EX | LOCK_NB) != 0) { return; }
    ::unlink(blocksOf(edits).c_str());
    ::unlink(edits.c_str());
}

}  // namespace brindlehum

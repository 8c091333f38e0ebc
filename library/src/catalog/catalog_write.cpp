// Catalog: writes and removes rows.
#include <algorithm>
#include <chrono>
#include <filesystem>

#include "catalog/catalog_parts.h"
#include "meta/meta_codec.h"
#include "meta/upper_case.h"

namespace brindlehum {

namespace {

// Of the logs of a root and of the roots around it, some of whose entries may have been merged into edits of this one.
// The parameter is the root with a slash at its end.
constexpr const char* forgetOffsets =
    "DELETE FROM log_offsets WHERE substr(?1, 1, instr(logfile, '/.brindlehum/changes/')) = "
    "substr(logfile, 1, instr(logfile, '/.brindlehum/changes/'))";

double secondsSince1970() {
    return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
}

std::optional<std::string> orNull(std::string text) {
    return text.empty() ? std::nullopt : std::optional(std::move(text));
}

std::string blanksFor(char character, std::string text) {
    std::ranges::replace(text, character, ' ');
    return text;
}

// The file's folder, relative to the root.
std::string folders(const std::filesystem::path& path, const std::string& root) {
    std::string folders = path.parent_path();
    if (folders.starts_with(root)) { folders.erase(0, root.size()); }
    return blanksFor('/', std::move(folders));
}

}  // namespace

void Catalog::upsert(const std::string& path, const std::string& root, const Stamp& stamp,
                     const std::optional<AudioFileInfo>& info, const SoundMeta& held) {
    const AudioFileInfo known = info.value_or(AudioFileInfo());
    const SoundMeta meta = Parts::over(parts_->findEdits, path, held);
    const double duration = known.sampleRate > 0 ? double(known.frames) / known.sampleRate : 0;
    const std::string json = encodeMeta(meta);
    const std::optional<std::string> category = orNull(upperCase(meta.category));
    const std::optional<std::string> library = orNull(meta.library);
    Parts& parts = *parts_;
    const bool stored = parts.insertFile
                            .bind(path, root, stamp.size, stamp.mtime, duration, known.sampleRate, known.channels,
                                  known.bitDepth, known.codec, json, category, library, meta.rating, secondsSince1970())
                            .step();
    if (stored) {
        parts.texts.push_back({parts.insertFile.integer(0), blanksFor('_', std::filesystem::path(path).stem()),
                               folders(path, root), meta.searchText()});
    }
    parts.expect(stored && parts.insertFile.run());
    parts.insertFile.reset();
}

void Catalog::refreshWords(const std::string& path) {
    Parts& parts = *parts_;
    parts.writeTexts();
    Statement select(parts.writer, "SELECT id, root, meta FROM files WHERE path = ?");
    if (!select.bind(path).step()) { return; }
    const SoundMeta meta = Parts::over(parts.findEdits, path, decodeMeta(select.text(2)));
    parts.texts.push_back({select.integer(0), blanksFor('_', std::filesystem::path(path).stem()),
                           folders(path, std::string(select.text(1))), meta.searchText()});
    Statement update(parts.writer, "UPDATE files SET meta = ?, category = ?, library = ?, rating = ? WHERE path = ?");
    const std::string json = encodeMeta(meta);
    const std::optional<std::string> category = orNull(upperCase(meta.category));
    const std::optional<std::string> library = orNull(meta.library);
    parts.expect(update.bind(json, category, library, meta.rating, path).run());
}

void Catalog::markUnread(const std::string& path) {
    Statement update(parts_->writer, "UPDATE files SET mtime = 0 WHERE path = ?");
    parts_->expect(update.bind(path).run());
}

void Catalog::Parts::expect(bool done) {
    if (!done && failure.empty()) { failure = sqlite3_errmsg(writer.handle()); }
}

void Catalog::Parts::writeTexts() {
    for (const Text& text : texts) {
        expect(deleteText.bind(text.id).run() && insertText.bind(text.id, text.name, text.folders, text.body).run());
    }
    texts.clear();
}

void Catalog::remove(const std::string& path) {
    parts_->writeTexts();
    const Database& writer = parts_->writer;
    const bool done =
        Statement(writer, "DELETE FROM fts WHERE rowid = (SELECT id FROM files WHERE path = ?)").bind(path).run() &&
        Statement(writer, "DELETE FROM files WHERE path = ?").bind(path).run();
    parts_->expect(done);
}

void Catalog::removeRoot(const std::string& root) {
    const auto remove = [&] {
        const Database& writer = parts_->writer;
        const bool done = Statement(writer, "DELETE FROM fts WHERE rowid IN (SELECT id FROM files WHERE root = ?)")
                              .bind(root)
                              .run() &&
                          Statement(writer, "DELETE FROM files WHERE root = ?").bind(root).run() &&
                          Statement(writer, "DELETE FROM edits WHERE root = ?").bind(root).run() &&
                          Statement(writer, "DELETE FROM moves WHERE root = ?").bind(root).run() &&
                          Statement(writer, forgetOffsets).bind(root + "/").run();
        parts_->expect(done);
    };
    write(remove);
}

}  // namespace brindlehum

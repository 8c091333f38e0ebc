// Catalog: writes and removes rows.
#include <algorithm>
#include <chrono>
#include <filesystem>

#include "catalog/catalog_parts.h"
#include "meta/meta_codec.h"
#include "meta/upper_case.h"

namespace brindlehum {

namespace {

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
                     const std::optional<AudioFileInfo>& info, const SoundMeta& meta) {
    const AudioFileInfo known = info.value_or(AudioFileInfo());
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
                          Statement(writer, "DELETE FROM files WHERE root = ?").bind(root).run();
        parts_->expect(done);
    };
    write(remove);
}

}  // namespace brindlehum

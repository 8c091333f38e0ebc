// MetadataSave: writes the file, then the catalog, then the log.
#include "library/team/metadata_save.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "base/error.h"
#include "base/path.h"
#include "catalog/file_stamp.h"
#include "library/catalog/catalog_edits.h"
#include "library/meta/meta_io.h"

namespace brindlehum::MetadataSave {
namespace {

constexpr EditTime::duration next{1};

struct stat factsOf(const std::string& path) {
    struct stat facts {};
    if (::stat(path.c_str(), &facts) != 0) {
        throw Error(std::filesystem::path(path).filename().string() + ": " + std::strerror(errno));
    }
    return facts;
}

// None when the file can't be probed; the row then has no technical facts.
std::optional<AudioFileInfo> infoOf(const std::string& path) {
    try {
        return AudioFileInfo::load(path);
    } catch (const std::exception&) { return std::nullopt; }
}

std::string nameOfLog(const std::string& user) {
    return ChangeLog::logFile("/", user).stem().string();
}

std::string value(const SoundMeta& meta, std::string_view field) {
    const SoundMeta::Tag* tag = SoundMeta::tag(field);
    return tag != nullptr ? meta.*tag->field : std::to_string(meta.rating);
}

// One edit of one file, on its way into the catalog.
class Filing {
public:
    Filing(Catalog& catalog, std::string path, std::string root, bool logged, const std::string& user)
        : catalog_(catalog),
          edits_(catalog),
          path_(std::move(path)),
          root_(std::move(root)),
          logged_(logged),
          writer_(nameOfLog(user)) {}

    // `written` is the inode that `meta` was written to; none if the file can't hold any. If another program has
    // replaced the file since, reads its metadata again: when two programs save at once, the last one to write the row
    // must index the file as it is then, not as it wrote it.
    void edit(const MetadataChanges& changes, const SoundMeta& meta, std::optional<ino_t> written, EditTime now) {
        const auto info = infoOf(path_);
        catalog_.write([&] {
            const EditTime time = std::max(now, edits_.newest(path_) + next);
            const bool embedded = written.has_value();
            if (embedded) { letGo(); }
            for (const auto& [field, value] : changes.fields) {
                if (SoundMeta::tag(field) != nullptr) { put(field, value, time, embedded); }
            }
            if (changes.rating) { put(FieldEdit::rating, std::to_string(*changes.rating), time, embedded); }
            const struct stat facts = factsOf(path_);
            const bool replaced = written && *written != facts.st_ino;
            catalog_.upsert(path_, root_, stampOf(facts), info, replaced ? MetaIO::read(path_) : meta);
        });
    }

    void rename(const Catalog::Row& row, EditTime now) {
        const auto info = infoOf(path_);
        const struct stat facts = factsOf(path_);
        catalog_.write([&] {
            const EditTime time = std::max(now, std::max(edits_.newest(row.path), edits_.newest(path_)) + next);
            const auto words = edits_.of(row.path);
            const auto isApart = [](const FieldEdit& edit) { return !edit.embedded; };
            const bool embedded = MetaIO::canWrite(path_) && std::ranges::none_of(words, isApart);
            const auto strangers = edits_.of(path_);  // the words of a file that had this name and is gone
            edits_.rename({row.path, path_, time, logged_}, root_, [](const std::string&) { return true; });
            for (const FieldEdit& edit : strangers) { put(edit.field, value(row.meta, edit.field), time, embedded); }
            for (const FieldEdit& edit : words) {
                if (logged_ && isApart(edit)) { edits_.setUnsent(path_, edit.time, true); }
            }
            catalog_.upsert(path_, row.root, stampOf(facts), info, row.meta);
            catalog_.remove(row.path);
        });
    }

private:
    void put(std::string_view field, const std::string& value, EditTime time, bool embedded) {
        edits_.merge(path_, root_, {std::string(field), value, time, writer_, embedded, logged_});
    }

    // The file now holds the words that it couldn't hold before. That isn't a new edit, so they keep their place in
    // time.
    void letGo() {
        for (const FieldEdit& edit : edits_.of(path_)) {
            if (!edit.embedded) { put(edit.field, edit.value, edit.time + next, true); }
        }
    }

    Catalog& catalog_;
    CatalogEdits edits_;
    const std::string path_;
    const std::string root_;
    const bool logged_;
    const std::string writer_;
};

// The new file's inode; none if the file can't hold the record.
std::optional<ino_t> embed(const SoundMeta& meta, const std::filesystem::path& file) {
    if (!MetaIO::canWrite(file)) { return std::nullopt; }
    try {
        return MetaIO::write(meta, file);
    } catch (const Error& error) {
        if (error.kind() != ErrorKind::notEmbeddable && error.kind() != ErrorKind::tooLargeForRiff) { throw; }
        return std::nullopt;
    }
}

std::string folderOf(const std::string& path) {
    return std::filesystem::path(path).parent_path().string();
}

}  // namespace

SoundMeta recordToEdit(const std::filesystem::path& file, Catalog* catalog) {
    // If the file doesn't hold the record, its row has it: a second edit that started from the file would lose the
    // first one.
    auto record = MetaIO::canWrite(file) ? MetaIO::readRecord(file) : std::nullopt;
    if (!record) { return current(file, catalog); }
    return catalog == nullptr ? *record : CatalogEdits(*catalog).over(canonicalPath(file), std::move(*record));
}

SoundMeta current(const std::filesystem::path& file, Catalog* catalog) {
    if (catalog == nullptr) { return MetaIO::read(file); }
    const std::string path = canonicalPath(file);
    if (auto row = catalog->row(path)) { return std::move(row->meta); }
    return CatalogEdits(*catalog).over(path, MetaIO::read(file));
}

std::string rootOf(const std::string& path, const std::vector<std::string>& roots) {
    std::string longest;
    for (const std::string& root : roots) {
        if (root.size() > longest.size() && path.starts_with(root.ends_with('/') ? root : root + "/")) {
            longest = root;
        }
    }
    return longest;
}

Saved save(const std::filesystem::path& file, const MetadataChanges& changes, Catalog* catalog,
           const std::vector<std::string>& roots, const std::string& user, EditTime now) {
    const std::string path = canonicalPath(file);
    factsOf(path);
    const std::string root = rootOf(path, roots);
    SoundMeta meta = recordToEdit(file, catalog);
    changes.apply(meta);
    const std::optional<ino_t> written = embed(meta, file);
    Saved saved{written.has_value(), std::nullopt};
    if (catalog != nullptr) {
        try {
            Filing(*catalog, path, root.empty() ? folderOf(path) : root, !root.empty(), user)
                .edit(changes, meta, written, now);
            if (!root.empty()) { saved.unshared = ChangeLog::send(root, *catalog, user, path); }
            return saved;
        } catch (const std::exception& error) {
            if (!written) { throw; }
            saved.unindexed = std::string("the library catalog can't be written: ") + error.what();
        }
    } else if (!written && root.empty()) {
        throw Error(file.filename().string() + ": without a catalog there is no place for its metadata");
    }
    if (root.empty()) { return saved; }
    try {
        ChangeLog::append(
            root, {path.substr(root.size() + (root.ends_with('/') ? 0 : 1)), changes, user, now, saved.embedded});
    } catch (const Error& error) {
        if (!written) { throw; }
        saved.unshared = error.what();
    }
    return saved;
}

void renamed(const Catalog::Row& row, const std::filesystem::path& to, Catalog& catalog,
             const std::vector<std::string>& roots, const std::string& user, EditTime now) {
    const std::string path = canonicalPath(to);
    const std::string root = rootOf(path, roots);
    Filing(catalog, path, root.empty() ? row.root : root, !root.empty(), user).rename(row, now);
    if (!root.empty()) { ChangeLog::send(root, catalog, user); }
}

}  // namespace brindlehum::MetadataSave

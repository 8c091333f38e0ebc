// MetadataSave: writes the file, then the catalog, then the log.
#include "library/team/metadata_save.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstring>

#include "base/error.h"
#include "base/path.h"
#include "catalog/file_stamp.h"
#include "library/meta/meta_io.h"
#include "library/team/change_log.h"

namespace brindlehum::MetadataSave {
namespace {

struct stat factsOf(const std::string& path) {
    struct stat facts {};
    if (::stat(path.c_str(), &facts) != 0) {
        throw Error(std::filesystem::path(path).filename().string() + ": " + std::strerror(errno));
    }
    return facts;
}

// `written` is the inode that `meta` was written to; none if the file can't hold any. If another program has replaced
// the file since, reads its metadata again: when two programs save at once, the last one to write the row must index
// the file as it is then, not as it wrote it.
void index(Catalog& catalog, const std::string& path, const std::string& root, const SoundMeta& meta,
           std::optional<ino_t> written) {
    std::optional<AudioFileInfo> info;
    try {
        info = AudioFileInfo::load(path);
    } catch (const std::exception&) {
        // The row then has no technical facts.
    }
    catalog.write([&] {
        const struct stat now = factsOf(path);
        const bool replaced = written && *written != now.st_ino;
        catalog.upsert(path, root, stampOf(now), info, replaced ? MetaIO::read(path) : meta);
    });
}

// The new file's inode; none if the file can't hold the record.
std::optional<ino_t> embed(const SoundMeta& meta, const std::filesystem::path& file) {
    if (!MetaIO::canWrite(file)) { return std::nullopt; }
    try {
        return MetaIO::write(meta, file);
    } catch (const Error& error) {
        if (error.kind() != ErrorKind::notEmbeddable) { throw; }
        return std::nullopt;
    }
}

}  // namespace

SoundMeta recordToEdit(const std::filesystem::path& file, Catalog* catalog) {
    // If the file doesn't hold the record, its row has it: a second edit that started from the file would lose the
    // first one.
    const auto record = MetaIO::canWrite(file) ? MetaIO::readRecord(file) : std::nullopt;
    return record ? *record : current(file, catalog);
}

SoundMeta current(const std::filesystem::path& file, Catalog* catalog) {
    if (catalog != nullptr) {
        if (auto row = catalog->row(canonicalPath(file))) { return std::move(row->meta); }
    }
    return MetaIO::read(file);
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

bool save(const std::filesystem::path& file, const MetadataChanges& changes, Catalog* catalog,
          const std::vector<std::string>& roots, const std::string& user) {
    const std::string path = canonicalPath(file);
    factsOf(path);
    SoundMeta meta = recordToEdit(file, catalog);
    changes.apply(meta);
    const std::optional<ino_t> written = embed(meta, file);
    const bool embeds = written.has_value();

    const std::string root = rootOf(path, roots);
    if (catalog != nullptr) {
        try {
            index(*catalog, path, root.empty() ? std::filesystem::path(path).parent_path().string() : root, meta,
                  written);
        } catch (const std::exception&) {
            if (!embeds) { throw; }  // the next scan corrects a WAV's row
        }
    } else if (!embeds && root.empty()) {
        throw Error(file.filename().string() + ": without a catalog there is no place for its metadata");
    }
    if (root.empty()) { return embeds; }
    const auto now = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
    ChangeLog::append(root, {path.substr(root.size() + (root.ends_with('/') ? 0 : 1)), changes, user, now});
    return embeds;
}

}  // namespace brindlehum::MetadataSave

// Reads the defaults as JSON, and merges changes into them under the lock of the file's replacement.
#include "defaults_file.h"

#include <sys/stat.h>

#include <nlohmann/json.hpp>
#include <optional>

#include "base/error.h"
#include "base/file_replacement.h"

namespace brindlehum::DefaultsFile {

namespace {

using nlohmann::json;
namespace fs = std::filesystem;

constexpr mode_t privateFolder = 0700;
constexpr mode_t privateFile = 0600;

void makeFolders(const fs::path& folder) {
    std::error_code ignored;
    if (folder.empty() || fs::exists(folder, ignored)) { return; }
    if (folder.has_relative_path()) { makeFolders(folder.parent_path()); }
    ::mkdir(folder.c_str(), privateFolder);
}

// Resolves symbolic links, so that the replacement doesn't turn a link into a file.
fs::path behindLinks(const fs::path& file) {
    std::error_code error;
    const fs::path target = fs::weakly_canonical(file, error);
    return error ? file : target;
}

// Not an object when the file isn't one of ours.
json parsed(const FileHandle& file) {
    constexpr int64_t maxBytes = 16 << 20;
    if (file.size() > maxBytes) { return json::value_t::discarded; }
    std::string text(size_t(file.size()), '\0');
    if (!file.readExactly(0, text.data(), text.size())) { text.clear(); }
    return json::parse(text, nullptr, /*allow_exceptions=*/false);
}

}  // namespace

Values read(const fs::path& file, std::optional<std::string>& problem) {
    Values values;
    std::error_code error;
    if (fs::status(file, error).type() == fs::file_type::not_found) { return values; }
    try {
        const json stored = parsed(FileHandle(file));
        if (!stored.is_object()) { return values; }
        for (const auto& [key, value] : stored.items()) {
            if (value.is_string()) { values[key] = value.get<std::string>(); }
        }
    } catch (const Error& failure) { problem = std::string("The settings start from the defaults. ") + failure.what(); }
    return values;
}

void merge(const fs::path& file, const Values& changes) {
    const fs::path target = behindLinks(file);
    makeFolders(target.parent_path());
    FileReplacement out(target, {.waits = true, .mode = privateFile});
    // Read under the lock, since another process may have stored its own keys meanwhile.
    json stored = json::object();
    std::optional<FileHandle> old;
    if (fs::exists(target)) {
        old.emplace(target);
        stored = parsed(*old);
        if (stored.is_object()) {
            out.continueFrom(*old);
        } else {
            fs::rename(target, target.string() + ".unreadable");
            stored = json::object();
        }
    }
    for (const auto& [key, value] : changes) { stored[key] = value; }
    out.write(stored.dump(2) + "\n");
    out.commit();
}

}  // namespace brindlehum::DefaultsFile

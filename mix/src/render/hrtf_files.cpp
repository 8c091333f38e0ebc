// Finds the HRTF sets, and loads the one that the whole process shares.
#include <algorithm>
#include <cstdlib>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

#include "base/error.h"
#include "mix/render/hrtf_set.h"

namespace brindlehum {
namespace {

std::string environment(const char* name, const std::string& otherwise) {
    const char* value = std::getenv(name);
    return value != nullptr && *value != '\0' ? value : otherwise;
}

// One choice of the user, and what has been read for it. A set at a share that hangs holds up its own choice only.
struct Choice {
    std::filesystem::path file;  // empty: the usual ones
    std::mutex mutex;            // held while a set is read
    std::map<double, std::shared_ptr<const HRTFSet>> loaded;
};

struct Current {
    std::mutex mutex;
    std::shared_ptr<Choice> choice = std::make_shared<Choice>();
};

Current& current() {
    static Current now;
    return now;
}

}  // namespace

std::vector<std::filesystem::path> HRTFSet::usualFiles() {
    std::vector<std::filesystem::path> folders = {
        environment("XDG_DATA_HOME", environment("HOME", "") + "/.local/share")};
    const std::string shared = environment("XDG_DATA_DIRS", "/usr/local/share:/usr/share");
    for (size_t start = 0; start <= shared.size();) {
        const size_t end = std::min(shared.find(':', start), shared.size());
        if (end > start) { folders.emplace_back(shared.substr(start, end - start)); }
        start = end + 1;
    }
    std::vector<std::filesystem::path> files;
    for (const auto& folder : folders) { files.push_back(folder / "Brindlehum" / "hrtf.sofa"); }
    // A session may list only its own folders; add the folder where distributions install the packaged set.
    folders.emplace_back("/usr/share");
    for (const auto& folder : folders) { files.push_back(folder / "libmysofa" / "default.sofa"); }
    return files;
}

std::filesystem::path HRTFSet::defaultFile() {
    const auto files = usualFiles();
    for (const auto& file : files) {
        std::error_code ignored;
        if (std::filesystem::exists(file, ignored)) { return file; }
    }
    return files.back();
}

void HRTFSet::setOwn(const std::filesystem::path& file) {
    auto choice = std::make_shared<Choice>();
    choice->file = file;
    Current& now = current();
    const std::lock_guard lock(now.mutex);
    now.choice = std::move(choice);
}

// Skips a set that can't be read and tries the next: headphones with the packaged set beat silence.
std::shared_ptr<const HRTFSet> HRTFSet::shared(double sampleRate) {
    const auto choice = [&now = current()] {
        const std::lock_guard lock(now.mutex);
        return now.choice;
    }();
    const std::lock_guard lock(choice->mutex);
    if (const auto known = choice->loaded.find(sampleRate); known != choice->loaded.end()) { return known->second; }
    auto files = usualFiles();
    if (!choice->file.empty()) { files.insert(files.begin(), choice->file); }
    for (const auto& file : files) {
        std::error_code ignored;
        if (!std::filesystem::exists(file, ignored)) { continue; }
        try {
            return choice->loaded[sampleRate] = load(file, sampleRate);
        } catch (const Error&) { continue; }
    }
    throw Error("No HRTF set found");
}

}  // namespace brindlehum

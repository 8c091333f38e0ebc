// UserDefaults in a file that a background queue writes, and in memory.
#include "settings/user_defaults.h"

#include <chrono>
#include <cstdlib>
#include <exception>
#include <utility>

#include "base/home_folder.h"
#include "base/text.h"
#include "defaults_file.h"

namespace brindlehum {

namespace {

namespace fs = std::filesystem;

bool isText(const std::string& value) {
    return repairUtf8(value) == value;
}

std::optional<std::string> found(const std::map<std::string, std::string>& values, const std::string& key) {
    const auto entry = values.find(key);
    return entry == values.end() ? std::nullopt : std::optional(entry->second);
}

}  // namespace

FileDefaults::FileDefaults(fs::path file) : file_(std::move(file)), values_(DefaultsFile::read(file_, problem_)) {}

FileDefaults::~FileDefaults() {
    constexpr double patience = 20;  // seconds
    flush(patience);
}

fs::path FileDefaults::defaultFile() {
    const char* config = std::getenv("XDG_CONFIG_HOME");
    const bool usable = config != nullptr && config[0] == '/';  // a relative path must be ignored
    return (usable ? fs::path(config) : homeFolder() / ".config") / "Brindlehum" / "defaults.json";
}

std::optional<std::string> FileDefaults::data(const std::string& key) const {
    return found(values_, key);
}

void FileDefaults::set(const std::string& key, const std::string& value) {
    if (!isText(key) || !isText(value)) { return; }
    values_[key] = value;
    const std::lock_guard lock(lock_);
    unstored_[key] = value;
    schedule();
}

void FileDefaults::schedule() {
    if (scheduled_) { return; }
    scheduled_ = true;
    if (!queue_) { queue_.emplace("Brindlehum.defaults"); }
    queue_->async([this] { store(); });
}

void FileDefaults::store() {
    constexpr std::chrono::milliseconds delay{200};
    Values taken;
    {
        std::unique_lock lock(lock_);
        wake_.wait_for(lock, delay, [this] { return flushing_; });
        scheduled_ = false;
        taken = unstored_;
    }
    if (taken.empty()) { return; }
    try {
        DefaultsFile::merge(file_, taken);
    } catch (const std::exception& failure) {
        // The next value, or the destructor, tries again.
        return setProblem(std::string("Settings can't be stored. ") + failure.what());
    }
    setProblem(std::nullopt);
    const std::lock_guard lock(lock_);
    std::erase_if(unstored_, [&](const auto& entry) { return found(taken, entry.first) == entry.second; });
}

std::optional<std::string> FileDefaults::problem() const {
    const std::lock_guard lock(lock_);
    return problem_;
}

void FileDefaults::setOnProblem(const std::function<void()>& heard) {
    const std::lock_guard lock(lock_);
    onProblem_ = heard;
}

void FileDefaults::setProblem(const std::optional<std::string>& problem) {
    // Called under the lock, so that nobody is called after setOnProblem has replaced him.
    const std::lock_guard lock(lock_);
    if (std::exchange(problem_, problem) != problem && onProblem_) { onProblem_(); }
}

bool FileDefaults::flush(double patience) {
    {
        const std::lock_guard lock(lock_);
        if (unstored_.empty()) { return true; }
        flushing_ = true;
        schedule();
    }
    wake_.notify_all();
    const bool ended = queue_->drainFor(patience);
    const std::lock_guard lock(lock_);
    flushing_ = false;
    return ended && unstored_.empty();
}

std::optional<std::string> MemoryDefaults::data(const std::string& key) const {
    return found(values_, key);
}

void MemoryDefaults::set(const std::string& key, const std::string& value) {
    values_[key] = value;
    ++writes;
}

}  // namespace brindlehum

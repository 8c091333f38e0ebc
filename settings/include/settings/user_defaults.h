// UserDefaults: small named blocks of data that survive the process.
#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <string>

namespace brindlehum {

// Main thread.
class UserDefaults {
public:
    virtual ~UserDefaults() = default;
    virtual std::optional<std::string> data(const std::string& key) const = 0;
    // Stored when it returns; a failure to store is dropped.
    virtual void set(const std::string& key, const std::string& value) = 0;
};

// One JSON file, `$XDG_CONFIG_HOME/Brindlehum/defaults.json`, each value the text stored under its key. Read once;
// every set reads it again under a lock, changes its key alone, writes the whole file beside it, syncs and swaps, so
// that keys of other processes stay. A file that can't be read counts as empty and is kept as
// `defaults.json.unreadable` when the first set replaces it. Keys and values are UTF-8; others aren't stored.
class FileDefaults : public UserDefaults {
public:
    explicit FileDefaults(std::filesystem::path file = defaultFile());
    std::optional<std::string> data(const std::string& key) const override;
    void set(const std::string& key, const std::string& value) override;
    static std::filesystem::path defaultFile();

private:
    void store();

    std::filesystem::path file_;
    std::map<std::string, std::string> values_;
    std::set<std::string> unstored_;  // keys whose value a failed write has left behind; the next one takes them along
};

// In memory, for tests and the command line.
class MemoryDefaults : public UserDefaults {
public:
    std::optional<std::string> data(const std::string& key) const override;
    void set(const std::string& key, const std::string& value) override;
    int writes = 0;

private:
    std::map<std::string, std::string> values_;
};

}  // namespace brindlehum

// UserDefaults: small named blocks of data that survive the process.
#pragma once

#include <condition_variable>
#include <filesystem>
#include <map>
#include <mutex>
#include <optional>
#include <string>

#include "platform/task_queues.h"

namespace brindlehum {

// Main thread.
class UserDefaults {
public:
    virtual ~UserDefaults() = default;
    virtual std::optional<std::string> data(const std::string& key) const = 0;
    // Holds for data() at once, and survives the process; a failure to store is dropped.
    virtual void set(const std::string& key, const std::string& value) = 0;
};

// One JSON file, `$XDG_CONFIG_HOME/Brindlehum/defaults.json`, each value the text stored under its key. Read once.
// A queue of its own stores what was set, no later than 0.3 s after it: the disk never holds up the main thread, and a
// slider's hundred values cost one write. Each write reads the file again under a lock and changes the set keys alone,
// so that keys of other processes stay. A file that can't be read counts as empty and is kept as
// `defaults.json.unreadable` when the first write replaces it. Keys and values are UTF-8; others aren't stored.
class FileDefaults : public UserDefaults {
public:
    explicit FileDefaults(std::filesystem::path file = defaultFile());
    // Stores what is left.
    ~FileDefaults() override;
    std::optional<std::string> data(const std::string& key) const override;
    void set(const std::string& key, const std::string& value) override;
    // Stores at once what was set. False when it isn't on the disk after `patience` seconds.
    bool flush(double patience);
    static std::filesystem::path defaultFile();

private:
    using Values = std::map<std::string, std::string>;

    void schedule();  // under the lock
    void store();     // on the queue

    const std::filesystem::path file_;
    Values values_;  // main thread
    std::mutex lock_;
    std::condition_variable wake_;
    // Under the lock:
    Values unstored_;  // what was set and isn't in the file yet; after a failed write the next one takes it along
    bool scheduled_ = false;  // a write is to come
    bool flushing_ = false;   // it must not wait for further values
    // From the first set on. The last member, since its jobs use the others.
    std::optional<SerialQueue> queue_;
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

// UserDefaults: small named texts that survive the process.
#pragma once

#include <condition_variable>
#include <filesystem>
#include <functional>
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
    // Takes effect for data() at once, and survives the process. A failure to store becomes the problem().
    virtual void set(const std::string& key, const std::string& value) = 0;
    // Why the values couldn't be read or stored, as a text for the user; none while all is well.
    virtual std::optional<std::string> problem() const { return std::nullopt; }
    // `heard` is called on any thread after the problem has changed. Empty: nobody.
    virtual void setOnProblem(const std::function<void()>& /*heard*/) {}
};

// Reads one JSON file, `$XDG_CONFIG_HOME/Brindlehum/defaults.json`, once; it holds one text for each key. Its own queue
// stores a set value at most 0.3 s later, so that the disk never blocks the main thread and a slider's hundred values
// cost one write. Each write reads the file again under a lock and changes only the set keys, so that other processes'
// keys stay. A file that isn't ours counts as empty; the first write keeps it as `defaults.json.unreadable`. A folder,
// a pipe or a device in its place stays as it is, and nothing is stored. Keys and values are UTF-8; others aren't
// stored.
class FileDefaults : public UserDefaults {
public:
    explicit FileDefaults(std::filesystem::path file = defaultFile());
    // Stores the values that aren't on the disk yet.
    ~FileDefaults() override;
    std::optional<std::string> data(const std::string& key) const override;
    void set(const std::string& key, const std::string& value) override;
    std::optional<std::string> problem() const override;
    void setOnProblem(const std::function<void()>& heard) override;
    // Stores the set values at once. False when they aren't on the disk after `patience` seconds.
    bool flush(double patience);
    static std::filesystem::path defaultFile();

private:
    using Values = std::map<std::string, std::string>;

    void schedule();                                             // under the lock
    void store();                                                // on the queue
    void setProblem(const std::optional<std::string>& problem);  // on the queue

    const std::filesystem::path file_;
    mutable std::mutex lock_;
    std::condition_variable wake_;
    // Under the lock:
    Values unstored_;         // values that aren't in the file yet; a failed write leaves them for the next one
    bool scheduled_ = false;  // a write is queued
    bool flushing_ = false;   // that write must not wait for further values
    std::optional<std::string> problem_;
    std::function<void()> onProblem_;
    Values values_;  // main thread
    // Created by the first set(). Must be the last member, since its jobs use the others.
    std::optional<SerialQueue> queue_;
};

// Keeps the values in memory, for tests and the command line.
class MemoryDefaults : public UserDefaults {
public:
    std::optional<std::string> data(const std::string& key) const override;
    void set(const std::string& key, const std::string& value) override;
    int writes = 0;

private:
    std::map<std::string, std::string> values_;
};

}  // namespace brindlehum

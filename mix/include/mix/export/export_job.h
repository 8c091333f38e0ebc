// ExportJob: an export on a queue of its own, that anybody may watch, await or stop.
#pragma once

#include <QObject>
#include <atomic>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "base/file_version.h"
#include "mix/export/exporter.h"
#include "platform/background.h"

namespace brindlehum {

// Adds what isn't known when a job starts, as of a file that has yet to be probed. `fill` runs on the queue's thread
// and may throw. A request of another version is another one.
struct Completion {
    std::function<Exporter::Request(Exporter::Request)> fill = {};
    int version = 0;
};

// Held by all who are interested; the export goes on without them. All calls are for any thread.
class ExportJob {
public:
    enum class State { running, done, failed, stopped };

    ExportJob(Exporter::Request request, Completion completion, Exporter::Carry carry)
        : request_(std::move(request)), completion_(std::move(completion)), carry_(std::move(carry)) {}

    const Exporter::Request& request() const { return request_; }
    State state() const;
    bool isOver() const { return state() != State::running; }
    double progress() const { return progress_; }    // 0 to 1
    std::optional<Exporter::Result> result() const;  // once done
    std::string failure() const;                     // why it failed, in one line for the user
    // Returns when the export is over, or after `seconds`; whether it is over. Needs no event loop, so that also the
    // main thread may wait, as in a drop.
    bool wait(double seconds) const;
    // Asks it to stop, which takes back what is written so far. A finished job stays finished. Returns at once.
    void cancel() { stop_.request_stop(); }
    // A held job renders, but its file gets its name only after this: somebody wants it.
    void keep();
    bool isKept() const;
    // Cancels a job that nobody has kept: the press that began it was no drag.
    void letGo();

private:
    friend class ExportQueue;
    void run(const std::function<void()>& progressed);
    bool waitUntilKept();
    Exporter::Request taken();
    bool serves(const Exporter::Request& request, int version) const;
    bool liesInToday() const;
    void end(State state, std::optional<Exporter::Result> result, std::string failure);

    Exporter::Request request_;  // constant, but that a running job takes the sound of a document out of it
    const Completion completion_;
    const Exporter::Carry carry_;
    std::stop_source stop_;
    std::atomic<double> progress_ = 0;
    mutable std::mutex lock_;
    mutable std::condition_variable over_;
    std::condition_variable_any keeping_;
    // Under the lock:
    State state_ = State::running;
    bool kept_ = false;
    std::optional<Exporter::Result> result_;
    std::string failure_;
    // Queue thread until the job is over, then constant:
    std::optional<FileVersion> source_;
    std::optional<FileVersion> product_;
};

// Runs jobs one after another on the queue "Brindlehum.export". Main thread. Its end stops all jobs and takes back
// unfinished files.
class ExportQueue : public QObject {
    Q_OBJECT
public:
    explicit ExportQueue(MainLoop& loop);
    ~ExportQueue() override;

    // Starts an export. The same request gets the job that runs for it, or that has made its file, as long as source
    // and file are unchanged and the file lies in today's folder. A job that waits to be kept lets no other begin.
    enum class Hold { no, untilKept };
    std::shared_ptr<ExportJob> start(const Exporter::Request& request, Hold hold = Hold::no,
                                     const Completion& completion = {});

    // What all later jobs take along from their sources.
    void setCarry(Exporter::Carry carry) { carry_ = std::move(carry); }

    // Tests await the work.
    Background& background() { return background_; }

Q_SIGNALS:
    void started(const std::shared_ptr<brindlehum::ExportJob>& job);     // not for a job that is there already
    void progressed(const std::shared_ptr<brindlehum::ExportJob>& job);  // at most once a percent
    void finished(const std::shared_ptr<brindlehum::ExportJob>& job);    // done, failed or stopped

private:
    static constexpr size_t mostKept = 64;
    void forgetOld();

    Exporter::Carry carry_;
    std::vector<std::shared_ptr<ExportJob>> jobs_;  // running ones, and the last finished
    Background background_;  // last member, so that its work ends before the parts that it uses are destroyed
};

}  // namespace brindlehum

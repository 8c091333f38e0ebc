// ExportJob and ExportQueue: the export's outcome is told on its own thread, its signals on the main thread.
#include "mix/export/export_job.h"

#include <algorithm>
#include <chrono>
#include <ctime>
#include <utility>

#include "base/error.h"
#include "mix/export/export_name.h"

namespace brindlehum {
namespace {

std::optional<FileVersion> versionOf(const std::filesystem::path& file) {
    try {
        return FileVersion::of(file);
    } catch (const Error&) { return std::nullopt; }
}

bool isStill(const std::filesystem::path& file, const std::optional<FileVersion>& version) {
    return version && versionOf(file) == version;
}

}  // namespace

ExportJob::State ExportJob::state() const {
    const std::lock_guard guard(lock_);
    return state_;
}

std::optional<Exporter::Result> ExportJob::result() const {
    const std::lock_guard guard(lock_);
    return result_;
}

std::string ExportJob::failure() const {
    const std::lock_guard guard(lock_);
    return failure_;
}

bool ExportJob::wait(double seconds) const {
    std::unique_lock guard(lock_);
    return over_.wait_for(guard, std::chrono::duration<double>(seconds), [this] { return state_ != State::running; });
}

void ExportJob::keep() {
    const std::lock_guard guard(lock_);
    kept_ = true;
    keeping_.notify_all();
}

bool ExportJob::isKept() const {
    const std::lock_guard guard(lock_);
    return kept_;
}

void ExportJob::letGo() {
    if (!isKept()) { cancel(); }
}

// A finished job is remembered for long, and mustn't keep a document in memory.
Exporter::Request ExportJob::taken() {
    Exporter::Request whole = request_;
    if (request_.edited) { request_.edited->sound = Sound(); }
    return whole;
}

// On the queue; false when cancelled instead.
bool ExportJob::waitUntilKept() {
    std::unique_lock guard(lock_);
    return keeping_.wait(guard, stop_.get_token(), [this] { return kept_; });
}

void ExportJob::end(State state, std::optional<Exporter::Result> result, std::string failure) {
    const std::lock_guard guard(lock_);
    state_ = state;
    result_ = std::move(result);
    failure_ = std::move(failure);
    over_.notify_all();
}

// On the queue.
void ExportJob::run(const std::function<void()>& progressed) {
    const auto progress = [&, told = -1](double done) mutable {
        progress_ = done;
        if (std::exchange(told, int(done * 100)) != told) { progressed(); }
    };
    try {
        source_ = versionOf(request_.info.url);
        const Exporter::Request request = completion_.fill ? completion_.fill(request_) : taken();
        const Exporter::Watch watch{progress, stop_.get_token(), carry_, [this] { return waitUntilKept(); }};
        const auto result = stop_.stop_requested() ? std::nullopt : Exporter::make(request, watch);
        if (result) { product_ = versionOf(result->url); }
        end(result ? State::done : State::stopped, result, {});
    } catch (const std::exception& error) { end(State::failed, {}, error.what()); }
}

// While it runs, or as long as its file is what it was.
bool ExportJob::serves(const Exporter::Request& request, int version) const {
    if (request_ != request || completion_.version != version) { return false; }
    switch (state()) {
        case State::running:
            return !stop_.stop_requested();
        case State::done:
            return isStill(request_.info.url, source_) && isStill(result_->url, product_) && liesInToday();
        default:
            return false;
    }
}

bool ExportJob::liesInToday() const {
    return result_->url == request_.info.url ||
           result_->url.parent_path() == request_.folder / ExportName::day(std::time(nullptr));
}

ExportQueue::ExportQueue(MainLoop& loop) : background_(loop, "Brindlehum.export") {}

ExportQueue::~ExportQueue() {
    for (const auto& job : jobs_) { job->cancel(); }
    background_.drain();
}

std::shared_ptr<ExportJob> ExportQueue::start(const Exporter::Request& request, Hold hold,
                                              const Completion& completion) {
    const auto known =
        std::ranges::find_if(jobs_, [&](const auto& job) { return job->serves(request, completion.version); });
    const auto job = known != jobs_.end() ? *known : std::make_shared<ExportJob>(request, completion, carry_);
    if (hold == Hold::no) { job->keep(); }
    if (known != jobs_.end()) { return job; }
    jobs_.push_back(job);
    Q_EMIT started(job);
    background_.run(
        [this, job](const Background::Task& task) {
            job->run([&] { task.tell([this, job] { Q_EMIT progressed(job); }); });
        },
        [this, job] {
            forgetOld();
            Q_EMIT finished(job);
        });
    return job;
}

// Keeps running jobs, and the newest of those whose file may be asked for again.
void ExportQueue::forgetOld() {
    std::erase_if(jobs_, [](const auto& job) { return job->isOver() && job->state() != ExportJob::State::done; });
    const auto isDone = [](const auto& job) { return job->isOver(); };
    while (size_t(std::ranges::count_if(jobs_, isDone)) > mostKept) {
        jobs_.erase(std::ranges::find_if(jobs_, isDone));
    }
}

}  // namespace brindlehum

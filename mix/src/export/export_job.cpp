// ExportJob and ExportQueue: the export's outcome is told on its own thread, its signals on the main thread.
#include "mix/export/export_job.h"

#include <algorithm>
#include <chrono>
#include <ctime>
#include <utility>

#include "base/error.h"
#include "export_order.h"
#include "mix/export/export_name.h"

namespace brindlehum {
namespace {

constexpr double shortSeconds = 120;  // of sound; an upmix of it takes less than a second

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

// A sound that has yet to be probed counts as short.
bool ExportJob::isShort() const {
    const AudioFileInfo& info = request_.info;
    return double(request_.range ? request_.range->length() : info.frames) <= shortSeconds * info.sampleRate;
}

bool ExportJob::sharesNameWith(const ExportJob& other) const {
    return request_.folder == other.request_.folder &&
           ExportName::fileName(request_) == ExportName::fileName(other.request_);
}

// On the job's thread; false when cancelled instead.
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

// On a thread of the queue.
void ExportJob::run(const std::function<void()>& progressed) {
    const auto progress = [&, told = -1](double done) mutable {
        progress_ = done;
        if (std::exchange(told, int(done * 100)) != told) { progressed(); }
    };
    try {
        if (stop_.stop_requested()) { return end(State::stopped, {}, {}); }
        source_ = versionOf(request_.info.url);
        const Exporter::Request request = completion_.fill ? completion_.fill(request_) : taken();
        const Exporter::Watch watch{progress, stop_.get_token(), carry_, [this] { return waitUntilKept(); }};
        const auto result = Exporter::make(request, watch);
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

ExportQueue::ExportQueue(MainLoop& loop)
    : threads_{Background(loop, "Brindlehum.export"), Background(loop, "Brindlehum.export2")} {}

ExportQueue::~ExportQueue() {
    for (const auto& job : jobs_) { job->cancel(); }
    for (Background& thread : threads_) { thread.drain(); }
}

bool ExportQueue::isIdle() const {
    return std::ranges::all_of(threads_, [](const Background& thread) { return thread.pending() == 0; });
}

void ExportQueue::drainFor(double patience) {
    for (Background& thread : threads_) { (void)thread.drainFor(patience); }
}

std::shared_ptr<ExportJob> ExportQueue::start(const Exporter::Request& request, Hold hold,
                                              const Completion& completion) {
    const auto known =
        std::ranges::find_if(jobs_, [&](const auto& job) { return job->serves(request, completion.version); });
    const auto job = known != jobs_.end() ? *known : std::make_shared<ExportJob>(request, completion, carry_);
    if (hold == Hold::no) { job->keep(); }
    if (known != jobs_.end()) { return job; }
    jobs_.push_back(job);
    {
        const std::lock_guard guard(turnLock_);
        waiting_.push_back(job);
    }
    Q_EMIT started(job);
    // Both look for it: the job has to begin also while the main thread waits for its file.
    for (Background& thread : threads_) {
        thread.run([this](const Background::Task& task) { runWaiting(task); }, [] {});
    }
    return job;
}

// On a thread of the queue, until nothing is left that may begin. What has to wait for another job is begun by the
// thread of that one.
void ExportQueue::runWaiting(const Background::Task& task) {
    while (const auto job = take()) {
        job->run([&] { task.tell([this, job] { Q_EMIT progressed(job); }); });
        {
            const std::lock_guard guard(turnLock_);
            std::erase(running_, job);
        }
        task.tell([this, job] {
            forgetOld();
            Q_EMIT finished(job);
        });
    }
}

std::shared_ptr<ExportJob> ExportQueue::take() {
    const std::lock_guard guard(turnLock_);
    std::vector<ExportStanding> standings;
    for (const auto& job : waiting_) {
        const bool isBlocked =
            std::ranges::any_of(running_, [&](const auto& one) { return one->sharesNameWith(*job); });
        standings.push_back({job->stop_.stop_requested(), !job->isKept(), job->isShort(), isBlocked});
    }
    const bool longRuns = std::ranges::any_of(running_, [](const auto& one) { return !one->isShort(); });
    const auto next = nextExport(standings, longRuns);
    if (!next) { return nullptr; }
    auto job = waiting_[*next];
    waiting_.erase(waiting_.begin() + std::ptrdiff_t(*next));
    running_.push_back(job);
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

// TempEdits: runs a batch on several threads; files start in order and together stay within the memory limit.
#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <system_error>
#include <thread>

#include "audio/probe/audio_file_info.h"
#include "one_file.h"

namespace brindlehum::TempEdits {
namespace {

// Samples of the source and of its longest edit.
int64_t memoryFor(const Job& job, const TempEditOptions& options) {
    try {
        const AudioFileInfo info = AudioFileInfo::load(job.url);
        double longest = options.extended.value_or(0);
        for (const double target : options.targets) { longest = std::max(longest, target); }
        const double frames = double(info.frames) + std::max(double(info.frames), longest * info.sampleRate);
        return int64_t(std::min(frames * info.channels * sizeof(float), 1e18));
    } catch (const std::exception&) {
        return 0;  // the file will be skipped, and its own turn reports why
    }
}

class Batch {
public:
    Batch(std::span<const Job> jobs, const TempEditOptions& options, const Progress& progress,
          const std::stop_token& stop, int64_t memoryBytes)
        : jobs_(jobs), options_(options), progress_(progress), stop_(stop), memoryBytes_(memoryBytes) {
        for (const Job& job : jobs) {
            Outcome& outcome = outcomes_.emplace_back();
            outcome.status = Status::cancelled;
            outcome.reason = "Cancelled";
            outcome.result.folder = job.folder;
        }
    }

    void run(unsigned workers) {
        std::vector<std::jthread> others;
        try {
            while (others.size() + 1 < workers) {
                others.emplace_back([this] { work(); });
            }
        } catch (const std::system_error&) {
            // The system has no more threads: the running ones do all the work.
        }
        work();
    }

    std::vector<Outcome> outcomes_;

private:
    struct Active {
        size_t index = 0;
        int64_t bytes = 0;
    };

    void work() {
        while (const auto mine = begin()) {
            Outcome& outcome = outcomes_[mine->index];
            size_t plans = 0;
            outcome = makeOne(
                jobs_[mine->index], options_,
                [&](size_t plan, const std::string& file) {
                    tell({Step::Kind::writing, mine->index, jobs_.size(), jobs_[mine->index], plan, plans, file});
                },
                [&plans](size_t count) { plans = count; }, stop_);
            tell({Step::Kind::finished, mine->index, jobs_.size(), jobs_[mine->index], 0, plans, {}, &outcome});
            end(mine->index);
        }
    }

    // Waits until memory allows the next file. Reports its start under the lock, so that files start in order.
    std::optional<Active> begin() {
        std::unique_lock lock(mutex_);
        for (;;) {
            if (next_ == jobs_.size() || stop_.stop_requested()) { return std::nullopt; }
            if (!nextBytes_) { nextBytes_ = memoryFor(jobs_[next_], options_); }
            if (mayStart()) { break; }
            changed_.wait(lock);
        }
        const Active mine{next_, *nextBytes_};
        active_.push_back(mine);
        ++next_;
        nextBytes_.reset();
        tell({Step::Kind::started, mine.index, jobs_.size(), jobs_[mine.index], 0, 0, {}});
        return mine;
    }

    bool mayStart() const {
        int64_t bytes = *nextBytes_;
        for (const Active& other : active_) {
            bytes += other.bytes;
            if (jobs_[other.index].folder == jobs_[next_].folder) { return false; }
        }
        return active_.empty() || bytes <= memoryBytes_;
    }

    void end(size_t index) {
        {
            const std::lock_guard lock(mutex_);
            std::erase_if(active_, [index](const Active& each) { return each.index == index; });
        }
        changed_.notify_all();
    }

    void tell(const Step& step) {
        if (!progress_) { return; }
        const std::lock_guard lock(reporting_);
        progress_(step);
    }

    const std::span<const Job> jobs_;
    const TempEditOptions& options_;
    const Progress& progress_;
    const std::stop_token& stop_;
    const int64_t memoryBytes_;

    std::mutex mutex_;  // guards the members down to reporting_
    std::condition_variable changed_;
    size_t next_ = 0;
    std::optional<int64_t> nextBytes_;  // for the file next_, once known
    std::vector<Active> active_;

    std::mutex reporting_;  // one step at a time; taken after mutex_
};

}  // namespace

std::vector<Outcome> makeAll(std::span<const Job> jobs, const TempEditOptions& options, const Progress& progress,
                             const std::stop_token& stop, Limits limits) {
    const unsigned workers = limits.workers != 0 ? limits.workers : std::max(std::thread::hardware_concurrency(), 1U);
    Batch batch(jobs, options, progress, stop, limits.memoryBytes);
    batch.run(unsigned(std::min<size_t>(workers, jobs.size())));
    return std::move(batch.outcomes_);
}

std::string closingText(std::span<const Outcome> outcomes) {
    const auto countOf = [outcomes](Status status) {
        return std::ranges::count_if(outcomes, [status](const auto& o) { return o.status == status; });
    };
    const auto written = countOf(Status::done);
    const auto cancelled = countOf(Status::cancelled);
    const auto skipped = int64_t(outcomes.size()) - written - cancelled;
    if (cancelled > 0) {
        return "Temp edits cancelled: " + std::to_string(written) + " of " + std::to_string(outcomes.size()) +
               " written";
    }
    const auto uncertain =
        std::ranges::count_if(outcomes, [](const auto& o) { return o.status == Status::done && o.barLinesUncertain; });
    std::string text = skipped == 0
                           ? "Temp edits written for " + std::to_string(written) + (written == 1 ? " file" : " files")
                           : "Temp edits: " + std::to_string(written) + " written, " + std::to_string(skipped) +
                                 " skipped (no steady pulse)";
    if (uncertain == 0) { return text; }
    text += "; bar lines uncertain";
    if (uncertain < int64_t(outcomes.size())) { text += " in " + std::to_string(uncertain); }
    return text + ": set where a bar starts";
}

}  // namespace brindlehum::TempEdits

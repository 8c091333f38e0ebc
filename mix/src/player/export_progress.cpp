// ExportProgress: counts the jobs of a round, and words its end.
#include "mix/player/export_progress.h"

#include <algorithm>
#include <utility>

#include "base/path.h"
#include "mix/export/export_name.h"

namespace brindlehum {
namespace {

using Purpose = ExportProgress::Purpose;

std::string closingText(Purpose purpose, const std::vector<std::filesystem::path>& files) {
    const bool isOne = files.size() == 1;
    const std::string what = isOne ? printableName(files.front()) : std::to_string(files.size()) + " files";
    switch (purpose) {
        case Purpose::file:
            return "Exported " + what;
        case Purpose::copy:
            return "Copied " + what;
        case Purpose::nextDrag:
            return what + (isOne ? " is ready: drag again" : " are ready: drag again");
    }
    return {};
}

}  // namespace

ExportProgress::ExportProgress(ExportQueue& queue, PlayerMessage& message, MainLoop& loop)
    : message_(message), loop_(loop) {
    connect(&queue, &ExportQueue::started, this, &ExportProgress::begin);
    connect(&queue, &ExportQueue::progressed, this, [this] {
        if (isShown_) { Q_EMIT changed(); }
    });
    connect(&queue, &ExportQueue::finished, this, &ExportProgress::end);
}

void ExportProgress::begin(const std::shared_ptr<ExportJob>& job) {
    open_.push_back(job);
    ++all_;
    if (open_.size() > 1) { return; }
    patience_ = loop_.after(quietSeconds, [this] {
        // A finished one may be waiting in the user's hand.
        isShown_ = std::ranges::any_of(open_, [](const auto& one) { return one->progress() < 1; });
        Q_EMIT changed();
    });
}

std::optional<double> ExportProgress::progress() const {
    if (!isShown_ || open_.empty()) { return std::nullopt; }
    double done = double(all_ - open_.size());
    for (const auto& job : open_) { done += job->progress(); }
    return done / double(all_);
}

std::string ExportProgress::caption() const {
    if (open_.empty()) { return {}; }
    const std::string count =
        all_ > 1 ? " (" + std::to_string(all_ - open_.size() + 1) + " of " + std::to_string(all_) + ")" : "";
    // A short one may have gone before the first.
    const auto begun = std::ranges::find_if(open_, [](const auto& job) { return job->progress() > 0; });
    const auto& shown = begun != open_.end() ? *begun : open_.front();
    return "Exporting " + ExportName::fileName(shown->request()) + count + "…";
}

void ExportProgress::cancel() {
    for (const auto& job : open_) { job->cancel(); }
}

void ExportProgress::announce(const std::shared_ptr<ExportJob>& job, Purpose purpose) {
    purpose_ = purpose;
    if (std::ranges::find(open_, job) != open_.end()) { return; }
    note(*job);
    if (open_.empty()) { close(); }
}

void ExportProgress::note(const ExportJob& job) {
    if (const auto result = job.result()) {
        made_.push_back(result->url);
        if (const std::string remark = Exporter::remark(*result); !remark.empty()) { remark_ = remark; }
    }
    // One that nobody has kept fails in silence, unless somebody asks for its file.
    if (job.isKept() && job.state() == ExportJob::State::failed) { problem_ = job.failure(); }
}

void ExportProgress::end(const std::shared_ptr<ExportJob>& job) {
    std::erase(open_, job);
    note(*job);
    if (open_.empty()) { return close(); }
    if (isShown_) { Q_EMIT changed(); }
}

// Problems come before successes. What was short and isn't asked about says nothing.
void ExportProgress::close() {
    patience_.reset();
    all_ = 0;
    const bool wasShown = std::exchange(isShown_, false);
    const auto purpose = std::exchange(purpose_, std::nullopt);
    const auto made = std::exchange(made_, {});
    const std::string problem = std::exchange(problem_, {});
    const std::string remark = std::exchange(remark_, {});
    if (!problem.empty()) {
        say(problem, made, true);
    } else if (!made.empty() && (wasShown || purpose)) {
        const std::string text = closingText(purpose.value_or(Purpose::file), made);
        say(remark.empty() ? text : text + ", but " + remark, made, !remark.empty());
    }
    Q_EMIT changed();
}

void ExportProgress::say(const std::string& text, const std::vector<std::filesystem::path>& files, bool isProblem) {
    closing_ = text;
    files_ = files;
    isProblem ? message_.fail(text) : message_.notify(text);
}

}  // namespace brindlehum

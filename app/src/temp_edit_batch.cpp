// TempEditBatch: turns the steps of a batch into progress and messages, and shows the folders at its end.
#include "app/temp_edit_batch.h"

#include <numeric>

#include "audio/probe/audio_file_info.h"

namespace brindlehum {

namespace {

// How much of a file's work is done after its analysis: reading and analysing take about as long as writing.
constexpr double analysedPart = 0.5;

std::string countOf(size_t count) {
    return std::to_string(count) + (count == 1 ? " file" : " files");
}

}  // namespace

TempEditBatch::TempEditBatch(PlayerModel& player, const SettingsStore& settings, const BarsByHand& bars,
                             FileManager& fileManager, MainLoop& loop, std::shared_ptr<SerialQueue> queue)
    : player_(player),
      settings_(settings),
      bars_(bars),
      fileManager_(fileManager),
      background_(loop, std::move(queue)) {}

void TempEditBatch::make(const std::vector<std::filesystem::path>& files) {
    const AppSettings& settings = settings_.value();
    Jobs jobs;
    for (const auto& file : files) {
        if (!AudioFileInfo::isAudioPath(file)) { continue; }
        jobs.push_back({file, TempEditExporter::editsFolder(file, settings.tempEditsBesideSource, settings.pulls()),
                        bars_.find(file)});
    }
    if (jobs.empty()) { return; }
    if (!progress_) { progress_ = 0; }
    folders_.clear();
    skipped_.clear();
    uncertain_.clear();
    closing_.clear();
    player_.notify("Temp edits: analyzing " + countOf(jobs.size()) + "…");
    Q_EMIT changed();
    background_.run([this, jobs](const Background::Task& task) { return makeAll(jobs, task); },
                    [this, jobs](const Result& result) { conclude(jobs, result); });
}

// On the queue.
TempEditBatch::Result TempEditBatch::makeAll(const Jobs& jobs, const Background::Task& task) {
    std::vector<double> parts(jobs.size());  // finished share of each file, 0 to 1
    const auto progress = [&](const TempEdits::Step& step) {
        using Kind = TempEdits::Step::Kind;
        double& part = parts[step.index];
        std::optional<std::string> message;
        if (step.kind == Kind::started) {
            message = "Temp edits " + std::to_string(step.index + 1) + "/" + std::to_string(step.count) + ": " +
                      step.job.url.filename().string();
        } else if (step.kind == Kind::writing) {
            part = analysedPart + (1 - analysedPart) * double(step.plan) / double(step.plans);
        } else {
            part = 1;
        }
        const double all = std::accumulate(parts.begin(), parts.end(), 0.0) / double(parts.size());
        task.tell([this, all, message] { show(all, message); });
    };
    Result result;
    result.outcomes = TempEdits::makeAll(jobs, {}, progress, task.token());
    result.wasCancelled = task.isStopped();
    return result;
}

void TempEditBatch::show(double progress, const std::optional<std::string>& message) {
    progress_ = progress;
    if (message) { player_.notify(*message); }
    Q_EMIT changed();
}

void TempEditBatch::conclude(const Jobs& jobs, const Result& result) {
    std::vector<std::filesystem::path> folders;
    for (size_t i = 0; i < jobs.size(); ++i) {
        const TempEdits::Outcome& outcome = result.outcomes[i];
        if (outcome.status == TempEdits::Status::done) {
            folders.push_back(outcome.result.folder);
            if (outcome.barLinesUncertain) { uncertain_.push_back(jobs[i].url); }
        } else {
            skipped_.push_back({jobs[i].url, outcome.reason});
        }
    }
    folders_.insert(folders_.end(), folders.begin(), folders.end());
    if (background_.pending() == 0) { progress_.reset(); }
    closing_ = TempEdits::closingText(result.outcomes);
    player_.notify(closing_);
    Q_EMIT changed();
    if (!result.wasCancelled) { fileManager_.reveal(folders); }
}

void TempEditBatch::cancel() {
    if (background_.pending() == 0) { return; }
    background_.stop();
    player_.notify("Temp edits: cancelling…");
}

void TempEditBatch::finish(double patience) {
    cancel();
    background_.drainFor(patience);
}

void TempEditBatch::showFolders() {
    fileManager_.reveal(folders_);
}

}  // namespace brindlehum

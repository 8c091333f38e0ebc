#include "app/temp_edit_batch.h"

#include <QPointer>
#include <utility>

#include "audio/probe/audio_file_info.h"

namespace brindlehum {

namespace {

// How much of a file's work is done when its analysis is: reading and analysing take about as long as writing.
constexpr double analysedPart = 0.5;

std::string countOf(size_t count) {
    return std::to_string(count) + " file(s)";
}

}  // namespace

// What a batch carries to its thread and back.
struct TempEditBatch::Work {
    QPointer<TempEditBatch> owner;
    MainLoop& loop;
    std::vector<TempEdits::Job> jobs;
    std::stop_token stop;
    std::vector<double> parts;  // of each file; on the batch's thread

    void tell(std::optional<std::string> message) const {
        double sum = 0;
        for (const double part : parts) { sum += part; }
        loop.post([owner = owner, message = std::move(message), part = sum / double(parts.size())] {
            if (!owner) { return; }
            owner->progress_ = part;
            if (message) { owner->player_.notify(*message); }
            Q_EMIT owner->changed();
        });
    }
};

TempEditBatch::TempEditBatch(PlayerModel& player, const SettingsStore& settings, Desktop& desktop, MainLoop& loop)
    : player_(player), settings_(settings), desktop_(desktop), loop_(loop) {}

TempEditBatch::~TempEditBatch() {
    stop_.request_stop();
}

void TempEditBatch::start(const std::vector<std::filesystem::path>& files) {
    const AppSettings& settings = settings_.value();
    auto work = std::make_shared<Work>(Work{this, loop_, {}, stop_.get_token(), {}});
    for (const auto& file : files) {
        if (!AudioFileInfo::isAudioPath(file)) { continue; }
        work->jobs.push_back(
            {file, TempEditExporter::editsFolder(file, settings.tempEditsBesideSource, settings.pullsFolder)});
    }
    if (work->jobs.empty()) { return; }
    work->parts.resize(work->jobs.size());
    ++batches_;
    if (!progress_) { progress_ = 0; }
    folders_.clear();
    skipped_.clear();
    closing_.clear();
    player_.notify("Temp edits: analyzing " + countOf(work->jobs.size()) + "…");
    Q_EMIT changed();
    queue_.async([work] { run(work); });
}

void TempEditBatch::run(const std::shared_ptr<Work>& work) {
    const auto progress = [&](const TempEdits::Step& step) {
        using Kind = TempEdits::Step::Kind;
        double& part = work->parts[step.index];
        std::optional<std::string> message;
        if (step.kind == Kind::started) {
            message = "Temp edits " + std::to_string(step.index + 1) + "/" + std::to_string(step.count) + ": " +
                      step.job.url.filename().string();
        } else if (step.kind == Kind::writing) {
            part = analysedPart + (1 - analysedPart) * double(step.plan) / double(step.plans);
        } else {
            part = 1;
        }
        work->tell(std::move(message));
    };
    auto outcomes = TempEdits::makeAll(work->jobs, {}, progress, work->stop);
    work->loop.post([work, outcomes = std::move(outcomes)] {
        if (work->owner) { work->owner->conclude(*work, outcomes); }
    });
}

void TempEditBatch::conclude(const Work& work, const std::vector<TempEdits::Outcome>& outcomes) {
    const bool last = --batches_ == 0;
    std::vector<std::filesystem::path> folders;
    for (size_t i = 0; i < outcomes.size(); ++i) {
        if (outcomes[i].status == TempEdits::Status::done) {
            folders.push_back(work.jobs[i].folder);
        } else {
            skipped_.push_back({work.jobs[i].url, outcomes[i].reason});
        }
    }
    folders_.insert(folders_.end(), folders.begin(), folders.end());
    if (last) { progress_.reset(); }
    closing_ = TempEdits::closingText(outcomes);
    player_.notify(closing_);
    Q_EMIT changed();
    if (!work.stop.stop_requested()) { desktop_.reveal(folders); }
}

void TempEditBatch::cancel() {
    if (batches_ == 0) { return; }
    stop_.request_stop();
    stop_ = std::stop_source();
    player_.notify("Temp edits: cancelling…");
}

void TempEditBatch::finish(double patience) {
    cancel();
    queue_.drainFor(patience);
}

void TempEditBatch::showFolders() {
    desktop_.reveal(folders_);
}

}  // namespace brindlehum

// PullSource: the exports behind drags and copies, and their outcome as a message.
#include "mix/player/pull_source.h"

#include "base/path.h"

namespace brindlehum {

PullSource::PullSource(PlayerMessage& message, MainLoop& loop)
    : message_(message), queue_(loop), progress_(queue_, message, loop) {}

std::shared_ptr<ExportJob> PullSource::startExport(bool selectionOnly) {
    const auto asked = request(selectionOnly);
    return asked ? queue_.start(*asked, ExportQueue::Hold::untilKept) : nullptr;
}

std::optional<std::filesystem::path> PullSource::awaitFile(const std::shared_ptr<ExportJob>& job, double patience) {
    job->keep();
    if (!job->wait(patience)) {
        progress_.announce(job, ExportProgress::Purpose::nextDrag);
        message_.fail("The file is still being rendered: drag again in a moment");
        return std::nullopt;
    }
    const auto result = job->result();
    if (!result) {
        if (job->state() == ExportJob::State::failed) { message_.fail(job->failure()); }
        return std::nullopt;
    }
    if (const std::string remark = Exporter::remark(*result); !remark.empty()) {
        message_.fail(printableName(result->url) + ": " + remark);
    }
    return result->url;
}

std::optional<std::filesystem::path> PullSource::exportForDrag(bool selectionOnly) {
    const auto job = startExport(selectionOnly);
    return job ? awaitFile(job) : std::nullopt;
}

void PullSource::exportToPulls(bool selectionOnly) {
    const auto job = startExport(selectionOnly);
    if (!job) { return; }
    job->keep();
    progress_.announce(job, ExportProgress::Purpose::file);
}

}  // namespace brindlehum

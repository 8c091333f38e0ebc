// DragSession: holds the job of the press, and hands its file out.
#include "ui/player/drag_session.h"

#include <QGuiApplication>
#include <QPointer>
#include <algorithm>
#include <chrono>
#include <utility>

#include "mix/player/drag_out.h"
#include "ui/look/promised_files.h"

namespace brindlehum {
namespace {

// A target may ask again at every move: once is enough to wait for long.
constexpr double patienceAgain = 0.2;  // seconds

// After a drag that no target has taken: a target that has asked for the file got it too late to accept the drop.
// Escape leaves the button down, and nothing to say.
void tellIfLate(PullSource* source, const std::shared_ptr<ExportJob>& job) {
    if (!source || !job->isKept() || QGuiApplication::mouseButtons() != Qt::NoButton) { return; }
    source->progress().announce(job, ExportProgress::Purpose::nextDrag);
}

// Outlives the session: on X11 a target may ask minutes after the drop.
class Awaiting {
public:
    Awaiting(PullSource& source, std::shared_ptr<ExportJob> job) : source_(&source), job_(std::move(job)) {}

    PromisedFiles::Files operator()() {
        if (!source_) { return {}; }
        const auto file = source_->awaitFile(job_, std::exchange(patience_, patienceAgain));
        return file ? PromisedFiles::Files{*file} : PromisedFiles::Files();
    }

private:
    QPointer<PullSource> source_;
    std::shared_ptr<ExportJob> job_;
    double patience_ = PullSource::patienceSeconds;
};

// Of several files, while the drag lasts and longer.
class AwaitingForms {
public:
    AwaitingForms(DragOut& dragOut, const std::vector<std::filesystem::path>& files) : dragOut_(&dragOut) {
        for (const auto& file : files) { rows_.push_back({file, nullptr}); }
    }
    AwaitingForms(const AwaitingForms&) = delete;
    AwaitingForms& operator=(const AwaitingForms&) = delete;

    PromisedFiles::Files files() {
        if (!dragOut_) { return {}; }
        start();
        const double end = now() + std::exchange(patience_, patienceAgain);
        PromisedFiles::Files files;
        for (const auto& [file, job] : rows_) {
            const auto made = job ? dragOut_->awaitFile(job, std::max(end - now(), 0.0)) : file;
            if (job && !job->isOver()) { return {}; }
            if (made) { files.push_back(*made); }  // a failure has been told, and the others are there
        }
        return files;
    }

    void notTaken() const {
        for (const auto& [file, job] : rows_) {
            if (job) { tellIfLate(dragOut_, job); }
        }
    }

private:
    struct Row {
        std::filesystem::path file;
        std::shared_ptr<ExportJob> job;  // null for what isn't exported
    };
    static double now() {
        return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
    }
    void start() {
        if (std::exchange(isStarted_, true)) { return; }
        for (auto& [file, job] : rows_) {
            if (!AudioFileInfo::isAudioPath(file)) { continue; }
            job = dragOut_->startExport(file);
            job->keep();
        }
    }

    QPointer<DragOut> dragOut_;
    std::vector<Row> rows_;
    bool isStarted_ = false;
    double patience_ = DragOut::patienceSeconds;
};

}  // namespace

std::unique_ptr<QMimeData> promisedForms(DragOut& dragOut, const std::vector<std::filesystem::path>& files) {
    const auto forms = std::make_shared<AwaitingForms>(dragOut, files);
    return std::make_unique<PromisedFiles>([forms] { return forms->files(); });
}

void dragForms(DragOut& dragOut, const std::vector<std::filesystem::path>& files, QWidget* source,
               const FileDrag::Picture& picture) {
    const auto forms = std::make_shared<AwaitingForms>(dragOut, files);
    auto data = std::make_unique<PromisedFiles>([forms] { return forms->files(); });
    if (!FileDrag::run(source, std::move(data), picture)) { forms->notTaken(); }
}

void DragSession::press(bool selectionOnly) {
    release();
    job_ = source_.startExport(selectionOnly);
}

void DragSession::release() {
    if (const auto job = std::exchange(job_, nullptr)) { job->letGo(); }
}

void DragSession::run(QWidget* source, const FileDrag::Picture& picture) {
    const auto job = std::exchange(job_, nullptr);
    if (!job) { return; }
    const QPointer<PullSource> pulls(&source_);  // the session may be gone when the drag is over
    const bool taken = drag(source, std::make_unique<PromisedFiles>(Awaiting(source_, job)), picture);
    if (taken) { return job->keep(); }
    job->letGo();
    tellIfLate(pulls, job);
}

}  // namespace brindlehum

// DragSession: holds the job of the press, and hands its file out.
#include "ui/player/drag_session.h"

#include <QPointer>
#include <utility>

#include "mix/player/drag_out.h"
#include "ui/look/promised_files.h"

namespace brindlehum {
namespace {

// A target may ask again at every move: once is enough to wait for long.
constexpr double patienceAgain = 0.2;  // seconds

// Outlives the session: on X11 a target may ask minutes after the drop.
class Awaiting {
public:
    Awaiting(DragOut& dragOut, std::shared_ptr<ExportJob> job) : dragOut_(&dragOut), job_(std::move(job)) {}

    PromisedFiles::Files operator()() {
        if (!dragOut_) { return {}; }
        const auto file = dragOut_->awaitFile(job_, std::exchange(patience_, patienceAgain));
        return file ? PromisedFiles::Files{*file} : PromisedFiles::Files();
    }

private:
    QPointer<DragOut> dragOut_;
    std::shared_ptr<ExportJob> job_;
    double patience_ = DragOut::patienceSeconds;
};

}  // namespace

void DragSession::press(bool selectionOnly) {
    release();
    job_ = dragOut_.startExport(selectionOnly);
}

void DragSession::release() {
    if (const auto job = std::exchange(job_, nullptr)) { job->letGo(); }
}

void DragSession::run(QWidget* source, const FileDrag::Picture& picture) {
    const auto job = std::exchange(job_, nullptr);
    if (!job) { return; }
    // The session may be gone when the drag is over.
    const bool taken = drag(source, std::make_unique<PromisedFiles>(Awaiting(dragOut_, job)), picture);
    taken ? job->keep() : job->letGo();
}

}  // namespace brindlehum

// ExportCopy: waits for short exports, so that a quick paste finds them, and for long ones in the background.
#include "ui/player/export_copy.h"

#include <QClipboard>
#include <QGuiApplication>
#include <utility>

#include "mix/player/drag_out.h"
#include "ui/look/file_drag.h"

namespace brindlehum {
namespace {

constexpr double blockSeconds = 0.3;

}  // namespace

ExportCopy::ExportCopy(DragOut& dragOut, QObject* parent) : QObject(parent), dragOut_(dragOut) {
    connect(&dragOut.queue(), &ExportQueue::finished, this, [this](const std::shared_ptr<ExportJob>& job) {
        if (job == job_) { finish(); }
    });
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this, [this] {
        if (const auto job = std::exchange(job_, nullptr)) {
            dragOut_.progress().announce(job, ExportProgress::Purpose::file);
        }
    });
}

void ExportCopy::copy(bool selectionOnly) {
    job_ = dragOut_.startExport(selectionOnly);
    if (!job_) { return; }
    job_->keep();
    dragOut_.progress().announce(job_, ExportProgress::Purpose::copy);
    if (job_->wait(blockSeconds)) { finish(); }
}

void ExportCopy::finish() {
    const auto job = std::exchange(job_, nullptr);  // the clipboard's change isn't another's
    if (const auto result = job->result()) { FileDrag::copy({result->url}); }
}

}  // namespace brindlehum

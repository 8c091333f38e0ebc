// ExportCopy: waits for short exports, so that a quick paste finds them, and for long ones in the background.
#include "ui/player/export_copy.h"

#include <QClipboard>
#include <QGuiApplication>
#include <utility>

#include "mix/player/pull_source.h"
#include "ui/look/file_drag.h"

namespace brindlehum {
namespace {

constexpr double blockSeconds = 0.3;

}  // namespace

ExportCopy::ExportCopy(PullSource& source, QObject* parent) : QObject(parent), source_(source) {
    connect(&source.queue(), &ExportQueue::finished, this, [this](const std::shared_ptr<ExportJob>& job) {
        if (job == job_) { finish(); }
    });
    connect(QGuiApplication::clipboard(), &QClipboard::dataChanged, this, [this] {
        if (const auto job = std::exchange(job_, nullptr)) {
            source_.progress().announce(job, ExportProgress::Purpose::file);
        }
    });
}

void ExportCopy::copy(bool selectionOnly) {
    job_ = source_.startExport(selectionOnly);
    if (!job_) { return; }
    job_->keep();
    source_.progress().announce(job_, ExportProgress::Purpose::copy);
    if (job_->wait(blockSeconds)) { finish(); }
}

void ExportCopy::finish() {
    const auto job = std::exchange(job_, nullptr);  // the clipboard's change isn't another's
    if (const auto result = job->result()) { FileDrag::copy({result->url}); }
}

}  // namespace brindlehum

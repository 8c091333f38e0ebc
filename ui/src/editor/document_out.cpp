// DocumentOut: the handle, and the promise in the clipboard.
#include "ui/editor/document_out.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QPointer>
#include <utility>

#include "ui/look/plain_tool_tip.h"
#include "ui/look/promised_files.h"
#include "ui/player/drag_handle.h"
#include "ui/player/export_copy.h"

namespace brindlehum {
namespace {

constexpr double patienceAgain = 0.2;  // seconds; a program may ask several times for one paste

// What was copied, as a file once somebody asks. Outlives the editor: the clipboard keeps it.
class Copied {
public:
    Copied(DocumentPulls& pulls, Exporter::Request request) : pulls_(&pulls), request_(std::move(request)) {}

    PromisedFiles::Files operator()() {
        if (!pulls_) { return {}; }
        if (!job_ || (job_->isOver() && !job_->result())) { job_ = pulls_->startExport(request_); }
        const auto file = pulls_->awaitFile(job_, std::exchange(patience_, patienceAgain));
        return file ? PromisedFiles::Files{*file} : PromisedFiles::Files();
    }

private:
    QPointer<DocumentPulls> pulls_;
    Exporter::Request request_;
    std::shared_ptr<ExportJob> job_;
    double patience_ = PullSource::patienceSeconds;
};

}  // namespace

DocumentOut::DocumentOut(EditorModel& editor, QWidget& wave)
    : QObject(&wave), pulls_(editor.pulls()), drags_(pulls_), handle_(new DragHandle(&wave)) {
    handle_->setDrags(&drags_, true);
    handle_->picture = [&wave] { return wave.grab(); };
    handle_->setToolTip(plainToolTip(tr("Drag the selection into your DAW; without one, the whole document")));
    handle_->setAccessibleDescription(
        tr("Drag the selection, or the whole document, into your DAW. Space or Enter copies it as a file instead."));
    auto* copy = new ExportCopy(pulls_, this);
    connect(handle_, &QToolButton::clicked, copy, [copy] { copy->copy(true); });
    connect(&editor.document(), &DocumentModel::copied, this, &DocumentOut::offer);
}

void DocumentOut::offer() {
    if (auto request = pulls_.request(true)) {
        QGuiApplication::clipboard()->setMimeData(new PromisedFiles(Copied(pulls_, std::move(*request)), true));
    }
}

}  // namespace brindlehum

// Progress, results and buttons of a batch of temp edits.
#include "ui/window/temp_edits_bar.h"

#include <QHBoxLayout>
#include <QMenu>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <cmath>

#include "app/temp_edit_batch.h"
#include "mix/player/player_message.h"
#include "ui/look/path_text.h"

namespace brindlehum {

TempEditsBar::TempEditsBar(TempEditBatch& batch, PlayerMessage& message, QWidget* parent)
    : QWidget(parent), batch_(batch), message_(message) {
    setObjectName("tempEdits");
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(8);
    progress_ = new QProgressBar;
    progress_->setRange(0, 1000);
    progress_->setTextVisible(false);
    progress_->setFixedWidth(160);
    progress_->setAccessibleName(tr("Progress of the temp edits"));
    row->addWidget(progress_);
    row->addWidget(cancel_ = new QPushButton(tr("Cancel")));
    row->addWidget(skipped_ = new QPushButton(tr("Why Skipped…")));
    row->addWidget(bars_ = new QPushButton(tr("Set Bars…")));
    row->addWidget(folders_ = new QPushButton(tr("Show in File Manager")));
    connect(cancel_, &QPushButton::clicked, &batch, &TempEditBatch::cancel);
    connect(folders_, &QPushButton::clicked, &batch, &TempEditBatch::showFolders);
    connect(skipped_, &QPushButton::clicked, this, &TempEditsBar::tellSkipped);
    connect(bars_, &QPushButton::clicked, this, &TempEditsBar::askBars);
    connect(&batch, &TempEditBatch::changed, this, &TempEditsBar::refresh);
    connect(&message, &PlayerMessage::changed, this, &TempEditsBar::refresh);
    refresh();
}

void TempEditsBar::refresh() {
    const auto progress = batch_.progress();
    progress_->setVisible(progress.has_value());
    cancel_->setVisible(progress.has_value());
    if (progress) { progress_->setValue(int(std::lround(*progress * progress_->maximum()))); }
    const bool told = !progress && !batch_.closing().empty() && message_.text() == batch_.closing();
    skipped_->setVisible(told && !batch_.skipped().empty());
    bars_->setVisible(told && !batch_.uncertain().empty());
    folders_->setVisible(told && !batch_.folders().empty());
    setVisible(progress || told);
}

void TempEditsBar::askBars() {
    const auto pieces = batch_.uncertain();
    if (pieces.size() == 1) { return barsAsked(pieces.front()); }
    QMenu menu(this);
    for (const auto& piece : pieces) {
        QString name = pathText(piece.filename());
        menu.addAction(name.replace('&', "&&"), [this, piece] { Q_EMIT barsAsked(piece); });
    }
    menu.exec(bars_->mapToGlobal(QPoint(0, 0)));
}

void TempEditsBar::tellSkipped() {
    constexpr size_t most = 12;  // lines that fit a small screen
    QString text;
    for (size_t i = 0; i < batch_.skipped().size() && i < most; ++i) {
        const auto& [file, reason] = batch_.skipped()[i];
        text += pathText(file.filename()) + "\n    " + QString::fromStdString(reason) + "\n";
    }
    if (batch_.skipped().size() > most) { text += tr("and %1 more").arg(batch_.skipped().size() - most); }
    QMessageBox box(QMessageBox::Information, tr("Temp Edits"), tr("These files were skipped:"), QMessageBox::Ok,
                    window());
    box.setInformativeText(text.trimmed());
    box.exec();
}

}  // namespace brindlehum

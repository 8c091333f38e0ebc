// The file with buttons to choose another and to go back, and a line on whether it can be used.
#include "ui/settings/hrtf_settings.h"

#include <QCoreApplication>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

#include "mix/render/hrtf_set.h"
#include "settings/settings_store.h"
#include "ui/look/dialog_start.h"
#include "ui/look/elided_label.h"
#include "ui/look/path_text.h"

namespace brindlehum {
namespace {

constexpr double checkedRate = 48000;  // Hz

QString about() {
    return QCoreApplication::translate(
        "HRTFSettings",
        "For binaural outputs. A SOFA file (AES69) measured on your own ears, or on ears like yours, "
        "makes it clearer what is in front, behind and above.");
}

}  // namespace

HRTFSettings::HRTFSettings(SettingsStore& settings, DiskWork& looks) : settings_(settings), looks_(looks) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(8);
    auto* row = new QHBoxLayout;
    row->setSpacing(8);
    row->addWidget(path_ = new ElidedLabel(Qt::ElideMiddle), 1);
    auto* other = new QPushButton(tr("Choose…"));
    other->setAccessibleName(tr("Choose an HRTF set for headphones"));
    row->addWidget(other);
    row->addWidget(usual_ = new QPushButton(tr("Built-in")));
    usual_->setAccessibleName(tr("Use the built-in HRTF set for headphones"));
    column->addLayout(row);
    column->addWidget(note_ = new QLabel);
    note_->setTextFormat(Qt::PlainText);
    note_->setWordWrap(true);
    connect(other, &QPushButton::clicked, this, &HRTFSettings::choose);
    connect(usual_, &QPushButton::clicked, this, [this] {
        line_.cancel();
        say(about(), false);
        settings_.change([](AppSettings& s) { s.hrtfFile.clear(); });
    });
    connect(&settings, &SettingsStore::changed, this, &HRTFSettings::refresh);
    say(about(), false);
    refresh();
}

void HRTFSettings::choose() {
    const QString start = dialogStart(std::filesystem::path(settings_.value().hrtfFile).parent_path(), looks_);
    const QString chosen =
        QFileDialog::getOpenFileName(this, tr("HRTF Set for Headphones"), start, tr("SOFA files (*.sofa)"));
    if (!chosen.isEmpty()) { take(pathOfText(chosen)); }
}

void HRTFSettings::take(const std::filesystem::path& file) {
    say(tr("Reading %1…").arg(pathText(file.filename())), false);
    check(file, true);
}

// The one in the settings may have gone, or changed.
void HRTFSettings::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (!settings_.value().hrtfFile.empty() && !line_.isBusy()) { check(settings_.value().hrtfFile, false); }
}

void HRTFSettings::check(const std::filesystem::path& file, bool takes) {
    looks_.queue().run(
        line_, [file] { HRTFSet::load(file, checkedRate); },
        [this, file, takes] {
            say(about(), false);
            if (!takes) { return; }
            // The same name may hold another set now.
            settings_.change([](AppSettings& s) { s.hrtfFile.clear(); });
            settings_.change([&](AppSettings& s) { s.hrtfFile = file.string(); });
        },
        [this, takes](const std::exception& error) {
            const QString text = takes ? tr("%1. The set in use stays.") : tr("%1. The built-in set is in use.");
            say(text.arg(QString::fromUtf8(error.what())), true);
        });
}

void HRTFSettings::say(const QString& text, bool isProblem) {
    note_->setText(text);
    note_->setProperty("role", isProblem ? "captionWarning" : "secondary");
    note_->style()->polish(note_);
}

void HRTFSettings::refresh() {
    const std::string& file = settings_.value().hrtfFile;
    path_->setFullText(file.empty() ? tr("Built-in set") : pathText(file));
    usual_->setEnabled(!file.empty());
}

}  // namespace brindlehum

// PullsSettings: the folder with a button to choose another, and a way back.
#include "ui/settings/pulls_settings.h"

#include <QCheckBox>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

#include "platform/session.h"
#include "settings/settings_store.h"
#include "ui/look/dialog_start.h"
#include "ui/look/elided_label.h"
#include "ui/look/path_text.h"
#include "ui/look/setting_action.h"

namespace brindlehum {

PullsSettings::PullsSettings(SettingsStore& settings, FileManager& fileManager, DiskWork& looks)
    : settings_(settings), fileManager_(fileManager), looks_(looks) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(8);
    auto* row = new QHBoxLayout;
    row->setSpacing(8);
    row->addWidget(path_ = new ElidedLabel(Qt::ElideMiddle), 1);
    auto* other = new QPushButton(tr("Choose…"));
    other->setAccessibleName(tr("Choose the folder for files dragged out"));
    row->addWidget(other);
    auto* shown = new QPushButton(tr("Show"));
    shown->setAccessibleName(tr("Show the folder for files dragged out"));
    row->addWidget(shown);
    row->addWidget(usual_ = new QPushButton(tr("Default")));
    usual_->setAccessibleName(tr("Use the default folder for files dragged out"));
    column->addLayout(row);
    column->addWidget(makeSetting(tr("32-bit float instead of 24 bits"), settings, &AppSettings::pullsAsFloat));
    connect(other, &QPushButton::clicked, this, &PullsSettings::choose);
    connect(shown, &QPushButton::clicked, this, &PullsSettings::show);
    connect(usual_, &QPushButton::clicked, this,
            [this] { settings_.change([](AppSettings& s) { s.pullsFolder = AppSettings::defaultPullsFolder(); }); });
    connect(&settings, &SettingsStore::changed, this, &PullsSettings::refresh);
    refresh();
}

void PullsSettings::choose() {
    const QString chosen = QFileDialog::getExistingDirectory(this, tr("Folder for Files Dragged Out"),
                                                             dialogStart(settings_.value().pulls(), looks_));
    if (chosen.isEmpty()) { return; }
    settings_.change([&](AppSettings& s) { s.pullsFolder = pathOfText(chosen).string(); });
}

void PullsSettings::show() {
    looks_.queue().run(
        line_,
        [folder = settings_.value().pulls()] {
            std::error_code ignored;  // the file manager says that there is no such folder
            std::filesystem::create_directories(folder, ignored);
            return folder;
        },
        [this](const std::filesystem::path& folder) { fileManager_.openFolder(folder); });
}

void PullsSettings::refresh() {
    const auto folder = settings_.value().pulls();
    path_->setFullText(pathText(folder));
    usual_->setEnabled(folder != AppSettings::defaultPullsFolder());
}

}  // namespace brindlehum

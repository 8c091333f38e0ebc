// The list of profiles and its buttons.
#include "ui/settings/outputs_settings.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QSignalBlocker>
#include <QStackedLayout>
#include <QToolButton>

#include "ui/look/form_scroll.h"
#include "ui/look/icons.h"
#include "ui/look/profile_icon.h"
#include "ui/settings/profile_editor.h"
#include "ui/settings/profile_edits.h"

namespace brindlehum {
namespace {

constexpr int listWidth = 220;  // logical pixels

QToolButton* smallButton(const QString& icon, const QString& name) {
    auto* button = new QToolButton;
    button->setIcon(symbol(icon));
    button->setAccessibleName(name);
    button->setToolTip(name);
    button->setFocusPolicy(Qt::StrongFocus);
    return button;
}

}  // namespace

OutputsSettings::OutputsSettings(SettingsStore& settings, const AudioDevices& devices, SpeakerTest& test)
    : settings_(settings), devices_(devices) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(16, 16, 16, 16);
    row->setSpacing(16);
    row->addWidget(makeList());
    auto* area = new QWidget;
    stack_ = new QStackedLayout(area);
    auto* none = new QLabel(tr("Select an output"));
    none->setProperty("role", "empty");
    none->setAlignment(Qt::AlignCenter);
    stack_->addWidget(none_ = none);
    editor_ = new ProfileEditor(settings, test);
    stack_->addWidget(form_ = new FormScroll(editor_));
    row->addWidget(area, 1);
    connect(&settings, &SettingsStore::changed, this, &OutputsSettings::refresh);
    watching_ = devices.watch([this] { listDevices(); });
    refresh();
}

void OutputsSettings::listDevices() {
    editor_->setDevices(devices_.allOutputs(), devices_.defaultOutput());
}

QWidget* OutputsSettings::makeList() {
    auto* box = new QWidget;
    box->setFixedWidth(listWidth);
    auto* layout = new QVBoxLayout(box);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    list_ = new QListWidget;
    list_->setAccessibleName(tr("Outputs"));
    list_->setTabKeyNavigation(false);
    list_->setIconSize({16, 16});
    connect(list_, &QListWidget::currentRowChanged, this, [this](int at) {
        const auto& profiles = settings_.value().profiles;
        if (at >= 0 && size_t(at) < profiles.size()) { select(profiles[size_t(at)].id); }
    });
    layout->addWidget(list_, 1);
    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(8);
    auto* plus = smallButton("plus", tr("Add an output"));
    minus_ = smallButton("minus", tr("Remove the selected output"));
    connect(plus, &QToolButton::clicked, this, &OutputsSettings::add);
    connect(minus_, &QToolButton::clicked, this, &OutputsSettings::remove);
    buttons->addWidget(plus);
    buttons->addWidget(minus_);
    buttons->addStretch(1);
    layout->addLayout(buttons);
    return box;
}

void OutputsSettings::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    listDevices();
    select(selectedID_ ? selectedID_ : std::optional(settings_.activeProfile().id));
}

void OutputsSettings::select(std::optional<UUID> id) {
    selectedID_ = id;
    refresh();
}

void OutputsSettings::add() {
    UUID id;
    settings_.change([&](AppSettings& settings) { id = ProfileEdits::append(settings); });
    select(id);
}

void OutputsSettings::remove() {
    if (selectedID_) {
        settings_.change([&](AppSettings& settings) { ProfileEdits::remove(settings, *selectedID_); });
    }
}

void OutputsSettings::refresh() {
    refreshList();
    const OutputProfile* profile = selectedID_ ? ProfileEdits::find(settings_.value(), *selectedID_) : nullptr;
    // After a removal nothing is selected, so that a second click doesn't remove another profile.
    minus_->setEnabled(profile && settings_.value().profiles.size() > 1);
    if (profile) { editor_->showProfile(*profile); }
    stack_->setCurrentWidget(profile ? form_ : none_);
}

void OutputsSettings::refreshList() {
    const QSignalBlocker quiet(list_);
    const auto& profiles = settings_.value().profiles;
    while (list_->count() > int(profiles.size())) { delete list_->takeItem(list_->count() - 1); }
    while (list_->count() < int(profiles.size())) { list_->addItem(QString()); }
    int selected = -1;
    for (int row = 0; row < list_->count(); ++row) {
        const auto& profile = profiles[size_t(row)];
        list_->item(row)->setText(QString::fromStdString(profile.name));
        list_->item(row)->setIcon(symbol(profileIcon(profile)));
        if (selectedID_ == profile.id) { selected = row; }
    }
    list_->setCurrentRow(selected);
}

}  // namespace brindlehum

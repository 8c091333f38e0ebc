// The form of a profile: fields, device list and speaker grid.
#include "ui/settings/profile_editor.h"

#include <QComboBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QStyledItemDelegate>
#include <QToolButton>

#include "base/error.h"
#include "mix/config/speaker_map.h"
#include "mix/engine/speaker_test.h"
#include "ui/look/caption_label.h"
#include "ui/look/icons.h"
#include "ui/look/symbol_label.h"
#include "ui/settings/profile_edits.h"
#include "ui/settings/trim_stepper.h"

namespace brindlehum {
namespace {

QComboBox* picker(const QString& name) {
    auto* box = new QComboBox;
    box->setAccessibleName(name);
    box->setFocusPolicy(Qt::StrongFocus);
    box->setMaxVisibleItems(20);
    // As wide as the form, not as the longest name of a device.
    box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    box->setMinimumContentsLength(12);
    box->setItemDelegate(new QStyledItemDelegate(box));  // the usual one takes no padding from a style sheet
    return box;
}

void choose(QComboBox& box, const QVariant& value) {
    const QSignalBlocker quiet(&box);
    box.setCurrentIndex(box.findData(value));
}

QLabel* label(const QString& text, const char* role) {
    auto* made = new QLabel(text);
    made->setProperty("role", role);
    made->setWordWrap(true);
    return made;
}

}  // namespace

ProfileEditor::ProfileEditor(SettingsStore& settings, SpeakerTest& test) : settings_(settings), test_(test) {
    makeForm();
    fillDevices();
}

void ProfileEditor::edit(const std::function<void(OutputProfile&)>& change) {
    settings_.change([&](AppSettings& settings) {
        if (OutputProfile* profile = ProfileEdits::find(settings, profile_.id)) { change(*profile); }
    });
}

void ProfileEditor::makeForm() {
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(0, 0, 8, 0);
    all->setSpacing(8);
    form_ = new QFormLayout;
    form_->setSpacing(8);
    form_->setLabelAlignment(Qt::AlignRight | Qt::AlignVCenter);
    form_->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    name_ = new QLineEdit;
    name_->setAccessibleName(tr("Name"));
    connect(name_, &QLineEdit::textEdited, this,
            [this](const QString& text) { edit([&](OutputProfile& p) { p.name = text.toStdString(); }); });
    kind_ = picker(tr("Type"));
    kind_->addItem(tr("Speakers"), int(OutputProfile::Kind::speakers));
    kind_->addItem(tr("Headphones (binaural)"), int(OutputProfile::Kind::headphones));
    connect(kind_, &QComboBox::activated, this, [this] {
        edit([this](OutputProfile& p) { p.kind = static_cast<OutputProfile::Kind>(kind_->currentData().toInt()); });
    });
    device_ = picker(tr("Device"));
    connect(device_, &QComboBox::activated, this, [this] {
        const QString uid = device_->currentData().toString();
        edit([&](OutputProfile& p) { p.deviceUID = uid.isEmpty() ? std::nullopt : std::optional(uid.toStdString()); });
    });
    left_ = channelPicker(tr("Left output"), [](OutputProfile& p, int channel) { p.headphoneLeft = channel; });
    right_ = channelPicker(tr("Right output"), [](OutputProfile& p, int channel) { p.headphoneRight = channel; });
    layout_ = picker(tr("Layout"));
    for (const auto layout : allLayouts) {
        layout_->addItem(QString::fromUtf8(displayName(layout).data(), std::ssize(displayName(layout))), int(layout));
    }
    connect(layout_, &QComboBox::activated, this, [this] {
        const auto chosen = static_cast<LayoutID>(layout_->currentData().toInt());
        edit([=](OutputProfile& p) { ProfileEdits::setLayout(p, chosen); });
    });
    const auto add = [this](const QString& text, QWidget* field) {
        auto* caption = new CaptionLabel(text, *field);
        caption->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        caption->setMinimumHeight(field->sizeHint().height());
        caption->setContentsMargins(0, 0, 2, 0);
        form_->addRow(caption, field);
    };
    add(tr("&Name"), name_);
    add(tr("&Type"), kind_);
    add(tr("&Device"), device_);
    add(tr("&Left output"), left_);
    add(tr("&Right output"), right_);
    add(tr("La&yout"), layout_);
    all->addLayout(form_);
    all->addWidget(speakerPart_ = makeGrid());
    all->addStretch(1);
}

QWidget* ProfileEditor::makeGrid() {
    auto* part = new QWidget;
    auto* column = new QVBoxLayout(part);
    column->setContentsMargins(0, 8, 0, 0);
    column->setSpacing(8);
    auto* head = new QHBoxLayout;
    auto* sequential = new QPushButton(tr("Sequential from 1"));
    connect(sequential, &QPushButton::clicked, this, [this] { edit(ProfileEdits::setSequential); });
    head->addWidget(label(tr("Speaker map"), "headline"));
    head->addWidget(byPosition_ = new QPushButton(tr("By Position")));
    byPosition_->setToolTip(tr("Each speaker plays on the output that the device calls by its name"));
    connect(byPosition_, &QPushButton::clicked, this,
            [this] { edit([](OutputProfile& p) { p.followsPositions = true; }); });
    head->addWidget(sequential);
    head->addStretch(1);
    column->addLayout(head);
    column->addWidget(warning_ = label("", "warning"));
    grid_ = new QGridLayout;
    grid_->setHorizontalSpacing(16);
    grid_->setVerticalSpacing(4);
    column->addLayout(grid_);
    column->addWidget(
        label(tr("Trims apply to auditioning only; room correction comes from the monitor module."), "secondary"));
    return part;
}

QComboBox* ProfileEditor::channelPicker(const QString& name, std::function<void(OutputProfile&, int)> change) {
    auto* box = picker(name);
    connect(box, &QComboBox::activated, this, [this, box, change = std::move(change)] {
        const int channel = box->currentData().toInt();
        edit([&](OutputProfile& p) { change(p, channel); });
    });
    return box;
}

void ProfileEditor::setDevices(std::vector<AudioOutputDevice> devices, std::optional<uint32_t> defaultDevice) {
    devices_ = std::move(devices);
    defaultDevice_ = defaultDevice;
    fillDevices();
    refresh();
}

void ProfileEditor::fillDevices() {
    const QSignalBlocker quiet(device_);
    device_->clear();
    device_->addItem(tr("System Output"), QString());
    for (const auto& device : devices_) {
        device_->addItem(tr("%1  (%2 out)").arg(QString::fromStdString(device.name)).arg(device.outputChannels),
                         QString::fromStdString(device.uid));
    }
}

void ProfileEditor::rebuildGrid() {
    while (QLayoutItem* item = grid_->takeAt(0)) {
        if (item->widget()) { item->widget()->deleteLater(); }
        delete item;
    }
    rows_.clear();
    gridSpeakers_ = speakers(profile_.layout);
    const QStringList titles = {tr("Speaker"), tr("Output"), tr("Trim")};
    for (int i = 0; i < titles.size(); ++i) { grid_->addWidget(label(titles[i], "secondary"), 0, i); }
    for (size_t i = 0; i < gridSpeakers_.size(); ++i) {
        const QString name = QString::fromStdString(brindlehum::label(gridSpeakers_[i], gridSpeakers_));
        auto* output = channelPicker(tr("Output of %1").arg(name), [this, i](OutputProfile& p, int channel) {
            ProfileEdits::setOutput(p, i, channel, device().positions);
        });
        auto* trim = new TrimStepper(tr("Trim of %1").arg(name));
        connect(trim, &TrimStepper::valueChanged, this,
                [this, i](double db) { edit([=](OutputProfile& p) { ProfileEdits::setTrim(p, i, db); }); });
        auto* ident = new QToolButton;
        ident->setIcon(symbol("level"));
        ident->setFocusPolicy(Qt::StrongFocus);
        ident->setAccessibleName(tr("Test %1").arg(name));
        ident->setToolTip(tr("Noise and %1 beeps from %2").arg(i + 1).arg(name));
        connect(ident, &QToolButton::clicked, this, [this, i] { playIdent(i); });
        auto* unheard = new SymbolLabel("warning", SymbolRole::warning);
        unheard->setToolTip(tr("The device has no such output: this speaker is not heard"));
        unheard->setAccessibleName(tr("%1 is not heard").arg(name));
        const int row = int(i) + 1;
        grid_->addWidget(new CaptionLabel(name, *output), row, 0);
        grid_->addWidget(output, row, 1);
        grid_->addWidget(trim, row, 2);
        grid_->addWidget(ident, row, 3);
        grid_->addWidget(unheard, row, 4);
        rows_.push_back({output, trim, ident, unheard});
    }
    grid_->setColumnStretch(1, 1);
    grid_->setColumnMinimumWidth(4, 20);  // the rows stay where they are as marks come and go
}

void ProfileEditor::showProfile(const OutputProfile& profile) {
    profile_ = profile;
    if (gridSpeakers_ != speakers(profile_.layout)) { rebuildGrid(); }
    refresh();
}

void ProfileEditor::refreshChannels(QComboBox& box, int current) const {
    const QSignalBlocker quiet(&box);
    const AudioOutputDevice on = device();
    const int rows = ProfileEdits::pickerRows(on.outputChannels, current);
    while (box.count() > rows + 1) { box.removeItem(box.count() - 1); }
    if (box.count() == 0) { box.addItem(tr("Off"), ProfileEdits::offChannel); }
    for (int channel = 0; channel < rows; ++channel) {
        const QString name = QString::fromStdString(ProfileEdits::channelName(channel, on));
        if (box.count() == channel + 1) { box.addItem(QString(), channel); }
        if (box.itemText(channel + 1) != name) { box.setItemText(channel + 1, name); }
    }
    box.setCurrentIndex(box.findData(std::max(current, ProfileEdits::offChannel)));
}

void ProfileEditor::refresh() {
    const QString name = QString::fromStdString(profile_.name);
    if (name_->text() != name) { name_->setText(name); }
    choose(*kind_, int(profile_.kind));
    const QString uid = QString::fromStdString(profile_.deviceUID.value_or(""));
    // A missing device keeps its row: the profile uses it again when it comes back.
    if (device_->findData(uid) < 0) { device_->addItem(tr("Unavailable device"), uid); }
    choose(*device_, uid);
    const bool headphones = profile_.kind == OutputProfile::Kind::headphones;
    for (QWidget* field : {left_, right_}) {
        field->setVisible(headphones);
        form_->labelForField(field)->setVisible(headphones);
    }
    layout_->setVisible(!headphones);
    form_->labelForField(layout_)->setVisible(!headphones);
    speakerPart_->setVisible(!headphones);
    refreshChannels(*left_, profile_.headphoneLeft);
    refreshChannels(*right_, profile_.headphoneRight);
    choose(*layout_, int(profile_.layout));
    refreshRows();
}

void ProfileEditor::refreshRows() {
    const AudioOutputDevice on = device();
    const std::vector<int> outputs = SpeakerMap::outputs(profile_, on.positions);
    for (size_t i = 0; i < rows_.size(); ++i) {
        refreshChannels(*rows_[i].output, outputs[i]);
        const QSignalBlocker quiet(rows_[i].trim);
        rows_[i].trim->setValue(ProfileEdits::trimOf(profile_, i));
        const bool heard = outputs[i] < on.outputChannels;
        rows_[i].unheard->setVisible(!heard);
        rows_[i].ident->setEnabled(heard && outputs[i] >= 0);
    }
    byPosition_->setEnabled(!profile_.followsPositions && SpeakerMap::byPosition(profile_.layout, on.positions));
    const QString warning = QString::fromStdString(SpeakerMap::warning(profile_, on));
    warning_->setText(warning);
    warning_->setVisible(!warning.isEmpty());
}

AudioOutputDevice ProfileEditor::device() const {
    const AudioOutputDevice* found = SpeakerMap::deviceOf(profile_, devices_, defaultDevice_);
    return found ? *found : AudioOutputDevice{};
}

void ProfileEditor::playIdent(size_t speaker) {
    const int channel = SpeakerMap::outputs(profile_, device().positions)[speaker];
    const bool low = gridSpeakers_[speaker] == SpeakerID::LFE;
    try {
        test_.play(profile_.deviceUID, {channel, int(speaker) + 1, low, ProfileEdits::trimOf(profile_, speaker)});
    } catch (const Error& error) {
        warning_->setText(error.what());
        warning_->setVisible(true);
    }
}

}  // namespace brindlehum

// Makes a row for each control and file of an effect.
#include "ui/monitor/insert_panel.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QShortcut>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "base/stored_path.h"
#include "ui/look/elided_label.h"
#include "ui/look/form_scroll.h"
#include "ui/look/path_text.h"
#include "ui/look/screen_fit.h"
#include "ui/look/tabular_font.h"
#include "ui/look/utf8_text.h"
#include "ui/look/value_slider.h"
#include "ui/monitor/effect_frame.h"

namespace brindlehum {
namespace {

// Logical pixels.
constexpr int usualWidth = 460;
constexpr int mostHeight = 640;  // before it scrolls
constexpr int margin = 16;
constexpr int spacing = 8;
constexpr int readoutWidth = 84;
constexpr int problemHeight = 60;  // of two lines
constexpr int parts = 200;         // of a slider's range, for numbers that aren't whole

// Where a value stands on its slider: a logarithmic control's doublings are equally long.
double position(const PluginControl& control, double value) {
    return control.isLogarithmic ? std::log(value) : value;
}
double valueAt(const PluginControl& control, double position) {
    const double value = control.isLogarithmic ? std::exp(position) : position;
    return control.heard(control.isWhole ? std::round(value) : value);
}

}  // namespace

InsertPanel::InsertPanel(MonitorEngine& monitor, const UUID& id, QWidget* parent)
    : QWidget(parent, Qt::Window), monitor_(monitor), id_(id) {
    setObjectName("window");
    setAttribute(Qt::WA_StyledBackground);
    setAttribute(Qt::WA_DeleteOnClose);
    if (const Insert* const insert = monitor.inserts().find(id)) { setWindowTitle(textOf(insert->name)); }
    problem_ = new QLabel;
    problem_->setTextFormat(Qt::PlainText);
    problem_->setWordWrap(true);
    problem_->setProperty("role", "warning");
    auto* content = new QWidget;
    form_ = new QFormLayout(content);
    form_->setContentsMargins(0, 0, 0, 0);
    form_->setSpacing(spacing);
    form_->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
    switch_ = new QPushButton;
    switch_->setProperty("role", "small");
    rows_ = new FormScroll(content);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(margin, margin, margin, margin);
    column->setSpacing(spacing);
    column->addWidget(switch_, 0, Qt::AlignLeft);
    column->addWidget(problem_);
    column->addWidget(rows_, 1);
    connect(switch_, &QPushButton::clicked, this, [this] { showOwn(!isOwnShown()); });
    connect(&monitor.inserts().windows(), &InsertWindows::changed, this, &InsertPanel::refresh);
    connect(new QShortcut(QKeySequence("Ctrl+W"), this), &QShortcut::activated, this, &QWidget::close);
    connect(&monitor.inserts(), &MonitorInserts::changed, this, &InsertPanel::refresh);
    connect(&monitor.plugins(), &PluginList::changed, this, &InsertPanel::makeControls);
    makeControls();
}

// The effect's own window, or our rows.
void InsertPanel::showOwn(bool own) {
    delete frame_;
    if (own) {
        frame_ = new EffectFrame(monitor_.inserts().windows(), id_, this);
        static_cast<QVBoxLayout*>(layout())->addWidget(frame_, 0, Qt::AlignHCenter);
        connect(frame_, &EffectFrame::resized, this, &InsertPanel::fit);
    }
    refresh();
    fit();
}

bool InsertPanel::isOwnShown() const {
    return frame_ && frame_->width() > 0;
}

void InsertPanel::fit() {
    const bool own = isOwnShown();
    rows_->setVisible(!own);
    const int head =
        (problem_->isHidden() ? 0 : problemHeight) + (switch_->isHidden() ? 0 : switch_->sizeHint().height());
    const QSize rows(usualWidth, std::min(form_->sizeHint().height() + head + 2 * margin, mostHeight));
    layout()->activate();
    resize(own ? layout()->sizeHint() : fittingSize(*this, rows));
}

void InsertPanel::makeControls() {
    const Insert* const insert = monitor_.inserts().find(id_);
    const PluginInfo* const plugin = insert ? monitor_.plugins().find(insert->uri) : nullptr;
    while (form_->rowCount() > 0) { form_->removeRow(0); }
    follow_.clear();
    for (const PluginControl& control : plugin ? plugin->controls : std::vector<PluginControl>()) {
        if (control.isHidden) { continue; }
        QWidget* const widget = !control.choices.empty() ? choice(control)
                                : control.isSwitch       ? toggle(control)
                                                         : slider(control);
        form_->addRow(textOf(control.name), widget);
    }
    for (const PluginFile& each : plugin ? plugin->files : std::vector<PluginFile>()) {
        form_->addRow(textOf(each.name), file(each));
    }
    if (plugin && follow_.empty()) { form_->addRow(new QLabel(tr("It has nothing to set."))); }
    switch_->setVisible(plugin && plugin->hasWindow && EffectFrame::canBe());
    showOwn(!switch_->isHidden());
}

QString InsertPanel::readout(const PluginControl& control, double value) {
    const double range = control.high - control.low;
    const int decimals = control.isWhole || std::abs(value) >= 100 ? 0 : range > 20 || std::abs(value) >= 10 ? 1 : 2;
    QString text = QString::number(value, 'f', decimals);
    if (text.toDouble() == 0 && text.startsWith('-')) { text.remove(0, 1); }
    return control.unit.empty() ? text : text + " " + textOf(control.unit);
}

QWidget* InsertPanel::slider(const PluginControl& control) {
    const double low = position(control, control.low);
    const double high = position(control, control.high);
    const double step = control.isWhole && !control.isLogarithmic ? 1 : std::max((high - low) / parts, 1e-9);
    auto* row = new QWidget;
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* handle = new ValueSlider(textOf(control.name), {low, high, step, position(control, control.rest), 1});
    handle->setToolTip(tr("Double-click: %1").arg(readout(control, control.rest)));
    handle->onEdit = [this, control](double at) { set(control, valueAt(control, at)); };
    handle->onRest = [this, control] { set(control, control.rest); };
    auto* number = new QLabel;
    number->setFont(tabularFont(font().pointSizeF()));
    number->setMinimumWidth(readoutWidth);
    layout->addWidget(handle, 1);
    layout->addWidget(number);
    follow_.emplace_back([this, control, handle, number] {
        handle->setNumber(position(control, valueOf(control)));
        number->setText(readout(control, valueOf(control)));
    });
    return row;
}

QWidget* InsertPanel::choice(const PluginControl& control) {
    auto* box = new QComboBox;
    box->setAccessibleName(textOf(control.name));
    for (const auto& [name, value] : control.choices) { box->addItem(textOf(name), value); }
    connect(box, &QComboBox::activated, this,
            [this, control, box](int at) { set(control, box->itemData(at).toDouble()); });
    follow_.emplace_back([this, control, box] {
        const auto nearest = std::ranges::min_element(
            control.choices, {}, [&](const auto& each) { return std::abs(each.second - valueOf(control)); });
        box->setCurrentIndex(int(nearest - control.choices.begin()));
    });
    return box;
}

QWidget* InsertPanel::toggle(const PluginControl& control) {
    auto* box = new QCheckBox;
    box->setAccessibleName(textOf(control.name));
    connect(box, &QCheckBox::clicked, this,
            [this, control](bool on) { set(control, on ? control.high : control.low); });
    follow_.emplace_back([this, control, box] { box->setChecked(valueOf(control) > 0); });
    return box;
}

QWidget* InsertPanel::file(const PluginFile& file) {
    auto* row = new QWidget;
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* name = new ElidedLabel;
    auto* choose = new QPushButton(tr("Choose…"));
    choose->setProperty("role", "small");
    choose->setAccessibleName(textOf(file.name));
    connect(choose, &QPushButton::clicked, this, [this, file] { chooseFile(file); });
    layout->addWidget(name, 1);
    layout->addWidget(choose);
    follow_.emplace_back([this, file, name] {
        const Insert* const insert = monitor_.inserts().find(id_);
        const bool isSet = insert && insert->settings.files.contains(file.uri);
        name->setFullText(isSet ? pathText(pathFromStored(insert->settings.files.at(file.uri)))
                                : tr("None chosen here"));
    });
    return row;
}

void InsertPanel::chooseFile(const PluginFile& file) {
    auto* dialog = new QFileDialog(this, textOf(file.name));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFile);
    connect(dialog, &QFileDialog::fileSelected, this, [this, file](const QString& path) {
        monitor_.inserts().setFile(id_, file.uri, storedPath(pathOfText(path)));
    });
    dialog->open();
}

double InsertPanel::valueOf(const PluginControl& control) const {
    const Insert* const insert = monitor_.inserts().find(id_);
    if (!insert || !insert->settings.values.contains(control.symbol)) { return control.rest; }
    return control.heard(insert->settings.values.at(control.symbol));
}

void InsertPanel::set(const PluginControl& control, double value) {
    monitor_.inserts().setValue(id_, control.symbol, value);
}

void InsertPanel::refresh() {
    const Insert* const insert = monitor_.inserts().find(id_);
    if (!insert) {
        close();
        return;
    }
    const QString text = problem();
    problem_->setText(text);
    problem_->setVisible(!text.isEmpty());
    switch_->setText(isOwnShown() ? tr("Show Our Controls") : tr("Show Its Own Window"));
    for (const auto& each : follow_) { each(); }
}

QString InsertPanel::problem() const {
    const MonitorInserts& inserts = monitor_.inserts();
    if (const QString text = textOf(inserts.problemOf(id_)); !text.isEmpty()) { return text; }
    if (!monitor_.plugins().find(inserts.find(id_)->uri)) {
        return monitor_.plugins().isLooking() ? tr("Its controls are being looked for …") : tr("It isn't installed.");
    }
    const InsertWindows::Window* const window = frame_ ? monitor_.inserts().windows().find(id_) : nullptr;
    if (!window || window->width > 0) { return {}; }
    return !window->problem.empty() ? tr("%1; these are our controls for it.").arg(textOf(window->problem))
           : monitor_.running()     ? ""
                                    : tr("Its own window opens when the monitor plays.");
}

}  // namespace brindlehum

// The second output, the switch and the gain between both.
#include "ui/monitor/profile_compare.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QPushButton>

#include "ui/look/menu_button.h"
#include "ui/look/tabular_font.h"

namespace brindlehum {
namespace {

constexpr int longestName = 160;  // logical pixels

}  // namespace

ProfileCompare::ProfileCompare(MonitorEngine& monitor, SettingsStore& settings, QWidget* parent)
    : QWidget(parent), monitor_(monitor), settings_(settings) {
    auto* caption = new QLabel(tr("Compare with"));
    caption->setProperty("role", "secondary");
    other_ =
        new MenuButton(tr("Compare with"), tr("A second output at equal level"), [this](QMenu& menu) { fill(menu); });
    switch_ = new QPushButton(tr("Switch"));
    switch_->setToolTip(tr("Hear the other output (X)"));
    connect(switch_, &QPushButton::clicked, this, [this] { monitor_.switchProfiles(); });
    match_ = new QLabel;
    match_->setFont(tabularFont(10));
    match_->setProperty("role", "secondary");
    match_->setToolTip(
        tr("By this much the output in use is lowered, so that both are equally loud by the bus's last seconds"));
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(8);
    row->addWidget(match_);
    row->addWidget(caption);
    row->addWidget(other_);
    row->addWidget(switch_);
    refresh();
}

void ProfileCompare::fill(QMenu& menu) {
    const OutputProfile* const other = monitor_.otherProfile();
    addChoice(menu, tr("None"), !other, [this] { monitor_.setOtherProfileID(std::nullopt); });
    menu.addSeparator();
    for (const OutputProfile& profile : settings_.value().profiles) {
        if (profile.id == monitor_.profile().id) { continue; }
        addChoice(menu, QString::fromStdString(profile.name), other && other->id == profile.id,
                  [this, id = profile.id] { monitor_.setOtherProfileID(id); });
    }
}

void ProfileCompare::refresh() {
    const OutputProfile* const other = monitor_.otherProfile();
    const QString name = other ? QString::fromStdString(other->name) : tr("None");
    other_->setChoice(fontMetrics().elidedText(name, Qt::ElideMiddle, longestName));
    switch_->setVisible(other != nullptr);
    match_->setVisible(other != nullptr);
    match_->setText(tr("matched %1 dB").arg(QString::asprintf("%+.1f", monitor_.matchDB() + 0.0)));
}

}  // namespace brindlehum

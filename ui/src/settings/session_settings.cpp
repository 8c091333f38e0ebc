// A switch that shows what the session will do, whoever has decided it.
#include "ui/settings/session_settings.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QLabel>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace brindlehum {
namespace {

std::filesystem::path residentProgram() {
    return QCoreApplication::applicationDirPath().toStdString() + "/brindlehum-resident";
}

}  // namespace

SessionSettings::SessionSettings(const std::filesystem::path& file)
    : autostart_(file, residentProgram()),
      box_(new QCheckBox(tr("Start with the session, without a window"))),
      note_(new QLabel) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(box_);
    note_->setProperty("role", "secondary");
    note_->setWordWrap(true);
    note_->hide();
    column->addWidget(note_);
    connect(box_, &QCheckBox::toggled, this, &SessionSettings::change);
    connect(&autostart_, &Autostart::changed, this, &SessionSettings::showState);
    showState();
}

void SessionSettings::showState() {
    const QSignalBlocker quiet(box_);
    box_->setChecked(autostart_.isOn());
}

void SessionSettings::change(bool on) {
    const std::string problem = autostart_.set(on);
    note_->setText(QString::fromStdString(problem));
    note_->setVisible(!problem.empty());
    showState();
}

}  // namespace brindlehum

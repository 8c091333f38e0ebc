// The button, and the menu that sets the reference.
#include "ui/monitor/reference_button.h"

#include <QCoreApplication>
#include <QInputDialog>
#include <QMenu>

namespace brindlehum {
namespace {

constexpr double lowestSPL = 30;  // what the question takes
constexpr double highestSPL = 120;

std::optional<double> asked(QWidget* parent, double volumeDB, double guess) {
    bool given = false;
    const QString question =
        QCoreApplication::translate("ReferenceButton",
                                    "Play pink noise at your reference level and measure at the listener's place.\n"
                                    "The monitor stands at %1 dB. dB SPL read:")
            .arg(QString::asprintf("%+.1f", volumeDB + 0.0));
    const double spl =
        QInputDialog::getDouble(parent, QCoreApplication::translate("ReferenceButton", "Reference Level"), question,
                                guess, lowestSPL, highestSPL, 1, &given);
    return given ? std::optional(spl) : std::nullopt;
}

}  // namespace

ReferenceButton::ReferenceButton(MonitorEngine& monitor, QWidget* parent) : QToolButton(parent), monitor_(monitor) {
    askSPL = [this](double volumeDB, double guess) { return asked(this, volumeDB, guess); };
    setText(tr("Ref"));
    setCheckable(true);
    setPopupMode(MenuButtonPopup);
    auto* menu = new QMenu(this);
    menu->addAction(tr("Calibrate Here…"), this, [this] { calibrate(); });
    QAction* forget = menu->addAction(tr("Forget the Reference"), this, [this] {
        MonitorState next = monitor_.state();
        next.reference.reset();
        monitor_.setState(next);
    });
    connect(menu, &QMenu::aboutToShow, this,
            [this, forget] { forget->setEnabled(monitor_.state().reference.has_value()); });
    setMenu(menu);
    connect(this, &QToolButton::clicked, this, [this] {
        MonitorState next = monitor_.state();
        if (!next.reference) { return calibrate(); }
        next.volumeDB = next.reference->volumeDB;
        next.dim = false;
        monitor_.setState(next);
        refresh();  // a click mustn't lift it
    });
    refresh();
}

void ReferenceButton::calibrate() {
    MonitorState next = monitor_.state();
    const double here = next.levelDB();
    const auto spl = askSPL(here, next.levelSPL().value_or(ReferenceLevel().levelSPL));
    if (spl) {
        next.reference = ReferenceLevel{here, *spl};
        monitor_.setState(next);
    }
    refresh();
}

void ReferenceButton::refresh() {
    const MonitorState& state = monitor_.state();
    setChecked(state.reference && state.levelDB() == state.reference->volumeDB);
    setToolTip(!state.reference ? tr("Calibrate: what a sound level meter reads here")
                                : tr("Go to the reference: %1 dB SPL at %2 dB (R)")
                                      .arg(state.reference->levelSPL, 0, 'f', 1)
                                      .arg(QString::asprintf("%+.1f", state.reference->volumeDB + 0.0)));
}

}  // namespace brindlehum

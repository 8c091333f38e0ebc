// ReferenceButton: goes to the reference level, and takes down what a sound level meter reads.
#pragma once

#include <QToolButton>
#include <functional>
#include <optional>

#include "monitor/engine/monitor_engine.h"

namespace brindlehum {

class ReferenceButton : public QToolButton {
    Q_OBJECT
public:
    explicit ReferenceButton(MonitorEngine& monitor, QWidget* parent = nullptr);
    void refresh();
    // Asks the user for dB SPL at this volume (dB), from a first guess; none when he cancels.
    std::function<std::optional<double>(double volumeDB, double guess)> askSPL;

private:
    void calibrate();

    MonitorEngine& monitor_;
};

}  // namespace brindlehum

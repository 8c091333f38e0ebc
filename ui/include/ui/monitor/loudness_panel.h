// LoudnessPanel: the loudness of the bus in numbers, and the button that begins it anew.
#pragma once

#include <QWidget>

#include "monitor/engine/bus_loudness.h"

class QLabel;

namespace brindlehum {

class LoudnessPanel : public QWidget {
    Q_OBJECT
public:
    explicit LoudnessPanel(BusLoudness& loudness, QWidget* parent = nullptr);

protected:
    void showEvent(QShowEvent* event) override;

private:
    void refresh();

    BusLoudness& loudness_;
    QLabel* shortTerm_;
    QLabel* integrated_;
    QLabel* time_;
};

}  // namespace brindlehum

// SoundfieldRow: turns the sound field of an Ambisonic source.
#pragma once

#include <QWidget>

#include "mix/player/listening_setup.h"

class QLabel;

namespace brindlehum {

class LoadedSound;
class ValueSlider;

class SoundfieldRow : public QWidget {
    Q_OBJECT
public:
    SoundfieldRow(LoadedSound& sound, ListeningSetup& listening, QWidget* parent = nullptr);
    void refresh();

protected:
    // A double click on the row's label resets the rotation, as the button does.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Axis {
        double Rotation::*angle;
        ValueSlider* slider;
        QLabel* value;
    };
    Axis makeAxis(const QString& name, double Rotation::*angle, double limit);
    void reset();

    LoadedSound& sound_;
    ListeningSetup& listening_;
    QLabel* title_;
    Axis axes_[3];
};

}  // namespace brindlehum

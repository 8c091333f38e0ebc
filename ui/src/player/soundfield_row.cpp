// The three sliders of a sound field's rotation.
#include "ui/player/soundfield_row.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

#include "mix/player/listening_setup.h"
#include "mix/player/loaded_sound.h"
#include "ui/look/tabular_font.h"
#include "ui/look/value_slider.h"

namespace brindlehum {
namespace {

QString degrees(double angle) {
    return QString::asprintf("%.0f°", angle);
}

}  // namespace

SoundfieldRow::SoundfieldRow(LoadedSound& sound, ListeningSetup& listening, QWidget* parent)
    : QWidget(parent), sound_(sound), listening_(listening) {
    setObjectName("soundfieldRow");
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(8);
    title_ = new QLabel(tr("Soundfield"));
    title_->setProperty("role", "headline");
    title_->installEventFilter(this);
    row->addWidget(title_);
    axes_[0] = makeAxis(tr("Yaw"), &Rotation::yaw, 180);
    axes_[1] = makeAxis(tr("Pitch"), &Rotation::pitch, 90);
    axes_[2] = makeAxis(tr("Roll"), &Rotation::roll, 180);
    auto* resetButton = new QPushButton(tr("Reset"));
    resetButton->setAccessibleName(tr("Reset the soundfield"));
    connect(resetButton, &QPushButton::clicked, this, &SoundfieldRow::reset);
    row->addWidget(resetButton);
    refresh();
}

SoundfieldRow::Axis SoundfieldRow::makeAxis(const QString& name, double Rotation::*angle, double limit) {
    auto* slider = new ValueSlider(name, {-limit, limit, 1, 0});
    slider->setProperty("role", "centred");
    slider->onEdit = [this, angle](double degrees) {
        Rotation next = listening_.rotation();
        next.*angle = degrees;
        listening_.setRotation(next);
    };
    auto* label = new QLabel(name);
    label->setProperty("role", "secondary");
    label->setBuddy(slider);
    auto* value = new QLabel;
    value->setFont(tabularFont(9));
    value->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    value->setFixedWidth(QFontMetrics(value->font()).horizontalAdvance("-180°") + 2);
    for (QWidget* part : {static_cast<QWidget*>(label), static_cast<QWidget*>(slider), static_cast<QWidget*>(value)}) {
        static_cast<QHBoxLayout*>(layout())->addWidget(part, part == slider ? 1 : 0);
    }
    return {angle, slider, value};
}

void SoundfieldRow::reset() {
    listening_.setRotation({});
}

void SoundfieldRow::refresh() {
    const auto source = sound_.source();
    setVisible(source && source->asAmbisonic());
    const Rotation& rotation = listening_.rotation();
    for (const Axis& axis : axes_) {
        axis.slider->setNumber(rotation.*axis.angle);
        axis.value->setText(degrees(rotation.*axis.angle));
    }
    setToolTip(tr("Soundfield yaw %1, pitch %2, roll %3: double-click Reset to zero all three")
                   .arg(degrees(rotation.yaw), degrees(rotation.pitch), degrees(rotation.roll)));
}

bool SoundfieldRow::eventFilter(QObject* watched, QEvent* event) {
    if (watched == title_ && event->type() == QEvent::MouseButtonDblClick) { reset(); }
    return QWidget::eventFilter(watched, event);
}

}  // namespace brindlehum

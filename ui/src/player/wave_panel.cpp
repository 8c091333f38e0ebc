// Keeps waveform, ruler, scroll bar and the loaded sound in step.
#include "ui/player/wave_panel.h"

#include <QScrollBar>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <algorithm>

#include "mix/player/loaded_sound.h"
#include "mix/player/transport.h"
#include "ui/player/time_ruler.h"

namespace brindlehum {
namespace {

constexpr double scrollSteps = 1 << 24;  // of a scroll bar over the whole sound: less than a pixel each

}  // namespace

WavePanel::WavePanel(LoadedSound& sound, Transport& transport, DragSession& drags, WaveformView::Style style,
                     QWidget* parent)
    : QWidget(parent), sound_(sound), transport_(transport) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(ruler_ = new TimeRuler);
    column->addWidget(waveform_ = new WaveformView(style), 1);
    column->addWidget(scroll_ = makeScrollBar());
    waveform_->setDrags(&drags);
    connectWaveform();
    connect(&sound, &LoadedSound::replaced, waveform_, &WaveformView::showAll);
    connect(&sound.detail(), &WaveDetail::changed, this, [this] { waveform_->setDetail(sound_.detail().data()); });
    refresh();
}

QScrollBar* WavePanel::makeScrollBar() {
    auto* bar = new QScrollBar(Qt::Horizontal);
    bar->setAccessibleName(tr("Part of the sound in view"));
    bar->setProperty("role", "wave");
    // Its room stays, so that a zoom doesn't move the lanes.
    QSizePolicy policy = bar->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    bar->setSizePolicy(policy);
    bar->hide();
    connect(bar, &QScrollBar::valueChanged, this, [this](int value) {
        const VisibleRange& visible = waveform_->visibleRange();
        waveform_->setVisibleRange(scrolled(visible, value / scrollSteps * double(visible.total) - visible.first));
    });
    return bar;
}

double WavePanel::sampleRate() const {
    const auto& info = sound_.info();
    return info ? std::max(info->sampleRate, 1.0) : 1.0;
}

void WavePanel::connectWaveform() {
    waveform_->onSeek = [this](int64_t frame) { transport_.seek(frame); };
    waveform_->onSelect = [this](std::optional<FrameRange> range) {
        if (range) {
            transport_.select(range);
        } else {
            transport_.clearSelection();
        }
        // The model announces nothing when it refuses a selection, so read it back.
        refresh();
    };
    waveform_->onTogglePlay = [this] { transport_.togglePlay(); };
    connect(waveform_, &WaveformView::hovered, this,
            [this](qint64 frame) { ruler_->setHover(frame < 0 ? -1 : double(frame) / sampleRate()); });
    connect(waveform_, &WaveformView::viewChanged, this, &WavePanel::viewChanged);
}

// The ruler and the bar show the same part of the sound, and what is in sight is read in detail.
void WavePanel::viewChanged() {
    const VisibleRange& visible = waveform_->visibleRange();
    ruler_->setSeconds(visible.first / sampleRate(), visible.length / sampleRate());
    scroll_->setVisible(!visible.isAll());
    const double steps = visible.total > 0 ? scrollSteps / double(visible.total) : 0;
    const QSignalBlocker quiet(scroll_);
    scroll_->setRange(0, int((double(visible.total) - visible.length) * steps));
    scroll_->setPageStep(std::max(int(visible.length * steps), 1));
    scroll_->setSingleStep(std::max(scroll_->pageStep() / 10, 1));
    scroll_->setValue(int(visible.first * steps));
    const auto& overview = sound_.waveform();
    if (overview) { sound_.detail().want(visible, waveform_->columns(), overview->bucketFrames); }
}

void WavePanel::refresh() {
    const auto& info = sound_.info();
    waveform_->setData(sound_.waveform());
    waveform_->setDetail(sound_.detail().data());
    waveform_->setTotalFrames(info ? info->frames : 0, sampleRate());
    waveform_->setLaneLabels(sound_.laneLabels());
    waveform_->setSelection(transport_.selection());
    waveform_->setPlayhead(transport_.playhead().frame());
    viewChanged();
}

void WavePanel::movePlayhead() {
    waveform_->setPlayhead(transport_.playhead().frame());
}

}  // namespace brindlehum

// How the wave view looks.
#include <QPaintEvent>
#include <QPainter>
#include <cmath>

#include "mix/player/lane_labels.h"
#include "ui/editor/bar_ruler.h"
#include "ui/editor/editor_wave_view.h"
#include "ui/picture/waveform_picture.h"

namespace brindlehum {
namespace {

constexpr double halo = 1;         // of the playhead, in logical pixels on either side
constexpr double timeHeight = 18;  // of the ruler under the lanes

}  // namespace

std::optional<EditorWaveView::Showing> EditorWaveView::onScreen() const {
    if (const auto& loading = document_.loading()) {
        return Showing{loading->soFar, VisibleRange::all(loading->total), loading->sampleRate};
    }
    if (!document_.doc()) { return std::nullopt; }
    return Showing{document_.sound(), document_.view(), document_.doc()->sampleRate};
}

bool EditorWaveView::hasBars() const {
    return isEditable() && music_.analysis() && !music_.boundaries().empty();
}

QRectF EditorWaveView::lanesArea() const {
    return QRectF(rect()).adjusted(0, EditorGesture::rulerHeight, 0, hasBars() ? -timeHeight : 0);
}

double EditorWaveView::xOf(double frame) const {
    return document_.view().shareOf(frame) * width();
}

QRectF EditorWaveView::playheadArea() const {
    if (!transport_.isPlaying() || !transport_.followsDocument() || !isEditable() ||
        !document_.view().contains(playhead_)) {
        return {};
    }
    return {xOf(playhead_) - halo, 0, WaveformPicture::playheadWidth + 2 * halo, double(height())};
}

// Bars above and time below them; without bars, time alone.
void EditorWaveView::paintRulers(QPainter& painter, const Showing& shown) const {
    const QRectF top(0, 0, width(), EditorGesture::rulerHeight);
    if (!hasBars()) { return BarRuler::paintTime(painter, top, shown.view, shown.sampleRate); }
    const QRectF lanes = lanesArea();
    const auto& grid = music_.analysis()->grid;
    BarRuler::paintBars(
        painter, top, lanes.bottom(),
        {shown.view, music_.boundaries(), grid.beats, shown.sampleRate, music_.isStale() || grid.barLinesUncertain()});
    painter.fillRect(QRectF(0, lanes.bottom(), width(), 1), Theme::current().waveform.separator);
    BarRuler::paintTime(painter, QRectF(0, lanes.bottom(), width(), timeHeight), shown.view, shown.sampleRate);
}

void EditorWaveView::paintPins(QPainter& painter) const {
    const auto pins = surface().pins;
    const auto loop = music_.pinnedLoop().range;
    if (pins.empty()) { return; }
    if (loop) { BarRuler::paintLoop(painter, xOf(double(loop->lower)), xOf(double(loop->upper))); }
    for (auto pin = pins.begin(); pin != pins.end(); ++pin) {
        const auto next = std::next(pin);
        BarRuler::paintPin(painter, pin->first, xOf(double(pin->second)), lanesArea().bottom(),
                           next == pins.end() ? std::nullopt : std::optional(xOf(double(next->second))));
    }
}

void EditorWaveView::paintSelection(QPainter& painter, const QRectF& lanes) const {
    const auto selection = live_ ? live_ : document_.selection();
    if (!selection) { return; }
    const auto span = WaveformPicture::span(*selection, document_.view(), width());
    painter.fillRect(QRectF(span.x, lanes.top(), std::max(span.width, 1.0), lanes.height()),
                     Theme::current().waveform.selection);
}

void EditorWaveView::paintMarks(QPainter& painter, const QRectF& lanes) const {
    const Theme& theme = Theme::current();
    if (const auto selection = live_ ? live_ : document_.selection()) {
        for (const int64_t edge : {selection->lower, selection->upper}) {
            painter.fillRect(QRectF(xOf(double(edge)), lanes.top(), 1, lanes.height()), theme.waveform.label);
        }
    }
    painter.fillRect(QRectF(xOf(double(document_.cursor())), lanes.top(), 1, lanes.height()), theme.accent);
    const QRectF playhead = playheadArea();
    if (playhead.isEmpty()) { return; }
    painter.fillRect(playhead, theme.waveform.background);
    painter.fillRect(playhead.adjusted(halo, 0, -halo, 0), theme.waveform.playhead);
}

void EditorWaveView::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.setClipRect(event->rect());
    const Theme& theme = Theme::current();
    painter.fillRect(rect(), theme.waveform.background);
    const auto shown = onScreen();
    if (!shown) { return; }
    const QRectF lanes = lanesArea();
    const auto& info = document_.loading() ? document_.loading()->info : document_.doc()->info;
    // Waves leave the ground free; a spectrogram would hide the selection.
    if (isEditable() && !lanes_.isSpectrum()) { paintSelection(painter, lanes); }
    lanes_.paint(painter, lanes, devicePixelRatioF(),
                 {shown->sound, document_.revision(), shown->view, laneLabels(info.detected, shown->sound.channels()),
                  shown->sampleRate},
                 theme.waveform);
    if (isEditable() && lanes_.isSpectrum()) { paintSelection(painter, lanes); }
    paintRulers(painter, *shown);
    if (isEditable()) {
        paintPins(painter);
        paintMarks(painter, lanes);
    }
    if (hasFocus()) {
        painter.setPen(QPen(theme.accent, 2));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(QRectF(rect()).adjusted(1, 1, -1, -1));
    }
}

}  // namespace brindlehum

// Lays the buttons of each lane at its height.
#include "ui/editor/lane_heads.h"

#include <QToolButton>
#include <algorithm>

#include "mix/player/lane_labels.h"
#include "ui/editor/editor_wave_view.h"
#include "ui/editor/lane_picture.h"

namespace brindlehum {
namespace {

constexpr int buttonWidth = 22;  // logical pixels, as are the next
constexpr int buttonHeight = 20;
constexpr int gap = 2;

}  // namespace

LaneHeads::LaneHeads(DocumentModel& document, EditorTransport& transport, const EditorWaveView& wave, QWidget* parent)
    : QWidget(parent), document_(document), transport_(transport), wave_(wave) {
    setFixedWidth(2 * buttonWidth + 3 * gap);
    connect(&document, &DocumentModel::opened, this, &LaneHeads::rebuild);
    connect(&document, &DocumentModel::changed, this, [this] { setEnabled(!document_.loading()); });
    connect(&transport, &EditorTransport::changed, this, &LaneHeads::refresh);
    connect(&wave, &EditorWaveView::lanesMoved, this, &LaneHeads::place);
    rebuild();
}

void LaneHeads::rebuild() {
    for (const Head& head : heads_) {
        head.solo->deleteLater();
        head.mute->deleteLater();
    }
    heads_.clear();
    const int lanes = document_.doc() ? std::min(document_.sound().channels(), mostLanes) : 0;
    const auto labels = document_.doc() ? laneLabels(document_.doc()->info.detected, document_.sound().channels())
                                        : std::vector<std::string>();
    for (int lane = 0; lane < lanes; ++lane) {
        const QString name = size_t(lane) < labels.size() && !labels[size_t(lane)].empty()
                                 ? QString::fromStdString(labels[size_t(lane)])
                                 : tr("lane %1").arg(lane + 1);
        const auto make = [&](const QString& text, const QString& help, const char* role) {
            auto* button = new QToolButton(this);
            button->setText(text);
            button->setCheckable(true);
            button->setFixedSize(buttonWidth, buttonHeight);
            button->setProperty("role", role);
            button->setAccessibleName(help);
            button->setToolTip(help);
            button->setFocusPolicy(Qt::TabFocus);
            button->show();
            return button;
        };
        const Head head{make("S", tr("Solo %1").arg(name), "lane"), make("M", tr("Mute %1").arg(name), "lane")};
        connect(head.solo, &QToolButton::clicked, this, [this, lane](bool on) { transport_.setSolo(lane, on); });
        connect(head.mute, &QToolButton::clicked, this, [this, lane](bool on) { transport_.setMute(lane, on); });
        heads_.push_back(head);
    }
    place();
    refresh();
}

void LaneHeads::place() {
    const QRectF area = wave_.lanesArea();
    const double lane = area.height() / std::max<double>(double(heads_.size()), 1);
    for (size_t i = 0; i < heads_.size(); ++i) {
        const int tall = std::clamp(int(lane) - 2, 8, buttonHeight);
        const int y = int(area.top() + lane * (double(i) + 0.5)) - tall / 2;
        heads_[i].solo->setFixedHeight(tall);
        heads_[i].mute->setFixedHeight(tall);
        heads_[i].solo->move(gap, y);
        heads_[i].mute->move(2 * gap + buttonWidth, y);
    }
}

void LaneHeads::refresh() {
    for (size_t i = 0; i < heads_.size(); ++i) {
        heads_[i].solo->setChecked(transport_.lanes().solo.contains(int(i)));
        heads_[i].mute->setChecked(transport_.lanes().mute.contains(int(i)));
    }
}

void LaneHeads::resizeEvent(QResizeEvent* /*event*/) {
    place();
}

}  // namespace brindlehum

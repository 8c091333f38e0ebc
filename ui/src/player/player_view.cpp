// The player's surface: builds its parts and keeps them in step with the player.
#include "ui/player/player_view.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QStackedLayout>
#include <QStyle>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "ui/look/elided_label.h"
#include "ui/look/symbol_label.h"
#include "ui/player/drag_handle.h"
#include "ui/player/drag_menu.h"
#include "ui/player/drag_session.h"
#include "ui/player/export_copy.h"
#include "ui/player/meter_view.h"
#include "ui/player/player_header.h"
#include "ui/player/soundfield_row.h"
#include "ui/player/source_bar.h"
#include "ui/player/transport_bar.h"
#include "ui/player/upmix_panel.h"

namespace brindlehum {
namespace {

constexpr int minWidth = 400;  // logical pixels, as are the next
constexpr QMargins windowMargins(8, 8, 8, 8);
constexpr QMargins hudMargins(12, 9, 12, 9);

QVBoxLayout* column(QWidget* parent, const QMargins& margins, int spacing) {
    auto* layout = new QVBoxLayout(parent);
    layout->setContentsMargins(margins);
    layout->setSpacing(spacing);
    return layout;
}

}  // namespace

PlayerView::PlayerView(PlayerModel& player, SettingsStore& settings, WaveformView::Style style, QWidget* parent)
    : QWidget(parent),
      player_(player),
      settings_(settings),
      style_(style),
      drags_(std::make_unique<DragSession>(player.dragOut())),
      copy_(new ExportCopy(player.dragOut(), this)) {
    setAccessibleName(tr("Player"));
    auto* all = column(this, style == WaveformView::Style::hud ? hudMargins : windowMargins, 6);
    auto* top = new QWidget;
    stack_ = new QStackedLayout(top);
    stack_->addWidget(empty_ = makeEmpty());
    stack_->addWidget(loaded_ = makeLoaded());
    all->addWidget(top, 1);
    all->addWidget(makeMessage());
    all->addWidget(controls_ = makeControls());
    all->addWidget(soundfield_ = new SoundfieldRow(player.sound(), player.listening()));
    connectDrags();
    connect(&player, &PlayerModel::changed, this, &PlayerView::changed);
    connect(&player.compare(), &UpmixCompare::changed, source_, &SourceBar::refresh);
    connect(&settings, &SettingsStore::changed, this, &PlayerView::changed);
    connect(&player.transport().playhead(), &PlayheadModel::frameChanged, this, &PlayerView::movePlayhead);
    refresh();
}

PlayerView::~PlayerView() = default;

void PlayerView::connectDrags() {
    DragHandle& handle = source_->dragHandle();
    handle.setDrags(drags_.get());
    handle.picture = [this] { return waveform().grab(); };
    connect(&handle, &QToolButton::clicked, this, [this] { copy_->copy(false); });
    for (QWidget* widget : {static_cast<QWidget*>(&handle), static_cast<QWidget*>(&waveform())}) {
        widget->setContextMenuPolicy(Qt::CustomContextMenu);
        connect(widget, &QWidget::customContextMenuRequested, this, [this, widget](const QPoint& at) {
            if (!player_.sound().info()) { return; }
            auto* menu = new QMenu(widget);
            menu->setAttribute(Qt::WA_DeleteOnClose);
            fillExportMenu(*menu, player_.dragOut(), *copy_);
            menu->popup(widget->mapToGlobal(at));
        });
    }
}

QWidget* PlayerView::makeEmpty() {
    auto* box = new QWidget;
    auto* layout = column(box, {}, 8);
    auto* text = new QLabel(tr("Select an audio file"));
    text->setProperty("role", "empty");
    text->setAlignment(Qt::AlignCenter);
    auto* hint = new QLabel(style_ == WaveformView::Style::hud
                                ? tr("Choose one in the file manager.")
                                : tr("Choose one in the list above, or drop a file or a folder here."));
    hint->setProperty("role", "secondary");
    hint->setAlignment(Qt::AlignCenter);
    layout->addStretch(1);
    layout->addWidget(text);
    layout->addWidget(hint);
    layout->addStretch(1);
    return box;
}

QWidget* PlayerView::makeLoaded() {
    auto* box = new QWidget;
    auto* layout = column(box, {}, 0);
    layout->addWidget(header_ = new PlayerHeader(player_.sound(), player_.transport()));
    layout->addSpacing(2);
    auto* row = new QHBoxLayout;
    row->setSpacing(6);
    row->addWidget(wave_ = new WavePanel(player_.sound(), player_.transport(), *drags_, style_), 1);
    row->addWidget(new MeterView(player_.meter()));
    layout->addLayout(row, 1);
    return box;
}

QWidget* PlayerView::makeMessage() {
    messageRow_ = new QWidget;
    messageRow_->setObjectName("messageRow");
    messageLayout_ = new QHBoxLayout(messageRow_);
    messageLayout_->setContentsMargins(0, 0, 0, 0);
    messageLayout_->setSpacing(8);
    message_ = new ElidedLabel(Qt::ElideRight);
    messageLayout_->addWidget(warning_ = new SymbolLabel("warning", SymbolRole::warning));
    messageLayout_->addWidget(message_, 1);
    return messageRow_;
}

void PlayerView::addToMessage(QWidget* widget) {
    messageExtras_.push_back(widget);
    messageLayout_->addWidget(widget);
    widget->installEventFilter(this);
    refreshMessage();
}

bool PlayerView::eventFilter(QObject* object, QEvent* event) {
    if (event->type() == QEvent::ShowToParent || event->type() == QEvent::HideToParent) { refreshMessage(); }
    return QWidget::eventFilter(object, event);
}

QWidget* PlayerView::makeControls() {
    auto* bar = new QWidget;
    auto* row = new QHBoxLayout(bar);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(16);
    row->addWidget(transport_ = new TransportBar(player_.sound(), player_.transport(), player_.listening(), settings_));
    row->addWidget(source_ = new SourceBar(player_, settings_), 1);
    connect(source_, &SourceBar::editorAsked, this, &PlayerView::editorAsked);
    connect(source_, &SourceBar::upmixPanelAsked, this, [this] {
        if (style_ == WaveformView::Style::hud) { return Q_EMIT upmixPanelAsked(); }
        showUpmixPanel();
    });
    return bar;
}

void PlayerView::showUpmixPanel() {
    if (!upmixPanel_) { upmixPanel_ = new UpmixPanel(player_, settings_, this); }
    upmixPanel_->bringUp();
}

// Shows the controls with their texts where there is room, then with a short slider, else as icons alone.
void PlayerView::fitControls() {
    const QMargins margins = layout()->contentsMargins();
    const int room = width() - margins.left() - margins.right();
    for (const auto& [shortSlider, onlyIcons] : {std::pair(false, false), {true, false}, {true, true}}) {
        transport_->setNarrow(shortSlider);
        source_->setNarrow(onlyIcons);
        // The layout of both still has the width from before.
        const int wanted = transport_->minimumSizeHint().width() + source_->minimumSizeHint().width();
        if (wanted + controls_->layout()->spacing() <= room) { break; }
    }
}

QSize PlayerView::minimumSizeHint() const {
    return {minWidth, QWidget::minimumSizeHint().height()};
}

void PlayerView::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    fitControls();
}

void PlayerView::changed() {
    stale_ = !isVisible();
    if (!stale_) { refresh(); }
}

void PlayerView::showEvent(QShowEvent* event) {
    if (std::exchange(stale_, false)) { refresh(); }
    QWidget::showEvent(event);
}

void PlayerView::refresh() {
    const auto& info = player_.sound().info();
    stack_->setCurrentWidget(info ? loaded_ : empty_);
    header_->refresh();
    wave_->refresh();
    transport_->refresh();
    source_->refresh();
    fitControls();
    soundfield_->refresh();
    refreshMessage();
}

void PlayerView::refreshMessage() {
    const auto& message = player_.message().text();
    const bool problem = message && player_.message().isProblem();
    const QString role = problem ? "warning" : "";
    if (message_->property("role") != role) {
        message_->setProperty("role", role);
        message_->style()->polish(message_);
    }
    warning_->setVisible(problem);
    message_->setFullText(QString::fromStdString(message.value_or("")));
    const bool extra = std::ranges::any_of(messageExtras_, [](const QWidget* widget) { return !widget->isHidden(); });
    messageRow_->setVisible(message || extra);
}

void PlayerView::movePlayhead() {
    if (!isVisible()) { return; }
    wave_->movePlayhead();
    header_->refreshTime();
}

}  // namespace brindlehum

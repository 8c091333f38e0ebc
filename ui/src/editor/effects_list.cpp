// Rows of a button to listen and a button to apply.
#include "ui/editor/effects_list.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QToolButton>
#include <algorithm>

#include "ui/look/icons.h"

namespace brindlehum {
namespace {

constexpr int widestDescription = 380;  // logical pixels

}  // namespace

EffectsList::EffectsList(EditorModel& editor, const QString& hint, std::vector<Entry> entries, QWidget* parent)
    : QFrame(parent, Qt::Popup), editor_(editor), entries_(std::move(entries)) {
    setObjectName("window");
    setFrameShape(QFrame::StyledPanel);
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(10, 8, 10, 10);
    grid->setHorizontalSpacing(8);
    grid->setVerticalSpacing(3);
    auto* caption = new QLabel(hint);
    caption->setProperty("role", "caption");
    grid->addWidget(caption, 0, 0, 1, 3);
    for (size_t i = 0; i < entries_.size(); ++i) {
        auto* listen = new QToolButton;
        listen->setProperty("role", "flat");
        connect(listen, &QToolButton::clicked, this, [this, i] { hear(i); });
        listen_.push_back(listen);
        auto* apply = new QPushButton(QString(entries_[i].name).replace('&', "&&"));
        apply->setProperty("role", "small");
        apply->setToolTip(entries_[i].description);
        connect(apply, &QPushButton::clicked, this, [this, i] {
            close();
            entries_[i].apply();
        });
        auto* description = new QLabel(entries_[i].description);
        description->setProperty("role", "secondary");
        description->setWordWrap(true);
        description->setFixedWidth(
            std::min(description->fontMetrics().horizontalAdvance(entries_[i].description) + 4, widestDescription));
        const int row = int(i) + 1;
        grid->addWidget(listen, row, 0);
        grid->addWidget(apply, row, 1);
        grid->addWidget(description, row, 2);
    }
    connect(&editor.transport(), &EditorTransport::changed, this, [this] {
        const bool ended = !editor_.transport().isPlaying() || editor_.transport().followsDocument();
        if (heard_ && !editor_.document().isPreviewing() && ended) { heard_.reset(); }
        refresh();
    });
    refresh();
}

std::vector<EffectsList::Entry> EffectsList::effects(DocumentModel& document) {
    std::vector<Entry> out;
    for (const auto& effect : EditOps::effects()) {
        const std::string id = effect.id;
        out.push_back({effect.name, effect.blurb,
                       [&document, id](const DocumentModel::Heard& heard) { document.preview(id, heard); },
                       [&document, id] { document.apply(id); }});
    }
    return out;
}

std::vector<EffectsList::Entry> EffectsList::macros(DocumentModel& document) {
    std::vector<Entry> out;
    for (const MacroInfo& info : brindlehum::macros()) {
        const Macro macro = info.macro;
        out.push_back({info.title, info.tip,
                       [&document, macro](const DocumentModel::Heard& heard) { document.preview(macro, heard); },
                       [&document, macro] { document.run(macro); }});
    }
    return out;
}

// A second click on what is heard ends it.
void EffectsList::hear(size_t entry) {
    const bool ends = heard_ == entry;
    editor_.document().cancelPreview();
    heard_.reset();
    if (!editor_.transport().followsDocument()) { editor_.transport().stop(); }
    if (!ends) {
        heard_ = entry;
        entries_[entry].preview([this](Sound sound) {
            if (sound.frames() == 0) { heard_.reset(); }
            editor_.transport().audition(std::move(sound));
            refresh();
        });
    }
    refresh();
}

void EffectsList::refresh() {
    for (size_t i = 0; i < listen_.size(); ++i) {
        const bool isHeard = heard_ == i;
        const bool isMade = isHeard && editor_.document().isPreviewing();
        listen_[i]->setIcon(symbol(isMade ? "hourglass" : isHeard ? "stop" : "play"));
        const QString text = (isHeard ? tr("Stop %1") : tr("Hear %1")).arg(entries_[i].name);
        listen_[i]->setAccessibleName(text);
        listen_[i]->setToolTip(text);
    }
}

void EffectsList::hideEvent(QHideEvent* event) {
    QFrame::hideEvent(event);
    editor_.document().cancelPreview();
    if (std::exchange(heard_, std::nullopt) && !editor_.transport().followsDocument()) { editor_.transport().stop(); }
    refresh();
}

void EffectsList::showUnder(QWidget& button) {
    adjustSize();
    const QRect screen = button.screen()->availableGeometry();
    QPoint at = button.mapToGlobal(QPoint(0, button.height() + 2));
    at.setX(std::clamp(at.x(), screen.left(), std::max(screen.left(), screen.right() - width())));
    at.setY(std::clamp(at.y(), screen.top(), std::max(screen.top(), screen.bottom() - height())));
    move(at);
    show();
}

}  // namespace brindlehum

// Follows the document's history.
#include "ui/editor/history_list.h"

#include "ui/look/theme.h"

namespace brindlehum {

HistoryList::HistoryList(DocumentModel& document, QWidget* parent) : QListWidget(parent), document_(document) {
    setAccessibleName(tr("History"));
    setAccessibleDescription(tr("The steps of editing, the oldest first. Choose one to go to the sound after it."));
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setTextElideMode(Qt::ElideRight);
    setMinimumHeight(60);
    // By keyboard too; Qt reports no row while a list is filled.
    connect(this, &QListWidget::currentRowChanged, this, [this](int row) {
        if (row >= 0) { document_.goTo(size_t(row)); }
    });
    connect(&document, &DocumentModel::changed, this, &HistoryList::refresh);
    refresh();
}

void HistoryList::changeEvent(QEvent* event) {
    QListWidget::changeEvent(event);
    if (event->type() == QEvent::StyleChange) { refresh(); }
}

void HistoryList::refresh() {
    const EditHistory& history = document_.history();
    const auto names = document_.doc() ? history.names() : std::vector<std::string>();
    const QSignalBlocker quiet(this);
    if (names != shown_) {
        clear();
        for (const auto& name : names) { addItem(name.empty() ? tr("Opened") : QString::fromStdString(name)); }
        shown_ = names;
    }
    for (int row = 0; row < count(); ++row) {
        const bool isUndone = row > int(history.position());
        item(row)->setData(Qt::ForegroundRole, isUndone ? QVariant(QBrush(Theme::current().disabled)) : QVariant());
        item(row)->setToolTip(isUndone                         ? tr("Redo up to here")
                              : row == int(history.position()) ? ""
                                                               : tr("Undo back to here"));
    }
    if (count() > 0 && currentRow() != int(history.position())) {
        setCurrentRow(int(history.position()));
        scrollToItem(currentItem());
    }
    setEnabled(!document_.loading());
}

}  // namespace brindlehum

// The list below a line of the inspector, with entries such as "AMBBird - AMBIENCE / BIRDSONG".
#include "ui/inspector/ucs_completer.h"

#include <QAbstractItemView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QScreen>
#include <QScrollBar>
#include <QStandardItemModel>
#include <QStyledItemDelegate>
#include <algorithm>

namespace brindlehum {
namespace {

constexpr int rowsShown = 12;
constexpr int frame = 4;  // logical pixels

QString rowText(const UCS::Entry& entry) {
    return QString::fromStdString(entry.catID + " - " + entry.category + " / " + entry.subCategory);
}

}  // namespace

UCSCompleter::UCSCompleter(QLineEdit& line, Fitting fitting)
    : QCompleter(&line), line_(line), fitting_(std::move(fitting)), rows_(new QStandardItemModel(this)) {
    setModel(rows_);
    setCompletionMode(QCompleter::UnfilteredPopupCompletion);
    setMaxVisibleItems(rowsShown);
    setWidget(&line);
    popup()->setProperty("role", "completion");
    popup()->setItemDelegate(new QStyledItemDelegate(popup()));     // the usual one takes no padding from a style sheet
    popup()->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);  // it would take a row's height without being shown
    popup()->setAccessibleName(tr("UCS entries"));
    connect(&line, &QLineEdit::textEdited, this,
            [this](const QString& text) { text.trimmed().isEmpty() ? popup()->hide() : list(); });
    connect(this, qOverload<const QModelIndex&>(&QCompleter::activated), this,
            [this](const QModelIndex& index) { Q_EMIT chosen(index.data(Qt::UserRole).toString()); });
}

void UCSCompleter::list() {
    rows_->clear();
    for (const UCS::Entry* entry : fitting_(line_.text())) {
        auto* row = new QStandardItem(rowText(*entry));
        row->setData(QString::fromStdString(entry->catID), Qt::UserRole);
        rows_->appendRow(row);
    }
    if (rows_->rowCount() == 0) { return popup()->hide(); }
    QRect below = line_.rect();
    const int bar = rows_->rowCount() > rowsShown ? popup()->verticalScrollBar()->sizeHint().width() : 0;
    const int wanted = popup()->sizeHintForColumn(0) + bar + frame;
    below.setWidth(std::min(std::max(below.width(), wanted), line_.screen()->availableSize().width()));
    complete(below);
}

bool UCSCompleter::eventFilter(QObject* watched, QEvent* event) {
    const bool isKey = watched == &line_ && event->type() == QEvent::KeyPress;
    if (isKey && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Down && !popup()->isVisible() &&
        !line_.isReadOnly()) {
        list();
        return true;
    }
    return QCompleter::eventFilter(watched, event);
}

}  // namespace brindlehum

// The browser's table: columns, sorting, selection, keys and drag.
#include "ui/browser/browser_table.h"

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLocale>
#include <QMenu>
#include <QMimeData>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <algorithm>

#include "mix/player/drag_out.h"
#include "ui/browser/browser_cell.h"
#include "ui/browser/browser_columns.h"
#include "ui/look/file_drag.h"
#include "ui/look/path_text.h"
#include "ui/look/theme.h"
#include "ui/look/typed_text.h"
#include "ui/player/drag_session.h"

namespace brindlehum {
namespace {

constexpr auto usualFormat = "44.1 kHz · 24-bit · mono";
constexpr int cellMargins = 18;  // logical pixels, as are the next
constexpr int dragTextWidth = 260;
constexpr int dragHeight = 28;

}  // namespace

BrowserTable::BrowserTable(QWidget* parent) : QTreeView(parent) {
    setModel(&model_);
    setItemDelegate(new BrowserCell(this));
    setAccessibleName(tr("Sounds"));
    setRootIsDecorated(false);
    setUniformRowHeights(true);  // keeps a folder of many thousand rows quick
    setAllColumnsShowFocus(true);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setDragEnabled(true);
    setDragDropMode(QAbstractItemView::DragOnly);
    setItemsExpandable(false);
    setTabKeyNavigation(false);
    setTextElideMode(Qt::ElideRight);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    connectHeader();
    connect(this, &QTreeView::doubleClicked, this, [this](const QModelIndex& index) {
        if (index.isValid()) { Q_EMIT activatedEntry(model_.entry(index.row())); }
    });
}

void BrowserTable::connectHeader() {
    auto* head = header();
    head->setStretchLastSection(false);
    head->setSectionsMovable(true);
    head->setFirstSectionMovable(true);
    head->setSortIndicatorClearable(true);
    head->setMinimumSectionSize(40);
    head->setTextElideMode(Qt::ElideRight);
    head->setSortIndicator(BrowserTableModel::unsorted, Qt::AscendingOrder);
    for (int column = BrowserTableModel::firstExtra; column < BrowserTableModel::ColumnCount; ++column) {
        head->hideSection(column);
    }
    head->setContextMenuPolicy(Qt::CustomContextMenu);
    setSortingEnabled(true);
    connect(head, &QHeaderView::customContextMenuRequested, this, &BrowserTable::headMenu);
    connect(head, &QHeaderView::sectionResized, this, [this](int column, int, int width) {
        if (fitting_) { return; }
        fitted_ = false;
        keepMinimum(column, width);
        Q_EMIT columnsChanged();
    });
    connect(head, &QHeaderView::sectionMoved, this, &BrowserTable::columnsChanged);
    connect(head, &QHeaderView::sortIndicatorChanged, this, &BrowserTable::columnsChanged);
}

void BrowserTable::keepMinimum(int column, int width) {
    const int least = BrowserColumns::minimum[size_t(column)];
    if (width == 0 || width >= least) { return; }
    const QScopedValueRollback fitting(fitting_, true);
    header()->resizeSection(column, least);
}

void BrowserTable::fitColumns() {
    const QScopedValueRollback fitting(fitting_, true);
    BrowserColumns::Widths texts;
    for (int column = 0; column < BrowserTableModel::ColumnCount; ++column) {
        texts[size_t(column)] =
            header()->fontMetrics().horizontalAdvance(BrowserTableModel::columnName(column)) + cellMargins;
    }
    int& format = texts[BrowserTableModel::Format];
    format = std::max(format, fontMetrics().horizontalAdvance(usualFormat) + cellMargins);
    std::array<bool, BrowserTableModel::ColumnCount> hidden{};
    for (size_t column = 0; column < hidden.size(); ++column) {
        hidden[column] = header()->isSectionHidden(int(column));
    }
    const auto widths = BrowserColumns::fit(viewport()->width(), texts, hidden);
    for (int column = 0; column < BrowserTableModel::ColumnCount; ++column) {
        header()->resizeSection(column, widths[size_t(column)]);
    }
}

void BrowserTable::resizeEvent(QResizeEvent* event) {
    QTreeView::resizeEvent(event);
    if (fitted_) { fitColumns(); }
}

QByteArray BrowserTable::saveColumns() const {
    // One byte ahead of Qt's own state: whether the widths are ours ("0") or the user's ("1").
    return (fitted_ ? "0" : "1") + header()->saveState();
}

void BrowserTable::restoreColumns(const QByteArray& state) {
    if (state.isEmpty()) { return; }
    const QScopedValueRollback fitting(fitting_, true);
    // The header refuses a state with other columns, as another version may have left.
    if (!header()->restoreState(state.mid(1))) { return; }
    fitted_ = state[0] == '0';
    header()->setSortIndicator(BrowserTableModel::unsorted, Qt::AscendingOrder);
    if (fitted_) { fitColumns(); }
}

void BrowserTable::resetColumns() {
    const QScopedValueRollback fitting(fitting_, true);
    for (int column = 0; column < BrowserTableModel::ColumnCount; ++column) {
        header()->setSectionHidden(column, column >= BrowserTableModel::firstExtra);
        header()->moveSection(header()->visualIndex(column), column);
    }
    fitted_ = true;
    fitColumns();
    Q_EMIT columnsChanged();
}

void BrowserTable::showColumn(int column, bool shown) {
    {
        const QScopedValueRollback fitting(fitting_, true);
        header()->setSectionHidden(column, !shown);
    }
    if (fitted_) { fitColumns(); }
    Q_EMIT columnsChanged();
}

void BrowserTable::fillColumns(QMenu& menu) {
    menu.clear();
    for (int column = BrowserTableModel::Description; column < BrowserTableModel::ColumnCount; ++column) {
        auto* entry = menu.addAction(BrowserTableModel::columnName(column));
        entry->setCheckable(true);
        entry->setChecked(!header()->isSectionHidden(column));
        connect(entry, &QAction::toggled, this, [this, column](bool shown) { showColumn(column, shown); });
    }
    menu.addSeparator();
    menu.addAction(tr("Reset Columns"), this, &BrowserTable::resetColumns);
}

void BrowserTable::headMenu(const QPoint& position) {
    QMenu menu;
    fillColumns(menu);
    menu.exec(header()->mapToGlobal(position));
}

void BrowserTable::sortBy(int column) {
    const auto* head = header();
    const bool again = head->sortIndicatorSection() == column;
    if (again && head->sortIndicatorOrder() == Qt::DescendingOrder) { column = BrowserTableModel::unsorted; }
    sortByColumn(column, again && column >= 0 ? Qt::DescendingOrder : Qt::AscendingOrder);
}

// Keeps the folders' sorting while searching.
void BrowserTable::changeSorting(bool searching) {
    if (searching) {
        folderColumn_ = header()->sortIndicatorSection();
        folderOrder_ = header()->sortIndicatorOrder();
    }
    const bool ranked = searching || folderColumn_ == BrowserTableModel::unsorted;
    sortByColumn(ranked ? BrowserTableModel::unsorted : folderColumn_, ranked ? Qt::AscendingOrder : folderOrder_);
}

void BrowserTable::showEntries(std::vector<BrowserEntry> entries, const BrowserPlace& place,
                               const std::set<std::filesystem::path>& alsoSelect) {
    const bool fresh = place != place_;
    if (place.searching != place_.searching) { changeSorting(place.searching); }
    place_ = place;
    std::set<std::filesystem::path> wanted = alsoSelect;
    for (const auto& entry : selectedEntries()) { wanted.insert(entry.url); }
    const QModelIndex at = currentIndex();
    const auto current = at.isValid() ? model_.entry(at.row()).url : std::filesystem::path();
    const bool inSight = at.isValid() && viewport()->rect().intersects(visualRect(at));
    const int scroll = verticalScrollBar()->value();
    bool reset = false;
    const auto watch = connect(&model_, &QAbstractItemModel::modelReset, this, [&reset] { reset = true; });
    {
        const QScopedValueRollback quiet(quiet_, true);
        model_.setEntries(fresh ? std::move(entries) : model_.inOrderShown(std::move(entries)));
        if (reset || !alsoSelect.empty()) { selectAgain(wanted, current); }
    }
    disconnect(watch);
    if (fresh) {
        scrollToTop();
    } else if (reset) {
        verticalScrollBar()->setValue(scroll);
    }
    if (!fresh && reset && inSight) { scrollTo(currentIndex()); }
    Q_EMIT selectionMoved();
}

// If the current row is gone, the first selected one becomes current.
void BrowserTable::selectAgain(const std::set<std::filesystem::path>& wanted, const std::filesystem::path& current) {
    QItemSelection selection;
    for (int row = 0; !wanted.empty() && row < model_.rowCount(); ++row) {
        if (wanted.contains(model_.entry(row).url)) {
            selection.select(model_.index(row, 0), model_.index(row, BrowserTableModel::ColumnCount - 1));
        }
    }
    const int first = selection.isEmpty() ? -1 : selection.indexes().front().row();
    const int same = model_.rowOf(current);
    if (const int row = same >= 0 ? same : first; row >= 0) {
        selectionModel()->setCurrentIndex(model_.index(row, 0), QItemSelectionModel::NoUpdate);
    }
    selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
}

std::vector<BrowserEntry> BrowserTable::selectedEntries() const {
    std::set<int> selected;
    for (const auto& range : selectionModel()->selection()) {
        for (int row = range.top(); row <= range.bottom(); ++row) { selected.insert(row); }
    }
    std::vector<BrowserEntry> entries;
    entries.reserve(selected.size());
    for (const int row : selected) { entries.push_back(model_.entry(row)); }
    return entries;
}

bool BrowserTable::mark(const std::filesystem::path& url) {
    const int row = model_.rowOf(url);
    if (row < 0) { return false; }
    const QModelIndex index = model_.index(row, 0);
    {
        const QScopedValueRollback quiet(quiet_, true);
        selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    }
    scrollTo(index);
    Q_EMIT selectionMoved();
    return true;
}

void BrowserTable::deselect() {
    {
        const QScopedValueRollback quiet(quiet_, true);
        clearSelection();
    }
    Q_EMIT selectionMoved();
}

void BrowserTable::selectFirst() {
    if (model_.rowCount() > 0) {
        selectionModel()->setCurrentIndex(model_.index(0, 0),
                                          QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    }
}

void BrowserTable::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
    QTreeView::selectionChanged(selected, deselected);
    if (quiet_) { return; }
    Q_EMIT chosen();
    Q_EMIT selectionMoved();
}

bool BrowserTable::handleKey(const QKeyEvent& event) {
    const bool plain = (event.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    if (!plain) { return false; }
    switch (event.key()) {
        case Qt::Key_Space:
            if (!event.isAutoRepeat()) { Q_EMIT togglePlay(); }
            return true;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            if (const auto entries = selectedEntries(); !entries.empty()) { Q_EMIT activatedEntry(entries.front()); }
            return true;
        case Qt::Key_Down:
        case Qt::Key_Up:
            // The focus alone makes a row current without selecting it: the first arrow selects that one.
            if (model_.rowCount() == 0 || !selectedEntries().empty()) { return false; }
            if (!currentIndex().isValid()) { setCurrentIndex(model_.index(0, 0)); }
            selectionModel()->select(currentIndex(), QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
            return true;
        case Qt::Key_Backspace:
            Q_EMIT goUp();
            return true;
        default:
            return false;
    }
}

void BrowserTable::keyPressEvent(QKeyEvent* event) {
    if (handleKey(*event)) { return event->accept(); }
    if (const QString text = typedText(*event); !text.isEmpty()) {
        Q_EMIT typed(text);
        return event->accept();
    }
    QTreeView::keyPressEvent(event);
}

void BrowserTable::contextMenuEvent(QContextMenuEvent* event) {
    if (selectionModel()->selection().isEmpty()) { return; }
    // The menu key reports no useful position: open the menu at the current row.
    const bool byKey = event->reason() == QContextMenuEvent::Keyboard;
    const QPoint at = byKey ? viewport()->mapToGlobal(visualRect(currentIndex()).bottomLeft()) : event->globalPos();
    Q_EMIT menuAsked(at);
}

QPixmap dragPicture(const std::vector<BrowserEntry>& entries, const QString& form, const QFont& font, double dpr) {
    if (entries.empty()) { return {}; }
    const Theme& theme = Theme::current();
    const QFontMetrics metrics(font);
    const QString what =
        entries.size() == 1
            ? metrics.elidedText(pathText(entries.front().url.filename()), Qt::ElideMiddle, dragTextWidth)
            : BrowserTable::tr("%1 items").arg(QLocale().toString(static_cast<qulonglong>(entries.size())));
    const QString text = form.isEmpty() ? what : what + " · " + form;
    const QSize size(metrics.horizontalAdvance(text) + 24, dragHeight);
    QPixmap picture(size * dpr);
    picture.setDevicePixelRatio(dpr);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(theme.accent);
    painter.setBrush(theme.accentGround);
    painter.drawRoundedRect(QRectF(QPointF(), size).adjusted(0.5, 0.5, -0.5, -0.5), 6, 6);
    painter.setFont(font);
    painter.setPen(theme.text);
    painter.drawText(QRect(QPoint(), size), Qt::AlignCenter, text);
    return picture;
}

void BrowserTable::startDrag(Qt::DropActions /*actions*/) {
    const auto entries = selectedEntries();
    if (entries.empty()) { return; }
    std::vector<std::filesystem::path> files;
    for (const auto& entry : entries) { files.push_back(entry.url); }
    const bool asForm = forms_ && forms_->dragExport() != DragExport::original();
    const QString form = asForm ? QString::fromStdString(forms_->formName(forms_->dragExport())) : QString();
    const FileDrag::Picture picture{dragPicture(entries, form, font(), devicePixelRatioF()), {-12, dragHeight / 2}};
    if (asForm) { return dragForms(*forms_, files, this, picture); }
    FileDrag::run(this, std::unique_ptr<QMimeData>(FileDrag::mimeData(files)), picture);
}

}  // namespace brindlehum

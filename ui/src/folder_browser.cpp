#include "ui/folder_browser.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>
#include <QStackedLayout>
#include <QToolButton>
#include <QTreeView>
#include <QVBoxLayout>

#include "ui/file_drag.h"
#include "ui/icons.h"

namespace brindlehum {

FolderBrowser::FolderBrowser(QWidget* parent) : QWidget(parent) {
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(16, 8, 16, 8);
    all->setSpacing(8);
    all->addWidget(makePathBar());
    makeList();
    state_ = new QLabel;
    state_->setProperty("role", "empty");
    state_->setAlignment(Qt::AlignCenter);
    state_->setWordWrap(true);
    state_->setTextFormat(Qt::PlainText);
    auto* area = new QWidget;
    stack_ = new QStackedLayout(area);
    stack_->setStackingMode(QStackedLayout::StackAll);
    stack_->addWidget(list_);
    stack_->addWidget(state_);
    state_->setAttribute(Qt::WA_TransparentForMouseEvents);
    stack_->setCurrentWidget(state_);
    all->addWidget(area, 1);
    count_ = new QLabel;
    count_->setProperty("role", "secondary");
    all->addWidget(count_);
    connect(&model_, &FolderModel::arrived, this, &FolderBrowser::showState);
    // A listing that is read anew keeps the mark where it was.
    connect(&model_, &FolderModel::modelAboutToBeReset, this, [this] {
        const QModelIndex current = list_->currentIndex();
        if (!quiet_ && !wanted_ && current.isValid()) wanted_ = model_.path(current.row());
    });
}

QWidget* FolderBrowser::makePathBar() {
    auto* bar = new QWidget;
    auto* row = new QHBoxLayout(bar);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(8);
    up_ = new QToolButton;
    up_->setIcon(symbol("up"));
    up_->setToolTip("Enclosing folder (Backspace)");
    up_->setAccessibleName("Enclosing folder");
    up_->setFocusPolicy(Qt::StrongFocus);
    connect(up_, &QToolButton::clicked, this, &FolderBrowser::goUp);
    path_ = new QLineEdit;
    path_->setAccessibleName("Folder path");
    connect(path_, &QLineEdit::returnPressed, this, &FolderBrowser::goToTyped);
    auto* open = new QPushButton("Open Folder…");
    connect(open, &QPushButton::clicked, this, &FolderBrowser::openFolderAsked);
    row->addWidget(up_);
    row->addWidget(path_, 1);
    row->addWidget(open);
    return bar;
}

void FolderBrowser::makeList() {
    list_ = new QTreeView;
    list_->setModel(&model_);
    list_->setAccessibleName("Files");
    list_->setRootIsDecorated(false);
    list_->setUniformRowHeights(true);  // keeps a folder of many thousand rows quick
    list_->setAllColumnsShowFocus(true);
    list_->setSortingEnabled(true);
    list_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    list_->setDragEnabled(true);
    list_->setDragDropMode(QAbstractItemView::DragOnly);
    list_->setItemsExpandable(false);
    list_->setTabKeyNavigation(false);
    list_->installEventFilter(this);
    auto* header = list_->header();
    header->setStretchLastSection(false);
    header->setSectionResizeMode(FolderModel::Name, QHeaderView::Stretch);
    header->setSectionsMovable(false);
    header->resizeSection(FolderModel::Kind, 90);
    header->resizeSection(FolderModel::Size, 110);
    header->resizeSection(FolderModel::Modified, 170);
    header->setSortIndicator(FolderModel::Name, Qt::AscendingOrder);
    connect(header, &QHeaderView::sectionResized, this, &FolderBrowser::columnsChanged);
    connect(header, &QHeaderView::sortIndicatorChanged, this, &FolderBrowser::columnsChanged);
    connect(list_, &QTreeView::activated, this, &FolderBrowser::enter);
    connect(list_->selectionModel(), &QItemSelectionModel::currentRowChanged, this, &FolderBrowser::moved);
}

void FolderBrowser::sortBy(int column) {
    const auto* header = list_->header();
    const bool turn = header->sortIndicatorSection() == column && header->sortIndicatorOrder() == Qt::AscendingOrder;
    list_->sortByColumn(column, turn ? Qt::DescendingOrder : Qt::AscendingOrder);
}

QByteArray FolderBrowser::saveColumns() const {
    return list_->header()->saveState();
}

void FolderBrowser::restoreColumns(const QByteArray& state) {
    if (!state.isEmpty()) list_->header()->restoreState(state);
    list_->header()->setSectionResizeMode(FolderModel::Name, QHeaderView::Stretch);
}

void FolderBrowser::setFolder(const std::filesystem::path& path) {
    const auto normal = path.lexically_normal();
    const auto folder = normal.has_filename() || !normal.has_relative_path() ? normal : normal.parent_path();
    wanted_.reset();
    quiet_ = true;
    model_.setFolder(folder);
    quiet_ = false;
    path_->setText(FileDrag::toText(folder));
    up_->setEnabled(folder.has_relative_path());
    showState();
    Q_EMIT folderChanged();
}

void FolderBrowser::reveal(const std::filesystem::path& file) {
    if (file.parent_path() != folder()) setFolder(file.parent_path());
    wanted_ = file;
    if (!model_.isReading()) showState();
}

void FolderBrowser::goUp() {
    const auto from = folder();
    if (!from.has_relative_path()) return;
    setFolder(from.parent_path());
    wanted_ = from;
}

void FolderBrowser::goToTyped() {
    const auto typed = FileDrag::toPath(path_->text().trimmed());
    std::error_code error;
    if (std::filesystem::is_regular_file(typed, error)) {
        reveal(typed);
        Q_EMIT fileChosen(typed);
    } else if (typed.is_absolute()) {
        setFolder(typed);
    } else {
        path_->setText(FileDrag::toText(folder()));
    }
    list_->setFocus();
}

void FolderBrowser::enter(const QModelIndex& index) {
    if (!index.isValid()) return;
    if (model_.entry(index.row()).isFolder)
        setFolder(model_.path(index.row()));
    else
        Q_EMIT fileChosen(model_.path(index.row()));
}

void FolderBrowser::moved(const QModelIndex& current) {
    // Focus alone makes a row current too, and must not play it.
    const bool chosen = !quiet_ && current.isValid() && list_->selectionModel()->isRowSelected(current.row());
    if (!chosen || model_.entry(current.row()).isFolder) return;
    Q_EMIT fileChosen(model_.path(current.row()));
}

void FolderBrowser::selectRow(int row) {
    quiet_ = true;
    const QModelIndex index = model_.index(row, 0);
    list_->selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    list_->scrollTo(index);
    quiet_ = false;
}

void FolderBrowser::showState() {
    QString text;
    if (model_.isReading() && model_.rowCount() == 0)
        text = "Reading the folder…";
    else if (!model_.error().empty())
        text = "Can't read this folder: " + QString::fromStdString(model_.error());
    else if (model_.rowCount() == 0)
        text = "No folders or audio files here";
    state_->setText(text);
    state_->setVisible(!text.isEmpty());
    int folders = 0;
    for (int row = 0; row < model_.rowCount(); ++row) folders += model_.entry(row).isFolder ? 1 : 0;
    const int files = model_.rowCount() - folders;
    const QLocale locale;
    count_->setText(QString("%1 %2, %3 %4")
                        .arg(locale.toString(folders), folders == 1 ? "folder" : "folders", locale.toString(files),
                             files == 1 ? "audio file" : "audio files"));
    if (model_.isReading() || !wanted_) return;
    const int row = model_.rowOf(*wanted_);
    wanted_.reset();
    if (row >= 0) selectRow(row);
}

bool FolderBrowser::handleKey(int key, bool repeated) {
    switch (key) {
        case Qt::Key_Space:
            // A Space that begins no name plays, as everywhere in the window.
            if (!repeated) Q_EMIT togglePlay();
            return true;
        case Qt::Key_Backspace:
            goUp();
            return true;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            enter(list_->currentIndex());
            return true;
        default:
            return false;
    }
}

bool FolderBrowser::eventFilter(QObject* watched, QEvent* event) {
    if (watched == list_ && event->type() == QEvent::KeyPress) {
        const auto* key = static_cast<QKeyEvent*>(event);
        if (key->modifiers() == Qt::NoModifier || key->modifiers() == Qt::KeypadModifier)
            if (handleKey(key->key(), key->isAutoRepeat())) return true;
    }
    return QWidget::eventFilter(watched, event);
}

}  // namespace brindlehum

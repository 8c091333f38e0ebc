// The browser's bar: builds its two rows and keeps them in step with the library.
#include "ui/browser/browser_bar.h"

#include <QAction>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

#include "library/model/folder_listing.h"
#include "library/model/library_search.h"
#include "ui/browser/browser_state.h"
#include "ui/browser/filter_chip.h"
#include "ui/look/elided_label.h"
#include "ui/look/icons.h"
#include "ui/look/path_text.h"

namespace brindlehum {
namespace {

constexpr int filterRowHeight = 30;  // logical pixels; the same with chips and without, so that nothing jumps

QToolButton* iconButton(const QString& icon, const QString& name, const QString& toolTip) {
    auto* button = new QToolButton;
    button->setIcon(symbol(icon));
    button->setAccessibleName(name);
    button->setToolTip(toolTip);
    button->setProperty("role", "flat");
    button->setFocusPolicy(Qt::StrongFocus);
    return button;
}

}  // namespace

BrowserBar::BrowserBar(FolderListing& listing, LibrarySearch& search, QWidget* parent)
    : QWidget(parent), listing_(listing), search_(search) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(2);
    column->addWidget(makeFieldRow());
    column->addWidget(makeFilterRow());
    connect(&search, &LibrarySearch::filterChanged, this, &BrowserBar::refresh);
    connect(&listing, &FolderListing::entriesChanged, this, &BrowserBar::refresh);
    refresh();
}

QWidget* BrowserBar::makeFieldRow() {
    auto* bar = new QWidget;
    auto* row = new QHBoxLayout(bar);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(8);
    row->addWidget(up_ = iconButton("up", tr("Enclosing folder"), tr("Enclosing folder")));
    connect(up_, &QToolButton::clicked, &listing_, &FolderListing::goUp);
    row->addWidget(field_ = new QLineEdit, 1);
    field_->setProperty("role", "search");
    field_->setPlaceholderText(tr("Search sounds, descriptions, keywords  (-word excludes)"));
    field_->setToolTip(
        tr("Each word is the beginning of a word, and all must match.\n"
           "-word  excludes\n"
           "wood OR metal  finds either\n"
           "\"wet street\"  finds a phrase\n"
           "keywords:metal  looks in one field: name, folder, keywords, description, category, …"));
    field_->setAccessibleName(tr("Search"));
    field_->addAction(symbol("search", SymbolRole::secondary), QLineEdit::LeadingPosition);
    clearText_ = field_->addAction(symbol("clear-fill", SymbolRole::secondary), QLineEdit::TrailingPosition);
    clearText_->setToolTip(tr("Clear the search (Esc)"));
    connect(clearText_, &QAction::triggered, field_, &QLineEdit::clear);
    connect(field_, &QLineEdit::textChanged, this, [this](const QString& text) {
        clearText_->setVisible(!text.isEmpty());
        search_.setQuery(text.toStdString());
    });
    clearText_->setVisible(false);
    field_->installEventFilter(this);
    row->addWidget(inspector_ = iconButton("inspector", tr("Metadata inspector"), tr("Metadata inspector")));
    inspector_->setCheckable(true);
    return bar;
}

QWidget* BrowserBar::makeFilterRow() {
    auto* bar = new QWidget;
    bar->setFixedHeight(filterRowHeight);
    auto* row = new QHBoxLayout(bar);
    row->setContentsMargins(8, 0, 0, 0);
    row->setSpacing(8);
    row->addWidget(folder_ = new ElidedLabel(Qt::ElideMiddle), 100);
    folder_->setProperty("role", "secondary");
    row->addWidget(count_ = new QLabel);
    count_->setProperty("role", "secondary");
    row->addWidget(category_ = new FilterChip(tr("Clear category %1")));
    row->addWidget(libraryChip_ = new FilterChip(tr("Clear library %1")));
    row->addStretch(1);
    row->addWidget(clearAll_ = new QPushButton(tr("Clear Search")));
    clearAll_->setProperty("role", "small");
    clearAll_->setToolTip(tr("Takes the words and every filter off"));
    connect(category_, &FilterChip::cleared, this, [this] { search_.setCategory(std::nullopt); });
    connect(libraryChip_, &FilterChip::cleared, this, [this] { search_.setLibraryFilter(std::nullopt); });
    connect(clearAll_, &QPushButton::clicked, this, [this] {
        search_.clearFilters();
        Q_EMIT backToRows();
    });
    return bar;
}

void BrowserBar::refresh() {
    const QString query = QString::fromStdString(search_.query());
    if (field_->text() != query) { field_->setText(query); }
    const bool searching = search_.isSearching();
    category_->setValue(QString::fromStdString(search_.category().value_or("")));
    libraryChip_->setValue(QString::fromStdString(search_.libraryFilter().value_or("")));
    clearAll_->setVisible(searching);
    folder_->setVisible(!searching);
    const auto& folder = listing_.folder();
    folder_->setFullText(folder ? pathText(*folder) : QString());
    // While searching, the folder isn't on screen, so there is no way up from it.
    up_->setEnabled(!searching && folder && folder->has_relative_path());
}

void BrowserBar::showState(const BrowserState& state) {
    count_->setText(state.count);
    count_->setToolTip(state.countHint);
}

void BrowserBar::type(const QString& text) {
    field_->setFocus(Qt::OtherFocusReason);
    field_->end(false);
    field_->insert(text);
}

bool BrowserBar::eventFilter(QObject* watched, QEvent* event) {
    if (watched != field_ || event->type() != QEvent::KeyPress) { return QWidget::eventFilter(watched, event); }
    switch (static_cast<QKeyEvent*>(event)->key()) {
        case Qt::Key_Escape:
            field_->clear();
            Q_EMIT backToRows();
            return true;
        case Qt::Key_Down:
        case Qt::Key_Return:
        case Qt::Key_Enter:
            Q_EMIT downAsked();
            return true;
        default:
            return QWidget::eventFilter(watched, event);
    }
}

}  // namespace brindlehum

// Contents, page and search.
#include "ui/window/manual_window.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QShortcut>
#include <QSignalBlocker>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>

#include "ui/look/icons.h"
#include "ui/look/screen_fit.h"
#include "ui/window/manual_browser.h"

namespace brindlehum {
namespace {

constexpr QSize usualSize(1040, 760);  // logical pixels
constexpr int contentsWidth = 200;
constexpr int rowHeight = 30;

QToolButton* makeButton(const QString& icon, const QString& name) {
    auto* button = new QToolButton;
    setSymbol(*button, icon);
    button->setToolTip(name);
    button->setAccessibleName(name);
    return button;
}

}  // namespace

ManualWindow::ManualWindow()
    : pages_(manualPages()), contents_(new QListWidget), browser_(new ManualBrowser), search_(makeSearch()) {
    setObjectName("window");
    setWindowTitle(tr("Manual"));
    setAttribute(Qt::WA_StyledBackground);
    contents_->setAccessibleName(tr("Contents"));
    contents_->setFixedWidth(contentsWidth);
    for (const ManualPage& page : pages_) {
        auto* entry = new QListWidgetItem(page.title, contents_);
        entry->setSizeHint(QSize(0, rowHeight));
    }
    connect(contents_, &QListWidget::currentRowChanged, this, [this](int row) {
        if (row >= 0) { go(pages_[row].url); }
    });
    connect(browser_, &ManualBrowser::pageAsked, this, &ManualWindow::go);

    auto* column = new QVBoxLayout;
    column->setSpacing(0);
    column->addWidget(browser_, 1);
    column->addWidget(search_);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(8, 8, 8, 8);
    row->addWidget(contents_);
    row->addLayout(column, 1);
    resize(fittingSize(*this, usualSize));
    connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, this, &ManualWindow::openSearch);
    connect(new QShortcut(QKeySequence("Ctrl+W"), this), &QShortcut::activated, this, &QWidget::close);
    contents_->setCurrentRow(0);
    contents_->setFocus();
}

QWidget* ManualWindow::makeSearch() {
    auto* bar = new QWidget;
    auto* row = new QHBoxLayout(bar);
    row->setContentsMargins(28, 8, 8, 0);
    words_ = new QLineEdit;
    words_->setProperty("role", "search");
    words_->setPlaceholderText(tr("Find on this page"));
    words_->setAccessibleName(tr("Find on this page"));
    words_->setMaximumWidth(320);
    count_ = new QLabel;
    count_->setProperty("role", "secondary");
    auto* previous = makeButton("chevron-up-dark", tr("Previous (Shift+Return)"));
    auto* next = makeButton("chevron-down-dark", tr("Next (Return)"));
    auto* close = makeButton("clear", tr("Close (Esc)"));
    row->addWidget(words_, 1);
    row->addWidget(previous);
    row->addWidget(next);
    row->addWidget(count_, 1);
    row->addWidget(close);
    connect(words_, &QLineEdit::textChanged, this, [this] {
        QTextCursor start = browser_->textCursor();
        start.setPosition(start.selectionStart());
        browser_->setTextCursor(start);
        find(false);
    });
    connect(previous, &QToolButton::clicked, this, [this] { find(true); });
    connect(next, &QToolButton::clicked, this, [this] { find(false); });
    connect(close, &QToolButton::clicked, this, &ManualWindow::closeSearch);
    bar->hide();
    return bar;
}

void ManualWindow::go(const QUrl& url) {
    const QUrl page = url.isRelative() ? browser_->document()->baseUrl().resolved(url) : url;
    const auto found = std::ranges::find(pages_, page, &ManualPage::url);
    if (found == pages_.end()) { return; }
    const QSignalBlocker quiet(contents_);
    contents_->setCurrentRow(int(found - pages_.begin()));
    browser_->showPage(page);
    if (!search_->isHidden()) { find(false); }
}

void ManualWindow::openSearch() {
    search_->show();
    words_->setFocus();
    words_->selectAll();
    find(false);
}

void ManualWindow::closeSearch() {
    search_->hide();
    browser_->find({}, false);
    browser_->setFocus();
}

void ManualWindow::find(bool backward) {
    const int found = browser_->find(words_->text(), backward);
    count_->setText(words_->text().isEmpty() ? QString()
                    : found == 0             ? tr("Not on this page")
                    : found == 1             ? tr("1 place")
                                             : tr("%1 places").arg(found));
}

void ManualWindow::keyPressEvent(QKeyEvent* event) {
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isReturn && words_->hasFocus()) {
        find(event->modifiers().testFlag(Qt::ShiftModifier));
    } else if (event->key() == Qt::Key_Escape) {
        search_->isHidden() ? void(close()) : closeSearch();
    } else {
        QWidget::keyPressEvent(event);
    }
}

}  // namespace brindlehum

// BrowserBar: the button to the enclosing folder, the search field, and below them the folder or the filters.
#pragma once

#include <QWidget>

class QAction;
class QLabel;
class QLineEdit;
class QPushButton;
class QToolButton;

namespace brindlehum {

class ElidedLabel;
class FilterChip;
class FolderListing;
class LibrarySearch;
struct BrowserState;

class BrowserBar : public QWidget {
    Q_OBJECT
public:
    BrowserBar(FolderListing& listing, LibrarySearch& search, QWidget* parent = nullptr);

    QLineEdit& field() { return *field_; }
    QToolButton& inspectorToggle() { return *inspector_; }
    void showState(const BrowserState& state);
    // Appends text that was typed elsewhere to the query.
    void type(const QString& text);

Q_SIGNALS:
    // Move the focus to the rows; select the first row if none is selected.
    void downAsked();
    void backToRows();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget* makeFieldRow();
    QWidget* makeFilterRow();
    void refresh();

    FolderListing& listing_;
    LibrarySearch& search_;
    QToolButton* up_;
    QLineEdit* field_;
    QAction* clearText_;
    QToolButton* inspector_;
    ElidedLabel* folder_;
    QLabel* count_;
    FilterChip* category_;
    FilterChip* libraryChip_;
    QPushButton* clearAll_;
};

}  // namespace brindlehum

// BrowserBar: the button to the enclosing folder, the search field, and below them the folder or the filters.
#pragma once

#include <QWidget>

class QLabel;
class QLineEdit;
class QPushButton;
class QToolButton;

#include "library/model/library_model.h"

namespace brindlehum {

class ElidedLabel;
class FilterChip;
struct BrowserState;

class BrowserBar : public QWidget {
    Q_OBJECT
public:
    explicit BrowserBar(LibraryModel& library, QWidget* parent = nullptr);

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

    LibraryModel& library_;
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

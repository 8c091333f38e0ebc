// BrowserBar: the way up, the search field, and under them where one is or what is searched for.
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
    // A letter typed elsewhere goes on with the query.
    void type(const QString& text);

Q_SIGNALS:
    // To the rows, with the first of them selected when none is.
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

// UCSCompleter: the entries of the UCS list that fit what is typed in a line, in a list below it.
#pragma once

#include <QCompleter>
#include <functional>
#include <vector>

#include "library/meta/ucs.h"

class QLineEdit;
class QStandardItemModel;

namespace brindlehum {

// Lists entries as the user types or presses Down, and never changes the line: what is typed stays until an entry is
// chosen, and need not be in the list.
class UCSCompleter : public QCompleter {
    Q_OBJECT
public:
    // `fitting` returns the entries for a typed text, the best first.
    using Fitting = std::function<std::vector<const UCS::Entry*>(const QString& typed)>;
    UCSCompleter(QLineEdit& line, Fitting fitting);
    // Lists the entries for the line's text; all of them if it has none.
    void list();

Q_SIGNALS:
    void chosen(const QString& catID);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QLineEdit& line_;
    Fitting fitting_;
    QStandardItemModel* rows_;
};

}  // namespace brindlehum

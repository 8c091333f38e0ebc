// BrowserTable: the browser's rows on screen, with the keys, the drag and the column memory.
#pragma once

#include <QTreeView>
#include <filesystem>
#include <set>
#include <vector>

#include "ui/browser/browser_place.h"
#include "ui/browser/browser_table_model.h"

class QMenu;

namespace brindlehum {

class DragOut;

class BrowserTable : public QTreeView {
    Q_OBJECT
public:
    explicit BrowserTable(QWidget* parent = nullptr);

    BrowserTableModel& rows() { return model_; }
    // Shows other rows and keeps what is selected as far as it is among them, along with `alsoSelect`; none of it is
    // announced as the user's choice. Another place is shown from its top. Folders keep the sorting that the user gave
    // them; every search begins ranked.
    void showEntries(std::vector<BrowserEntry> entries, const BrowserPlace& place,
                     const std::set<std::filesystem::path>& alsoSelect = {});
    const BrowserPlace& place() const { return place_; }  // of the rows shown
    std::vector<BrowserEntry> selectedEntries() const;    // in the order of the rows
    // Selects one row without announcing it; false when it isn't shown.
    bool mark(const std::filesystem::path& url);
    // Selects nothing, without announcing it as the user's choice.
    void deselect();
    void selectFirst();  // as the user would
    // As a click on this column's head: up, down, then back to the order as given.
    void sortBy(int column);

    // Rows then leave in the form that is chosen there; without, as they are.
    void setDragForms(DragOut* forms) { forms_ = forms; }

    // Widths and order of the columns; the sorting isn't part of it.
    QByteArray saveColumns() const;
    void restoreColumns(const QByteArray& state);
    void resetColumns();
    // Replaces the menu's entries with the columns to show or hide.
    void fillColumns(QMenu& menu);

Q_SIGNALS:
    // The user has changed what is selected.
    void chosen();
    // The selection has changed, by the user or otherwise.
    void selectionMoved();
    void activatedEntry(const brindlehum::BrowserEntry& entry);
    void togglePlay();
    void goUp();
    void typed(const QString& text);
    void columnsChanged();
    void menuAsked(const QPoint& globalPosition);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void startDrag(Qt::DropActions actions) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;

private:
    void connectHeader();
    void showColumn(int column, bool shown);
    void headMenu(const QPoint& position);
    void fitColumns();
    void keepMinimum(int column, int width);
    void selectAgain(const std::set<std::filesystem::path>& wanted, const std::filesystem::path& current);
    void changeSorting(bool searching);
    bool handleKey(const QKeyEvent& event);

    BrowserTableModel model_;
    BrowserPlace place_;
    int folderColumn_ = BrowserTableModel::unsorted;  // the sorting of folders, while searching
    Qt::SortOrder folderOrder_ = Qt::AscendingOrder;
    bool fitted_ = true;    // no width has been set by the user
    bool fitting_ = false;  // widths are being set by us
    DragOut* forms_ = nullptr;
    bool quiet_ = false;  // a selection is being set by us
};

// The picture under the pointer during a drag: the file's name, or the number of files, and their form if it isn't
// empty.
QPixmap dragPicture(const std::vector<BrowserEntry>& entries, const QString& form, const QFont& font, double dpr);

}  // namespace brindlehum

// BrowserTableModel: the rows of the browser, folders and sounds, as a sortable table.
#pragma once

#include <QAbstractTableModel>
#include <functional>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "library/model/browser_entry.h"

namespace brindlehum {

// Main thread. Rows keep the order in which they are given (ranked, for search results) until sort() is called.
class BrowserTableModel : public QAbstractTableModel {
    Q_OBJECT
public:
    enum Column {
        Name,
        Description,
        Category,
        Library,
        Length,
        Format,
        Keywords,
        Rating,
        Folder,
        Modified,
        ColumnCount
    };
    // Columns from here on are hidden until the user shows them.
    static constexpr int firstExtra = Keywords;
    static constexpr int unsorted = -1;

    explicit BrowserTableModel(QObject* parent = nullptr) : QAbstractTableModel(parent) {}

    // The same files in the same order change in place; others reset the table.
    void setEntries(std::vector<BrowserEntry> entries);
    // Returns `entries` in the order of the rows shown if they are the same files: an edit may change their ranking,
    // but must not move rows under the user.
    std::vector<BrowserEntry> inOrderShown(std::vector<BrowserEntry> entries) const;
    const BrowserEntry& entry(int row) const;
    int rowOf(const std::filesystem::path& url) const;  // -1 when it isn't shown
    // Fills the cells of a sound that its catalog row leaves empty.
    void setInfo(const std::filesystem::path& url, const AudioFileInfo& info);
    // Called once for a sound whose unknown length is shown. Returns its probe, or null if setInfo() brings it later.
    std::function<const AudioFileInfo*(const std::filesystem::path& url)> askInfo;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    // `unsorted` goes back to the order as given.
    void sort(int column, Qt::SortOrder order) override;
    QStringList mimeTypes() const override { return {"text/uri-list"}; }
    QMimeData* mimeData(const QModelIndexList& indexes) const override;
    Qt::DropActions supportedDragActions() const override { return Qt::CopyAction; }

    static QString columnName(int column);

private:
    const AudioFileInfo* info(const BrowserEntry& entry) const;
    void ask(const BrowserEntry& entry) const;
    QString text(const BrowserEntry& entry, int column) const;
    QString infoText(const BrowserEntry& entry, int column) const;
    std::vector<int> makeOrder() const;
    double numberOf(const BrowserEntry& entry) const;
    bool sameFiles(const std::vector<BrowserEntry>& entries) const;

    std::vector<BrowserEntry> entries_;  // as given
    std::vector<int> order_;             // of the rows: places into entries_
    int column_ = unsorted;
    Qt::SortOrder direction_ = Qt::AscendingOrder;
    // By path; filled as rows are shown.
    mutable std::unordered_map<std::string, AudioFileInfo> infos_;
    mutable std::unordered_set<std::string> asked_;
};

}  // namespace brindlehum

// FolderModel: the listing of one folder as a table, read in the background and kept up to date.
#pragma once

#include <QAbstractTableModel>
#include <QFileSystemWatcher>
#include <QTimer>
#include <memory>

#include "platform/task_queues.h"
#include "ui/folder_listing.h"

namespace brindlehum {

// Main thread. A folder on a slow disk never blocks it; of two quick changes of folder only the last one arrives.
class FolderModel : public QAbstractTableModel {
    Q_OBJECT
public:
    enum Column { Name, Kind, Size, Modified, ColumnCount };

    explicit FolderModel(QObject* parent = nullptr);
    ~FolderModel() override;

    void setFolder(const std::filesystem::path& folder);
    const std::filesystem::path& folder() const { return folder_; }
    bool isReading() const { return reading_; }
    const std::string& error() const { return error_; }
    const FolderEntry& entry(int row) const { return entries_[static_cast<size_t>(row)]; }
    std::filesystem::path path(int row) const;
    int rowOf(const std::filesystem::path& path) const;  // -1 when it isn't shown

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    void sort(int column, Qt::SortOrder order) override;
    QStringList mimeTypes() const override;
    QMimeData* mimeData(const QModelIndexList& indexes) const override;
    Qt::DropActions supportedDragActions() const override { return Qt::CopyAction; }

Q_SIGNALS:
    // The listing has been read, or can't be; emitted for a change on the disk too.
    void arrived();

private:
    void read();
    void take(FolderListing listing);
    void sortEntries(std::vector<FolderEntry>& entries) const;
    QString text(const FolderEntry& entry, int column) const;

    std::filesystem::path folder_;
    std::vector<FolderEntry> entries_;
    std::string error_;
    bool reading_ = false;
    int column_ = Name;
    Qt::SortOrder order_ = Qt::AscendingOrder;
    int generation_ = 0;  // of the newest read
    QFileSystemWatcher watcher_;
    QTimer settle_;  // gathers a burst of changes into one read
    std::unique_ptr<SerialQueue> queue_;
};

}  // namespace brindlehum

#include "ui/folder_model.h"

#include <QDateTime>
#include <QLocale>
#include <QMimeData>
#include <QSet>
#include <algorithm>

#include "ui/file_drag.h"
#include "ui/icons.h"

namespace brindlehum {
namespace {

constexpr int settleMs = 300;

// Folders stay ahead of files whichever way the rest is sorted.
bool before(const FolderEntry& a, const FolderEntry& b, int column, bool ascending) {
    if (a.isFolder != b.isFolder) return a.isFolder;
    const FolderEntry& low = ascending ? a : b;
    const FolderEntry& high = ascending ? b : a;
    switch (column) {
        case FolderModel::Kind:
            if (low.kind != high.kind) return low.kind < high.kind;
            break;
        case FolderModel::Size:
            if (low.bytes != high.bytes) return low.bytes < high.bytes;
            break;
        case FolderModel::Modified:
            if (low.modified != high.modified) return low.modified < high.modified;
            break;
        default:
            return low.order < high.order;
    }
    return a.order < b.order;
}

}  // namespace

FolderModel::FolderModel(QObject* parent)
    : QAbstractTableModel(parent), queue_(std::make_unique<SerialQueue>("Brindlehum.folder")) {
    settle_.setSingleShot(true);
    settle_.setInterval(settleMs);
    connect(&settle_, &QTimer::timeout, this, &FolderModel::read);
    connect(&watcher_, &QFileSystemWatcher::directoryChanged, this, [this] { settle_.start(); });
}

FolderModel::~FolderModel() {
    // Joins the thread while what its job refers to is still whole.
    queue_.reset();
}

void FolderModel::setFolder(const std::filesystem::path& folder) {
    if (!watcher_.directories().isEmpty()) watcher_.removePaths(watcher_.directories());
    beginResetModel();
    folder_ = folder;
    entries_.clear();
    error_.clear();
    endResetModel();
    watcher_.addPath(FileDrag::toText(folder));
    read();
}

void FolderModel::read() {
    reading_ = true;
    const int generation = ++generation_;
    queue_->async([this, generation, folder = folder_] {
        auto listing = std::make_shared<FolderListing>(listFolder(folder));
        QMetaObject::invokeMethod(
            this,
            [this, generation, listing] {
                if (generation == generation_) take(std::move(*listing));
            },
            Qt::QueuedConnection);
    });
}

void FolderModel::take(FolderListing listing) {
    reading_ = false;
    error_ = listing.error;
    sortEntries(listing.entries);
    if (listing.entries != entries_) {
        beginResetModel();
        entries_ = std::move(listing.entries);
        endResetModel();
    }
    Q_EMIT arrived();
}

std::filesystem::path FolderModel::path(int row) const {
    return folder_ / FileDrag::toPath(entry(row).name);
}

int FolderModel::rowOf(const std::filesystem::path& path) const {
    if (path.parent_path() != folder_) return -1;
    const auto found = std::ranges::find(entries_, FileDrag::toText(path.filename()), &FolderEntry::name);
    return found == entries_.end() ? -1 : static_cast<int>(found - entries_.begin());
}

int FolderModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(entries_.size());
}

int FolderModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : ColumnCount;
}

QString FolderModel::text(const FolderEntry& entry, int column) const {
    switch (column) {
        case Name:
            return entry.name;
        case Kind:
            return entry.kind;
        case Size:
            return entry.isFolder ? QString() : QLocale().formattedDataSize(entry.bytes, 1);
        case Modified:
            return QLocale().toString(QDateTime::fromSecsSinceEpoch(entry.modified), QLocale::ShortFormat);
        default:
            return {};
    }
}

QVariant FolderModel::data(const QModelIndex& index, int role) const {
    const FolderEntry& item = entry(index.row());
    switch (role) {
        case Qt::DisplayRole:
            return text(item, index.column());
        case Qt::DecorationRole:
            if (index.column() != Name) return {};
            return symbol(item.isFolder ? "folder" : "file", SymbolRole::secondary);
        case Qt::TextAlignmentRole: {
            const auto side = index.column() == Size ? Qt::AlignRight : Qt::AlignLeft;
            return QVariant::fromValue(Qt::Alignment(side | Qt::AlignVCenter));
        }
        case Qt::AccessibleTextRole:
            return index.column() == Name ? item.name + ", " + item.kind : text(item, index.column());
        default:
            return {};
    }
}

QVariant FolderModel::headerData(int section, Qt::Orientation orientation, int role) const {
    static const QStringList names = {"Name", "Kind", "Size", "Modified"};
    if (orientation != Qt::Horizontal) return {};
    if (role == Qt::DisplayRole) return names.value(section);
    if (role == Qt::TextAlignmentRole && section == Size)
        return QVariant::fromValue(Qt::Alignment(Qt::AlignRight | Qt::AlignVCenter));
    return {};
}

Qt::ItemFlags FolderModel::flags(const QModelIndex& index) const {
    return QAbstractTableModel::flags(index) | Qt::ItemIsDragEnabled | Qt::ItemNeverHasChildren;
}

void FolderModel::sortEntries(std::vector<FolderEntry>& entries) const {
    std::ranges::sort(entries, [this](const FolderEntry& a, const FolderEntry& b) {
        return before(a, b, column_, order_ == Qt::AscendingOrder);
    });
}

void FolderModel::sort(int column, Qt::SortOrder order) {
    if (column < 0 || column >= ColumnCount) return;
    Q_EMIT layoutAboutToBeChanged({}, VerticalSortHint);
    const QModelIndexList old = persistentIndexList();
    std::vector<int> orders;
    for (const auto& index : old) orders.push_back(entry(index.row()).order);
    column_ = column;
    order_ = order;
    sortEntries(entries_);
    std::vector<int> rowOfOrder(entries_.size());
    for (size_t row = 0; row < entries_.size(); ++row)
        rowOfOrder[static_cast<size_t>(entries_[row].order)] = static_cast<int>(row);
    for (int i = 0; i < old.size(); ++i)
        changePersistentIndex(old[i],
                              index(rowOfOrder[static_cast<size_t>(orders[static_cast<size_t>(i)])], old[i].column()));
    Q_EMIT layoutChanged({}, VerticalSortHint);
}

QStringList FolderModel::mimeTypes() const {
    return {"text/uri-list"};
}

QMimeData* FolderModel::mimeData(const QModelIndexList& indexes) const {
    std::vector<std::filesystem::path> files;
    QSet<int> seen;
    for (const auto& index : indexes) {
        if (seen.contains(index.row())) continue;
        seen.insert(index.row());
        files.push_back(path(index.row()));
    }
    return FileDrag::mimeData(files);
}

}  // namespace brindlehum

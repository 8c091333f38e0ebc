// The browser's rows: texts of the cells, their order, and drag data.
#include "ui/browser/browser_table_model.h"

#include <QMimeData>
#include <algorithm>
#include <numeric>

#include "ui/browser/browser_sort.h"
#include "ui/browser/info_text.h"
#include "ui/look/file_drag.h"
#include "ui/look/icons.h"
#include "ui/look/path_text.h"
#include "ui/look/plain_tool_tip.h"

namespace brindlehum {
namespace {

QString textOf(const std::string& utf8) {
    return QString::fromStdString(utf8);
}

// A cell shows one line, even of a description with line breaks.
QString oneLine(const std::string& utf8) {
    return textOf(utf8).simplified();
}

// Shows a line break in a name as a space, or the rest of the name would be hidden.
QString shownName(const std::filesystem::path& url) {
    QString name = pathText(url.filename());
    std::ranges::replace_if(
        name, [](QChar c) { return c.category() == QChar::Other_Control; }, QChar(' '));
    return name;
}

QString categoryOf(const SoundMeta& meta) {
    QStringList parts;
    for (const auto* part : {&meta.category, &meta.subCategory}) {
        if (!part->empty()) { parts << oneLine(*part); }
    }
    return parts.join(QStringLiteral(" · "));
}

int ratingOf(const BrowserEntry& entry) {
    return entry.row ? std::clamp(entry.row->meta.rating, 0, 5) : 0;
}

// The folder as seen from the library folder that holds it, or its name outside of a library.
QString folderOf(const BrowserEntry& entry) {
    const std::filesystem::path folder = entry.url.parent_path();
    if (!entry.row || entry.row->root.empty()) { return pathText(folder.filename()); }
    const std::filesystem::path root(entry.row->root);
    const auto inside = folder.lexically_relative(root);
    return pathText(inside.empty() || *inside.begin() == ".." ? folder
                    : inside == "."                           ? root.filename()
                                                              : root.filename() / inside);
}

}  // namespace

QString BrowserTableModel::columnName(int column) {
    static constexpr std::array<const char*, ColumnCount> names = {
        QT_TR_NOOP("Name"),   QT_TR_NOOP("Description"), QT_TR_NOOP("Category"), QT_TR_NOOP("Library"),
        QT_TR_NOOP("Length"), QT_TR_NOOP("Format"),      QT_TR_NOOP("Keywords"), QT_TR_NOOP("Rating"),
        QT_TR_NOOP("Folder"), QT_TR_NOOP("Modified")};
    return column >= 0 && column < ColumnCount ? tr(names[size_t(column)]) : QString();
}

const BrowserEntry& BrowserTableModel::entry(int row) const {
    return entries_[size_t(order_[size_t(row)])];
}

int BrowserTableModel::rowOf(const std::filesystem::path& url) const {
    for (int row = 0; row < rowCount(); ++row) {
        if (entry(row).url == url) { return row; }
    }
    return -1;
}

bool BrowserTableModel::sameFiles(const std::vector<BrowserEntry>& entries) const {
    return std::ranges::equal(entries, entries_, [](const BrowserEntry& a, const BrowserEntry& b) {
        return a.isFolder == b.isFolder && a.url == b.url;
    });
}

void BrowserTableModel::setEntries(std::vector<BrowserEntry> entries) {
    if (sameFiles(entries)) {
        // A row stays where it is when its description is saved, even if it would now sort elsewhere.
        entries_.swap(entries);
        for (int row = 0; row < rowCount(); ++row) {
            if (entry(row) != entries[size_t(order_[size_t(row)])]) {
                Q_EMIT dataChanged(index(row, 0), index(row, ColumnCount - 1));
            }
        }
        return;
    }
    beginResetModel();
    entries_ = std::move(entries);
    infos_.clear();
    asked_.clear();
    order_ = makeOrder();
    endResetModel();
}

std::vector<BrowserEntry> BrowserTableModel::inOrderShown(std::vector<BrowserEntry> entries) const {
    if (entries.size() != entries_.size()) { return entries; }
    std::unordered_map<std::string, size_t> places;
    for (size_t at = 0; at < entries_.size(); ++at) { places[entries_[at].url.native()] = at; }
    if (!std::ranges::all_of(entries, [&](const auto& entry) { return places.contains(entry.url.native()); })) {
        return entries;
    }
    std::vector<BrowserEntry> ordered(entries.size());
    for (auto& entry : entries) { ordered[places[entry.url.native()]] = std::move(entry); }
    return ordered;
}

void BrowserTableModel::setInfo(const std::filesystem::path& url, const AudioFileInfo& info) {
    const int row = rowOf(url);
    if (row < 0) { return; }
    infos_[url.native()] = info;
    Q_EMIT dataChanged(index(row, Length), index(row, Format));
}

const AudioFileInfo* BrowserTableModel::info(const BrowserEntry& entry) const {
    const auto found = infos_.find(entry.url.native());
    return found == infos_.end() ? nullptr : &found->second;
}

void BrowserTableModel::ask(const BrowserEntry& entry) const {
    if (!askInfo || !asked_.insert(entry.url.native()).second) { return; }
    if (const auto* known = askInfo(entry.url)) { infos_[entry.url.native()] = *known; }
}

int BrowserTableModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(entries_.size());
}

int BrowserTableModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : ColumnCount;
}

QString BrowserTableModel::infoText(const BrowserEntry& entry, int column) const {
    if (entry.isFolder) { return {}; }
    return column == Length ? InfoText::duration(entry, info(entry)) : InfoText::format(entry, info(entry));
}

QString BrowserTableModel::text(const BrowserEntry& entry, int column) const {
    switch (column) {
        case Name:
            return shownName(entry.url);
        case Description:
            return entry.row ? oneLine(entry.row->meta.description) : QString();
        case Category:
            return entry.row ? categoryOf(entry.row->meta) : QString();
        case Library:
            return entry.row ? oneLine(entry.row->meta.library) : QString();
        case Keywords:
            return entry.row ? oneLine(entry.row->meta.keywords) : QString();
        case Rating:
            return QString(ratingOf(entry), QChar(0x2605));
        case Modified:
            return InfoText::modified(entry);
        case Folder:
            return entry.isFolder ? QString() : folderOf(entry);
        default:
            return infoText(entry, column);
    }
}

QVariant BrowserTableModel::data(const QModelIndex& index, int role) const {
    const BrowserEntry& item = entry(index.row());
    const bool isInfo = index.column() == Length || index.column() == Format;
    switch (role) {
        case Qt::DisplayRole:
            if (isInfo && !item.isFolder && !InfoText::isKnown(item)) { ask(item); }
            return text(item, index.column());
        case Qt::ToolTipRole:
            return plainToolTip(index.column() == Name ? pathText(item.url) : text(item, index.column()));
        case Qt::DecorationRole:
            if (index.column() != Name) { return {}; }
            return symbol(item.isFolder ? "folder-fill" : "file", SymbolRole::secondary);
        case Qt::TextAlignmentRole: {
            const auto side = index.column() == Length ? Qt::AlignRight : Qt::AlignLeft;
            return QVariant::fromValue(Qt::Alignment(side | Qt::AlignVCenter));
        }
        case Qt::AccessibleTextRole:
            if (index.column() == Name && item.isFolder) { return tr("%1, folder").arg(text(item, Name)); }
            if (index.column() == Rating && ratingOf(item) > 0) { return tr("%1 of 5").arg(ratingOf(item)); }
            return text(item, index.column());
        default:
            return {};
    }
}

QVariant BrowserTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal) { return {}; }
    if (role == Qt::DisplayRole) { return columnName(section); }
    if (role == Qt::TextAlignmentRole) {
        const auto side = section == Length ? Qt::AlignRight : Qt::AlignLeft;
        return QVariant::fromValue(Qt::Alignment(side | Qt::AlignVCenter));
    }
    return {};
}

Qt::ItemFlags BrowserTableModel::flags(const QModelIndex& index) const {
    return QAbstractTableModel::flags(index) | Qt::ItemIsDragEnabled | Qt::ItemNeverHasChildren;
}

std::vector<int> BrowserTableModel::makeOrder() const {
    if (column_ == unsorted) {
        std::vector<int> asGiven(entries_.size());
        std::iota(asGiven.begin(), asGiven.end(), 0);
        return asGiven;
    }
    std::vector<BrowserSort::Key> keys;
    keys.reserve(entries_.size());
    for (const auto& item : entries_) {
        keys.push_back({item.isFolder, item.isFolder ? text(item, Name) : text(item, column_), numberOf(item)});
    }
    const bool byNumber = column_ == Length || column_ == Rating || column_ == Modified;
    return BrowserSort::order(keys, byNumber, direction_ == Qt::AscendingOrder);
}

// What the sorted column compares, where that is a number.
double BrowserTableModel::numberOf(const BrowserEntry& entry) const {
    if (column_ == Modified) { return InfoText::modifiedSeconds(entry); }
    if (entry.isFolder) { return 0; }
    return column_ == Rating ? ratingOf(entry) : InfoText::seconds(entry, info(entry));
}

void BrowserTableModel::sort(int column, Qt::SortOrder order) {
    if (column < unsorted || column >= ColumnCount) { return; }
    Q_EMIT layoutAboutToBeChanged({}, VerticalSortHint);
    const QModelIndexList old = persistentIndexList();
    const std::vector<int> before = order_;
    column_ = column;
    direction_ = order;
    order_ = makeOrder();
    std::vector<int> rowOf(order_.size());
    for (size_t row = 0; row < order_.size(); ++row) { rowOf[size_t(order_[row])] = int(row); }
    for (const auto& at : old) {
        const int given = before[size_t(at.row())];
        changePersistentIndex(at, index(rowOf[size_t(given)], at.column()));
    }
    Q_EMIT layoutChanged({}, VerticalSortHint);
}

QMimeData* BrowserTableModel::mimeData(const QModelIndexList& indexes) const {
    std::vector<int> rows;
    for (const auto& at : indexes) { rows.push_back(at.row()); }
    std::ranges::sort(rows);
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    std::vector<std::filesystem::path> files;
    for (const int row : rows) { files.push_back(entry(row).url); }
    return FileDrag::mimeData(files);
}

}  // namespace brindlehum

// The sidebar's rows as a Qt model, changed in place.
#include "ui/sidebar/sidebar_model.h"

#include <QLocale>
#include <algorithm>

#include "ui/look/path_text.h"
#include "ui/look/plain_tool_tip.h"

namespace brindlehum {
namespace {

constexpr quintptr sectionId = 0;  // of a section's own line; a row's is its section and one

int count(const std::vector<SidebarRow>& rows) {
    return int(rows.size());
}

QString spoken(const SidebarRow& row) {
    QString text = row.text;
    if (row.count) {
        text += ", " + SidebarModel::tr("%1 files").arg(QLocale().toString(static_cast<qlonglong>(*row.count)));
    }
    if (row.busy) { text += ", " + SidebarModel::tr("indexing"); }
    if (!row.problem.isEmpty()) { text += ", " + row.problem; }
    if (row.selected) { text += ", " + SidebarModel::tr("selected"); }
    return text;
}

QString toolTipOf(const SidebarRow& row) {
    const bool isPath = row.kind == SidebarRow::Kind::root || row.kind == SidebarRow::Kind::place;
    const QString text = isPath ? pathText(row.value) : row.text;
    return plainToolTip(row.problem.isEmpty() ? text : text + '\n' + row.problem);
}

}  // namespace

void SidebarModel::setSections(SidebarRows::Sections sections) {
    for (int at = 0; at < SidebarRows::SectionCount; ++at) {
        if (auto& rows = sections[size_t(at)]; rows != sections_[size_t(at)]) { setRows(at, std::move(rows)); }
    }
}

// Inserts or removes rows where the lists differ, so that the focus stays on its row; equally many change in place.
void SidebarModel::setRows(int at, std::vector<SidebarRow> rows) {
    auto& shown = sections_[size_t(at)];
    const auto isSame = [](const SidebarRow& a, const SidebarRow& b) { return a.kind == b.kind && a.value == b.value; };
    if (rows.size() != shown.size()) {
        const auto ahead = std::ranges::mismatch(shown, rows, isSame).in1 - shown.begin();
        const auto behind =
            std::mismatch(shown.rbegin(), shown.rend() - ahead, rows.rbegin(), rows.rend() - ahead, isSame);
        const int gone = int(behind.first.base() - shown.begin() - ahead);
        const int come = int(behind.second.base() - rows.begin() - ahead);
        const int first = int(ahead);
        if (gone > 0) {
            beginRemoveRows(section(at), first, first + gone - 1);
            shown.erase(shown.begin() + first, shown.begin() + first + gone);
            endRemoveRows();
        }
        if (come > 0) {
            beginInsertRows(section(at), first, first + come - 1);
            shown.insert(shown.begin() + first, rows.begin() + first, rows.begin() + first + come);
            endInsertRows();
        }
    }
    shown = std::move(rows);
    if (!shown.empty()) { Q_EMIT dataChanged(index(0, 0, section(at)), index(count(shown) - 1, 0, section(at))); }
}

const SidebarRow* SidebarModel::row(const QModelIndex& index) const {
    if (!index.isValid() || index.internalId() == sectionId) { return nullptr; }
    return &sections_[index.internalId() - 1][size_t(index.row())];
}

QModelIndex SidebarModel::index(int row, int column, const QModelIndex& parent) const {
    if (row < 0 || column != 0 || row >= rowCount(parent)) { return {}; }
    return createIndex(row, 0, parent.isValid() ? static_cast<quintptr>(parent.row()) + 1 : sectionId);
}

QModelIndex SidebarModel::parent(const QModelIndex& child) const {
    if (!child.isValid() || child.internalId() == sectionId) { return {}; }
    return section(int(child.internalId()) - 1);
}

int SidebarModel::rowCount(const QModelIndex& parent) const {
    if (!parent.isValid()) { return SidebarRows::SectionCount; }
    return parent.internalId() == sectionId ? count(sections_[size_t(parent.row())]) : 0;
}

QVariant SidebarModel::data(const QModelIndex& index, int role) const {
    const SidebarRow* item = row(index);
    if (!item) { return role == Qt::DisplayRole ? SidebarRows::sectionName(index.row()) : QVariant(); }
    switch (role) {
        case Qt::DisplayRole:
            return item->text;
        case Qt::ToolTipRole:
            return toolTipOf(*item);
        case Qt::AccessibleTextRole:
            return spoken(*item);
        default:
            return {};
    }
}

}  // namespace brindlehum

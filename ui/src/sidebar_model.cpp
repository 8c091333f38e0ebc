#include "ui/sidebar_model.h"

#include <QLocale>

#include "ui/file_drag.h"

namespace brindlehum {
namespace {

constexpr quintptr sectionId = 0;  // of a section's own line; a row's is its section and one

int count(const std::vector<SidebarRow>& rows) {
    return static_cast<int>(rows.size());
}

QString spoken(const SidebarRow& row) {
    QString text = row.text;
    if (row.count) text += ", " + QLocale().toString(static_cast<qlonglong>(*row.count)) + " files";
    if (row.busy) text += ", indexing";
    if (row.selected) text += ", selected";
    return text;
}

bool isPath(const SidebarRow& row) {
    return row.kind == SidebarRow::Kind::root || row.kind == SidebarRow::Kind::place;
}

}  // namespace

void SidebarModel::setSections(SidebarRows::Sections sections) {
    for (int at = 0; at < SidebarRows::SectionCount; ++at)
        if (auto& rows = sections[static_cast<size_t>(at)]; rows != sections_[static_cast<size_t>(at)])
            setRows(at, std::move(rows));
}

void SidebarModel::setRows(int at, std::vector<SidebarRow> rows) {
    auto& shown = sections_[static_cast<size_t>(at)];
    const int before = count(shown);
    const int after = count(rows);
    if (after < before) {
        beginRemoveRows(section(at), after, before - 1);
        shown.resize(static_cast<size_t>(after));
        endRemoveRows();
    } else if (after > before) {
        beginInsertRows(section(at), before, after - 1);
        shown = std::move(rows);
        endInsertRows();
    }
    if (after <= before) shown = std::move(rows);
    if (after > 0) Q_EMIT dataChanged(index(0, 0, section(at)), index(after - 1, 0, section(at)));
}

const SidebarRow* SidebarModel::row(const QModelIndex& index) const {
    if (!index.isValid() || index.internalId() == sectionId) return nullptr;
    return &sections_[index.internalId() - 1][static_cast<size_t>(index.row())];
}

QModelIndex SidebarModel::index(int row, int column, const QModelIndex& parent) const {
    if (row < 0 || column != 0 || row >= rowCount(parent)) return {};
    return createIndex(row, 0, parent.isValid() ? static_cast<quintptr>(parent.row()) + 1 : sectionId);
}

QModelIndex SidebarModel::parent(const QModelIndex& child) const {
    if (!child.isValid() || child.internalId() == sectionId) return {};
    return section(static_cast<int>(child.internalId()) - 1);
}

int SidebarModel::rowCount(const QModelIndex& parent) const {
    if (!parent.isValid()) return SidebarRows::SectionCount;
    return parent.internalId() == sectionId ? count(sections_[static_cast<size_t>(parent.row())]) : 0;
}

QVariant SidebarModel::data(const QModelIndex& index, int role) const {
    const SidebarRow* item = row(index);
    if (!item) return role == Qt::DisplayRole ? SidebarRows::sectionName(index.row()) : QVariant();
    switch (role) {
        case Qt::DisplayRole:
            return item->text;
        case Qt::ToolTipRole:
            return isPath(*item) ? FileDrag::toText(item->value) : item->text;
        case Qt::AccessibleTextRole:
            return spoken(*item);
        default:
            return {};
    }
}

}  // namespace brindlehum

// SidebarModel: the sidebar's sections and rows as a tree of two levels; rows change in place.
#pragma once

#include <QAbstractItemModel>

#include "ui/sidebar/sidebar_rows.h"

namespace brindlehum {

class SidebarModel : public QAbstractItemModel {
    Q_OBJECT
public:
    using QAbstractItemModel::QAbstractItemModel;

    void setSections(SidebarRows::Sections sections);
    // Null for a section's own line.
    const SidebarRow* row(const QModelIndex& index) const;
    QModelIndex section(int section) const { return index(section, 0, {}); }

    QModelIndex index(int row, int column, const QModelIndex& parent) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    int rowCount(const QModelIndex& parent) const override;
    int columnCount(const QModelIndex& /*parent*/) const override { return 1; }
    QVariant data(const QModelIndex& index, int role) const override;

private:
    void setRows(int section, std::vector<SidebarRow> rows);

    SidebarRows::Sections sections_;
};

}  // namespace brindlehum

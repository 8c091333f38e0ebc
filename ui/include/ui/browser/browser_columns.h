// BrowserColumns: the widths of the browser's columns until the user sets them.
#pragma once

#include <array>

#include "ui/browser/browser_table_model.h"

namespace brindlehum::BrowserColumns {

using Widths = std::array<int, BrowserTableModel::ColumnCount>;  // logical pixels

constexpr Widths minimum{180, 120, 70, 60, 60, 80, 80, 60, 80, 110};
constexpr Widths ideal{300, 280, 130, 120, 76, 140, 200, 80, 200, 150};

// The length has its ideal width and the format `formatWidth`, because half a number is useless. The other columns grow
// in step from their minimum to their ideal; name and description take the rest.
// Hidden columns get their ideal width and take no room.
Widths fit(int room, int formatWidth, const std::array<bool, BrowserTableModel::ColumnCount>& hidden);

}  // namespace brindlehum::BrowserColumns

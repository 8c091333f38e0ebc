// BrowserColumns: the widths of the browser's columns until the user sets them.
#pragma once

#include <array>

#include "ui/browser/browser_table_model.h"

namespace brindlehum::BrowserColumns {

using Widths = std::array<int, BrowserTableModel::ColumnCount>;  // logical pixels

constexpr Widths minimum{180, 120, 70, 60, 60, 80};
constexpr Widths ideal{300, 280, 130, 120, 76, 140};

// The length has its ideal width and the format `formatWidth`, because half a number is useless. The other columns grow
// in step from their minimum to their ideal; name and description take the rest.
Widths fit(int room, int formatWidth);

}  // namespace brindlehum::BrowserColumns

// BrowserColumns: how wide the browser's columns are in a given room, as long as the user hasn't set them.
#pragma once

#include <array>

#include "ui/browser/browser_table_model.h"

namespace brindlehum::BrowserColumns {

using Widths = std::array<int, BrowserTableModel::ColumnCount>;  // logical pixels

constexpr Widths minimum{180, 120, 70, 60, 60, 80};
constexpr Widths ideal{300, 280, 130, 120, 76, 140};

// The length always has its ideal and the format the width that its usual text takes, for half a number tells nothing;
// the others grow alike from their minimum to their ideal; what is left beyond goes to name and description.
Widths fit(int room, int formatWidth);

}  // namespace brindlehum::BrowserColumns

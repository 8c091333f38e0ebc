// BrowserColumns: how wide the browser's columns are in a given room, as long as the user hasn't set them.
#pragma once

#include <array>

#include "ui/browser_table_model.h"

namespace brindlehum::BrowserColumns {

using Widths = std::array<int, BrowserTableModel::ColumnCount>;  // logical pixels

constexpr Widths minimum{180, 120, 70, 60, 60, 80};
constexpr Widths ideal{300, 280, 130, 120, 76, 140};

// The length comes to its ideal first, for half a number tells nothing; then the others alike; what is left beyond
// the ideal goes to name and description.
Widths fit(int room);

}  // namespace brindlehum::BrowserColumns

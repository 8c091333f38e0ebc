// BrowserColumns: the widths of the browser's columns until the user sets them.
#pragma once

#include <array>

#include "ui/browser/browser_table_model.h"

namespace brindlehum::BrowserColumns {

using Widths = std::array<int, BrowserTableModel::ColumnCount>;  // logical pixels

constexpr Widths minimum{180, 120, 70, 60, 60, 80, 80, 60, 80, 110};
constexpr Widths ideal{300, 280, 130, 120, 76, 140, 200, 80, 200, 150};

constexpr int leastName = 120;  // where even the name has to give way

// `texts` is what the columns' heads and the usual format need. The length has its ideal width and the format that of
// its text, because half a number is useless; no column is narrower than its head. Then the name grows to its ideal,
// then the other columns in step from their minimum to theirs; name and description take the rest. Where the minimums
// don't fit, library, category and description give way one after the other, to a width of 0; then the format down to
// its minimum, and the name last. Hidden columns get their ideal width and take no room.
Widths fit(int room, const Widths& texts, const std::array<bool, BrowserTableModel::ColumnCount>& hidden);

}  // namespace brindlehum::BrowserColumns

#include "ui/browser_columns.h"

#include <algorithm>
#include <initializer_list>
#include <numeric>

namespace brindlehum::BrowserColumns {
namespace {

using Columns = std::initializer_list<size_t>;

int sum(const Widths& widths) {
    return std::accumulate(widths.begin(), widths.end(), 0);
}

// Lets columns grow alike from their minimum towards their ideal, as far as the room goes.
void grow(Widths& widths, Columns columns, int room) {
    int wanted = 0;
    for (const size_t column : columns) wanted += ideal[column] - minimum[column];
    const double share = std::clamp(static_cast<double>(room - sum(widths)) / wanted, 0.0, 1.0);
    for (const size_t column : columns) widths[column] += static_cast<int>(share * (ideal[column] - minimum[column]));
}

}  // namespace

Widths fit(int room) {
    using Table = BrowserTableModel;
    Widths widths = minimum;
    for (const size_t column : {Table::Length, Table::Format}) widths[column] = ideal[column];
    grow(widths, {Table::Name, Table::Description}, room);
    grow(widths, {Table::Category, Table::Library}, room);
    const int spare = std::max(0, room - sum(widths));
    widths[Table::Name] += spare / 2;
    widths[Table::Description] += spare - spare / 2;
    return widths;
}

}  // namespace brindlehum::BrowserColumns

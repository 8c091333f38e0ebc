#include "ui/browser_columns.h"

#include <algorithm>
#include <numeric>

namespace brindlehum::BrowserColumns {

Widths fit(int room) {
    const int least = std::accumulate(minimum.begin(), minimum.end(), 0);
    const int most = std::accumulate(ideal.begin(), ideal.end(), 0);
    Widths widths = minimum;
    int spare = std::max(0, room - least);
    const auto grow = [&](size_t column, int to) {
        const int step = std::clamp(to - widths[column], 0, spare);
        widths[column] += step;
        spare -= step;
    };
    grow(BrowserTableModel::Length, ideal[BrowserTableModel::Length]);
    const Widths base = widths;
    const int open = most - std::accumulate(base.begin(), base.end(), 0);
    const double share = std::min(1.0, static_cast<double>(spare) / open);
    for (size_t column = 0; column < widths.size(); ++column)
        grow(column, base[column] + static_cast<int>(share * (ideal[column] - base[column])));
    widths[BrowserTableModel::Name] += spare / 2;
    widths[BrowserTableModel::Description] += spare - spare / 2;
    return widths;
}

}  // namespace brindlehum::BrowserColumns

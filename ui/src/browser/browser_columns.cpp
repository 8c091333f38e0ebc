// Column widths: from all at their minimum to all at their ideal, then the rest to name and description.
#include "ui/browser/browser_columns.h"

#include <algorithm>
#include <numeric>

namespace brindlehum::BrowserColumns {

Widths fit(int room, int formatWidth) {
    Widths widths = minimum;
    Widths wide = ideal;
    wide[BrowserTableModel::Format] = std::max(formatWidth, minimum[BrowserTableModel::Format]);
    for (const size_t column : {BrowserTableModel::Length, BrowserTableModel::Format}) {
        widths[column] = wide[column];
    }
    const int least = std::accumulate(widths.begin(), widths.end(), 0);
    const int most = std::accumulate(wide.begin(), wide.end(), 0);
    const double share = std::clamp(double(room - least) / (most - least), 0.0, 1.0);
    for (size_t column = 0; column < widths.size(); ++column) {
        widths[column] += int(share * (wide[column] - widths[column]));
    }
    const int spare = std::max(0, room - std::accumulate(widths.begin(), widths.end(), 0));
    widths[BrowserTableModel::Name] += spare / 2;
    widths[BrowserTableModel::Description] += spare - spare / 2;
    return widths;
}

}  // namespace brindlehum::BrowserColumns

// Column widths: from all at their minimum to all at their ideal, then the rest to name and description.
#include "ui/browser/browser_columns.h"

#include <algorithm>

namespace brindlehum::BrowserColumns {

Widths fit(int room, int formatWidth, const std::array<bool, BrowserTableModel::ColumnCount>& hidden) {
    Widths wide = ideal;
    wide[BrowserTableModel::Format] = std::max(formatWidth, minimum[BrowserTableModel::Format]);
    Widths widths = minimum;
    for (const size_t column : {BrowserTableModel::Length, BrowserTableModel::Format}) {
        widths[column] = wide[column];
    }
    const auto sum = [&](const Widths& of) {
        int all = 0;
        for (size_t column = 0; column < of.size(); ++column) { all += hidden[column] ? 0 : of[column]; }
        return all;
    };
    const int least = sum(widths);
    const double share = std::clamp(double(room - least) / std::max(sum(wide) - least, 1), 0.0, 1.0);
    for (size_t column = 0; column < widths.size(); ++column) {
        widths[column] = hidden[column] ? wide[column] : widths[column] + int(share * (wide[column] - widths[column]));
    }
    const int spare = std::max(0, room - sum(widths));
    const bool hasDescription = !hidden[BrowserTableModel::Description];
    widths[BrowserTableModel::Name] += hasDescription ? spare / 2 : spare;
    if (hasDescription) { widths[BrowserTableModel::Description] += spare - spare / 2; }
    return widths;
}

}  // namespace brindlehum::BrowserColumns

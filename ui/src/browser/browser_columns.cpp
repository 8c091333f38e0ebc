// Column widths for the room there is: what gives way when it is short, and what grows when it isn't.
#include "ui/browser/browser_columns.h"

#include <algorithm>
#include <numeric>

namespace brindlehum::BrowserColumns {
namespace {

using Model = BrowserTableModel;

int sum(const Widths& widths) {
    return std::accumulate(widths.begin(), widths.end(), 0);
}

// Takes room from the columns that matter least until the others fit.
void giveWay(Widths& widths, int room) {
    for (const size_t column : {Model::Library, Model::Category, Model::Description}) {
        if (sum(widths) > room) { widths[column] = 0; }
    }
    const auto shrink = [&](size_t column, int least) {
        if (widths[column] > 0) { widths[column] = std::max(least, widths[column] - std::max(0, sum(widths) - room)); }
    };
    shrink(Model::Format, minimum[Model::Format]);
    shrink(Model::Name, leastName);
}

}  // namespace

Widths fit(int room, const Widths& texts, const std::array<bool, Model::ColumnCount>& hidden) {
    Widths wide = ideal;
    Widths widths = minimum;
    for (size_t column = 0; column < widths.size(); ++column) {
        widths[column] = std::max(widths[column], texts[column]);
        wide[column] = std::max(wide[column], texts[column]);
    }
    wide[Model::Format] = widths[Model::Format];
    for (const size_t column : {Model::Length, Model::Format}) { widths[column] = wide[column]; }
    for (size_t column = 0; column < widths.size(); ++column) {
        if (hidden[column]) { widths[column] = 0; }
    }
    giveWay(widths, room);
    const auto spare = [&] { return std::max(0, room - sum(widths)); };
    if (spare() > 0) { widths[Model::Name] += std::min(spare(), std::max(0, wide[Model::Name] - widths[Model::Name])); }
    const auto lacks = [&](size_t column) { return widths[column] > 0 ? wide[column] - widths[column] : 0; };
    int lacking = 0;
    for (size_t column = 0; column < widths.size(); ++column) { lacking += lacks(column); }
    const double share = std::min(1.0, double(spare()) / std::max(lacking, 1));
    for (size_t column = 0; column < widths.size(); ++column) { widths[column] += int(share * lacks(column)); }
    const int rest = spare();
    const bool hasDescription = widths[Model::Description] > 0;
    widths[Model::Name] += hasDescription ? rest / 2 : rest;
    if (hasDescription) { widths[Model::Description] += rest - rest / 2; }
    for (size_t column = 0; column < widths.size(); ++column) {
        if (hidden[column]) { widths[column] = wide[column]; }
    }
    return widths;
}

}  // namespace brindlehum::BrowserColumns

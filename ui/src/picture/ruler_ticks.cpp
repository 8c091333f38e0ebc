// Chooses round steps for a time ruler and writes their labels.
#include "ui/picture/ruler_ticks.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <string>

#include "base/number_text.h"

namespace brindlehum::RulerTicks {
namespace {

struct Division {
    double step;  // seconds
    int parts;
};
constexpr std::array<Division, 27> divisions = {
    {{0.00001, 5}, {0.00002, 4}, {0.00005, 5}, {0.0001, 5}, {0.0002, 4}, {0.0005, 5}, {0.001, 5},
     {0.002, 4},   {0.005, 5},   {0.01, 5},    {0.02, 4},   {0.05, 5},   {0.1, 5},    {0.2, 4},
     {0.5, 5},     {1, 5},       {2, 4},       {5, 5},      {10, 5},     {15, 3},     {30, 3},
     {60, 4},      {120, 4},     {300, 5},     {600, 5},    {1800, 3},   {3600, 4}}};

Division division(double seconds, double width, double minSpacing) {
    for (const auto& candidate : divisions) {
        if (candidate.step / seconds * width >= minSpacing) { return candidate; }
    }
    Division last = divisions.back();
    while (last.step / seconds * width < minSpacing) { last.step *= 2; }
    return last;
}

}  // namespace

double step(double seconds, double width, double minSpacing) {
    return seconds > 0 && width > 0 ? division(seconds, width, minSpacing).step : 0;
}

std::vector<Tick> ticks(double first, double seconds, double width, double minSpacing) {
    std::vector<Tick> found;
    if (!(seconds > 0) || !(width > 0) || !std::isfinite(seconds) || !std::isfinite(first)) { return found; }
    const auto [step, parts] = division(seconds, width, minSpacing);
    const double part = step / parts;
    // A share of a part against rounding.
    for (auto i = int64_t(std::ceil(first / part - 1e-6)); double(i) * part <= first + seconds; ++i) {
        found.push_back({double(i) * part, i % parts == 0});
    }
    return found;
}

std::string label(double seconds, double step) {
    constexpr int mostDecimals = 5;
    int decimals = 0;
    for (double unit = 1; unit > step * 1.001 && decimals < mostDecimals; unit /= 10) { ++decimals; }
    const double unit = std::pow(10.0, decimals);
    const auto units = int64_t(std::llround(seconds * unit));
    const auto perMinute = int64_t(60 * unit);
    const int64_t minutes = units / perMinute;
    const double rest = double(units % perMinute) / unit;
    const int width = decimals == 0 ? 2 : 3 + decimals;
    const auto addPadded = [](std::string& to, const std::string& number, size_t digits) {
        for (size_t i = number.size(); i < digits; ++i) { to += '0'; }
        to += number;
    };
    std::string text = std::to_string(minutes < 60 ? minutes : minutes / 60);
    text += ':';
    if (minutes >= 60) {
        addPadded(text, std::to_string(minutes % 60), 2);
        text += ':';
    }
    addPadded(text, fixed(rest, decimals), size_t(width));
    return text;
}

}  // namespace brindlehum::RulerTicks

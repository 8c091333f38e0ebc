// Frequencies and colours of spectrograms.
#include "ui/picture/spectrum_axis.h"

#include <algorithm>
#include <cmath>
#include <span>

namespace brindlehum {
namespace {

struct Lab {
    double lightness, a, b;
};

double linear(double value) {
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

double coded(double value) {
    value = std::clamp(value, 0.0, 1.0);
    return value <= 0.0031308 ? value * 12.92 : 1.055 * std::pow(value, 1 / 2.4) - 0.055;
}

// B. Ottosson, "A perceptual color space for image processing", 2020.
Lab labOf(const QColor& color) {
    const double r = linear(color.redF()), g = linear(color.greenF()), b = linear(color.blueF());
    const double l = std::cbrt(0.4122214708 * r + 0.5363325363 * g + 0.0514459929 * b);
    const double m = std::cbrt(0.2119034982 * r + 0.6806995451 * g + 0.1073969566 * b);
    const double s = std::cbrt(0.0883024619 * r + 0.2817188376 * g + 0.6299787005 * b);
    return {0.2104542553 * l + 0.7936177850 * m - 0.0040720468 * s,
            1.9779984951 * l - 2.4285922050 * m + 0.4505937099 * s,
            0.0259040371 * l + 0.7827717662 * m - 0.8086757660 * s};
}

QRgb colorOf(const Lab& lab) {
    const double l = std::pow(lab.lightness + 0.3963377774 * lab.a + 0.2158037573 * lab.b, 3);
    const double m = std::pow(lab.lightness - 0.1055613458 * lab.a - 0.0638541728 * lab.b, 3);
    const double s = std::pow(lab.lightness - 0.0894841775 * lab.a - 1.2914855480 * lab.b, 3);
    const auto byte = [](double value) { return int(std::lround(coded(value) * 255)); };
    return qRgb(byte(4.0767416621 * l - 3.3077115913 * m + 0.2309699292 * s),
                byte(-1.2684380046 * l + 2.6097574011 * m - 0.3413193965 * s),
                byte(-0.0041960863 * l - 0.7034186147 * m + 1.7076147010 * s));
}

// Hues to pass through; the lightness is spread evenly from the first to the last.
constexpr std::array darkHues = {"#101216", "#2d1f63", "#8b2a80", "#e2574d", "#f7b345", "#fdf6c8"};
constexpr std::array lightHues = {"#ffffff", "#bfdcf0", "#6fa6dc", "#5a5fc0", "#6a2684", "#1c0a26"};

std::array<QRgb, 256> made(std::span<const char* const> hues) {
    const double first = labOf(QColor(hues.front())).lightness, last = labOf(QColor(hues.back())).lightness;
    std::array<QRgb, 256> out;
    for (size_t i = 0; i < out.size(); ++i) {
        const double at = double(i) / 255, place = at * double(hues.size() - 1);
        const size_t left = std::min(size_t(place), hues.size() - 2);
        const double share = place - double(left);
        const Lab a = labOf(QColor(hues[left])), b = labOf(QColor(hues[left + 1]));
        out[i] = colorOf({first + at * (last - first), std::lerp(a.a, b.a, share), std::lerp(a.b, b.b, share)});
    }
    return out;
}

}  // namespace

std::array<QRgb, 256> spectrumColors(bool dark) {
    static const auto darkOnes = made(darkHues), lightOnes = made(lightHues);
    return dark ? darkOnes : lightOnes;
}

double SpectrumAxis::shareOf(double frequency) const {
    if (highest() <= lowest) { return 0; }
    if (isLinear) { return frequency / highest(); }
    return std::log(std::max(frequency, 1e-3) / lowest) / std::log(highest() / lowest);
}

double SpectrumAxis::frequencyAt(double share) const {
    return isLinear ? share * highest() : lowest * std::pow(highest() / lowest, share);
}

std::vector<SpectrumAxis::Label> SpectrumAxis::labels(double height, double spacing) const {
    std::vector<Label> out;
    const auto text = [](double hz) { return hz < 1000 ? QString::number(hz) : QString::number(hz / 1000) + "k"; };
    const auto add = [&](double hz, double reach) {
        const double y = shareOf(hz) * height;
        if (y < spacing || y > height - spacing) { return; }
        if (!out.empty() && y - shareOf(out.back().frequency) * height < reach) { return; }
        out.push_back({hz, text(hz)});
    };
    if (isLinear) {
        double step = 1000;
        for (const double factor : {2.0, 2.5, 2.0, 2.0, 2.5, 2.0}) {
            if (step / highest() * height >= spacing) { break; }
            step *= factor;
        }
        for (double hz = step; hz < highest(); hz += step) { add(hz, 0); }
        return out;
    }
    // Decades first: the steps between them only where there is room for all.
    const double decade = std::log(10) / std::log(highest() / lowest) * height;
    const std::vector<double> steps = decade > 4 * spacing ? std::vector{1.0, 2.0, 5.0} : std::vector{1.0};
    for (const double ten : {10.0, 100.0, 1000.0, 10000.0, 100000.0}) {
        for (const double step : steps) { add(ten * step, spacing); }
    }
    return out;
}

}  // namespace brindlehum

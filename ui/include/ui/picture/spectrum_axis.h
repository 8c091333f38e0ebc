// SpectrumAxis: where frequencies stand in a spectrogram, and its colours.
#pragma once

#include <QColor>
#include <QString>
#include <array>
#include <vector>

namespace brindlehum {

struct SpectrumAxis {
    double sampleRate = 0;  // Hz; the top is half of it
    bool isLinear = false;  // else logarithmic, from `lowest`

    static constexpr double lowest = 30;  // Hz
    double highest() const { return sampleRate / 2; }
    // The share of the height from the bottom, 0 to 1 for what is shown, and back.
    double shareOf(double frequency) const;
    double frequencyAt(double share) const;

    struct Label {
        double frequency = 0;
        QString text;  // "500", "2k"
    };
    // Round frequencies, at least `spacing` apart at this height and as far from its ends; the lowest first.
    std::vector<Label> labels(double height, double spacing) const;

    bool operator==(const SpectrumAxis&) const = default;
};

// 256 colours from silence, the ground of waves, to full scale. Equal steps look equal: lightness in OKLab rises evenly
// in the dark theme and falls evenly in the light one.
std::array<QRgb, 256> spectrumColors(bool dark);

}  // namespace brindlehum

// Draws columns of minima and maxima straight into the image: a painter takes several times as long for so many.
#include "ui/editor/lane_picture.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "ui/picture/waveform_picture.h"

namespace brindlehum {
namespace {

// A row of a lane, and the rows of a value around its middle; a float file may hold any value.
struct Place {
    double middle = 0;
    double scale = 1;
    int top = 0;  // of the lane, as is the next
    int bottom = 0;
    int rowOf(double value, double (*round)(double)) const {
        return int(std::clamp(round(middle - value * scale), double(top), double(bottom)));
    }
};

double down(double value) {
    return std::floor(value);
}

double up(double value) {
    return std::ceil(value);
}

}  // namespace

void LanePicture::drawColumns(const Sound& sound, int from, int to) {
    const int lanes = std::min(sound.channels(), mostLanes);
    const double perColumn = visible_.length / image_.width();
    const double lane = double(image_.height()) / std::max(lanes, 1);
    const qsizetype stride = image_.bytesPerLine() / qsizetype(sizeof(QRgb));
    auto* pixels = reinterpret_cast<QRgb*>(image_.bits());
    for (int row = 0; row < image_.height(); ++row) { std::fill_n(pixels + row * stride + from, to - from, 0U); }
    for (int c = 0; c < lanes; ++c) {
        const Place place{lane * (c + 0.5), lane * WaveformPicture::laneFill, int(lane * c), int(lane * (c + 1))};
        for (int column = from; column < to; ++column) {
            const auto start = int64_t(std::floor(visible_.first + column * perColumn));
            const auto end = std::min(int64_t(std::ceil(visible_.first + (column + 1) * perColumn)), sound.frames());
            if (start < 0 || start >= end) { continue; }
            const PeakRange range = sound.track(c).peaksAbout(start, end, int64_t(perColumn / 2));
            const int top = place.rowOf(range.high, down);
            const int bottom = std::min(std::max(place.rowOf(range.low, up), top + 1), image_.height());
            for (int row = top; row < bottom; ++row) { pixels[row * stride + column] = color_; }
        }
    }
    drawn_ += to - from;
}

std::pair<int, int> LanePicture::scroll(int columns) {
    const int width = image_.width();
    const int kept = width - std::abs(columns);
    for (int row = 0; row < image_.height(); ++row) {
        auto* line = reinterpret_cast<QRgb*>(image_.scanLine(row));
        std::memmove(line + std::max(-columns, 0), line + std::max(columns, 0), size_t(kept) * sizeof(QRgb));
    }
    return columns > 0 ? std::pair(kept, width) : std::pair(0, -columns);
}

const QImage& LanePicture::draw(const Wanted& wanted) {
    drawn_ = 0;
    const double perColumn = wanted.visible.length / std::max(wanted.size.width(), 1);
    const bool isSame = image_.size() == wanted.size && revision_ == wanted.revision && color_ == wanted.color.rgba() &&
                        visible_.length == wanted.visible.length;
    const double columns = perColumn > 0 ? std::round((wanted.visible.first - visible_.first) / perColumn) : 0;
    if (isSame && std::abs(columns) < wanted.size.width()) {
        if (columns == 0) { return image_; }
        visible_.first += columns * perColumn;
        const auto [from, to] = scroll(int(columns));
        drawColumns(wanted.sound, from, to);
        return image_;
    }
    if (image_.size() != wanted.size) { image_ = QImage(wanted.size, QImage::Format_ARGB32_Premultiplied); }
    color_ = wanted.color.rgba();
    revision_ = wanted.revision;
    visible_ = wanted.visible;
    drawColumns(wanted.sound, 0, image_.width());
    return image_;
}

}  // namespace brindlehum

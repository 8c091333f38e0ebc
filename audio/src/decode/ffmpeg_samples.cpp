// Converts the sample formats of decoded FFmpeg frames.
#include "decode/ffmpeg_samples.h"

#include <algorithm>
#include <cstdint>

namespace brindlehum {

namespace {

inline float toFloat(uint8_t x) {
    return (float(x) - 128.0F) / 128.0F;
}
inline float toFloat(int16_t x) {
    return float(x) / 32768.0F;
}
inline float toFloat(int32_t x) {
    return float(double(x) / 2147483648.0);
}
inline float toFloat(float x) {
    return x;
}
inline float toFloat(double x) {
    return float(x);
}

template <typename Sample>
void convert(const AVFrame& frame, int from, int count, float* const* planes, int channels, int at) {
    const int held = frame.ch_layout.nb_channels;
    const bool planar = av_sample_fmt_is_planar(AVSampleFormat(frame.format));
    for (int c = 0; c < channels; ++c) {
        float* out = planes[c] + at;
        if (c >= held) {
            std::fill_n(out, count, 0.0F);
            continue;
        }
        const int stride = planar ? 1 : held;
        const auto* in = reinterpret_cast<const Sample*>(frame.extended_data[planar ? c : 0]);
        in += ptrdiff_t(from) * stride + (planar ? 0 : c);
        for (int i = 0; i < count; ++i) { out[i] = toFloat(in[ptrdiff_t(i) * stride]); }
    }
}

}  // namespace

bool toPlanes(const AVFrame& frame, int from, int count, float* const* planes, int channels, int at) {
    switch (av_get_packed_sample_fmt(AVSampleFormat(frame.format))) {
        case AV_SAMPLE_FMT_U8:
            convert<uint8_t>(frame, from, count, planes, channels, at);
            return true;
        case AV_SAMPLE_FMT_S16:
            convert<int16_t>(frame, from, count, planes, channels, at);
            return true;
        case AV_SAMPLE_FMT_S32:
            convert<int32_t>(frame, from, count, planes, channels, at);
            return true;
        case AV_SAMPLE_FMT_FLT:
            convert<float>(frame, from, count, planes, channels, at);
            return true;
        case AV_SAMPLE_FMT_DBL:
            convert<double>(frame, from, count, planes, channels, at);
            return true;
        default:
            return false;
    }
}

}  // namespace brindlehum

// Lane captions by source format.
#include "mix/player/lane_labels.h"

#include <algorithm>

namespace brindlehum {

namespace {

std::string ambisonicLabel(AmbiNorm norm, int channel) {
    static constexpr const char* fuma[] = {"W", "X", "Y", "Z"};
    static constexpr const char* acn[] = {"W", "Y", "Z", "X"};
    if (channel > 3) { return std::to_string(channel); }
    return norm == AmbiNorm::fuma ? fuma[channel] : acn[channel];
}

}  // namespace

std::vector<std::string> laneLabels(const SourceFormat& format, int channels) {
    std::vector<std::string> labels;
    if (const SpeakerList* list = format.asSpeakers()) {
        if (*list == SpeakerList{SpeakerID::C}) { return {""}; }
        for (size_t i = 0; i < list->size() && int(i) < channels; ++i) { labels.push_back(label((*list)[i], *list)); }
    } else if (const Ambisonic* field = format.asAmbisonic()) {
        const int lanes = field->norm == AmbiNorm::fuma ? std::min(channels, 4) : channels;
        for (int c = 0; c < lanes; ++c) { labels.push_back(ambisonicLabel(field->norm, c)); }
    } else {
        for (int c = 1; c <= channels; ++c) { labels.push_back(std::to_string(c)); }
    }
    return labels;
}

}  // namespace brindlehum

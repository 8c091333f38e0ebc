// What the player's surfaces read from its state: names, offers and texts.
#include <cmath>
#include <cstdio>

#include "mix/player/player_model.h"
#include "upmix/upmix_planner.h"

namespace brindlehum {

namespace {

std::string ambisonicLabel(AmbiNorm norm, int channel) {
    static constexpr const char* fuma[] = {"W", "X", "Y", "Z"};
    static constexpr const char* acn[] = {"W", "Y", "Z", "X"};
    if (channel > 3) { return std::to_string(channel); }
    return norm == AmbiNorm::fuma ? fuma[channel] : acn[channel];
}

}  // namespace

std::optional<SourceFormat> PlayerModel::source() const {
    if (!info_) { return std::nullopt; }
    return formatOverride_ ? *formatOverride_ : info_->detected;
}

bool PlayerModel::canUpmix() const {
    const auto format = source();
    const SpeakerList* list = format ? format->asSpeakers() : nullptr;
    if (!list || int(list->size()) != info_->channels) { return false; }
    const OutputProfile& profile = settings_.activeProfile();
    const bool headphones = profile.kind == OutputProfile::Kind::headphones;
    return UpmixPlanner::applies(*list, speakers(headphones ? LayoutID::l714 : profile.layout));
}

std::vector<std::string> PlayerModel::laneLabels() const {
    std::vector<std::string> labels;
    const auto format = source();
    if (!format) { return labels; }
    if (const SpeakerList* list = format->asSpeakers()) {
        if (*list == SpeakerList{SpeakerID::C}) { return {""}; }
        for (size_t i = 0; i < list->size() && int(i) < info_->channels; ++i) {
            labels.push_back(label((*list)[i], *list));
        }
    } else if (const Ambisonic* field = format->asAmbisonic()) {
        const int lanes = field->norm == AmbiNorm::fuma ? std::min(info_->channels, 4) : info_->channels;
        for (int c = 0; c < lanes; ++c) { labels.push_back(ambisonicLabel(field->norm, c)); }
    } else {
        for (int c = 1; c <= info_->channels; ++c) { labels.push_back(std::to_string(c)); }
    }
    return labels;
}

std::vector<DragExport> PlayerModel::dragOptions() const {
    return {DragExport::original};
}

std::optional<std::filesystem::path> PlayerModel::exportForDrag(bool selectionOnly) {
    if (!info_) { return std::nullopt; }
    if (selectionOnly && selection_) {
        fail("Dragging a selection isn't available yet");
        return std::nullopt;
    }
    std::error_code status;
    if (!std::filesystem::is_regular_file(info_->url, status)) {
        fail("Can't read " + info_->url.filename().string());
        return std::nullopt;
    }
    return info_->url;
}

std::string PlayerModel::time(double seconds) {
    if (!std::isfinite(seconds) || seconds < 0) { return "0:00.000"; }
    // Whole milliseconds first: a rest of 59.9996 s is the next minute, and no locale sets its own decimal sign.
    const long long ms = std::llround(std::min(seconds, 1e12) * 1000);
    char text[64];
    std::snprintf(text, sizeof text, "%lld:%02lld.%03lld", ms / 60000, ms / 1000 % 60, ms % 1000);
    return text;
}

}  // namespace brindlehum

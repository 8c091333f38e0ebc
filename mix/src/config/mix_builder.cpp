// MixBuilder: turns source format, profile and listening options into the one matrix of a render configuration.
#include "mix/config/mix_builder.h"

#include <algorithm>
#include <cmath>

#include "core/mn_upmix.h"
#include "upmix/upmix_planner.h"

namespace brindlehum::MixBuilder {
namespace {

// An all-zero matrix of `rows` device channels or virtual speakers, to which rows of gains are added.
MixConfig silentConfig(int channels, int rows) {
    MixConfig config;
    config.inChannels = channels;
    config.rows = rows;
    config.matrix.assign(size_t(rows) * size_t(channels), 0.0F);
    return config;
}

// Drops the gains when the matrix has no such row.
void addRow(MixConfig& config, int row, const std::vector<double>& gains, double scale) {
    if (row < 0 || row >= config.rows) { return; }
    float* out = config.matrix.data() + size_t(row) * size_t(config.inChannels);
    for (size_t c = 0; c < gains.size(); ++c) { out[c] += float(scale * gains[c]); }
}

MixConfig binauralConfig(const SourceFormat& source, int channels, const OutputProfile& profile,
                         const Rotation& rotation) {
    BinauralMatrix binaural = binauralMatrix(source, channels, rotation);
    MixConfig config = silentConfig(channels, int(binaural.dirs.size()));
    for (int r = 0; r < config.rows; ++r) { addRow(config, r, binaural.matrix[size_t(r)], 1); }
    config.toBinaural = true;
    config.binLeft = profile.headphoneLeft;
    config.binRight = profile.headphoneRight;
    config.virtualDirections = std::move(binaural.dirs);
    return config;
}

// Routes the two sides of a mono, stereo or discrete source straight to the ears.
MixConfig directHeadphones(const SourceFormat& source, int channels, const OutputProfile& profile, int deviceChannels,
                           ListenMode listen, const Rotation& rotation) {
    const Matrix m = layoutMatrix(source, channels, speakers(LayoutID::stereo), listen, rotation, false);
    MixConfig config = silentConfig(channels, deviceChannels);
    addRow(config, profile.headphoneLeft, m[0], 1);
    addRow(config, profile.headphoneRight, m[1], 1);
    return config;
}

MixConfig speakerConfig(const SourceFormat& source, int channels, const OutputProfile& profile, int deviceChannels,
                        ListenMode listen, const Rotation& rotation, bool monoToCenter) {
    const Matrix m = layoutMatrix(source, channels, speakers(profile.layout), listen, rotation, monoToCenter);
    MixConfig config = silentConfig(channels, deviceChannels);
    for (size_t r = 0; r < m.size(); ++r) {
        const int output = r < profile.outputs.size() ? profile.outputs[r] : int(r);
        const double trimDb = r < profile.trimsDB.size() ? profile.trimsDB[r] : 0.0;
        addRow(config, output, m[r], std::pow(10.0, trimDb / 20));
    }
    return config;
}

}  // namespace

std::optional<SpeakerList> upmixRoom(const SourceFormat& source, int channels, const OutputProfile& profile) {
    const SpeakerList* list = source.asSpeakers();
    if (!list || int(list->size()) != channels || channels > mn_upmix_max_in) { return std::nullopt; }
    const bool headphones = profile.kind == OutputProfile::Kind::headphones;
    const SpeakerList& target = speakers(headphones ? LayoutID::l714 : profile.layout);
    return UpmixPlanner::applies(*list, target) ? std::optional(target) : std::nullopt;
}

MixConfig config(const SourceFormat& source, int channels, const OutputProfile& profile, int deviceChannels,
                 ListenMode listen, const Rotation& rotation, bool monoToCenter,
                 const std::optional<UpmixSettings>& upmix) {
    const bool headphones = profile.kind == OutputProfile::Kind::headphones;
    const SpeakerList* list = source.asSpeakers();

    const auto target = upmix && upmix->enabled ? upmixRoom(source, channels, profile) : std::nullopt;
    if (target) {
        const auto room = SourceFormat::speakers(*target);
        const int outs = int(target->size());
        MixConfig config = headphones ? binauralConfig(room, outs, profile, rotation)
                                      : speakerConfig(room, outs, profile, std::max(deviceChannels, 1),
                                                      ListenMode::normal, {}, monoToCenter);
        config.upmix = UpmixRequest{*list, *target, upmix->params};
        return config;
    }

    const int device = std::max(deviceChannels, 1);
    if (!headphones) { return speakerConfig(source, channels, profile, device, listen, rotation, monoToCenter); }
    if (source.asDiscrete() || (list && list->size() <= 2)) {
        return directHeadphones(source, channels, profile, device, listen, rotation);
    }
    return binauralConfig(source, channels, profile, rotation);
}

}  // namespace brindlehum::MixBuilder

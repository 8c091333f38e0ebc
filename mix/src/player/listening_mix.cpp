// ListeningMix: the mix of a snapshot, and the fold-down that replaces an unavailable binaural one.
#include "mix/player/listening_mix.h"

#include <cmath>

#include "mix/config/mix_builder.h"

namespace brindlehum {

namespace {

OutputProfile stereoOnEars(OutputProfile headphones) {
    headphones.kind = OutputProfile::Kind::speakers;
    headphones.layout = LayoutID::stereo;
    headphones.outputs = {headphones.headphoneLeft, headphones.headphoneRight};
    headphones.trimsDB.clear();
    return headphones;
}

MixConfig through(const OutputProfile& profile, const ListeningSnapshot& snapshot) {
    return MixBuilder::config(snapshot.source, snapshot.channels, profile, snapshot.deviceChannels,
                              snapshot.channels == 2 ? snapshot.listen : ListenMode::normal, snapshot.rotation,
                              snapshot.monoToCenter, snapshot.upmix);
}

ListeningMix mixOf(const ListeningSnapshot& snapshot) {
    ListeningMix mix{through(snapshot.profile, snapshot)};
    if (mix.config.toBinaural && snapshot.binauralMissing) {
        mix = {through(stereoOnEars(snapshot.profile), snapshot), true};
    }
    return mix;
}

}  // namespace

ListeningMix listeningMix(const ListeningSnapshot& snapshot) {
    if (!snapshot.comparison) { return mixOf(snapshot); }
    ListeningSnapshot heard = snapshot;
    if (snapshot.comparison->plain) {
        heard.upmix.enabled = false;
        heard.listen = ListenMode::normal;
    }
    ListeningMix mix = mixOf(heard);
    const auto gain = float(std::pow(10, snapshot.comparison->gainDb / 20));
    for (float& g : mix.config.matrix) { g *= gain; }
    return mix;
}

}  // namespace brindlehum

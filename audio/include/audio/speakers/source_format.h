// SourceFormat: the meaning of a file's channels.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "audio/speakers/speakers.h"

namespace brindlehum {

enum class AmbiNorm : uint8_t { sn3d, n3d, fuma };
std::string_view rawValue(AmbiNorm norm);
std::optional<AmbiNorm> ambiNormFromRaw(std::string_view raw);

// Spherical-harmonic components: in ACN order with sn3d and n3d, W X Y Z with fuma.
struct Ambisonic {
    int order = 1;
    AmbiNorm norm = AmbiNorm::sn3d;
    bool operator==(const Ambisonic&) const = default;
};

// Channels without spatial meaning.
struct Discrete {
    int channels = 0;
    bool operator==(const Discrete&) const = default;
};

// A plain value, compared by its content, including the order of a speaker list.
class SourceFormat {
public:
    static SourceFormat speakers(SpeakerList list) { return SourceFormat(std::move(list)); }
    static SourceFormat ambisonic(int order, AmbiNorm norm) { return SourceFormat(Ambisonic{order, norm}); }
    static SourceFormat discrete(int channels) { return SourceFormat(Discrete{channels}); }
    static SourceFormat mono() { return speakers({SpeakerID::C}); }
    static SourceFormat stereo() { return speakers({SpeakerID::L, SpeakerID::R}); }

    // Null when the format is of another kind.
    const SpeakerList* asSpeakers() const { return std::get_if<SpeakerList>(&value_); }
    const Ambisonic* asAmbisonic() const { return std::get_if<Ambisonic>(&value_); }
    const Discrete* asDiscrete() const { return std::get_if<Discrete>(&value_); }

    int channels() const;
    // "Stereo", "5.1 Film", "7.1.4 (WAVE order)", "AmbiX 1st order", "7-ch discrete": for menus and file information.
    std::string displayName() const;
    // The formats offered for a channel count; the first is the default. Empty below 1 channel.
    static std::vector<SourceFormat> options(int channels);
    // The layouts of this channel count whose order in a WAV file with a channel mask isn't their own: 7.1, 7.1.4.
    static std::vector<SourceFormat> waveOrders(int channels);

    bool operator==(const SourceFormat&) const = default;

private:
    using Value = std::variant<SpeakerList, Ambisonic, Discrete>;
    explicit SourceFormat(Value value) : value_(std::move(value)) {}
    Value value_;
};

// For storing: "speakers L R C", "ambisonic 1 sn3d", "discrete 12".
std::string rawValue(const SourceFormat& format);
std::optional<SourceFormat> sourceFormatFromRaw(std::string_view raw);

}  // namespace brindlehum

// Parses the words of `render`.
#include "render_words.h"

#include <strings.h>

#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>

#include "base/error.h"
#include "mix/render/render_context.h"
#include "upmix_word.h"
#include "word_values.h"

namespace brindlehum::cli {

const std::string_view renderHelp =
    "  layout NAME        speakers: stereo, l51, l71, l514, l712, l714 or l916 (default stereo)\n"
    "  headphones         binaural for three channels and more\n"
    "  outputs 0,1,-1     device channel of each speaker, from 0; -1 is off\n"
    "  trims 0,-3         trim of each speaker in dB\n"
    "  channels N         channels of the device (default: as many as needed)\n"
    "  listen MODE        normal, mono, left, right or midSide\n"
    "  format NAME        reads the file as, say, \"AmbiX 1st order\" or \"5.1 Film\"\n"
    "  yaw D, pitch D, roll D   turns an Ambisonic field, in degrees\n"
    "  upmix PRESET       spreads the file over all speakers: music, film, game, hall, speech, broadcast or one of "
    "your\n"
    "                     own by name; behind it any of its numbers, such as strength 0.5 or lfe split\n"
    "  mono center|pair   where a mono file goes (default center)\n"
    "  rate HZ            rate of the device (default: the file's)\n"
    "  gain DB            volume\n"
    "  block N            frames a device block, 1 to 4096 (default 256)\n"
    "  from S, to S       the part to render, in seconds\n";

namespace {

constexpr double minRate = 8000;  // Hz
constexpr double maxRate = 384000;

std::vector<std::string> parts(const std::string& text) {
    std::vector<std::string> out(1);
    for (const char c : text) {
        if (c == ',') {
            out.emplace_back();
        } else {
            out.back() += c;
        }
    }
    return out;
}

using Setter = void (*)(RenderRequest& request, const std::string& word, const std::string& value);

// Words that are followed by a value.
const std::map<std::string, Setter, std::less<>> setters = {
    {"layout", [](auto& r, auto& w, auto& v) { r.profile.layout = known(w, v, layoutFromRaw(v)); }},
    {"outputs",
     [](auto& r, auto& w, auto& v) {
         for (const auto& part : parts(v)) {
             r.profile.outputs.push_back(wholeNumberAfter(w, part, -1, RenderContext::maxDeviceChannels - 1));
         }
     }},
    {"trims",
     [](auto& r, auto& w, auto& v) {
         for (const auto& part : parts(v)) { r.profile.trimsDB.push_back(numberAfter(w, part, -120, 60)); }
     }},
    {"channels",
     [](auto& r, auto& w, auto& v) { r.deviceChannels = wholeNumberAfter(w, v, 1, RenderContext::maxDeviceChannels); }},
    {"listen", [](auto& r, auto& w, auto& v) { r.listen = known(w, v, listenModeFromRaw(v)); }},
    {"format", [](auto& r, auto&, auto& v) { r.format = v; }},
    {"yaw", [](auto& r, auto& w, auto& v) { r.rotation.yaw = numberAfter(w, v, -360, 360); }},
    {"pitch", [](auto& r, auto& w, auto& v) { r.rotation.pitch = numberAfter(w, v, -360, 360); }},
    {"roll", [](auto& r, auto& w, auto& v) { r.rotation.roll = numberAfter(w, v, -360, 360); }},
    {"upmix", [](auto& r, auto& w, auto& v) { r.upmix = upmixAfter(w, v); }},
    {"mono",
     [](auto& r, auto& w, auto& v) {
         if (v != "center" && v != "pair") { refuse(w, v); }
         r.monoToCenter = v == "center";
     }},
    {"rate", [](auto& r, auto& w, auto& v) { r.rate = wholeNumberAfter(w, v, minRate, maxRate); }},
    {"gain", [](auto& r, auto& w, auto& v) { r.gainDb = numberAfter(w, v, -144, 60); }},
    {"block", [](auto& r, auto& w, auto& v) { r.block = wholeNumberAfter(w, v, 1, RenderContext::maxFrames); }},
    {"from", [](auto& r, auto& w, auto& v) { r.from = numberAfter(w, v, 0, 1e9); }},
    {"to", [](auto& r, auto& w, auto& v) { r.to = numberAfter(w, v, 0, 1e9); }},
};

// Whether the word names a number of the upmix; its value is then set.
bool readUpmixNumber(RenderRequest& request, const std::string& word, const std::string& text) {
    nlohmann::json numbers = request.upmix ? request.upmix->params : UpmixParams();
    const auto field = numbers.find(word);
    if (field == numbers.end()) { return false; }
    if (!request.upmix) { throw UsageError("\"" + word + "\" belongs behind \"upmix PRESET\""); }
    if (field->is_boolean()) {
        if (text != "on" && text != "off") { refuse(word, text); }
        *field = text == "on";
    } else if (field->is_number()) {
        *field = numberAfter(word, text, -1e6, 1e6);
    } else {
        *field = text;
    }
    request.upmix->params = numbers.get<UpmixParams>();
    if (nlohmann::json(request.upmix->params)[word] != *field) { refuse(word, text); }
    return true;
}

}  // namespace

RenderRequest readRenderWords(Words words) {
    if (words.size() < 2) { throw UsageError("no output file given"); }
    RenderRequest request;
    request.file = words[0];
    request.out = words[1];
    if (strcasecmp(request.out.extension().c_str(), ".wav") != 0) {
        throw UsageError("the output \"" + words[1] + "\" must end in .wav");
    }
    for (size_t i = 2; i < words.size(); ++i) {
        const std::string& word = words[i];
        if (word == "headphones") {
            request.profile.kind = OutputProfile::Kind::headphones;
            continue;
        }
        const bool isLast = i + 1 == words.size();
        const auto setter = setters.find(word);
        if (setter == setters.end()) {
            if (readUpmixNumber(request, word, isLast ? "" : words[i + 1])) {
                ++i;
                continue;
            }
            throw UsageError("unknown word \"" + word + "\"");
        }
        if (isLast) { throw UsageError("no value after \"" + word + "\""); }
        setter->second(request, word, words[++i]);
    }
    return request;
}

int neededChannels(const OutputProfile& profile) {
    if (profile.kind == OutputProfile::Kind::headphones) {
        return std::max(profile.headphoneLeft, profile.headphoneRight) + 1;
    }
    int needed = 1;
    const int rows = int(speakers(profile.layout).size());
    for (int r = 0; r < rows; ++r) {
        const bool mapped = size_t(r) < profile.outputs.size();
        needed = std::max(needed, (mapped ? profile.outputs[size_t(r)] : r) + 1);
    }
    return needed;
}

SourceFormat chooseFormat(const AudioFileInfo& info, const std::optional<std::string>& name) {
    if (!name) { return info.detected; }
    std::vector<SourceFormat> choices = SourceFormat::options(info.channels);
    if (std::ranges::find(choices, info.detected) == choices.end()) { choices.push_back(info.detected); }
    std::string names;
    for (const SourceFormat& choice : choices) {
        if (strcasecmp(choice.displayName().c_str(), name->c_str()) == 0) { return choice; }
        names += (names.empty() ? "" : ", ") + choice.displayName();
    }
    throw Error("format can't be \"" + *name + "\" for this file, but one of: " + names);
}

}  // namespace brindlehum::cli

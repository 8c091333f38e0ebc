// OutputProfile: the factory profiles and the JSON form.
#include "settings/output_profile.h"

#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>
#include <numeric>

namespace brindlehum {

namespace {

using nlohmann::json;

// A profile with one device channel for each speaker, in order and without trims.
OutputProfile makeProfile(std::string name, OutputProfile::Kind kind, LayoutID layout) {
    OutputProfile profile;
    profile.id = UUID::random();
    profile.name = std::move(name);
    profile.kind = kind;
    profile.layout = layout;
    profile.outputs.resize(speakers(layout).size());
    std::iota(profile.outputs.begin(), profile.outputs.end(), 0);
    profile.followsPositions = true;
    profile.trimsDB.assign(profile.outputs.size(), 0.0);
    return profile;
}

[[noreturn]] void refuse(const json& at, const char* wanted) {
    throw json::type_error::create(302, std::string("expected ") + wanted, &at);
}

// The library's own conversion would truncate fractions, wrap large numbers and accept booleans as numbers.
int integer(const json& value) {
    if (!value.is_number()) { refuse(value, "an integer"); }
    const double number = value.get<double>();
    if (number != std::trunc(number) || std::abs(number) > std::numeric_limits<int>::max()) {
        refuse(value, "an integer of 32 bits");
    }
    return int(number);
}

std::vector<int> integers(const json& value) {
    if (!value.is_array()) { refuse(value, "a list of integers"); }
    std::vector<int> list;
    for (const json& entry : value) { list.push_back(integer(entry)); }
    return list;
}

bool isSequence(const std::vector<int>& outputs) {
    for (size_t i = 0; i < outputs.size(); ++i) {
        if (outputs[i] != int(i)) { return false; }
    }
    return true;
}

UUID identity(const json& value) {
    const std::optional<UUID> id = UUID::parse(value.get<std::string>());
    if (!id) { refuse(value, "a UUID"); }
    return *id;
}

OutputProfile::Kind kindOf(const json& value) {
    for (const auto kind : {OutputProfile::Kind::speakers, OutputProfile::Kind::headphones}) {
        if (value.get<std::string>() == rawValue(kind)) { return kind; }
    }
    refuse(value, "speakers or headphones");
}

LayoutID layoutOf(const json& value) {
    const std::optional<LayoutID> layout = layoutFromRaw(value.get<std::string>());
    if (!layout) { refuse(value, "a speaker layout"); }
    return *layout;
}

}  // namespace

std::vector<OutputProfile> OutputProfile::defaults() {
    return {makeProfile("Room 9.1.6", Kind::speakers, LayoutID::l916),
            makeProfile("Nearfield", Kind::speakers, LayoutID::stereo),
            makeProfile("Headphones", Kind::headphones, LayoutID::stereo)};
}

OutputProfile OutputProfile::newOutput() {
    return makeProfile("New Output", Kind::speakers, LayoutID::stereo);
}

std::string_view rawValue(OutputProfile::Kind kind) {
    return kind == OutputProfile::Kind::speakers ? "speakers" : "headphones";
}

void to_json(json& out, const OutputProfile& profile) {
    out = {{"id", profile.id.string()},
           {"name", profile.name},
           {"kind", rawValue(profile.kind)},
           {"layout", rawValue(profile.layout)},
           {"outputs", profile.outputs},
           {"followsPositions", profile.followsPositions},
           {"trimsDB", profile.trimsDB},
           {"headphoneLeft", profile.headphoneLeft},
           {"headphoneRight", profile.headphoneRight}};
    if (profile.deviceUID) { out["deviceUID"] = *profile.deviceUID; }
}

void from_json(const json& in, OutputProfile& profile) {
    OutputProfile read;
    read.id = identity(in.at("id"));
    in.at("name").get_to(read.name);
    read.kind = kindOf(in.at("kind"));
    if (const auto uid = in.find("deviceUID"); uid != in.end() && !uid->is_null()) {
        read.deviceUID = uid->get<std::string>();
    }
    read.layout = layoutOf(in.at("layout"));
    read.outputs = integers(in.at("outputs"));
    const auto follows = in.find("followsPositions");
    read.followsPositions =
        follows != in.end() && follows->is_boolean() ? follows->get<bool>() : isSequence(read.outputs);
    in.at("trimsDB").get_to(read.trimsDB);
    read.headphoneLeft = integer(in.at("headphoneLeft"));
    read.headphoneRight = integer(in.at("headphoneRight"));
    profile = std::move(read);
}

}  // namespace brindlehum

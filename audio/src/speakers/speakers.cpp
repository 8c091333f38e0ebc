// The tables of speaker positions, layouts and directions.
#include "audio/speakers/speakers.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace brindlehum {

namespace {

using enum SpeakerID;

constexpr double radians = std::numbers::pi / 180;

struct Place {
    std::string_view name;
    Direction direction;
};

constexpr std::array<Place, speakerCount> places = {{
    {"L", {30, 0}},      {"R", {-30, 0}},    {"C", {0, 0}},      {"LFE", {0, 0}},    {"Ls", {110, 0}},
    {"Rs", {-110, 0}},   {"Lrs", {135, 0}},  {"Rrs", {-135, 0}}, {"Lw", {60, 0}},    {"Rw", {-60, 0}},
    {"Ltf", {45, 45}},   {"Rtf", {-45, 45}}, {"Ltm", {90, 60}},  {"Rtm", {-90, 60}}, {"Ltr", {135, 45}},
    {"Rtr", {-135, 45}}, {"Lc", {15, 0}},    {"Rc", {-15, 0}},   {"Cs", {180, 0}},   {"Tc", {0, 90}},
}};

struct Layout {
    std::string_view raw;
    std::string_view display;
    SpeakerList speakers;
    SpeakerList film;
};

const std::array<Layout, allLayouts.size()>& layouts() {
    static const std::array<Layout, allLayouts.size()> table = {{
        {"stereo", "Stereo", {L, R}, {}},
        {"l51", "5.1", {L, R, C, LFE, Ls, Rs}, {L, C, R, Ls, Rs, LFE}},
        {"l71", "7.1", {L, R, C, LFE, Ls, Rs, Lrs, Rrs}, {L, C, R, Ls, Rs, Lrs, Rrs, LFE}},
        {"l514", "5.1.4", {L, R, C, LFE, Ls, Rs, Ltf, Rtf, Ltr, Rtr}, {}},
        {"l712", "7.1.2", {L, R, C, LFE, Ls, Rs, Lrs, Rrs, Ltm, Rtm}, {}},
        {"l714",
         "7.1.4",
         {L, R, C, LFE, Ls, Rs, Lrs, Rrs, Ltf, Rtf, Ltr, Rtr},
         {L, C, R, Ls, Rs, Lrs, Rrs, LFE, Ltf, Rtf, Ltr, Rtr}},
        {"l916", "9.1.6", {L, R, C, LFE, Ls, Rs, Lrs, Rrs, Lw, Rw, Ltf, Rtf, Ltm, Rtm, Ltr, Rtr}, {}},
    }};
    return table;
}

const Layout& entry(LayoutID layout) {
    return layouts()[size_t(layout)];
}

}  // namespace

double Direction::angle(const Direction& to) const {
    const auto a = unitVector();
    const auto b = to.unitVector();
    return std::acos(std::clamp(a[0] * b[0] + a[1] * b[1] + a[2] * b[2], -1.0, 1.0)) / radians;
}

std::array<double, 3> Direction::unitVector() const {
    const double a = az * radians;
    const double e = el * radians;
    return {std::cos(a) * std::cos(e), std::sin(a) * std::cos(e), std::sin(e)};
}

Direction Direction::fromVector(const std::array<double, 3>& v) {
    return {std::atan2(v[1], v[0]) / radians, std::atan2(v[2], std::hypot(v[0], v[1])) / radians};
}

bool isRearLayout(const SpeakerList& list) {
    return std::ranges::any_of(list, [](SpeakerID s) { return s == Lrs || s == Rrs; });
}

std::string_view rawValue(SpeakerID speaker) {
    return places[size_t(speaker)].name;
}

std::optional<SpeakerID> speakerFromRaw(std::string_view raw) {
    for (size_t i = 0; i < places.size(); ++i) {
        if (places[i].name == raw) { return static_cast<SpeakerID>(i); }
    }
    return std::nullopt;
}

Direction direction(SpeakerID speaker, const SpeakerList& in) {
    if (speaker == Ls && isRearLayout(in)) { return {90, 0}; }
    if (speaker == Rs && isRearLayout(in)) { return {-90, 0}; }
    return places[size_t(speaker)].direction;
}

std::string label(SpeakerID speaker, const SpeakerList& in) {
    if (speaker == Ls && isRearLayout(in)) { return "Lss"; }
    if (speaker == Rs && isRearLayout(in)) { return "Rss"; }
    return std::string(rawValue(speaker));
}

std::string_view rawValue(LayoutID layout) {
    return entry(layout).raw;
}

std::optional<LayoutID> layoutFromRaw(std::string_view raw) {
    for (const LayoutID layout : allLayouts) {
        if (rawValue(layout) == raw) { return layout; }
    }
    return std::nullopt;
}

std::string_view displayName(LayoutID layout) {
    return entry(layout).display;
}

const SpeakerList& speakers(LayoutID layout) {
    return entry(layout).speakers;
}

const SpeakerList* filmOrder(LayoutID layout) {
    return entry(layout).film.empty() ? nullptr : &entry(layout).film;
}

}  // namespace brindlehum

// Writes and reads one line of a change log.
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <limits>
#include <nlohmann/json.hpp>

#include "base/stored_path.h"
#include "library/team/change_log.h"

namespace brindlehum::ChangeLog {
namespace {

using nlohmann::json;
using std::chrono::sys_seconds;

constexpr int maxRating = 5;
constexpr sys_seconds firstTime = std::chrono::sys_days(std::chrono::year(2000) / 1 / 1);
constexpr sys_seconds timesEnd = std::chrono::sys_days(std::chrono::year(2100) / 1 / 1);

EditTime sensible(EditTime time) {
    return time < firstTime || time >= timesEnd ? firstTime : time;
}

// ISO 8601 in UTC, as "2024-05-01T09:30:00.25Z"; without a fraction when that is zero.
std::string isoTime(EditTime time) {
    const auto day = std::chrono::floor<std::chrono::days>(time);
    const std::chrono::year_month_day date{day};
    const std::chrono::hh_mm_ss clock{time - day};
    std::array<char, 40> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02u-%02uT%02d:%02d:%02d.%06d", int(date.year()),
                  unsigned(date.month()), unsigned(date.day()), int(clock.hours().count()),
                  int(clock.minutes().count()), int(clock.seconds().count()), int(clock.subseconds().count()));
    std::string iso = text.data();
    iso.erase(iso.find_last_not_of('0') + 1);
    if (iso.ends_with('.')) { iso.pop_back(); }
    return iso + "Z";
}

// Takes the digits behind the point at `at`, up to microseconds, and moves `at` behind them.
std::chrono::microseconds fraction(const std::string& text, size_t& at) {
    const size_t end = std::min(text.find_first_not_of("0123456789", at + 1), text.size());
    std::string digits = text.substr(at + 1, std::min<size_t>(end - at - 1, 6));
    digits.resize(6, '0');
    at = end;
    return std::chrono::microseconds(std::stoi(digits));
}

// The offset from UTC at the end of a time: "Z", "+02:00" or "-0530".
std::optional<std::chrono::minutes> isoOffset(const std::string& text) {
    if (text == "Z" || text == "z") { return std::chrono::minutes(0); }
    unsigned hours = 0;
    unsigned minutes = 0;
    char sign = 0;
    int end = 0;
    const auto wholly = [&](const char* form) {
        end = 0;
        return std::sscanf(text.c_str(), form, &sign, &hours, &minutes, &end) == 3 && end == int(text.size());
    };
    if (!wholly("%1c%2u:%2u%n") && !wholly("%1c%2u%2u%n")) { return std::nullopt; }
    if ((sign != '+' && sign != '-') || hours > 23 || minutes > 59) { return std::nullopt; }
    const std::chrono::minutes offset{hours * 60 + minutes};
    return sign == '-' ? -offset : offset;
}

std::optional<EditTime> parseTime(const std::string& text) {
    int year = 0;
    std::array<unsigned, 5> part{};  // month, day, hour, minute, second
    int end = 0;
    if (std::sscanf(text.c_str(), "%4d-%2u-%2uT%2u:%2u:%2u%n", &year, &part[0], &part[1], &part[2], &part[3], &part[4],
                    &end) != 6) {
        return std::nullopt;
    }
    auto rest = size_t(end);
    const auto below = rest < text.size() && text[rest] == '.' ? fraction(text, rest) : std::chrono::microseconds(0);
    const auto offset = isoOffset(text.substr(rest));
    const std::chrono::year_month_day date{std::chrono::year(year), std::chrono::month(part[0]),
                                           std::chrono::day(part[1])};
    constexpr unsigned leapSecond = 60;
    if (!offset || !date.ok() || part[2] > 23 || part[3] > 59 || part[4] > leapSecond) { return std::nullopt; }
    return sys_seconds(std::chrono::sys_days(date)) + std::chrono::hours(part[2]) + std::chrono::minutes(part[3]) +
           std::chrono::seconds(part[4]) + below - *offset;
}

std::optional<int> intOf(const json& value) {
    if (!value.is_number()) { return std::nullopt; }
    const auto number = value.get<double>();
    if (number < std::numeric_limits<int>::min() || number > std::numeric_limits<int>::max()) { return std::nullopt; }
    const int whole = int(number);
    return whole == number ? std::optional(whole) : std::nullopt;
}

}  // namespace

std::optional<std::string> Entry::encoded() const {
    json object = {{"path", storedPath(path)}, {"fields", changes.fields}, {"user", user}, {"time", isoTime(time)}};
    if (changes.rating) { object["rating"] = *changes.rating; }
    if (embedded) { object["embedded"] = *embedded; }
    if (from) { object["from"] = storedPath(*from); }
    try {
        return object.dump();
    } catch (const json::exception&) { return std::nullopt; }
}

std::optional<Entry> Entry::decode(std::string_view line) {
    const json object = json::parse(line, nullptr, /*allow_exceptions=*/false);
    if (!object.is_object()) { return std::nullopt; }
    Entry entry;
    try {
        entry.path = pathFromStored(object.at("path").get<std::string>());
        for (const auto& [name, text] : object.at("fields").get_ref<const json::object_t&>()) {
            entry.changes.fields[name] = text.get<std::string>();
        }
        object.at("user").get_to(entry.user);
        const auto time = parseTime(object.at("time").get<std::string>());
        if (!time) { return std::nullopt; }
        entry.time = sensible(*time);
        if (const auto embedded = object.find("embedded"); embedded != object.end()) {
            entry.embedded = embedded->get<bool>();
        }
        if (const auto from = object.find("from"); from != object.end()) {
            entry.from = pathFromStored(from->get<std::string>());
        }
    } catch (const json::exception&) { return std::nullopt; }
    if (const auto rating = object.find("rating"); rating != object.end() && !rating->is_null()) {
        entry.changes.rating = intOf(*rating);
        if (!entry.changes.rating) { return std::nullopt; }
        if (*entry.changes.rating < 0 || *entry.changes.rating > maxRating) { entry.changes.rating.reset(); }
    }
    return entry;
}

EditTime now() {
    return sensible(std::chrono::floor<std::chrono::microseconds>(std::chrono::system_clock::now()));
}

}  // namespace brindlehum::ChangeLog

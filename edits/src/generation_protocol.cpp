// The bodies, answers and texts of the generation service.
#include "edits/generation_protocol.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "base/error.h"
#include "base/text.h"

namespace brindlehum {

const char* rawValue(GenerationKind kind) {
    switch (kind) {
        case GenerationKind::intro:
            return "intro";
        case GenerationKind::ending:
            return "ending";
        case GenerationKind::variation:
            break;
    }
    return "variation";
}

const char* title(GenerationKind kind) {
    switch (kind) {
        case GenerationKind::intro:
            return "AI Intro";
        case GenerationKind::ending:
            return "AI Ending";
        case GenerationKind::variation:
            break;
    }
    return "AI Variation";
}

namespace GenerationProtocol {
namespace {

using nlohmann::json;

constexpr size_t maxIdBytes = 1024;

// Depth is counted before the text is parsed; brackets in strings don't count.
bool isTooDeep(std::string_view text) {
    int depth = 0;
    bool inString = false;
    for (size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (inString) {
            i += c == '\\' ? 1 : 0;
            inString = c != '"';
        } else if (c == '"') {
            inString = true;
        } else if (c == '{' || c == '[') {
            if (++depth > maxDepth) { return true; }
        } else if (c == '}' || c == ']') {
            --depth;
        }
    }
    return false;
}

std::optional<std::string> textIn(const json& object, const char* key) {
    const auto entry = object.find(key);
    if (entry == object.end() || !entry->is_string()) { return std::nullopt; }
    return entry->get<std::string>();
}

std::string errorIn(const json& object, const char* otherwise) {
    const std::string text = plainLine(textIn(object, "error").value_or(""));
    return text.empty() ? otherwise : text;
}

bool isAlphanumeric(char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

// U+0080 to U+009F, the marks that change the direction of text, and line separators.
bool isHiddenCharacter(std::string_view c) {
    if (c.size() == 1) { return uint8_t(c[0]) < 0x20 || c[0] == 0x7F; }
    if (c.size() == 2) { return c[0] == '\xC2' && uint8_t(c[1]) < 0xA0; }
    if (c.size() != 3 || c[0] != '\xE2') { return false; }
    const auto second = uint8_t(c[1]);
    const auto third = uint8_t(c[2]);
    return (second == 0x80 && (third == 0x8E || third == 0x8F || (third >= 0xA8 && third <= 0xAE))) ||
           (second == 0x81 && third >= 0xA6 && third <= 0xA9);
}

}  // namespace

std::string startBody(GenerationKind kind, const Piece& piece, double clipSeconds,
                      const std::optional<std::string>& clipUrl) {
    nlohmann::ordered_json body;
    body["kind"] = rawValue(kind);
    body["name"] = repairUtf8(piece.name);
    body["bpm"] = piece.bpm;
    body["key"] = piece.key;
    if (kind == GenerationKind::intro) {
        body["bars"] = introBars;
        body["durationSec"] = introBars * piece.barSeconds;
    } else {
        if (clipUrl) { body["clipUrl"] = *clipUrl; }
        body["durationSec"] = clipSeconds;
        if (kind == GenerationKind::ending) { body["endStyle"] = "cadential"; }
    }
    return body.dump();
}

std::string pollPath(std::string_view taskId) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string path = std::string(generatePath) + "?taskId=";
    for (const char c : taskId) {
        if (isAlphanumeric(c) || std::string_view("-._~").find(c) != std::string_view::npos) {
            path += c;
        } else {
            path += {'%', digits[uint8_t(c) >> 4], digits[uint8_t(c) & 15]};
        }
    }
    return path;
}

json objectIn(std::string_view body) {
    if (body.size() > maxAnswerBytes || isTooDeep(body)) { return json::object(); }
    json parsed = json::parse(body, nullptr, false);
    return parsed.is_object() ? parsed : json::object();
}

json answer(int status, std::string_view body) {
    json object = objectIn(body);
    if (status != 200) { throw Error(ErrorKind::generationService, errorIn(object, "Generation service error")); }
    return object;
}

std::optional<std::string> clipUrl(const json& answer) {
    return textIn(answer, "url");
}

std::string taskId(const json& answer) {
    const std::string id = textIn(answer, "taskId").value_or("");
    if (id.empty() || id.size() > maxIdBytes) {
        throw Error(ErrorKind::noGenerationTask, "The service didn't start a task");
    }
    return id;
}

std::optional<std::string> usage(const json& answer) {
    const auto used = answer.find("used");
    const auto allowance = answer.find("allowance");
    if (used == answer.end() || allowance == answer.end() || !used->is_number_integer() ||
        !allowance->is_number_integer()) {
        return std::nullopt;
    }
    return used->dump() + " of " + allowance->dump() + " generations used this month";
}

std::optional<std::vector<std::string>> takes(const json& answer) {
    const std::string status = textIn(answer, "status").value_or("");
    if (status == "failed") { throw Error(ErrorKind::generationFailed, errorIn(answer, "Generation failed")); }
    const auto tracks = answer.find("tracks");
    if (status != "done" || tracks == answer.end() || !tracks->is_array() || tracks->empty()) { return std::nullopt; }
    std::vector<std::string> urls;
    for (const json& track : *tracks) {
        if (auto url = track.is_object() ? textIn(track, "url") : std::nullopt; url && urls.size() < maxTakes) {
            urls.push_back(std::move(*url));
        }
    }
    if (urls.empty()) { throw Error(ErrorKind::generationFailed, "The service says where none of its takes are"); }
    return urls;
}

std::string plainLine(std::string_view text) {
    const std::string valid = repairUtf8(text);
    std::string line;
    size_t length = 0;
    bool wantsBlank = false;
    for (std::string_view rest = valid; !rest.empty();) {
        const std::string_view c = rest.substr(0, characterLength(rest));
        rest.remove_prefix(c.size());
        if (c == " " || isHiddenCharacter(c)) {
            wantsBlank = !line.empty();
            continue;
        }
        if (length + (wantsBlank ? 1 : 0) >= maxTextLength) { break; }
        if (std::exchange(wantsBlank, false)) { line += ' ', ++length; }
        line += c, ++length;
    }
    return line;
}

SecretText headerValue(std::string_view header, const SecretText& key) {
    const bool needsScheme = lowerAscii(header) == "authorization" && key.view().find(' ') == std::string_view::npos;
    return needsScheme ? SecretText({"Bearer ", key.view()}) : key;
}

bool isHeaderName(std::string_view name) {
    constexpr std::array<std::string_view, 10> reserved = {
        "host",   "content-type", "content-length", "transfer-encoding", "connection", "user-agent",
        "accept", "expect",       "cookie",         "accept-encoding"};
    const auto isToken = [](char c) {
        return isAlphanumeric(c) || std::string_view("!#$%&'*+-.^_`|~").find(c) != std::string_view::npos;
    };
    return !name.empty() && name.size() <= 100 && std::ranges::all_of(name, isToken) &&
           std::ranges::find(reserved, lowerAscii(name)) == reserved.end();
}

bool isKey(std::string_view key) {
    return !isBlank(key) && key.size() <= 4096 && std::ranges::all_of(key, [](char c) { return c >= ' ' && c <= '~'; });
}

}  // namespace GenerationProtocol
}  // namespace brindlehum

// GenerationProtocol: what is said to a music-generation service and how its answers are understood, as functions
// without state. JSON over HTTP; docs/generation-service.md describes it for those who run such a service.
#pragma once

#include <array>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/secret_text.h"

namespace brindlehum {

enum class GenerationKind { intro, ending, variation };
inline constexpr std::array generationKinds = {GenerationKind::intro, GenerationKind::ending,
                                               GenerationKind::variation};
const char* rawValue(GenerationKind kind);  // "intro"
const char* title(GenerationKind kind);     // "AI Intro"

namespace GenerationProtocol {

inline constexpr const char* clipPath = "ai/clip";
inline constexpr const char* generatePath = "ai/generate";
inline constexpr int introBars = 4;  // of the music that an intro shall have
inline constexpr size_t maxAnswerBytes = 1 << 20;
inline constexpr int maxDepth = 32;                 // of objects and lists within each other
inline constexpr size_t maxTextLength = 300;        // characters of the service's texts
inline constexpr size_t maxTakes = 16;              // further ones are left out
inline constexpr const char* unnamed = "Untitled";  // where the user keeps the name back

// What the service gets to know of a piece besides its sound.
struct Piece {
    std::string name;  // any bytes
    double bpm = 0;
    double barSeconds = 0;
    std::string key;  // "F#m"
};
// The body of the start request. `clipSeconds` and `clipUrl` are ignored for an intro.
std::string startBody(GenerationKind kind, const Piece& piece, double clipSeconds,
                      const std::optional<std::string>& clipUrl);
// The path to ask how a task is getting on.
std::string pollPath(std::string_view taskId);

// The object in a body; an empty one for anything that isn't an object, is nested too deeply or can't be read.
nlohmann::json objectIn(std::string_view body);
// The same of an answer with its HTTP status. Throws Error generationService, with the service's own text if it gives
// one, unless the status is 200.
nlohmann::json answer(int status, std::string_view body);

std::optional<std::string> clipUrl(const nlohmann::json& answer);
// The task's id. Throws Error noGenerationTask.
std::string taskId(const nlohmann::json& answer);
// "3 of 20 generations used this month", if the answer says so.
std::optional<std::string> usage(const nlohmann::json& answer);
// The addresses of the takes; none while the task is running. Throws Error generationFailed.
std::optional<std::vector<std::string>> takes(const nlohmann::json& answer);

// A text of the service for the user: one line of valid UTF-8 without control characters, cut to maxTextLength.
std::string plainLine(std::string_view text);
// The value of a header that carries a key: "Authorization" gets the scheme "Bearer" unless the key names one.
SecretText headerValue(std::string_view header, const SecretText& key);
// Whether a header may have this name (RFC 9110, 5.6.2) and is none that the request itself needs.
bool isHeaderName(std::string_view name);
// Whether a key can be a header's value: visible characters and blanks of ASCII.
bool isKey(std::string_view key);

}  // namespace GenerationProtocol
}  // namespace brindlehum

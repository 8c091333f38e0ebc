// Shared by the commands of brindlehum-cli: words in, one JSON object a line out, one line of text an error.
#pragma once

#include <functional>
#include <nlohmann/json.hpp>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

namespace brindlehum::cli {

using Json = nlohmann::ordered_json;
using Words = std::span<const std::string>;

struct Command {
    std::string_view word;
    std::string_view usage;  // the words that follow
    std::string_view help;   // one line
    // Returns false when a part failed and was reported. Throws std::exception when the whole failed.
    bool (*run)(Words words);
};

// The words can't be understood; main adds the usage to the text.
class UsageError : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

bool probe(Words words);
bool overview(Words words);
bool devices(Words words);
bool render(Words words);
bool edits(Words words);
bool plan(Words words);
extern const std::string_view editsHelp;  // their words, one a line
bool analyze(Words words);
bool picture(Words words);
bool scan(Words words);
bool meta(Words words);
bool search(Words words);
bool facets(Words words);
extern const std::string_view pictureHelp;  // its words, one a line
extern const std::string_view renderHelp;   // its words, one a line

// Writes one line to stdout. Bytes that aren't UTF-8, as in file names, become U+FFFD.
void print(const Json& json);
// The text with control characters replaced by blanks, so that it is one line.
std::string oneLine(std::string text);
// Writes "brindlehum-cli: text" to stderr as one line.
void printError(const std::string& text);
// Runs `job` on every file and reports those that throw; false when any did.
bool eachFile(Words files, const std::function<void(const std::string& file)>& job);

}  // namespace brindlehum::cli

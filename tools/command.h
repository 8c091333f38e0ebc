// Shared by the commands of brindlehum-cli: words in, one line of JSON per object and one line of text per error out.
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
    // Returns false when a part of the job failed and was reported. Throws std::exception when the whole job failed.
    bool (*run)(Words words);
};

// Thrown when the words can't be understood; main adds the usage to the text.
class UsageError : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

bool probe(Words words);
bool overview(Words words);
bool devices(Words words);
bool render(Words words);
bool exportFiles(Words words);
bool edit(Words words);
bool edits(Words words);
bool plan(Words words);
extern const std::string_view editsHelp;  // their words, one per line
bool analyze(Words words);
bool picture(Words words);
bool scan(Words words);
bool meta(Words words);
bool search(Words words);
bool facets(Words words);
bool inputs(Words words);
bool monitor(Words words);
bool link(Words words);
bool daw(Words words);
extern const std::string_view pictureHelp;  // its words, one per line
extern const std::string_view renderHelp;   // its words, one per line
extern const std::string_view exportHelp;   // its words, one per line
extern const std::string_view monitorHelp;  // its words, one per line
extern const std::string_view editHelp;     // its steps, one per line

// On one line. Replaces bytes that aren't UTF-8, which file names may contain, by U+FFFD.
std::string oneLineOf(const Json& json);
// Writes that line to stdout.
void print(const Json& json);
// The text on one line: control characters become blanks.
std::string oneLine(std::string text);
// Writes "brindlehum-cli: text" to stderr as one line.
void printError(const std::string& text);
// Runs `job` on every file and reports its exceptions; returns false when any job threw.
bool eachFile(Words files, const std::function<void(const std::string& file)>& job);

}  // namespace brindlehum::cli

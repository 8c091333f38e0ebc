// brindlehum-cli: the headless companion for scripts. Each command does one job and prints JSON lines to stdout.
#include <algorithm>
#include <exception>
#include <iostream>
#include <vector>

#include "analysed_file.h"
#include "command.h"

namespace brindlehum::cli {
namespace {

constexpr Command commands[] = {
    {"probe", "FILE...", "all that is known of each file", probe},
    {"overview", "FILE...", "minima and maxima of each file in buckets", overview},
    {"devices", "", "the output devices that exist right now", devices},
    {"inputs", "", "what can be listened to right now", inputs},
    {"monitor", "matrix SOURCE LAYOUT [WORDS...] | run SOURCE PROFILE [WORDS...]",
     "how a bus reaches speakers, and a bus that does", monitor},
    {"link", "URL", "the sound of a web link, in the folder of downloaded links", link},
    {"daw", "COMMAND [--app NAME]", "presses the key of a command, as play or undo, in the DAW at hand", daw},
    {"render", "FILE OUT.wav [WORDS...]", "the file as a device would play it, as 32-bit float", render},
    {"export", "FILE... [WORDS...]", "what is heard of each file, as a file in the folder of the day", exportFiles},
    {"analyze", "[WORDS...] FILE...", "tempo, bars, key, loudness and structure of a piece of music", analyze},
    {"scan", "FOLDER [catalog PATH]", "brings the catalog up to date with a library folder", scan},
    {"meta", "FILE [TAG=value...] [catalog PATH]", "the metadata of a sound, and edits of it", meta},
    {"search", "WORDS... [catalog PATH]", "the sounds that a catalog finds, best first", search},
    {"facets", "[catalog PATH]", "how many sounds a catalog has by category and library", facets},
    {"picture", "FILE OUT.png [WORDS...]", "the same as a picture", picture},
    {"edit", "FILE OUT.wav STEP...", "cuts, fades and effects of the editor, one after another", edit},
    {"edits", "FILE... [WORDS...]", "makes the temp edits of each piece in a folder beside it", edits},
    {"plan", "FILE... [WORDS...]", "tells what edits would make, and writes nothing", plan},
};

std::string usage(const Command& command) {
    const std::string words = "brindlehum-cli " + std::string(command.word);
    return command.usage.empty() ? words : words + " " + std::string(command.usage);
}

std::string allWords() {
    std::string words = "brindlehum-cli ";
    for (const Command& command : commands) { words += std::string(command.word) + "|"; }
    return words + "help ...";
}

void printHelp() {
    for (const Command& command : commands) { std::cout << usage(command) << ": " << command.help << "\n"; }
    std::cout << "\nWords of render, in any order:\n" << renderHelp;
    std::cout << "\nWords of export:\n" << exportHelp;
    std::cout << "\nWords of monitor:\n" << monitorHelp;
    std::cout << "\nSteps of edit, times in seconds or as \"end\":\n" << editHelp;
    std::cout << "\nWords of analyze, in place of what it would find:\n" << analysisHelp;
    std::cout << "\nWords of picture, besides those:\n" << pictureHelp;
    std::cout << "\nWords of edits and plan, besides those of analyze:\n" << editsHelp;
    std::cout << "\nEach result is a JSON object on one line; a failure is one line on stderr and exit code 1.\n";
}

int run(const std::vector<std::string>& words) {
    if (words.empty()) {
        printError("no word given; usage: " + allWords());
        return 1;
    }
    if (words[0] == "help") {
        printHelp();
        return 0;
    }
    const auto command = std::ranges::find(commands, words[0], &Command::word);
    if (command == std::end(commands)) {
        printError("unknown word \"" + words[0] + "\"; usage: " + allWords());
        return 1;
    }
    try {
        return command->run(Words(words).subspan(1)) ? 0 : 1;
    } catch (const UsageError& error) {
        printError(std::string(error.what()) + "; usage: " + usage(*command));
    } catch (const std::exception& error) { printError(error.what()); }
    return 1;
}

}  // namespace
}  // namespace brindlehum::cli

int main(int argc, char** argv) {
    return brindlehum::cli::run({argv + 1, argv + argc});
}

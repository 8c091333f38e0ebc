// Output and error lines of brindlehum-cli.
#include "command.h"

#include <filesystem>
#include <iostream>

#include "base/error.h"

namespace brindlehum::cli {

std::string oneLineOf(const Json& json) {
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

void print(const Json& json) {
    std::cout << oneLineOf(json) << std::endl;
    if (!std::cout) { throw Error("Couldn't write to the standard output"); }
}

std::string oneLine(std::string text) {
    for (char& c : text) {
        if (static_cast<unsigned char>(c) < ' ') { c = ' '; }
    }
    return text;
}

void printError(const std::string& text) {
    std::cerr << oneLine("brindlehum-cli: " + text) << std::endl;
}

bool eachFile(Words files, const std::function<void(const std::string& file)>& job) {
    if (files.empty()) { throw UsageError("no file given"); }
    bool allDone = true;
    for (const std::string& file : files) {
        try {
            job(file);
        } catch (const std::exception& error) {
            if (!std::cout) { throw; }
            // Replace the file's name, which begins an error text, by its path: that shows which of several files it
            // is.
            const std::string name = std::filesystem::path(file).filename().string();
            const std::string text = error.what();
            printError(!name.empty() && text.starts_with(name) ? file + text.substr(name.size()) : file + ": " + text);
            allDone = false;
        }
    }
    return allDone;
}

}  // namespace brindlehum::cli

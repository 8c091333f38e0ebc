// Output and error lines of brindlehum-cli.
#include "command.h"

#include <iostream>

#include "audio/error.h"

namespace brindlehum::cli {

void print(const Json& json) {
    std::cout << json.dump(-1, ' ', false, Json::error_handler_t::replace) << std::endl;
    if (!std::cout) throw Error(0, "Couldn't write to the standard output");
}

void printError(const std::string& text) {
    std::string line = "brindlehum-cli: " + text;
    for (char& c : line) {
        if (static_cast<unsigned char>(c) < ' ') c = ' ';
    }
    std::cerr << line << std::endl;
}

bool eachFile(Words files, const std::function<void(const std::string& file)>& job) {
    if (files.empty()) throw UsageError("no file given");
    bool allDone = true;
    for (const std::string& file : files) {
        try {
            job(file);
        } catch (const std::exception& error) {
            if (!std::cout) throw;
            printError(file + ": " + error.what());
            allDone = false;
        }
    }
    return allDone;
}

}  // namespace brindlehum::cli

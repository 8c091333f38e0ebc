// ProgressLine: a line of progress on a terminal, redrawn in place.
#include "progress_line.h"

#include <unistd.h>

#include <iostream>
#include <string>

#include "command.h"

namespace brindlehum::cli {

namespace {
constexpr std::string_view clearLine = "\r\x1b[K";
constexpr size_t maxBytes = 78;  // a longer line could wrap, and a wrapped line can't be overwritten
}  // namespace

ProgressLine::ProgressLine() : shown_(isatty(STDERR_FILENO) == 1) {}

void ProgressLine::tell(std::string_view text) {
    if (!shown_) { return; }
    std::cerr << clearLine << oneLine(std::string(text.substr(0, maxBytes))) << std::flush;
    written_ = true;
}

void ProgressLine::wipe() {
    if (written_) { std::cerr << clearLine << std::flush; }
    written_ = false;
}

}  // namespace brindlehum::cli

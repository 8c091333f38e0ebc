// ProgressLine: one line on stderr that a terminal overwrites in place. Silent when stderr isn't a terminal.
#pragma once

#include <string_view>

namespace brindlehum::cli {

class ProgressLine {
public:
    ProgressLine();
    ~ProgressLine() { wipe(); }
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;
    void tell(std::string_view text);
    void wipe();

private:
    bool shown_;            // stderr is a terminal
    bool written_ = false;  // the line has text
};

}  // namespace brindlehum::cli

// StartArguments: what the arguments of a start ask for.
#pragma once

#include <string>
#include <vector>

#include "app/instance_link.h"

namespace brindlehum {

struct StartArguments {
    enum class Wish { open, help, version };

    Wish wish = Wish::open;
    StartRequest request;

    // Without the program's name. Options begin with a dash and end at "--". A file is a path or a file:// address; one
    // that can't be read, or holds no audio by its name, is a problem. Asks the disk. Any thread.
    static StartArguments parse(const std::vector<std::string>& arguments);

    // The name under which a session starts the program, a link to it: no window opens.
    static bool isResident(const std::string& programName);

    static const char* const help;
};

}  // namespace brindlehum

// The text of a position or a duration in time.
#pragma once

#include <string>

namespace brindlehum {

// "m:ss.mmm"; "0:00.000" for a negative or non-finite number of seconds.
std::string timeText(double seconds);

}  // namespace brindlehum

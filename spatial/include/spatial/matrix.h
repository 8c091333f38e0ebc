// Matrix: rows of doubles, one row per output and one column per input.
#pragma once

#include <vector>

namespace brindlehum {

using Matrix = std::vector<std::vector<double>>;

}  // namespace brindlehum

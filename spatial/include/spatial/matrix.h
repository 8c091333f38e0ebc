// Matrix: rows of doubles, one row an output and one column an input.
#pragma once

#include <vector>

namespace brindlehum {

using Matrix = std::vector<std::vector<double>>;

}  // namespace brindlehum

// Where the words of a selection are kept, as the inspector's caption says it.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace brindlehum {

std::string keepingText(const std::vector<std::filesystem::path>& files);

}  // namespace brindlehum

// Where the words of a selection are kept, as the inspector's caption says it.
#pragma once

#include <QString>
#include <filesystem>
#include <vector>

namespace brindlehum {

QString keepingText(const std::vector<std::filesystem::path>& files);

}  // namespace brindlehum

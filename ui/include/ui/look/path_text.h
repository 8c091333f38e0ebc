// Paths as the texts that widgets show and take.
#pragma once

#include <QString>
#include <filesystem>

namespace brindlehum {

// The whole path; bytes that aren't UTF-8 show as U+FFFD.
QString pathText(const std::filesystem::path& path);
// The path that a user typed or chose.
std::filesystem::path pathOfText(const QString& text);

}  // namespace brindlehum

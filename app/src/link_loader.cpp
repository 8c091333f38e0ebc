// The download tool's words.
#include "app/link_loader.h"

#include <unistd.h>

#include <QUrl>
#include <algorithm>
#include <cstdlib>

namespace brindlehum::LinkLoader {
namespace {

namespace fs = std::filesystem;

std::vector<fs::path> places(const std::string& custom) {
    std::vector<fs::path> all;
    if (!custom.empty()) { all.emplace_back(custom); }
    if (const char* home = std::getenv("HOME"); home && *home) { all.push_back(fs::path(home) / ".local/bin/yt-dlp"); }
    all.emplace_back("/usr/local/bin/yt-dlp");
    all.emplace_back("/usr/bin/yt-dlp");
    return all;
}

bool isProgram(const fs::path& path) {
    std::error_code error;
    return path.is_absolute() && fs::is_regular_file(path, error) && ::access(path.c_str(), X_OK) == 0;
}

// The last line for which this holds; empty without one.
std::string lastLine(const std::string& text, bool (*matches)(std::string_view line)) {
    size_t end = text.size();
    while (end > 0) {
        const size_t before = text.rfind('\n', end - 1);
        const size_t start = before == std::string::npos ? 0 : before + 1;
        const std::string line = text.substr(start, end - start);
        if (matches(line)) { return line; }
        end = start == 0 ? 0 : start - 1;
    }
    return {};
}

}  // namespace

std::optional<std::string> linkIn(const std::string& text) {
    const QString trimmed = QString::fromStdString(text).trimmed();
    const QUrl url(trimmed, QUrl::StrictMode);
    if (!url.isValid() || !url.scheme().startsWith("http")) { return std::nullopt; }
    return trimmed.toStdString();
}

std::string hostOf(const std::string& link) {
    const QString host = QUrl(QString::fromStdString(link)).host();
    return host.isEmpty() ? "link" : host.toStdString();
}

std::optional<fs::path> ytDlp(const std::string& custom) {
    const auto all = places(custom);
    const auto found = std::ranges::find_if(all, isProgram);
    return found == all.end() ? std::nullopt : std::optional(*found);
}

std::vector<std::string> arguments(const fs::path& folder, const std::string& link) {
    // A per cent sign of the folder's name isn't one of the template.
    std::string place;
    for (const char c : folder.string()) { place.append(c == '%' ? 2 : 1, c); }
    place.append("/").append(outputName);
    return {"--no-playlist", "--no-progress",       "-x", "--audio-format", "wav", "-o", place,
            "--print",       "after_move:filepath", link};
}

std::map<std::string, std::string> environment(const std::string& path) {
    // In other locales than UTF-8 the tool would print file names with question marks.
    return {{"PATH", "/usr/local/bin:/usr/bin:/bin:" + path}, {"PYTHONUTF8", "1"}};
}

Outcome outcome(const ChildResult& result) {
    if (!result.failure.empty()) { return {{}, result.failure}; }
    if (result.status == 0) {
        const std::string file = lastLine(result.out, [](std::string_view line) { return line.starts_with('/'); });
        if (!file.empty()) { return {file, {}}; }
    }
    const std::string error =
        lastLine(result.errors, [](std::string_view line) { return line.find("ERROR") != line.npos; });
    return {{}, error.empty() ? "yt-dlp failed" : QString::fromStdString(error).toStdString()};  // as valid text
}

}  // namespace brindlehum::LinkLoader

// Runs the download tool for links, and checks what it wrote.
#include "app/link_downloads.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ranges>

#include "app/link_loader.h"
#include "base/error.h"

namespace brindlehum {
namespace {

namespace fs = std::filesystem;

constexpr double tellEvery = 0.5;  // seconds

std::string ourPath() {
    const char* path = std::getenv("PATH");
    return path ? path : "";
}

// The tool replaces variables in the folder's name, and has no sign against it: it gets the folder by another name.
std::pair<fs::path, fs::path> otherName(const fs::path& folder) {
    std::string scratch = (fs::temp_directory_path() / "brindlehum-link-XXXXXX").string();
    if (!::mkdtemp(scratch.data())) { throw Error("Couldn't make a temporary folder"); }
    const fs::path name = fs::path(scratch) / "Links";
    fs::create_directory_symlink(folder, name);
    return {name, scratch};
}

// A regular file below the folder, by its real name; empty for any other.
fs::path fileWithin(const fs::path& folder, const fs::path& file) {
    std::error_code error;
    const fs::path real = fs::canonical(file, error);
    if (error || !fs::is_regular_file(real, error)) { return {}; }
    const fs::path inside = fs::canonical(folder, error);
    const auto [end, _] = std::mismatch(inside.begin(), inside.end(), real.begin(), real.end());
    return !error && end == inside.end() ? real : fs::path();
}

std::string size(int64_t bytes) {
    char text[32];
    std::snprintf(text, sizeof text, "%.1f MB", double(bytes) / 1e6);
    return text;
}

}  // namespace

LinkDownloads::LinkDownloads(ChildProcesses* children, PlayerMessage& message, const SettingsStore& settings,
                             MainLoop& loop)
    : children_(children), message_(message), settings_(settings), loop_(loop), disk_(loop, "Brindlehum.links") {}

LinkDownloads::~LinkDownloads() = default;

void LinkDownloads::open(const std::string& text) {
    const auto link = LinkLoader::linkIn(text);
    if (!link) { return message_.notify("Copy a link first"); }
    if (!children_) { return message_.fail("Links can't be opened here"); }
    const int id = nextId_++;
    jobs_[id].link = *link;
    tick_ = loop_.every(tellEvery, [this] { tell(); });
    tell();
    Q_EMIT changed();
    disk_.queue().run([custom = settings_.value().ytDlpPath,
                       folder = settings_.value().pulls() / "Links"] { return find(custom, folder); },
                      [this, id](Place place) { start(id, std::move(place)); },
                      [this, id](const std::exception& error) { fail(id, error.what()); });
}

LinkDownloads::Place LinkDownloads::find(const std::string& custom, const fs::path& folder) {
    const auto tool = LinkLoader::ytDlp(custom);
    if (!tool) { throw Error(std::string(LinkLoader::notFound)); }
    std::error_code error;
    fs::create_directories(folder, error);
    if (error) { throw Error("Couldn't make the folder " + folder.string() + ": " + error.message()); }
    Place place{*tool, folder, folder, {}};
    if (folder.string().find('$') != std::string::npos) { std::tie(place.written, place.scratch) = otherName(folder); }
    return place;
}

void LinkDownloads::start(int id, Place place) {
    const auto job = jobs_.find(id);
    if (job == jobs_.end()) {  // cancelled
        std::error_code error;
        if (!place.scratch.empty()) { fs::remove_all(place.scratch, error); }
        return;
    }
    job->second.place = std::move(place);
    const Place& known = job->second.place;
    job->second.child = children_->run(
        {known.tool, LinkLoader::arguments(known.written, job->second.link), LinkLoader::environment(ourPath())},
        [this, id](const ChildResult& result) { ended(id, result); });
}

void LinkDownloads::ended(int id, const ChildResult& result) {
    const auto outcome = LinkLoader::outcome(result);
    if (outcome.file.empty()) { return fail(id, outcome.problem); }
    const Job& job = jobs_.at(id);
    const std::string link = job.link;
    const fs::path file = fileWithin(job.place.folder, outcome.file);
    if (file.empty()) { return fail(id, "yt-dlp names a file that isn't in the Links folder"); }
    end(id);
    if (arrived) { arrived(file, link); }
}

void LinkDownloads::fail(int id, const std::string& problem) {
    if (!jobs_.contains(id)) { return; }
    end(id);
    message_.fail(problem);
}

void LinkDownloads::end(int id) {
    const auto job = jobs_.extract(id);
    std::error_code error;
    if (const auto& scratch = job.mapped().place.scratch; !scratch.empty()) { fs::remove_all(scratch, error); }
    if (jobs_.empty()) { tick_.reset(); }
    if (message_.text() == told_) { message_.clear(); }
    Q_EMIT changed();
}

void LinkDownloads::cancel() {
    while (!jobs_.empty()) { end(jobs_.begin()->first); }
}

// About the newest, with what has been written so far.
void LinkDownloads::tell() {
    const Job& newest = jobs_.rbegin()->second;
    std::string text = "Downloading audio from " + LinkLoader::hostOf(newest.link) + "…";
    const int64_t written = newest.child ? newest.child->bytesWritten() : 0;
    if (written >= 100'000) { text.append(" ").append(size(written)); }
    if (jobs_.size() > 1) { text.append(" (").append(std::to_string(jobs_.size())).append(" at once)"); }
    const bool isOurs = !message_.text() || message_.text() == told_ || told_.empty() || !newest.child;
    told_ = text;
    if (isOurs) { message_.notify(std::move(text)); }
}

}  // namespace brindlehum

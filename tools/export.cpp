// export FILE...: writes what is heard of each file as a file of its own, as a drag out of the player does.
#include <algorithm>
#include <cmath>
#include <map>
#include <vector>

#include "base/error.h"
#include "base/stored_path.h"
#include "command.h"
#include "library/meta/carried_notes.h"
#include "mix/export/exporter.h"
#include "progress_line.h"
#include "render_words.h"
#include "settings/settings_store.h"
#include "upmix_word.h"
#include "word_values.h"

namespace brindlehum::cli {

const std::string_view exportHelp =
    "  original, bed LAYOUT, upmix LAYOUT PRESET, binaural   the form (default original)\n"
    "  from S, to S       the part of each file, in seconds\n"
    "  loop               the part is to be repeated: it starts as it ends\n"
    "  float              32-bit float instead of 24 bits: nothing is clipped\n"
    "  folder F           where the folder of the day lies (default: that of the settings)\n"
    "  listen, format, mono, yaw, pitch, roll   as for render\n";

namespace {

struct ExportRequest {
    Exporter::Request common;  // without a file
    std::optional<std::string> format;
    double from = 0;           // seconds
    std::optional<double> to;  // seconds; none: the end
    bool isPart = false;
    std::vector<std::string> files;
};

// The words behind a word, one after the other.
class Values {
public:
    explicit Values(Words words) : words_(words) {}
    bool atEnd() const { return at_ == words_.size(); }
    const std::string& next() { return words_[at_++]; }
    const std::string& after(const std::string& word) {
        if (atEnd()) { throw UsageError("no value after \"" + word + "\""); }
        return next();
    }

private:
    Words words_;
    size_t at_ = 0;
};

LayoutID layoutAfter(const std::string& word, Values& values) {
    const std::string& text = values.after(word);
    return known(word, text, layoutFromRaw(text));
}

void setUpmix(ExportRequest& request, Values& values) {
    request.common.mode = DragExport::upmix(layoutAfter("upmix", values));
    const std::string& text = values.after("upmix");
    const UpmixSettings upmix = upmixAfter("upmix", text);
    request.common.upmix = upmix.params;
    request.common.upmixName = presetName(upmix);
}

using Setter = void (*)(ExportRequest& request, Values& values);

const std::map<std::string, Setter, std::less<>> setters = {
    {"original", [](auto& r, auto&) { r.common.mode = DragExport::original(); }},
    {"binaural", [](auto& r, auto&) { r.common.mode = DragExport::binaural(); }},
    {"bed", [](auto& r, auto& v) { r.common.mode = DragExport::bed(layoutAfter("bed", v)); }},
    {"upmix", setUpmix},
    {"loop", [](auto& r, auto&) { r.common.loop = true; }},
    {"float", [](auto& r, auto&) { r.common.asFloat = true; }},
    {"folder", [](auto& r, auto& v) { r.common.folder = v.after("folder"); }},
    {"from", [](auto& r, auto& v) { r.isPart = true, r.from = numberAfter("from", v.after("from"), 0, 1e9); }},
    {"to", [](auto& r, auto& v) { r.isPart = true, r.to = numberAfter("to", v.after("to"), 0, 1e9); }},
    {"format", [](auto& r, auto& v) { r.format = v.after("format"); }},
    {"listen",
     [](auto& r, auto& v) {
         const std::string& text = v.after("listen");
         r.common.listen = known("listen", text, listenModeFromRaw(text));
     }},
    {"mono",
     [](auto& r, auto& v) {
         const std::string& text = v.after("mono");
         if (text != "center" && text != "pair") { refuse("mono", text); }
         r.common.monoToCenter = text == "center";
     }},
    {"yaw", [](auto& r, auto& v) { r.common.rotation.yaw = numberAfter("yaw", v.after("yaw"), -360, 360); }},
    {"pitch", [](auto& r, auto& v) { r.common.rotation.pitch = numberAfter("pitch", v.after("pitch"), -360, 360); }},
    {"roll", [](auto& r, auto& v) { r.common.rotation.roll = numberAfter("roll", v.after("roll"), -360, 360); }},
};

ExportRequest readWords(Words words) {
    ExportRequest request;
    for (Values values(words); !values.atEnd();) {
        const std::string& word = values.next();
        if (const auto setter = setters.find(word); setter != setters.end()) {
            setter->second(request, values);
        } else {
            request.files.push_back(word);
        }
    }
    if (request.files.empty()) { throw UsageError("no file given"); }
    if (request.common.folder.empty()) {
        FileDefaults defaults;
        const AppSettings settings = SettingsStore(defaults).value();
        request.common.folder = settings.pulls();
    }
    return request;
}

Exporter::Request requestFor(const std::string& file, const ExportRequest& words) {
    Exporter::Request request = words.common;
    request.info = AudioFileInfo::load(std::filesystem::absolute(file));
    request.source = chooseFormat(request.info, words.format);
    const auto frameAt = [&](double seconds) {
        return int64_t(std::min(std::round(seconds * request.info.sampleRate), double(request.info.frames)));
    };
    if (words.isPart) {
        request.range = FrameRange{frameAt(words.from), words.to ? frameAt(*words.to) : request.info.frames};
        if (request.range->length() < 1) { throw Error("There is nothing between from and to"); }
    }
    return request;
}

WavNotes carried(const std::filesystem::path& source, const FrameRange& range) {
    return carriedNotes(source, range.lower, range.upper);
}

void exportFile(const std::string& file, const ExportRequest& words) {
    ProgressLine line;
    const auto progress = [&, told = -1](double done) mutable {
        const int percent = int(done * 100);
        if (percent != told) { line.tell(file + ": " + std::to_string(told = percent) + " %"); }
    };
    const auto result = Exporter::make(requestFor(file, words), {progress, {}, carried});
    line.wipe();
    print({{"url", storedPath(file)},
           {"file", storedPath(result->url)},
           {"label", result->label},
           {"channels", result->channels},
           {"frames", result->frames},
           {"peak", result->peak ? Json(*result->peak) : Json()},
           {"clipped", result->clipped}});
    if (const std::string remark = Exporter::remark(*result); !remark.empty()) { printError(file + ": " + remark); }
}

}  // namespace

bool exportFiles(Words words) {
    const ExportRequest request = readWords(words);
    return eachFile(request.files, [&](const std::string& file) { exportFile(file, request); });
}

}  // namespace brindlehum::cli

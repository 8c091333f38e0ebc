// edits and plan: make temp edits of pieces of music, or only list them.
#include "edits/temp_edits.h"

#include <filesystem>
#include <iostream>
#include <optional>
#include <vector>

#include "analysed_file.h"
#include "app/bars_by_hand.h"
#include "base/error.h"
#include "base/stored_path.h"
#include "command.h"
#include "edits/edit_plan.h"
#include "edits/temp_edit_renderer.h"
#include "progress_line.h"
#include "settings/settings_store.h"
#include "word_values.h"

namespace brindlehum::cli {

const std::string_view editsHelp =
    "  targets S S ...    lengths of the cutdowns in seconds (default 15 30 60 120)\n"
    "  extended S|none    length of the extended version in seconds (default 180)\n"
    "  exact on|off       cuts each to its very length (default on)\n"
    "  crossfade MS       crossfade of a splice in milliseconds (default 30)\n";

namespace {

constexpr double maxLength = 24 * 3600;  // seconds

struct Request {
    TempEditOptions options;
    AnalysisWords words;
    std::vector<std::string> files;
};

bool isNumber(const std::string& text) {
    return !text.empty() && text.find_first_not_of("0123456789.") == std::string::npos;
}

// Reads all numbers after `targets` as lengths.
void takeTargets(Words words, size_t& at, Request& request) {
    request.options.targets.clear();
    while (at + 1 < words.size() && isNumber(words[at + 1])) {
        request.options.targets.push_back(numberAfter("targets", words[++at], 1, maxLength));
    }
    if (request.options.targets.empty()) { throw UsageError("no length after \"targets\""); }
}

Request read(Words words) {
    Request request;
    for (size_t at = 0; at < words.size(); ++at) {
        const std::string& word = words[at];
        if (request.words.take(words, at)) { continue; }
        if (word == "targets") {
            takeTargets(words, at, request);
            continue;
        }
        if (word != "extended" && word != "exact" && word != "crossfade") {
            request.files.push_back(word);
            continue;
        }
        if (++at == words.size()) { throw UsageError("no value after \"" + word + "\""); }
        const std::string& value = words[at];
        if (word == "extended") {
            request.options.extended.reset();
            if (value != "none") { request.options.extended = numberAfter(word, value, 1, maxLength); }
        } else if (word == "exact") {
            if (value != "on" && value != "off") { refuse(word, value); }
            request.options.exactLength = value == "on";
        } else {
            request.options.crossfadeMs = numberAfter(word, value, 0, 10000);
        }
    }
    if (request.files.empty()) { throw UsageError("no file given"); }
    return request;
}

Json orNull(const std::optional<double>& value) {
    return value ? Json(*value) : Json();
}

Json toJson(const EditPlan& plan, const std::filesystem::path& file, double seconds) {
    Json spans = Json::array();
    for (const auto& span : plan.spans) {
        spans.push_back({{"start", span.start}, {"end", span.end}, {"pause", span.pause}, {"beat", span.beat}});
    }
    return {{"name", plan.name},
            {"kind", rawValue(plan.kind)},
            {"spans", spans},
            {"targetSec", orNull(plan.targetSec)},
            {"cutAtSec", orNull(plan.cutAtSec)},
            {"padFrames", plan.padFrames},
            {"fadeInFrames", plan.fadeInFrames},
            {"fadeOutFrames", plan.fadeOutFrames},
            {"map", plan.map},
            {"quality", plan.quality},
            {"carryLoopTail", plan.carryLoopTail},
            {"file", storedPath(file)},
            {"seconds", seconds}};
}

// What the user has set in the window.
struct Stored {
    FileDefaults defaults;
    AppSettings settings = SettingsStore(defaults).value();
    BarsByHand bars{defaults};
};
const Stored& stored() {
    static const Stored all;
    return all;
}

std::filesystem::path folderOf(const std::filesystem::path& file) {
    const AppSettings& settings = stored().settings;
    return TempEditExporter::editsFolder(file, settings.tempEditsBesideSource, settings.pulls());
}

// Words go before what was set in the window.
GivenBars givenFor(const std::filesystem::path& file, const Request& request) {
    const GivenBars& words = request.words.given;
    return words.any() ? words : stored().bars.find(file);
}

Json toJson(const std::string& file, const TempEdits::Outcome& outcome) {
    Json plans = Json::array();
    for (size_t i = 0; i < outcome.result.files.size(); ++i) {
        plans.push_back(toJson(outcome.plans[i], outcome.result.files[i], outcome.result.seconds[i]));
    }
    const auto& notes = outcome.result.notes;
    return {{"url", storedPath(file)},
            {"folder", storedPath(outcome.result.folder)},
            {"notes", notes.empty() ? Json() : Json(storedPath(notes))},
            {"barLinesUncertain", outcome.barLinesUncertain},
            {"plans", plans}};
}

std::string told(const TempEdits::Step& step) {
    std::string text = std::to_string(step.index + 1) + "/" + std::to_string(step.count) + ": ";
    if (step.kind == TempEdits::Step::Kind::started) { return text + step.job.url.filename().string() + ": analysing"; }
    return text + step.file;
}

}  // namespace

bool edits(Words words) {
    const Request request = read(words);
    std::vector<TempEdits::Job> jobs;
    for (const auto& file : request.files) {
        const auto path = std::filesystem::absolute(file);
        jobs.push_back({path, folderOf(path), givenFor(path, request)});
    }
    ProgressLine progress;
    const auto outcomes = TempEdits::makeAll(jobs, request.options, [&](const TempEdits::Step& step) {
        if (step.kind != TempEdits::Step::Kind::finished) { progress.tell(told(step)); }
    });
    progress.wipe();
    size_t next = 0;
    return eachFile(request.files, [&](const std::string& file) {
        const size_t i = next++;
        print(toJson(file, outcomes[i]));
        if (outcomes[i].status != TempEdits::Status::done) { throw Error(outcomes[i].reason); }
    });
}

bool plan(Words words) {
    const Request request = read(words);
    return eachFile(request.files, [&](const std::string& file) {
        const auto source = std::filesystem::absolute(file);
        const TempEdits::Planned planned = TempEdits::plan(file, request.options, givenFor(source, request));
        if (planned.status != TempEdits::Status::done) { throw Error(planned.reason); }
        const auto folder = TempEditExporter::folderFor(source, folderOf(source));
        const std::string base = std::filesystem::path(file).stem().string();
        Json plans = Json::array();
        for (const EditPlan& one : planned.plans) {
            const double frames = double(TempEditRenderer::length(one, planned.sampleRate));
            plans.push_back(toJson(one, TempEditExporter::fileOf(folder, base, one), frames / planned.sampleRate));
        }
        print({{"url", storedPath(file)},
               {"folder", storedPath(folder)},
               {"barLinesUncertain", planned.analysis->grid.barLinesUncertain()},
               {"plans", plans}});
    });
}

}  // namespace brindlehum::cli

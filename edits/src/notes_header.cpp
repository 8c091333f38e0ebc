// TempEditExporter: the head of the sheet.
#include <algorithm>

#include "base/time_text.h"
#include "edits/temp_edit_exporter.h"
#include "edits_record.h"
#include "piece_lines.h"

namespace brindlehum::TempEditExporter {
namespace {

// Bars with the times of their lines; a line past the last one counts as the last one.
std::string pinsLine(const Pins& pins, const std::vector<double>& lines) {
    using TempEditPlanner::barText;
    if (pins.loopFile) { return "Pins: seamless loop file (" + std::to_string(int64_t(lines.size()) - 1) + " bars)"; }
    const auto at = [&lines](int line) {
        return lines.empty() ? 0 : lines[size_t(std::clamp(line, 0, int(lines.size()) - 1))];
    };
    const auto time = [&at](int line) { return timeText(at(line)); };
    return "Pins: Intro to " + barText(std::max(pins.introEnd, 1)) + " (" + time(pins.introEnd) + ") · Loop " +
           barText(pins.loopStart + 1) + "–" + barText(pins.loopEnd) + " (" + time(pins.loopStart) + "–" +
           time(pins.loopEnd) + ") · Ending from " + barText(pins.endingStart + 1) + " (" + time(pins.endingStart) +
           ") · music ends at " + barText(pins.musicEnd + 1) + " (" + time(pins.musicEnd) + ")";
}

}  // namespace

std::vector<std::string> notesHeader(std::string_view name, const std::filesystem::path& url,
                                     const MusicAnalysis& analysis, const Pins& pins) {
    std::vector<std::string> out;
    out.push_back(std::string(sheetMark) + std::string(name));
    out.push_back("Source: " + url.native());
    out.push_back("Analysis: " + analysis.summary());
    out.push_back(pinsLine(pins, analysis.grid.boundaries()));
    for (const auto& note : analysis.structure.notes) { out.push_back("Note: " + note); }
    out.emplace_back(
        "Every edit is a bar-line splice with a 30 ms crossfade ending on the downbeat. Nothing is time-stretched.");
    return out;
}

}  // namespace brindlehum::TempEditExporter

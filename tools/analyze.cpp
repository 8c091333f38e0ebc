// analyze [WORDS...] FILE...: prints tempo, grid, key, loudness and structure of each file.
#include "analysed_file.h"
#include "analysis/music_analysis_json.h"
#include "base/error.h"
#include "base/stored_path.h"
#include "command.h"

namespace brindlehum::cli {
namespace {

void analyzeFile(const std::string& file, const AnalysisWords& overrides) {
    const AnalysedFile result = analyseFile(file, overrides);
    const auto status = result.outcome.status;
    Json line = {{"url", storedPath(file)}, {"status", rawValue(status)}};
    if (status == AnalysisOutcome::Status::done) {
        line.update(Json(*result.outcome.analysis));
    } else {
        line["seconds"] = result.seconds();
    }
    print(line);
    if (status != AnalysisOutcome::Status::done) { throw Error(std::string(failureText(status))); }
}

}  // namespace

bool analyze(Words words) {
    AnalysisWords overrides;
    std::vector<std::string> files;
    for (size_t i = 0; i < words.size(); ++i) {
        if (!overrides.take(words, i)) { files.push_back(words[i]); }
    }
    return eachFile(files, [&](const std::string& file) { analyzeFile(file, overrides); });
}

}  // namespace brindlehum::cli

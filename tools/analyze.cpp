// analyze [WORDS...] FILE...: prints tempo, grid, key, loudness and structure of each file.
#include <iostream>
#include <utility>

#include "analysed_file.h"
#include "analysis/piece/music_analysis_json.h"
#include "base/error.h"
#include "base/stored_path.h"
#include "command.h"

namespace brindlehum::cli {
namespace {

// Writes the similarities row by row: of thousands of bars they would fill the memory as JSON.
void print(Json line, MusicAnalysis analysis) {
    const SimilarityMatrix similarity = std::exchange(analysis.structure.similarity, {});
    line.update(Json(analysis));
    const std::string text = oneLineOf(line);
    // Quotes inside a string are escaped, so no name of a file can look like this.
    const std::string_view key = "\"similarity\":[";
    const size_t rows = text.find(key) + key.size();
    std::cout << std::string_view(text).substr(0, rows);
    for (int bar = 0; bar < similarity.size; ++bar) {
        std::cout << (bar > 0 ? "," : "") << Json(similarityRow(similarity, bar));
    }
    std::cout << std::string_view(text).substr(rows) << std::endl;
    if (!std::cout) { throw Error("Couldn't write to the standard output"); }
}

void analyzeFile(const std::string& file, const AnalysisWords& overrides) {
    AnalysedFile result = analyseFile(file, overrides);
    const auto status = result.outcome.status;
    Json line = {{"url", storedPath(file)}, {"status", rawValue(status)}};
    if (status == AnalysisOutcome::Status::done) {
        print(std::move(line), std::move(*result.outcome.analysis));
        return;
    }
    line["seconds"] = result.seconds();
    cli::print(line);
    throw Error(std::string(failureText(status)));
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

// edit FILE OUT.wav STEP...: the editor's document without a window.
#include <QCryptographicHash>
#include <algorithm>
#include <limits>

#include "base/error.h"
#include "base/stored_path.h"
#include "command.h"
#include "edit_script.h"
#include "editor/document/edit_commands.h"
#include "editor/document/load_document.h"
#include "editor/document/save_document.h"
#include "library/meta/carried_notes.h"

namespace brindlehum::cli {
namespace {

struct EditRequest {
    std::filesystem::path file, out;
    bool asFloat = false;
    bool mayOverwrite = false;
    std::vector<ScriptStep> steps;
};

EditRequest readWords(Words words) {
    if (words.size() < 2) { throw UsageError("FILE and OUT.wav are needed"); }
    EditRequest request;
    request.file = std::filesystem::absolute(words[0]);
    request.out = std::filesystem::absolute(words[1]);
    std::vector<std::string> rest(words.begin() + 2, words.end());
    request.asFloat = std::erase(rest, "float") > 0;
    request.mayOverwrite = std::erase(rest, "overwrite") > 0;
    request.steps = readSteps(rest);
    return request;
}

// Of the samples as 32-bit floats, frame by frame: of "ffmpeg -i OUT.wav -f f32le -" for an output in floats.
std::string hashOf(const Sound& sound) {
    constexpr int64_t blockFrames = 65536;
    QCryptographicHash hash(QCryptographicHash::Sha256);
    std::vector<float> frames;
    for (int64_t at = 0; at < sound.frames(); at += blockFrames) {
        const auto block = sound.gather(at, std::min(at + blockFrames, sound.frames()));
        frames.clear();
        for (size_t i = 0; i < block[0].size(); ++i) {
            for (const auto& x : block) { frames.push_back(x[i]); }
        }
        hash.addData(QByteArray::fromRawData(reinterpret_cast<const char*>(frames.data()),
                                             qsizetype(frames.size() * sizeof(float))));
    }
    return hash.result().toHex().toStdString();
}

void editFile(const EditRequest& request) {
    std::error_code none;
    if (!request.mayOverwrite && std::filesystem::equivalent(request.file, request.out, none)) {
        throw Error("The output would replace the file that it is made from; \"overwrite\" allows it");
    }
    LoadedDocument loaded = loadDocument(
        request.file, [](double) {}, [] { return false; });
    const double rate = loaded.info.sampleRate;
    const WavNotes notes = carriedNotes(request.file, 0, std::numeric_limits<int64_t>::max());
    const EditHistory history = runSteps(request.steps, {loaded.sound, {notes.cues, 0}}, rate);
    const Sound& sound = history.now();
    const WavSamples samples = request.asFloat ? WavSamples::float32 : WavSamples::pcm24Lossless;
    const SaveResult saved = saveDocument(
        request.out, {request.file, loaded.info, rate, history.content(), notes, samples}, [](double) { return true; });
    print({{"url", storedPath(request.file)},
           {"out", storedPath(request.out)},
           {"sampleRate", rate},
           {"channels", sound.channels()},
           {"frames", sound.frames()},
           {"seconds", double(sound.frames()) / rate},
           {"peak", peakOf(sound, {0, sound.frames()})},
           {"sha256", hashOf(sound)}});
    if (!saved.note.empty()) { printError(request.out.string() + saved.note); }
}

}  // namespace

bool edit(Words words) {
    const EditRequest request = readWords(words);
    return eachFile(words.first(1), [&](const std::string&) { editFile(request); });
}

}  // namespace brindlehum::cli

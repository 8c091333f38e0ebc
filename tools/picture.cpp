// picture FILE OUT.png: draws a piece of music and its analysis on one page.
#include <strings.h>

#include <QFile>
#include <QGuiApplication>
#include <QSaveFile>
#include <clocale>
#include <filesystem>

#include "analysed_file.h"
#include "analysis/signal/read_planar.h"
#include "base/error.h"
#include "base/stored_path.h"
#include "command.h"
#include "dsp/signal.h"
#include "ui/picture/analysis_picture.h"
#include "ui/picture/ruler_ticks.h"
#include "word_values.h"

namespace brindlehum::cli {

const std::string_view pictureHelp =
    "  theme light|dark   the colours (default light)\n"
    "  size WxH           pixels, 800x600 to 8000x8000 (default 1600x1200)\n";

namespace {

struct PictureRequest {
    std::string file;
    std::filesystem::path out;
    AnalysisWords overrides;
    bool dark = false;
    QSize size = AnalysisPicture::pageSize;
};

QSize sizeAfter(const std::string& word, const std::string& text) {
    const size_t cross = text.find('x');
    if (cross == std::string::npos) { refuse(word, text); }
    return {wholeNumberAfter(word, text.substr(0, cross), 800, 8000),
            wholeNumberAfter(word, text.substr(cross + 1), 600, 8000)};
}

PictureRequest readWords(Words words) {
    if (words.size() < 2) { throw UsageError(words.empty() ? "no file given" : "no output file given"); }
    PictureRequest request{words[0], words[1], {}, false, AnalysisPicture::pageSize};
    if (strcasecmp(request.out.extension().c_str(), ".png") != 0) {
        throw UsageError("the output \"" + words[1] + "\" must end in .png");
    }
    for (size_t i = 2; i < words.size(); ++i) {
        if (request.overrides.take(words, i)) { continue; }
        const std::string& word = words[i];
        if (word != "theme" && word != "size") { throw UsageError("unknown word \"" + word + "\""); }
        if (++i == words.size()) { throw UsageError("no value after \"" + word + "\""); }
        if (word == "size") {
            request.size = sizeAfter(word, words[i]);
        } else {
            if (words[i] != "light" && words[i] != "dark") { refuse(word, words[i]); }
            request.dark = words[i] == "dark";
        }
    }
    return request;
}

// Writes a temporary file beside its place and swaps it in when complete.
void save(const QImage& image, const std::filesystem::path& out) {
    if (image.isNull()) { throw Error("There is no memory for a picture of this size"); }
    QSaveFile file(QFile::decodeName(out.c_str()));
    if (!file.open(QIODevice::WriteOnly) || !image.save(&file, "PNG") || !file.commit()) {
        throw Error("Couldn't write " + out.native() + ": " + file.errorString().toStdString());
    }
}

QImage drawn(const AnalysedFile& file, const PictureRequest& request) {
    const auto& analysis = file.outcome.analysis;
    AnalysisPicture::Content content;
    content.name = QString::fromStdString(oneLine(std::filesystem::path(request.file).filename().string()));
    const std::string format = file.info.channels > 1 ? file.info.detected.displayName() + " · " : "";
    content.facts =
        QString::fromStdString(file.info.summary() + " · " + format + RulerTicks::label(file.seconds(), 0.1));
    // A second or less was too short to be read.
    const WorkingSignal* signal = analysis               ? &analysis->mono22k
                                  : file.outcome.mono22k ? &*file.outcome.mono22k
                                                         : nullptr;
    const std::vector<float> mono =
        signal ? std::vector<float>() : Signal::mono(Signal::readPlanar(request.file).channels);
    content.mono = signal ? SignalView(*signal) : SignalView(mono);
    content.monoRate = signal ? Signal::analysisRate : file.info.sampleRate;
    content.analysis = analysis ? &*analysis : nullptr;
    if (!analysis) { content.remark = QString::fromUtf8(failureText(file.outcome.status)); }
    return AnalysisPicture::draw(content, request.dark ? Theme::darkTheme() : Theme::lightTheme(), request.size);
}

void pictureFile(const PictureRequest& request) {
    const AnalysedFile file = analyseFile(request.file, request.overrides);
    std::error_code none;
    if (std::filesystem::equivalent(request.file, request.out, none)) {
        throw Error("The output would replace the file that it is made from");
    }
    save(drawn(file, request), request.out);
    print({
        {"url", storedPath(request.file)},
        {"out", storedPath(request.out)},
        {"status", rawValue(file.outcome.status)},
        {"summary", file.outcome.analysis ? Json(file.outcome.analysis->summary()) : Json()},
        {"width", request.size.width()},
        {"height", request.size.height()},
    });
}

}  // namespace

bool picture(Words words) {
    const PictureRequest request = readWords(words);
    // Fonts need an application, but no screen. Drop Qt's own messages about a missing session: our errors say what
    // matters to the user.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    qputenv("QT_QPA_PLATFORM", "offscreen");
    int count = 1;
    char name[] = "brindlehum-cli";
    char* arguments[] = {name, nullptr};
    const QGuiApplication application(count, arguments);
    std::setlocale(LC_NUMERIC, "C");  // Qt has set the user's
    return eachFile(words.first(1), [&](const std::string&) { pictureFile(request); });
}

}  // namespace brindlehum::cli

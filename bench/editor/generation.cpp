// A generation on the way out and back: what the clip costs, and how long the main loop is held up by a whole job.
#include <QThread>
#include <atomic>
#include <cstdio>
#include <fstream>
#include <random>

#include "analysis/piece.h"
#include "audio/stream/sample_source.h"
#include "audio/write/aac_clip.h"
#include "audio/write/wav_file_writer.h"
#include "editor/generation/ai_generator.h"
#include "platform/qt_http_client.h"
#include "platform/qt_main_loop.h"
#include "support/cpu_meter.h"
#include "support/listener.h"
#include "support/platform/http_server.h"

using namespace brindlehum;
using namespace brindlehum::bench;

namespace {

constexpr int rate = 48000;
constexpr double seconds = AacClip::longest;
const std::filesystem::path folder = std::filesystem::temp_directory_path() / "brindlehum-bench-generation";

Planes makeNoise() {
    std::mt19937 random(1);
    std::normal_distribution<float> level(0, 0.2F);
    Planes noise(2, std::vector<float>(size_t(seconds * rate)));
    for (auto& plane : noise) {
        for (float& sample : plane) { sample = level(random); }
    }
    return noise;
}

void encode(const char* name, const Planes& sound) {
    MemorySamples samples(sound, rate);
    size_t bytes = 0;
    const double cost =
        bestCpuSeconds(3, [&] { bytes = AacClip::encode(samples, 0, int64_t(sound[0].size())).size(); });
    std::printf("%-28s %6.2f s of one core, %.1f kbit/s\n", name, cost, double(bytes) * 8 / seconds / 1000);
}

// An application that notes the longest event, in wall time and in the main thread's own.
class Watched : public QCoreApplication {
public:
    using QCoreApplication::QCoreApplication;
    bool notify(QObject* receiver, QEvent* event) override {
        if (QThread::currentThread() != thread()) { return QCoreApplication::notify(receiver, event); }
        const auto start = Clock::now();
        const double startCpu = cpuNow();
        const bool handled = QCoreApplication::notify(receiver, event);
        wall = std::max(wall, std::chrono::duration<double>(Clock::now() - start).count());
        cpu = std::max(cpu, cpuNow() - startCpu);
        return handled;
    }
    double wall = 0, cpu = 0;
};

// A service with a thread of its own, that answers at once and has `takes` takes.
class Service {
public:
    Service(std::string take, int takes) : take_(std::move(take)), takes_(takes) {
        server_.moveToThread(&thread_);
        QObject::connect(
            &thread_, &QThread::started, &server_, [this] { start(); }, Qt::DirectConnection);
        thread_.start();
        while (port_ == 0) { QThread::msleep(1); }
    }
    ~Service() {
        thread_.quit();
        thread_.wait();
    }
    std::string address() const { return "http://127.0.0.1:" + std::to_string(port_) + "/"; }

private:
    void start() {
        server_.close();
        server_.listen(QHostAddress::LocalHost);
        server_.answer = [this](const test::HttpServer::Request& request) {
            if (request.line == "POST /ai/clip") { return test::httpReply(200, "{}"); }
            if (request.line == "POST /ai/generate") { return test::httpReply(200, R"({"taskId":"1"})"); }
            if (request.line.starts_with("GET /take")) { return test::httpReply(200, take_); }
            std::string tracks;
            for (int i = 0; i < takes_; ++i) {
                tracks += (i ? ",{\"url\":\"" : "{\"url\":\"") + address() + "take" + std::to_string(i) + "\"}";
            }
            return test::httpReply(200, R"({"status":"done","tracks":[)" + tracks + "]}");
        };
        port_ = server_.serverPort();
    }
    const std::string take_;
    const int takes_;
    test::HttpServer server_;
    QThread thread_;
    std::atomic<int> port_ = 0;
};

std::string makeTake() {
    WavFileWriter writer(folder / "take.wav", rate, 2, 3, "");
    writer.appendAll(makePiece(60, rate, 2));
    writer.finish();
    std::ifstream file(folder / "take.wav", std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void job(Watched& application) {
    QtMainLoop loop;
    QtHttpClient http;
    MemoryDefaults defaults;
    SettingsStore settings(defaults);
    GenerationKey key(nullptr, settings);
    AIGenerator generator(&http, key, settings, loop, std::make_shared<SerialQueue>("Brindlehum.tempedits"));
    const Service service(makeTake(), 8);
    settings.change([&](AppSettings& s) { s.generationAddress = service.address(); });
    const Planes piece = makePiece(seconds + 10, rate, 2);
    const auto frames = int64_t(piece[0].size());
    application.wall = application.cpu = 0;
    generator.generate(GenerationKind::variation,
                       {folder / "Piece.wav", Sound(piece), rate, 120, 4, "C", 0, frames, frames});
    until([&] { return !generator.running(); });
    std::printf("a job with 8 takes of 17 MB: longest event of the main loop %.1f ms, %.1f ms of its own; \"%s\"\n",
                application.wall * 1000, application.cpu * 1000, generator.status()->c_str());
}

}  // namespace

int main(int argc, char** argv) {
    Watched application(argc, argv);
    std::filesystem::create_directories(folder);
    encode("170 s of music, stereo", makePiece(seconds, rate, 2));
    encode("170 s of white noise", makeNoise());
    job(application);
    std::filesystem::remove_all(folder);
}

// The steps of a job, each begun by the answer to the one before.
#include "editor/generation/ai_generator.h"

#include <nlohmann/json.hpp>
#include <utility>

#include "audio/stream/sample_source.h"
#include "base/error.h"
#include "base/memory_file.h"
#include "edits/generated_takes.h"
#include "edits/temp_edit_exporter.h"

namespace brindlehum {
namespace {

namespace protocol = GenerationProtocol;

// A service that repeats the key in its texts doesn't bring it to the screen.
std::string without(std::string text, std::string_view key) {
    for (size_t at = 0; !key.empty() && (at = text.find(key, at)) != std::string::npos;) {
        text.replace(at, key.size(), "***");
    }
    return text;
}

}  // namespace

struct AIGenerator::Job {
    Kind kind;
    GenerationSource source;
    WebAddress service;
    std::string header;
    std::string name;  // as it is sent
    SecretText key{};  // until the service's work is done
    double clipSeconds = 0;
    std::string taskId{};
    double begun = 0;  // when the service began
    bool isPolling = false;
    bool hasLostOne = false;
    std::vector<std::string> takes{};
    size_t fetched = 0;
    std::shared_ptr<MemoryFile> take{};
    double takeBegun = 0;
    size_t written = 0;  // files
};

AIGenerator::AIGenerator(HttpClient* http, GenerationKey& key, const SettingsStore& settings, MainLoop& loop,
                         std::shared_ptr<SerialQueue> writer)
    : http_(http),
      key_(key),
      settings_(settings),
      loop_(loop),
      encoder_(loop, "Brindlehum.generate"),
      writer_(loop, std::move(writer)) {}

AIGenerator::~AIGenerator() = default;

std::optional<WebAddress> AIGenerator::service() const {
    return http_ ? baseAddress(settings_.value().generationAddress) : std::nullopt;
}

std::optional<AIGenerator::Kind> AIGenerator::running() const {
    return job_ ? std::optional(job_->kind) : std::nullopt;
}

void AIGenerator::generate(Kind kind, GenerationSource source) {
    const auto service = this->service();
    if (job_ || !service) { return; }
    const AppSettings& settings = settings_.value();
    const std::string name = settings.generationSendsName ? source.file.stem().string() : protocol::unnamed;
    job_ = std::make_unique<Job>(Job{kind, std::move(source), *service, settings.generationHeader, name});
    say("Preparing…");
    key_.read(service->origin, [this, job = ++jobs_](const GenerationKey::Reading& reading) {
        if (job_ && job == jobs_) { keyArrived(reading); }
    });
}

void AIGenerator::keyArrived(const GenerationKey::Reading& reading) {
    if (!reading.problem.empty()) { return fail(reading.problem); }
    job_->key = reading.key.value_or(SecretText());
    if (!job_->key.isEmpty() && (!protocol::isKey(job_->key.view()) || !protocol::isHeaderName(job_->header))) {
        return fail("The service's key can't be sent: look at its header and key in Settings");
    }
    job_->kind == Kind::intro ? start({}) : encode();
}

void AIGenerator::encode() {
    const AacClip::Range clip = *clipOf(job_->source, job_->kind);
    if (clip.end <= clip.start) { return fail("There is no music between the pins to send"); }
    job_->clipSeconds = double(clip.end - clip.start) / job_->source.sampleRate;
    const auto work = [sound = job_->source.sound, rate = job_->source.sampleRate, clip](const Background::Task& task) {
        SoundSamples samples(sound, rate);
        return AacClip::encode(samples, clip.start, clip.end, [&task] { return task.isStopped(); });
    };
    encoder_.run(
        clips_, work, [this](std::string bytes) { upload(std::move(bytes)); },
        [this](const std::exception& error) { fail(error.what()); });
}

void AIGenerator::upload(std::string clip) {
    say("Uploading…");
    request("POST", protocol::clipPath, "audio/mp4", std::move(clip),
            [this](const auto& answer) { start(protocol::clipUrl(answer)); });
}

void AIGenerator::start(const std::optional<std::string>& clipUrl) {
    const GenerationSource& source = job_->source;
    const std::string body = protocol::startBody(job_->kind, {job_->name, source.bpm, source.barSeconds(), source.key},
                                                 job_->clipSeconds, clipUrl);
    request("POST", protocol::generatePath, "application/json", body, [this](const auto& answer) {
        if (auto usage = protocol::usage(answer)) { usage_ = std::move(usage); }
        job_->taskId = protocol::taskId(answer);
        job_->begun = loop_.now();
        job_->isPolling = true;
        const auto tell = [this] { say("Generating… " + std::to_string(int(loop_.now() - job_->begun)) + "s"); };
        tick_ = loop_.every(1, tell);
        tell();
        awaitTask();
    });
}

void AIGenerator::awaitTask() {
    if (loop_.now() - job_->begun >= taskSeconds) {
        throw Error(ErrorKind::generationTimeout, "Still generating after 8 minutes. Try again shortly.");
    }
    wait_ = loop_.after(pollSeconds, [this] { poll(); });
}

void AIGenerator::poll() {
    request("GET", protocol::pollPath(job_->taskId), "application/json", {}, [this](const auto& answer) {
        auto takes = protocol::takes(answer);
        if (!takes) { return awaitTask(); }
        job_->isPolling = false;
        job_->key = {};
        tick_.reset();
        job_->takes = std::move(*takes);
        say("Downloading takes…");
        download();
    });
}

// The takes may lie on any server: that gets neither the key nor another word of the request.
void AIGenerator::download() {
    if (job_->fetched == job_->takes.size()) { return end(std::to_string(job_->written) + " files written", false); }
    const auto address = webAddress(job_->takes[job_->fetched++]);
    if (!address || (address->isThisMachine && !job_->service.isThisMachine)) {
        return fail("The service gives an address for a take that isn't safe");
    }
    job_->take = std::make_shared<MemoryFile>();
    job_->takeBegun = loop_.now();
    const auto watch = [this, host = address->host] {
        deadline_ = loop_.after(silenceSeconds, [this, host] { fail(host + " stopped sending a take"); });
    };
    HttpRequest request{.url = address->url, .redirects = 5, .maxBytes = maxTakeBytes};
    request.sink = [this, watch, take = job_->take](std::string_view bytes) {
        if (loop_.now() - job_->takeBegun > takeSeconds) { throw Error("It takes longer than half an hour"); }
        take->append(bytes);
        watch();
    };
    watch();
    exchange_ = http_->send(std::move(request), [this, host = address->host](const HttpAnswer& answer) {
        answered();
        if (!answer.failure.empty()) { return fail("A take of " + host + " can't be fetched: " + answer.failure); }
        if (answer.status != 200) {
            return fail("A take can't be fetched: " + host + " answers " + std::to_string(answer.status));
        }
        write();
    });
}

void AIGenerator::write() {
    const AppSettings& settings = settings_.value();
    struct Outcome {
        std::vector<std::filesystem::path> files;
        std::string problem;
    };
    GeneratedTakes::Take take{job_->kind, {}, job_->source.file, {}, int(job_->fetched), job_->source.barSeconds()};
    const auto work = [take, audio = std::exchange(job_->take, nullptr), beside = settings.tempEditsBesideSource,
                       pulls = settings.pulls()](const Background::Task& task) mutable {
        Outcome outcome;
        try {
            take.audio = audio->path();
            take.folder =
                TempEditExporter::folderFor(take.source, TempEditExporter::editsFolder(take.source, beside, pulls));
            GeneratedTakes::write(take, outcome.files, task.token());
        } catch (const std::exception& error) { outcome.problem = error.what(); }
        audio.reset();
        return outcome;
    };
    writer_.run(writes_, work, [this](const Outcome& outcome) {
        if (job_->written == 0 && !outcome.files.empty()) { results_.clear(); }
        results_.insert(results_.end(), outcome.files.begin(), outcome.files.end());
        job_->written += outcome.files.size();
        if (!outcome.problem.empty()) { return fail(outcome.problem); }
        say("Downloading takes…");
        guarded([this] { download(); });
    });
}

void AIGenerator::request(const char* method, const std::string& path, const char* contentType, std::string body,
                          Then then) {
    HttpRequest request{.method = method, .url = job_->service.url + path, .body = std::move(body)};
    request.headers.emplace_back("Content-Type", contentType);
    if (!job_->key.isEmpty()) {
        request.secretHeader.emplace(job_->header, protocol::headerValue(job_->header, job_->key));
    }
    request.maxBytes = int64_t(protocol::maxAnswerBytes);
    deadline_ = loop_.after(requestSeconds, [this] {
        answered();
        lost("no answer within " + std::to_string(int(requestSeconds)) + " seconds");
    });
    exchange_ = http_->send(std::move(request), [this, then = std::move(then)](const HttpAnswer& answer) {
        answered();
        if (!answer.failure.empty()) { return lost(answer.failure); }
        guarded([&] { then(protocol::answer(answer.status, answer.body)); });
    });
}

void AIGenerator::answered() {
    deadline_.reset();
    exchange_.reset();
}

void AIGenerator::lost(const std::string& problem) {
    if (!job_->isPolling || std::exchange(job_->hasLostOne, true)) { return fail(job_->service.host + ": " + problem); }
    guarded([this] { awaitTask(); });
}

void AIGenerator::guarded(const std::function<void()>& step) {
    try {
        step();
    } catch (const std::exception& error) { fail(error.what()); }
}

void AIGenerator::say(const std::string& status) {
    status_ = status;
    isProblem_ = false;
    Q_EMIT changed();
}

void AIGenerator::fail(const std::string& problem) {
    end(protocol::plainLine(without(problem, job_->key.view())), true);
}

void AIGenerator::end(const std::string& status, bool isProblem) {
    tick_.reset();
    wait_.reset();
    deadline_.reset();
    exchange_.reset();
    clips_.cancel();
    writes_.cancel();
    job_.reset();
    status_ = status;
    isProblem_ = isProblem;
    Q_EMIT changed();
}

void AIGenerator::cancel() {
    if (!job_) { return; }
    const size_t written = job_->written;
    end(written == 0 ? "Cancelled" : "Cancelled; " + std::to_string(written) + " files written", false);
}

void AIGenerator::finish(double patience) {
    cancel();
    writer_.drainFor(patience);
}

}  // namespace brindlehum

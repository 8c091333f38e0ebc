// AIGenerator: asks a generation service for an intro, an ending or a variation, and puts its takes into the edits
// folder.
#pragma once

#include <QObject>
#include <filesystem>
#include <functional>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <vector>

#include "editor/generation/generation_key.h"
#include "editor/generation/generation_source.h"
#include "platform/background.h"
#include "platform/http_client.h"
#include "platform/web_address.h"
#include "settings/settings_store.h"

namespace brindlehum {

// Main thread, one job at a time. Nothing is sent before generate(), and then to the address of the settings alone; the
// takes are fetched from where the service says. A job goes on when the document changes or is closed.
class AIGenerator : public QObject {
    Q_OBJECT
public:
    using Kind = GenerationKind;
    static constexpr double requestSeconds = 60;  // for one exchange
    static constexpr double silenceSeconds = 60;  // of a take that arrives
    static constexpr double takeSeconds = 1800;   // for one take
    static constexpr double pollSeconds = 8;
    static constexpr double taskSeconds = 480;
    static constexpr int64_t maxTakeBytes = 200 << 20;

    // Without `http` nothing can be generated. Takes are written on `writer`, which others that write edits share.
    AIGenerator(HttpClient* http, GenerationKey& key, const SettingsStore& settings, MainLoop& loop,
                std::shared_ptr<SerialQueue> writer);
    ~AIGenerator() override;

    // The service of the settings; none if there is no usable address.
    std::optional<WebAddress> service() const;
    std::optional<Kind> running() const;
    // Progress, or how the last job ended.
    const std::optional<std::string>& status() const { return status_; }
    bool isProblem() const { return isProblem_; }
    // The files of the last job that has brought one, as they come.
    const std::vector<std::filesystem::path>& results() const { return results_; }
    // What the service says of its use.
    const std::optional<std::string>& usage() const { return usage_; }

    // Does nothing while a job runs or without a service. Errors end the job with their text in status(). A request
    // isn't repeated, but one lost answer is forgiven while the service works.
    void generate(Kind kind, GenerationSource source);
    // Ends the job; what is written stays.
    void cancel();
    // Before the process ends: ends the job and waits for the file that is being written.
    void finish(double patience);

    Background& encoder() { return encoder_; }  // tests drain it
    Background& writer() { return writer_; }

Q_SIGNALS:
    void changed();

private:
    struct Job;
    using Then = std::function<void(const nlohmann::json& answer)>;
    void keyArrived(const GenerationKey::Reading& reading);
    void encode();
    void upload(std::string clip);
    void start(const std::optional<std::string>& clipUrl);
    void awaitTask();
    void poll();
    void download();
    void write();
    void request(const char* method, const std::string& path, const char* contentType, std::string body, Then then);
    void answered();
    void lost(const std::string& problem);
    void guarded(const std::function<void()>& step);
    void say(const std::string& status);
    void fail(const std::string& problem);
    void end(const std::string& status, bool isProblem);

    HttpClient* http_;
    GenerationKey& key_;
    const SettingsStore& settings_;
    MainLoop& loop_;
    std::unique_ptr<Job> job_;
    uint64_t jobs_ = 0;  // begun so far
    std::optional<std::string> status_;
    bool isProblem_ = false;
    std::vector<std::filesystem::path> results_;
    std::optional<std::string> usage_;
    std::unique_ptr<HttpClient::Exchange> exchange_;
    TimerHandle deadline_;  // of the exchange
    TimerHandle wait_;      // until the next question
    TimerHandle tick_;      // of the seconds in the status
    Background::Line clips_;
    Background::Line writes_;
    Background encoder_;
    Background writer_;  // last members, so that their work ends first
};

}  // namespace brindlehum

// Follows a server's registry, its default sink and its clock settings as they change.
#include "pipewire_session.h"

#include <pipewire/extensions/metadata.h>

#include <QJsonDocument>
#include <QJsonObject>
#include <cstring>

#include "base/number_text.h"

namespace brindlehum {

namespace {

std::string text(const spa_dict& properties, const char* key) {
    const char* value = spa_dict_lookup(&properties, key);
    return value ? value : "";
}

uint32_t number(const spa_dict& properties, const char* key) {
    return numberAtStart<uint32_t>(text(properties, key));
}

// The name within {"name": "..."}; empty if there is none.
std::string sinkName(const char* json) {
    const QJsonDocument document = QJsonDocument::fromJson(QByteArray(json ? json : ""));
    return document.object().value(QLatin1String("name")).toString().toStdString();
}

}  // namespace

// One of the server's metadata objects that we follow.
struct PipeWireSession::Metadata {
    PipeWireSession* session;
    uint32_t id;
    pw_proxy* proxy;
    spa_hook hook{};

    Metadata(PipeWireSession* owner, uint32_t globalId, pw_proxy* bound) : session(owner), id(globalId), proxy(bound) {
        static const pw_metadata_events events{PW_VERSION_METADATA_EVENTS, &property};
        pw_metadata_add_listener(reinterpret_cast<pw_metadata*>(proxy), &hook, &events, this);
    }
    Metadata(const Metadata&) = delete;
    Metadata& operator=(const Metadata&) = delete;
    ~Metadata() {
        spa_hook_remove(&hook);
        pw_proxy_destroy(proxy);
    }

    // A null key means that all properties of the subject were cleared.
    static int property(void* data, uint32_t subject, const char* key, const char*, const char* value) {
        PipeWireSession& session = *static_cast<Metadata*>(data)->session;
        PipeWireGraph& graph = session.graph_;
        if (subject != PW_ID_CORE) { return 0; }
        if (!key || std::strcmp(key, "default.audio.sink") == 0) { graph.defaultSinkName = key ? sinkName(value) : ""; }
        if (key && std::strcmp(key, "clock.rate") == 0) {
            graph.statedRate = numberAtStart<double>(value ? value : "");
        }
        if (key && std::strcmp(key, "clock.force-rate") == 0) {
            graph.forcedRate = numberAtStart<double>(value ? value : "");
        }
        session.changed();
        return 0;
    }
};

PipeWireSession::PipeWireSession(std::shared_ptr<PipeWireLoop> loop) : loop_(std::move(loop)) {}

std::shared_ptr<PipeWireSession> PipeWireSession::connect(std::shared_ptr<PipeWireLoop> loop, double now) {
    const std::shared_ptr<PipeWireSession> session(new PipeWireSession(std::move(loop)));
    const PipeWireLoop::Lock lock(session->loop());
    session->core_ = pw_context_connect(session->loop().context(), nullptr, 0);
    if (!session->core_) { return nullptr; }
    session->watch();
    session->ask(now);
    return session;
}

PipeWireSession::~PipeWireSession() {
    const PipeWireLoop::Lock lock(*loop_);
    if (!core_) { return; }
    metadata_.clear();
    spa_hook_remove(&registryHook_);
    pw_proxy_destroy(reinterpret_cast<pw_proxy*>(registry_));
    spa_hook_remove(&coreHook_);
    pw_core_disconnect(core_);
}

void PipeWireSession::watch() {
    static const pw_core_events coreEvents = [] {
        pw_core_events events{};
        events.version = PW_VERSION_CORE_EVENTS;
        events.done = [](void* data, uint32_t id, int sequence) {
            auto& session = *static_cast<PipeWireSession*>(data);
            if (id == PW_ID_CORE) { session.answered(sequence); }
        };
        events.error = [](void* data, uint32_t id, int, int result, const char*) {
            auto& session = *static_cast<PipeWireSession*>(data);
            if (id != PW_ID_CORE || result != -EPIPE) { return; }
            session.dead_ = true;
            session.changed();
        };
        return events;
    }();
    static const pw_registry_events registryEvents = [] {
        pw_registry_events events{};
        events.version = PW_VERSION_REGISTRY_EVENTS;
        events.global = [](void* data, uint32_t id, uint32_t, const char* type, uint32_t, const spa_dict* properties) {
            if (properties) { static_cast<PipeWireSession*>(data)->addGlobal(id, type, *properties); }
        };
        events.global_remove = [](void* data, uint32_t id) {
            auto& session = *static_cast<PipeWireSession*>(data);
            session.graph_.remove(id);
            std::erase_if(session.metadata_, [id](const auto& metadata) { return metadata->id == id; });
            session.changed();
        };
        return events;
    }();
    pw_core_add_listener(core_, &coreHook_, &coreEvents, this);
    registry_ = pw_core_get_registry(core_, PW_VERSION_REGISTRY, 0);
    pw_registry_add_listener(registry_, &registryHook_, &registryEvents, this);
}

void PipeWireSession::addGlobal(uint32_t id, const char* type, const spa_dict& properties) {
    if (std::strcmp(type, PW_TYPE_INTERFACE_Node) == 0) {
        const std::string kind = text(properties, PW_KEY_MEDIA_CLASS);
        const PipeWireSink node{id, text(properties, PW_KEY_NODE_NAME), text(properties, PW_KEY_NODE_DESCRIPTION)};
        graph_.nodes[id] = {number(properties, PW_KEY_CLIENT_ID), kind.starts_with("Audio/")};
        if (kind == "Audio/Sink" || kind == "Audio/Duplex") { graph_.sinks.push_back(node); }
        if (kind.starts_with("Audio/Source")) { graph_.sources.push_back(node); }
    } else if (std::strcmp(type, PW_TYPE_INTERFACE_Link) == 0) {
        graph_.links[id] = {number(properties, PW_KEY_LINK_OUTPUT_NODE), number(properties, PW_KEY_LINK_INPUT_NODE)};
    } else if (std::strcmp(type, PW_TYPE_INTERFACE_Port) == 0) {
        if (text(properties, PW_KEY_FORMAT_DSP) != "32 bit float mono audio") { return; }
        graph_.ports[id] = {id, number(properties, PW_KEY_NODE_ID), number(properties, PW_KEY_PORT_ID),
                            text(properties, PW_KEY_PORT_DIRECTION) == "in", text(properties, PW_KEY_AUDIO_CHANNEL)};
    } else if (std::strcmp(type, PW_TYPE_INTERFACE_Metadata) == 0) {
        addMetadata(id, spa_dict_lookup(&properties, PW_KEY_METADATA_NAME));
    } else {
        return;
    }
    changed();
}

void PipeWireSession::addMetadata(uint32_t id, const char* name) {
    if (!name || (std::strcmp(name, "default") != 0 && std::strcmp(name, "settings") != 0)) { return; }
    void* proxy = pw_registry_bind(registry_, id, PW_TYPE_INTERFACE_Metadata, PW_VERSION_METADATA, 0);
    if (proxy) { metadata_.push_back(std::make_unique<Metadata>(this, id, static_cast<pw_proxy*>(proxy))); }
}

void PipeWireSession::changed() {
    if (pw_client* const own = pw_core_get_client(core_)) {
        graph_.ownClient = pw_proxy_get_bound_id(reinterpret_cast<pw_proxy*>(own));
    }
    // Iterate over a copy, since a listener may unregister itself.
    for (PipeWireListener* listener : std::vector(listeners_)) { listener->graphChanged(); }
    loop_->wake();
}

void PipeWireSession::ask(double now) {
    question_ = pw_core_sync(core_, PW_ID_CORE, 0);
    askedAt_ = now;
    asks_ = true;
}

void PipeWireSession::answered(int sequence) {
    if (!asks_ || sequence - question_ < 0) { return; }
    asks_ = false;
    const bool isNews = silent_ || answers_ < firstAnswers;
    silent_ = false;
    if (answers_ < firstAnswers && ++answers_ < firstAnswers) { ask(askedAt_); }
    if (isNews) { changed(); }
}

void PipeWireSession::beat(double now) {
    const PipeWireLoop::Lock lock(*loop_);
    if (dead_) { return; }
    if (!asks_) { return ask(now); }
    if (silent_ || now - askedAt_ < patience) { return; }
    silent_ = true;
    changed();
}

bool PipeWireSession::waits() const {
    const PipeWireLoop::Lock lock(*loop_);
    return asks_;
}

void PipeWireSession::waitForAnswer() {
    const PipeWireLoop::Lock lock(*loop_);
    loop_->waitUntil(firstPatience, [this] { return dead_ || answers_ == firstAnswers; });
}

SoundServer PipeWireSession::state() const {
    const PipeWireLoop::Lock lock(*loop_);
    if (dead_) { return SoundServer::absent; }
    if (silent_) { return SoundServer::silent; }
    return answers_ == firstAnswers ? SoundServer::running : SoundServer::absent;
}

PipeWireGraph PipeWireSession::graph() const {
    const PipeWireLoop::Lock lock(*loop_);
    return graph_;
}

}  // namespace brindlehum

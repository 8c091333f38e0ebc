// Makes the virtual sink through the server's adapter, with ports of its own: without a session manager nobody else
// would configure them.
#include "pipewire_bus.h"

namespace brindlehum {

PipeWireBus::PipeWireBus(std::shared_ptr<PipeWireSession> session, const std::vector<std::string>& positions)
    : session_(std::move(session)) {
    std::string names = "[";
    for (const std::string& position : positions) { names += " " + position; }
    names += " ]";
    const std::string count = std::to_string(positions.size());
    const std::string ports =
        "{ direction = Input mode = dsp monitor = true format = { mediaType = audio mediaSubtype = raw format = F32 "
        "rate = 48000 channels = " +
        count + " position = " + names + " } }";
    const PipeWireLoop::Lock lock(session_->loop());
    if (session_->isDead()) { return; }
    // Low priorities: it must become neither the default sink nor the clock of the graph.
    pw_properties* properties =
        pw_properties_new("factory.name", "support.null-audio-sink", PW_KEY_MEDIA_CLASS, "Audio/Sink", PW_KEY_NODE_NAME,
                          nodeName, PW_KEY_NODE_DESCRIPTION, "Brindlehum Bus", PW_KEY_PRIORITY_SESSION, "1",
                          PW_KEY_PRIORITY_DRIVER, "1", "audio.channels", count.c_str(), "audio.position", names.c_str(),
                          "monitor.channel-volumes", "false", "node.param.PortConfig", ports.c_str(), nullptr);
    proxy_ = static_cast<pw_proxy*>(pw_core_create_object(session_->core(), "adapter", PW_TYPE_INTERFACE_Node,
                                                          PW_VERSION_NODE, &properties->dict, 0));
    pw_properties_free(properties);
}

PipeWireBus::~PipeWireBus() {
    const PipeWireLoop::Lock lock(session_->loop());
    if (proxy_) { pw_proxy_destroy(proxy_); }
}

}  // namespace brindlehum

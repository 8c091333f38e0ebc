#include "pipewire_link.h"

#include <utility>

namespace brindlehum {

PipeWireLink::PipeWireLink(pw_core* core, const End& from, const End& to, std::function<void()> refused)
    : refused_(std::move(refused)) {
    static const pw_proxy_events events = [] {
        pw_proxy_events made{};
        made.version = PW_VERSION_PROXY_EVENTS;
        made.error = [](void* data, int, int, const char*) { static_cast<PipeWireLink*>(data)->refused_(); };
        return made;
    }();
    pw_properties* properties = pw_properties_new(nullptr, nullptr);
    pw_properties_setf(properties, PW_KEY_LINK_OUTPUT_NODE, "%u", from.node);
    pw_properties_setf(properties, PW_KEY_LINK_OUTPUT_PORT, "%u", from.port);
    pw_properties_setf(properties, PW_KEY_LINK_INPUT_NODE, "%u", to.node);
    pw_properties_setf(properties, PW_KEY_LINK_INPUT_PORT, "%u", to.port);
    proxy_ = static_cast<pw_proxy*>(
        pw_core_create_object(core, "link-factory", PW_TYPE_INTERFACE_Link, PW_VERSION_LINK, &properties->dict, 0));
    pw_properties_free(properties);
    if (proxy_) { pw_proxy_add_listener(proxy_, &hook_, &events, this); }
}

PipeWireLink::~PipeWireLink() {
    if (!proxy_) { return; }
    spa_hook_remove(&hook_);
    pw_proxy_destroy(proxy_);
}

}  // namespace brindlehum

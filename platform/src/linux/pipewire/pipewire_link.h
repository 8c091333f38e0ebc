// PipeWireLink: a link of two ports that exists as long as the object.
#pragma once

#include <pipewire/pipewire.h>

#include <functional>

namespace brindlehum {

// Made and destroyed with the library's lock held.
class PipeWireLink {
public:
    struct End {
        uint32_t node = 0;  // global ids
        uint32_t port = 0;
    };
    // `refused` is called on the library's thread, with its lock held, when the server says no.
    PipeWireLink(pw_core* core, const End& from, const End& to, std::function<void()> refused);
    ~PipeWireLink();
    PipeWireLink(const PipeWireLink&) = delete;
    PipeWireLink& operator=(const PipeWireLink&) = delete;

    bool isMade() const { return proxy_ != nullptr; }

private:
    const std::function<void()> refused_;
    pw_proxy* proxy_ = nullptr;
    spa_hook hook_{};
};

}  // namespace brindlehum

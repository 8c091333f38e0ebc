// Starting and stopping the library's thread.
#include "pipewire_loop.h"

namespace brindlehum {

std::shared_ptr<PipeWireLoop> PipeWireLoop::make() {
    static const bool initialised = [] {
        pw_init(nullptr, nullptr);
        return true;
    }();
    (void)initialised;
    const std::shared_ptr<PipeWireLoop> loop(new PipeWireLoop);
    loop->loop_ = pw_thread_loop_new("pipewire-main", nullptr);
    if (!loop->loop_) { return nullptr; }
    // The library's configuration for clients that process audio on a real-time thread.
    loop->context_ = pw_context_new(pw_thread_loop_get_loop(loop->loop_),
                                    pw_properties_new(PW_KEY_CONFIG_NAME, "client-rt.conf", nullptr), 0);
    if (!loop->context_ || pw_thread_loop_start(loop->loop_) < 0) { return nullptr; }
    return loop;
}

PipeWireLoop::~PipeWireLoop() {
    if (!loop_) { return; }
    pw_thread_loop_stop(loop_);
    if (context_) { pw_context_destroy(context_); }
    pw_thread_loop_destroy(loop_);
}

bool PipeWireLoop::waitUntil(double seconds, const std::function<bool()>& done) {
    timespec limit{};
    pw_thread_loop_get_time(loop_, &limit, int64_t(seconds * SPA_NSEC_PER_SEC));
    while (!done()) {
        if (pw_thread_loop_timed_wait_full(loop_, &limit) < 0) { return done(); }
    }
    return true;
}

void PipeWireLoop::waitForProcess() {
    const auto nothing = [](spa_loop*, bool, uint32_t, const void*, size_t, void*) { return 0; };
    pw_data_loop_invoke(pw_context_get_data_loop(context_), nothing, 0, nullptr, 0, true, nullptr);
}

}  // namespace brindlehum

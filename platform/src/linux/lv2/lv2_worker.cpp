// Carries work from the audio thread to the worker and answers back.
#include "lv2_worker.h"

namespace brindlehum {

bool Lv2Messages::push(uint32_t bytes, const void* data) noexcept {
    uint32_t at = 0;
    const int32_t filled = spa_ringbuffer_get_write_index(&ring_, &at);
    if (filled < 0 || bytes > size || uint64_t(filled) + sizeof bytes + bytes > size) { return false; }
    spa_ringbuffer_write_data(&ring_, bytes_.data(), size, at % size, &bytes, sizeof bytes);
    spa_ringbuffer_write_data(&ring_, bytes_.data(), size, (at + sizeof bytes) % size, data, bytes);
    spa_ringbuffer_write_update(&ring_, int32_t(at + sizeof bytes + bytes));
    return true;
}

bool Lv2Messages::pop(uint32_t& bytes, void* out) noexcept {
    uint32_t at = 0;
    if (spa_ringbuffer_get_read_index(&ring_, &at) < int32_t(sizeof bytes)) { return false; }
    spa_ringbuffer_read_data(&ring_, bytes_.data(), size, at % size, &bytes, sizeof bytes);
    spa_ringbuffer_read_data(&ring_, bytes_.data(), size, (at + sizeof bytes) % size, out, bytes);
    spa_ringbuffer_read_update(&ring_, int32_t(at + sizeof bytes + bytes));
    return true;
}

void Lv2Worker::stop() {
    if (!thread_.joinable()) { return; }
    thread_.request_stop();
    waiting_.release();
    thread_.join();
}

void Lv2Worker::attach(LilvInstance* instance) {
    handle_ = lilv_instance_get_handle(instance);
    plugin_ =
        static_cast<const LV2_Worker_Interface*>(lilv_instance_get_extension_data(instance, LV2_WORKER__interface));
}

void Lv2Worker::start() {
    if (!plugin_) { return; }
    runs_ = true;
    thread_ = std::jthread([this](const std::stop_token& stop) { run(stop); });
}

LV2_Worker_Status Lv2Worker::schedule(uint32_t bytes, const void* data) noexcept {
    if (!plugin_) { return LV2_WORKER_ERR_UNKNOWN; }
    if (!runs_) {
        work(bytes, data);
        return LV2_WORKER_SUCCESS;
    }
    if (!requests_.push(bytes, data)) { return LV2_WORKER_ERR_NO_SPACE; }
    waiting_.release();
    return LV2_WORKER_SUCCESS;
}

void Lv2Worker::work(uint32_t bytes, const void* data) {
    const auto respond = [](LV2_Worker_Respond_Handle self, uint32_t size, const void* answer) {
        const bool fits = static_cast<Lv2Worker*>(self)->responses_.push(size, answer);
        return fits ? LV2_WORKER_SUCCESS : LV2_WORKER_ERR_NO_SPACE;
    };
    plugin_->work(handle_, respond, this, bytes, data);
}

void Lv2Worker::run(const std::stop_token& stop) {
    while (true) {
        waiting_.acquire();
        if (stop.stop_requested()) { return; }
        uint32_t bytes = 0;
        if (requests_.pop(bytes, request_.data())) { work(bytes, request_.data()); }
    }
}

void Lv2Worker::deliver() noexcept {
    if (!plugin_) { return; }
    uint32_t bytes = 0;
    while (responses_.pop(bytes, response_.data())) { plugin_->work_response(handle_, bytes, response_.data()); }
    if (plugin_->end_run) { plugin_->end_run(handle_); }
}

}  // namespace brindlehum

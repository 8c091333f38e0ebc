// Lv2Worker: a thread for what a plug-in can't do in its audio callback, such as loading a file.
#pragma once

#include <lilv/lilv.h>
#include <lv2/worker/worker.h>
#include <spa/utils/ringbuffer.h>

#include <atomic>
#include <semaphore>
#include <thread>
#include <vector>

namespace brindlehum {

// Messages of one direction, from one thread to one other. Neither waits.
class Lv2Messages {
public:
    static constexpr uint32_t size = 1 << 16;  // bytes

    bool push(uint32_t bytes, const void* data) noexcept;  // false when it is full
    // Copies the next message to `out`, which has room for `size` bytes. False when there is none.
    bool pop(uint32_t& bytes, void* out) noexcept;

private:
    std::vector<uint8_t> bytes_ = std::vector<uint8_t>(size);
    spa_ringbuffer ring_ = SPA_RINGBUFFER_INIT();
};

// Control side, except where stated. The plug-in's instance must outlive the object.
class Lv2Worker {
public:
    Lv2Worker() = default;
    ~Lv2Worker() { stop(); }
    Lv2Worker(const Lv2Worker&) = delete;
    Lv2Worker& operator=(const Lv2Worker&) = delete;

    LV2_Worker_Schedule* feature() { return &schedule_; }
    // Once the instance is made. Work that it asks for before start() is done at once.
    void attach(LilvInstance* instance);
    void start();
    // Waits for the end of the work that is under way.
    void stop();
    // Audio thread, after each block.
    void deliver() noexcept;

private:
    LV2_Worker_Status schedule(uint32_t bytes, const void* data) noexcept;
    void work(uint32_t bytes, const void* data);
    void run(const std::stop_token& stop);

    LV2_Handle handle_ = nullptr;
    const LV2_Worker_Interface* plugin_ = nullptr;  // null when it has no use for a worker
    LV2_Worker_Schedule schedule_{this, [](LV2_Worker_Schedule_Handle self, uint32_t bytes, const void* data) {
                                      return static_cast<Lv2Worker*>(self)->schedule(bytes, data);
                                  }};
    Lv2Messages requests_, responses_;
    std::vector<uint8_t> request_ = std::vector<uint8_t>(Lv2Messages::size);   // worker
    std::vector<uint8_t> response_ = std::vector<uint8_t>(Lv2Messages::size);  // audio thread
    std::counting_semaphore<> waiting_{0};
    std::atomic<bool> runs_ = false;
    std::jthread thread_;
};

}  // namespace brindlehum

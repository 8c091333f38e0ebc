// DiskWork: passes over the threads that have been busy for long.
#include "platform/disk_work.h"

#include <algorithm>
#include <numeric>

namespace brindlehum {

DiskWork::DiskWork(MainLoop& loop, std::string label) : loop_(loop), label_(std::move(label)) {}

Background& DiskWork::queue() {
    const auto found = std::ranges::find_if(
        threads_, [](const auto& thread) { return !thread->isSlow && thread->work.pending() > 0; });
    return (found == threads_.end() ? idle() : **found).work;
}

std::optional<bool> DiskWork::isFolder(const std::filesystem::path& path) {
    return ask([path] {
        std::error_code error;
        return std::filesystem::is_directory(path, error);
    });
}

void DiskWork::dropWaiting() {
    for (const auto& thread : threads_) { thread->work.dropWaiting(); }
}

void DiskWork::drain() {
    for (const auto& thread : threads_) { thread->work.drain(); }
}

int DiskWork::pending() const {
    return std::accumulate(threads_.begin(), threads_.end(), 0,
                           [](int sum, const auto& thread) { return sum + thread->work.pending(); });
}

DiskWork::Thread& DiskWork::idle() {
    auto found = std::ranges::find_if(threads_, [](const auto& thread) { return thread->work.pending() == 0; });
    if (found == threads_.end()) { found = threads_.insert(threads_.end(), std::make_unique<Thread>(loop_, label_)); }
    Thread& thread = **found;
    thread.isSlow = false;
    thread.timer = loop_.after(patience, [&thread] { thread.isSlow = thread.work.pending() > 0; });
    return thread;
}

}  // namespace brindlehum

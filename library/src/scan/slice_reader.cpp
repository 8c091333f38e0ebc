// SliceReader: uses a pool of low-priority threads that all scans share.
#include "scan/slice_reader.h"

#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <thread>

#include "library/meta/meta_io.h"
#include "platform/task_queues.h"

namespace brindlehum {
namespace {

constexpr size_t slicesAhead = 3;
constexpr size_t filesAJob = 16;
constexpr std::chrono::milliseconds waitStep{200};

// All scans share the pool, so that several scans at once use no more threads than there are cores.
WorkerPool& readers() {
    static WorkerPool pool(int(std::thread::hardware_concurrency()), "Brindlehum.scan");
    return pool;
}

// Playing and showing files has priority over scanning them.
void lowerPriority() {
    constexpr int niceness = 5;
    thread_local const bool lowered = ::setpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()), niceness) == 0;
    static_cast<void>(lowered);
}

}  // namespace

ReadFile readSoundFile(FoundFile file) {
    ReadFile read{std::move(file), std::nullopt, {}};
    try {
        read.info = AudioFileInfo::load(read.file.path);
    } catch (const std::exception&) {
        // A search still finds the file by its name.
    }
    try {
        read.meta = MetaIO::read(read.file.path);
    } catch (const std::exception&) {}
    return read;
}

struct SliceReader::Slice {
    std::vector<ReadFile> files;
    std::mutex lock;
    std::condition_variable wake;
    size_t done = 0;  // under the lock
};

SliceReader::SliceReader(std::vector<FoundFile> files, size_t filesASlice, std::stop_token stop)
    : files_(std::move(files)), filesASlice_(filesASlice), stop_(std::move(stop)) {}

void SliceReader::readAhead() {
    while (ahead_.size() < slicesAhead && begun_ < files_.size()) {
        const auto slice = std::make_shared<Slice>();
        const size_t end = std::min(begun_ + filesASlice_, files_.size());
        for (; begun_ < end; ++begun_) { slice->files.push_back({std::move(files_[begun_]), std::nullopt, {}}); }
        for (size_t first = 0; first < slice->files.size(); first += filesAJob) {
            const size_t count = std::min(filesAJob, slice->files.size() - first);
            readers().async([slice, first, count, stop = stop_] {
                lowerPriority();
                for (size_t i = first; i < first + count && !stop.stop_requested(); ++i) {
                    slice->files[i] = readSoundFile(std::move(slice->files[i].file));
                }
                const std::lock_guard guard(slice->lock);
                slice->done += count;
                slice->wake.notify_all();
            });
        }
        ahead_.push_back(slice);
    }
}

std::vector<ReadFile> SliceReader::next(const std::function<void(size_t)>& onWait) {
    readAhead();
    if (ahead_.empty()) { return {}; }
    const auto slice = ahead_.front();
    ahead_.pop_front();
    std::unique_lock guard(slice->lock);
    while (!slice->wake.wait_for(guard, waitStep, [&] { return slice->done == slice->files.size(); })) {
        const size_t done = slice->done;
        guard.unlock();
        onWait(done);
        guard.lock();
    }
    if (stop_.stop_requested()) { return {}; }
    return std::move(slice->files);
}

}  // namespace brindlehum

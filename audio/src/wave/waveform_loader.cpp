// WaveformLoader: scans in the background and delivers snapshots on the main thread.
#include <chrono>
#include <exception>

#include "audio/stream/file_source.h"
#include "audio/wave/waveform.h"
#include "wave/waveform_scan.h"

namespace brindlehum {

namespace {

constexpr double snapshotSeconds = 0.12;  // the least time between two snapshots

WaveformPtr scanAll(WaveformScan& scan, const std::function<void(WaveformPtr)>& grown,
                    const std::function<bool()>& stop, const std::function<double()>& now) {
    double last = now();
    while (scan.step()) {
        if (stop()) { return nullptr; }
        if (now() - last > snapshotSeconds) {
            last = now();
            grown(scan.snapshot());
        }
    }
    // A source that was stopped may have broken off.
    return stop() ? nullptr : scan.finish();
}

// The state of one load, passed between the threads.
struct Load {
    std::shared_ptr<WaveformLoader> loader;
    WaveformLoader::Open open;
    WaveformLoader::Update onUpdate;
    Executor main;
    WaveformLoader::Clock now;

    // Checks again on arrival, because the owner may cancel between the posting and the call.
    void post(WaveformPtr data) const {
        main([toLoader = loader, update = onUpdate, data = std::move(data)] {
            if (!toLoader->isCancelled()) { update(data); }
        });
    }

    void run() const {
        if (loader->isCancelled()) { return; }
        const std::unique_ptr<FrameSource> source = open();
        WaveformScan scan(*source);
        const auto whole = scanAll(
            scan, [this](WaveformPtr data) { post(std::move(data)); }, [this] { return loader->isCancelled(); }, now);
        if (whole) { post(whole); }
    }
};

}  // namespace

double steadySeconds() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

WaveformPtr waveformDetail(FrameSource& source, const WaveformSpan& span, const std::function<void(WaveformPtr)>& grown,
                           const std::function<bool()>& stop, const std::function<double()>& now) {
    WaveformScan scan(source, span);
    return scanAll(scan, grown, stop, now);
}

std::shared_ptr<WaveformLoader> WaveformLoader::load(const std::filesystem::path& path, Update onUpdate,
                                                     const Executor& background, const Executor& main) {
    return load([path] { return std::make_unique<FileSource>(path); }, std::move(onUpdate), background, main,
                steadySeconds);
}

std::shared_ptr<WaveformLoader> WaveformLoader::load(Open open, Update onUpdate, const Executor& background,
                                                     const Executor& main, Clock now) {
    auto loader = std::make_shared<WaveformLoader>();
    background([load = Load{loader, std::move(open), std::move(onUpdate), main, std::move(now)}] {
        try {
            load.run();
        } catch (const std::exception&) {
            return;  // no overview: the code that loads the file reports the reason
        }
    });
    return loader;
}

WaveformPtr WaveformLoader::overview(const std::filesystem::path& path) {
    FileSource source(path);
    return overview(source);
}

WaveformPtr WaveformLoader::overview(FrameSource& source) {
    WaveformScan scan(source);
    while (scan.step()) {}
    return scan.finish();
}

void WaveformLoader::cancel() {
    const std::lock_guard guard(lock_);
    cancelled_ = true;
}

bool WaveformLoader::isCancelled() const {
    const std::lock_guard guard(lock_);
    return cancelled_;
}

}  // namespace brindlehum

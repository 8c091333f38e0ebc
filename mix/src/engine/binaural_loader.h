// BinauralLoader: makes binaural stages in the background, one for each sample rate.
#pragma once

#include <functional>
#include <map>
#include <memory>

#include "mix/render/binaural_stage.h"
#include "platform/disk_work.h"

namespace brindlehum {

// Main thread. Reading and transforming an HRTF set takes 80 to 700 ms, so it runs on a thread of its own: neither the
// window's thread nor the audio thread ever waits for it.
class BinauralLoader {
public:
    using Make = std::function<std::shared_ptr<BinauralStage>(double sampleRate)>;
    // `make` runs on the loader's own thread and may throw; `onDone` is called on the main thread after each load,
    // whether it succeeded or not.
    BinauralLoader(MainLoop& loop, Make make, std::function<void(double sampleRate)> onDone);

    // Starts to load unless the stage is loaded or being loaded; retries a load that has failed.
    void prepare(double sampleRate);
    // Forgets all stages, and those that are being loaded.
    void forget();
    // Null until it is loaded.
    std::shared_ptr<BinauralStage> stage(double sampleRate) const;
    bool failed(double sampleRate) const;

private:
    enum class State { loading, ready, failed };
    struct Entry {
        State state = State::loading;
        std::shared_ptr<BinauralStage> stage;
    };
    void finish(int version, double sampleRate, std::shared_ptr<BinauralStage> stage);

    Make make_;
    std::function<void(double)> onDone_;
    std::map<double, Entry> entries_;  // by sample rate in Hz
    int version_ = 0;                  // counts forget()
    DiskWork disk_;
};

}  // namespace brindlehum

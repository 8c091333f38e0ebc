// BinauralLoader: makes binaural stages in the background, one a sample rate.
#pragma once

#include <functional>
#include <map>
#include <memory>

#include "mix/render/binaural_stage.h"
#include "platform/main_loop.h"
#include "platform/task_queues.h"

namespace brindlehum {

// Main thread. Reading an HRTF set and transforming it costs 80 to 700 ms, so neither the window's thread nor the
// audio thread ever waits for it.
class BinauralLoader {
public:
    using Make = std::function<std::shared_ptr<BinauralStage>(double sampleRate)>;
    // `make` runs on a thread of the loader's own and may throw; `onDone` is called on the main thread after each
    // load, whatever came of it.
    BinauralLoader(MainLoop& loop, Make make, std::function<void(double sampleRate)> onDone);
    ~BinauralLoader();

    // Starts to load unless that is done or under way; a load that has failed is tried again.
    void prepare(double sampleRate);
    // Null while there is none.
    std::shared_ptr<BinauralStage> stage(double sampleRate) const;
    bool failed(double sampleRate) const;

private:
    enum class State { loading, ready, failed };
    struct Entry {
        State state = State::loading;
        std::shared_ptr<BinauralStage> stage;
    };
    void finish(double sampleRate, std::shared_ptr<BinauralStage> stage);

    MainLoop& loop_;
    Make make_;
    std::function<void(double)> onDone_;
    std::map<double, Entry> entries_;                             // by sample rate in Hz
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);  // results that come later are dropped
    SerialQueue queue_{"Brindlehum.hrtf"};
};

}  // namespace brindlehum

// ConfigPublisher: hands mix configurations to a render context, with the upmix and the binaural stage that they need,
// and keeps what they replace alive until no block can read it.
#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "mix/config/mix_config.h"
#include "mix/render/binaural_stage.h"
#include "mix/render/render_config.h"
#include "mix/render/render_context.h"
#include "platform/main_loop.h"
#include "upmix/upmixer.h"

namespace brindlehum {

class BinauralLoader;
class RenderWatch;

// Main thread for every call.
class ConfigPublisher {
public:
    // Seconds that an object stays alive after it left the audio path; longer while the device makes no progress.
    static constexpr double retirement = 3.0;

    // Makes the binaural stage for a rate (Hz). Runs on a background thread; throws when there is no HRTF set.
    using StageMaker = std::function<std::shared_ptr<BinauralStage>(double sampleRate)>;
    // The stage of HRTFSet::shared.
    static std::shared_ptr<BinauralStage> sharedSetStage(double sampleRate);

    // `watch` counts the blocks of `context`. Starts at once to load the stage for 48 kHz.
    ConfigPublisher(RenderContext& context, MainLoop& loop, std::shared_ptr<const RenderWatch> watch,
                    StageMaker makeStage);
    ~ConfigPublisher();

    // The next block fades to it. A binaural configuration waits until its stage has been loaded; until then nothing is
    // published.
    void set(const MixConfig& config);
    // The rate of configurations from now on, Hz. Only while no render runs, and before set.
    void open(double sampleRate);
    // Drops the stage and what the upmix holds. Only while no render runs.
    void close();
    // Makes the stage anew, as the HRTF set is another one. A binaural configuration waits for it in silence.
    void renewStage();
    // Forgets what the context's last block sounded like. Only while no render runs.
    void forgetPrevious();

    bool waits() const { return waiting_.has_value(); }
    // No HRTF set is available for the rate: binaural configurations stay silent.
    bool stageMissing() const;
    // Of the published configuration; null without an upmix.
    const Upmixer* upmixer() const { return upmixer_.get(); }
    // Keeps an object that has just been taken out of the audio path.
    void retire(std::shared_ptr<const void> object);

    // A configuration that had waited is published.
    std::function<void()> onPublished;
    // stageMissing() became true while a configuration waits.
    std::function<void()> onMissing;

private:
    void publish(const MixConfig& config);
    mn_upmix* upmixFor(const MixConfig& config);
    void replace(std::shared_ptr<RenderConfig> next);
    void stageLoaded(double sampleRate);

    RenderContext& context_;
    MainLoop& loop_;
    std::shared_ptr<const RenderWatch> watch_;
    double sampleRate_ = 48000;
    std::shared_ptr<RenderConfig> current_;
    std::shared_ptr<Upmixer> upmixer_;        // of the published configuration; kept while one waits
    std::shared_ptr<BinauralStage> stage_;    // for the rate, as published
    std::shared_ptr<BinauralStage> leaving_;  // still the context's, until another one replaces it
    std::optional<MixConfig> binaural_;       // the published configuration, if it is binaural
    std::optional<MixConfig> waiting_;        // binaural, until its stage has been loaded
    std::unique_ptr<BinauralLoader> loader_;
};

}  // namespace brindlehum

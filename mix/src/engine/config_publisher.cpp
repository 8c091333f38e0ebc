// ConfigPublisher: publishes configurations with what they need, and retires the ones before.
#include "mix/engine/config_publisher.h"

#include "engine/binaural_loader.h"
#include "mix/render/hrtf_set.h"
#include "mix/render/render_watch.h"

namespace brindlehum {

std::shared_ptr<BinauralStage> ConfigPublisher::sharedSetStage(double sampleRate) {
    return std::make_shared<BinauralStage>(HRTFSet::shared(sampleRate));
}

ConfigPublisher::ConfigPublisher(RenderContext& context, MainLoop& loop, std::shared_ptr<const RenderWatch> watch,
                                 StageMaker makeStage)
    : context_(context),
      loop_(loop),
      watch_(std::move(watch)),
      loader_(
          std::make_unique<BinauralLoader>(loop, std::move(makeStage), [this](double rate) { stageLoaded(rate); })) {
    loader_->prepare(sampleRate_);
}

ConfigPublisher::~ConfigPublisher() = default;

void ConfigPublisher::open(double sampleRate) {
    sampleRate_ = sampleRate;
    loader_->prepare(sampleRate_);
}

void ConfigPublisher::close() {
    waiting_.reset();
    forgetPrevious();
    context_.setBinauralStage(nullptr);
    stage_.reset();
    leaving_.reset();
    binaural_.reset();
}

void ConfigPublisher::renewStage() {
    loader_->forget();
    loader_->prepare(sampleRate_);
    if (!stage_) { return; }
    leaving_ = std::move(stage_);
    if (binaural_) {
        waiting_ = std::exchange(binaural_, std::nullopt);
        replace(nullptr);
    }
}

void ConfigPublisher::forgetPrevious() {
    context_.forgetPrevious();
    if (upmixer_) { mn_upmix_reset(upmixer_->raw()); }
}

void ConfigPublisher::set(const MixConfig& config) {
    waiting_.reset();
    if (config.toBinaural && !loader_->stage(sampleRate_)) {
        binaural_.reset();
        replace(nullptr);
        waiting_ = config;
        return;
    }
    publish(config);
}

void ConfigPublisher::publish(const MixConfig& config) {
    binaural_ = config.toBinaural ? std::optional(config) : std::nullopt;
    if (config.toBinaural) {
        if (!stage_) {
            stage_ = loader_->stage(sampleRate_);
            context_.setBinauralStage(stage_.get());
            retire(std::exchange(leaving_, nullptr));
        }
        retire(stage_->setDirections(config.virtualDirections));
    }
    const std::shared_ptr<Upmixer> before = upmixer_;
    replace(std::make_shared<RenderConfig>(config, upmixFor(config)));
    if (before != upmixer_) { retire(before); }
}

// The processor with the plan of the configuration; null when it asks for none.
mn_upmix* ConfigPublisher::upmixFor(const MixConfig& config) {
    if (!config.upmix) {
        upmixer_.reset();
        return nullptr;
    }
    const int ins = int(config.upmix->source.size());
    const int outs = int(config.upmix->target.size());
    if (!upmixer_ || upmixer_->inChannels() != ins || upmixer_->outChannels() != outs ||
        upmixer_->sampleRate() != sampleRate_) {
        upmixer_ = Upmixer::make(ins, outs, sampleRate_);
    }
    if (!upmixer_) { return nullptr; }
    retire(upmixer_->apply(*config.upmix));
    return upmixer_->raw();
}

void ConfigPublisher::replace(std::shared_ptr<RenderConfig> next) {
    context_.setConfig(next ? &next->record : nullptr);
    retire(std::exchange(current_, std::move(next)));
}

void ConfigPublisher::stageLoaded(double sampleRate) {
    if (!waiting_ || sampleRate != sampleRate_) { return; }
    if (!loader_->stage(sampleRate_)) {
        if (onMissing) { onMissing(); }
        return;
    }
    publish(*std::exchange(waiting_, std::nullopt));
    if (onPublished) { onPublished(); }
}

bool ConfigPublisher::stageMissing() const {
    return loader_->failed(sampleRate_);
}

void ConfigPublisher::retire(std::shared_ptr<const void> object) {
    if (object) { keepFor(retirement, loop_, watch_, watch_->blocks(), std::move(object)); }
}

}  // namespace brindlehum

// ExportRender: the samples of an exported file, block by block, from the path that the device plays.
#pragma once

#include <memory>
#include <span>

#include "mix/export/export_plan.h"
#include "mix/export/exporter.h"
#include "mix/render/offline_render.h"

namespace brindlehum {

class ExportRender {
public:
    // Throws Error when the file can't be read, or what it needs is missing. `stop` abandons long reads.
    ExportRender(const Exporter::Request& request, const FrameRange& range, const ExportPlan& plan,
                 const std::function<bool()>& stop);
    ExportRender(const ExportRender&) = delete;
    ExportRender& operator=(const ExportRender&) = delete;

    // Renders up to a block of at most `limit` frames into planes(): never none, with silence behind the last sound.
    int next(int64_t limit);
    std::span<const float* const> planes() const { return planes_; }
    // True when the file couldn't be read in full.
    bool brokeOff() const { return brokenOff_; }
    // Of this block; not a number when a sample was none.
    float peak(int channel) const;

private:
    void fadeToNextRound(int frames);

    bool brokenOff_ = false;
    OfflineRender offline_;
    std::unique_ptr<OfflineRender> nextRound_;  // of a loop that has to be faded into its next round, over
    int fadeFrames_;
    int64_t left_;                // frames before the end
    std::vector<float> samples_;  // one block of silence, or one a channel of a fade
    std::vector<const float*> planes_;
};

}  // namespace brindlehum

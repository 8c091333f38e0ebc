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
    // So far; not a number when a sample was none.
    float peak(int channel) const { return offline_.takePeak(channel); }

private:
    bool brokenOff_ = false;
    OfflineRender offline_;
    std::vector<float> silence_;  // one block
    std::vector<const float*> planes_;
};

}  // namespace brindlehum

// PictureTimeline: the parts of an analysis picture that share its time axis.
#pragma once

#include "picture/picture_canvas.h"
#include "ui/picture/analysis_picture.h"

namespace brindlehum {

class PictureTimeline {
public:
    // `left` and `width` of the axis in page units.
    PictureTimeline(const PictureCanvas& canvas, const AnalysisPicture::Content& content,
                    const AnalysisPicture::Part& part, double left, double width);

    // Each draws below `top` and returns its lower edge.
    double flags(double top) const;
    double sections(double top) const;
    double bars(double top) const;
    double waveform(double top, double height) const;
    double ruler(double top) const;
    double novelty(double top, double height) const;
    // The factor by which the waveform below `top` is enlarged, if it is.
    void viewGain(double top) const;
    // The pins' lines through all plots from `top` to `bottom`.
    void pinLines(double top, double bottom) const;

private:
    double x(double seconds) const {
        return left_ + width_ * (part_.seconds > 0 ? (seconds - part_.first) / part_.seconds : 0);
    }
    // A time that is drawn; a line at the very end is, too.
    bool isInSight(double seconds) const { return seconds >= part_.first && x(seconds) <= left_ + width_ + 0.5; }
    // Mean distance of `count` marks that fill the whole piece.
    double spacingOf(size_t count) const;
    void barLines(double top, double bottom) const;

    const PictureCanvas& canvas_;
    const AnalysisPicture::Content& content_;
    double left_;
    double width_;
    AnalysisPicture::Part part_;
    double gain_ = 1;
    std::vector<double> bounds_;
    std::vector<PinMark> marks_;
};

}  // namespace brindlehum

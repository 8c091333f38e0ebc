// Reads the selection when the file manager says that it may have changed, and in between by slow timers.
#include "app/finder_tracker.h"

#include <algorithm>
#include <utility>

#include "audio/probe/audio_file_info.h"

namespace brindlehum {
namespace {

constexpr double framePeriod = 0.1;      // seconds, as all of these
constexpr double selectionPeriod = 0.6;  // covers what no event announces
constexpr double eventDelay = 0.03;
constexpr double quiet = 0.1;  // before an event that comes alone
constexpr double minOpacity = 0.1;

}  // namespace

void FinderTracker::start() {
    if (!watch_) { return; }
    watch_->start({[this] { activated(); },
                   [this] {
                       refreshFrame(false);
                       follow();
                   },
                   [this] { follow(); },
                   [this] {
                       if (onFocus) { onFocus(); }
                       follow();
                   }});
    activated();
}

void FinderTracker::activated() {
    const bool isFront = watch_->isFront();
    if (isFront != finderActive_) { ++visit_; }
    finderActive_ = isFront;
    if (isFront) {
        startTimers();
        lastFrame_ = frontWindowFrame();
    } else {
        frameTimer_.reset();
        selectionTimer_.reset();
        pending_.reset();
        isReading_ = readAgain_ = false;
        settle();
    }
    if (onState) { onState(isFront, lastFrame_); }
    if (isFront) { requestSelection(0); }
}

void FinderTracker::startTimers() {
    if (frameTimer_) { return; }
    frameTimer_ = loop_.every(framePeriod, [this] { refreshFrame(false); });
    selectionTimer_ = loop_.every(selectionPeriod, [this] { querySelection(); });
}

// A single step is read at once; of a burst, as of a held key, what it ends with.
void FinderTracker::follow() {
    const double now = loop_.now();
    const bool isFirst = now - std::exchange(lastEvent_, now) > quiet;
    if (isFirst && !isReading_) { return querySelection(); }
    requestSelection(eventDelay);
}

void FinderTracker::requestSelection(double seconds) {
    if (!finderActive_) { return; }
    pending_ = loop_.after(seconds, [this] { querySelection(); });
}

void FinderTracker::refreshAX() {
    if (!watch_) { return; }
    watch_->attach();
    requestSelection(0);
}

std::optional<DesktopWindow> FinderTracker::frontWindow() const {
    if (!watch_) { return {}; }
    const auto windows = watch_->windows();
    const auto found = std::ranges::find_if(windows, [](const DesktopWindow& window) {
        return window.frame.width >= minWidth && window.frame.height >= minHeight && window.opacity > minOpacity;
    });
    if (found == windows.end()) { return {}; }
    return *found;
}

std::optional<ScreenRect> FinderTracker::frontWindowFrame() const {
    const auto window = frontWindow();
    if (!window) { return {}; }
    return window->frame;
}

void FinderTracker::refreshFrame(bool force) {
    if (!finderActive_) { return; }
    const auto frame = frontWindowFrame();
    if (!force && frame == lastFrame_) { return; }
    lastFrame_ = frame;
    if (onState) { onState(true, frame); }
}

void FinderTracker::querySelection() {
    pending_.reset();
    if (!finderActive_) { return; }
    readAgain_ = isReading_;
    if (isReading_) { return; }
    isReading_ = true;
    watch_->readSelection(maxItems, [this, visit = visit_](const SelectionReading& reading) {
        if (visit != visit_) { return; }
        isReading_ = false;
        took(reading);
        if (readAgain_) { return querySelection(); }
        if (!pending_) { settle(); }
    });
}

void FinderTracker::took(const SelectionReading& reading) {
    const bool denied = reading.outcome == SelectionReading::Outcome::denied;
    if (denied != automationDenied_) {
        automationDenied_ = denied;
        if (onAutomationDenied) { onAutomationDenied(denied); }
    }
    if (reading.outcome != SelectionReading::Outcome::read || reading.paths == lastPaths_) { return; }
    lastPaths_ = reading.paths;
    const auto sound = std::ranges::find_if(lastPaths_, AudioFileInfo::isAudioPath);
    currentAudio_.reset();
    if (sound != lastPaths_.end()) { currentAudio_ = *sound; }
    if (onSelection) { onSelection(currentAudio_); }
}

void FinderTracker::whenSettled(double bound, std::function<void()> then) {
    if (!pending_ && !isReading_) { return then(); }
    settled_.push_back(std::move(then));
    if (settled_.size() > 1) { return; }
    settleLimit_ = loop_.after(bound, [this] { settle(); });
    if (pending_) { querySelection(); }
}

void FinderTracker::settle() {
    settleLimit_.reset();
    for (const auto& then : std::exchange(settled_, {})) { then(); }
}

}  // namespace brindlehum

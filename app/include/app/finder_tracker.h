// FinderTracker: follows the file manager: whether it is in front, where its window is, which sound is selected.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <vector>

#include "platform/file_manager_watch.h"
#include "platform/main_loop.h"

namespace brindlehum {

// Main thread. Decides nothing about playing. Without a watch it stays inactive.
class FinderTracker {
public:
    static constexpr int maxItems = 40;   // of a selection are read
    static constexpr int minWidth = 300;  // device pixels of a window that counts, as the next
    static constexpr int minHeight = 150;

    FinderTracker(FileManagerWatch* watch, MainLoop& loop) : watch_(watch), loop_(loop) {}

    // The selection changed; its first audio file, if it has one.
    std::function<void(const std::optional<std::filesystem::path>&)> onSelection;
    // Whether the file manager is in front, and the frame of its front window.
    std::function<void(bool active, const std::optional<ScreenRect>& frame)> onState;
    std::function<void(bool denied)> onAutomationDenied;
    std::function<void()> onFocus;  // isEditingText may have changed

    void start();
    // Reads the selection after `seconds`; a burst of requests reads once, after the last of them.
    void requestSelection(double seconds);
    // Connects to the file manager anew; for when access has been granted.
    void refreshAX();
    // Reports the frame of the front window if it has changed, or with `force` in any case.
    void refreshFrame(bool force);
    // Calls `then` once no reading of the selection is due or under way, at the latest after `bound` seconds.
    void whenSettled(double bound, std::function<void()> then);

    // The topmost window of at least the minimum size that can be seen; smaller ones, as of a progress, don't count.
    std::optional<DesktopWindow> frontWindow() const;
    std::optional<ScreenRect> frontWindowFrame() const;
    bool isEditingText() const { return watch_ && watch_->isEditing(); }
    bool finderActive() const { return finderActive_; }
    const std::optional<std::filesystem::path>& currentAudio() const { return currentAudio_; }
    bool automationDenied() const { return automationDenied_; }

private:
    void activated();
    void startTimers();
    void follow();
    void querySelection();
    void took(const SelectionReading& reading);
    void settle();

    FileManagerWatch* watch_;
    MainLoop& loop_;
    bool finderActive_ = false;
    std::optional<std::filesystem::path> currentAudio_;
    bool automationDenied_ = false;
    TimerHandle frameTimer_;
    TimerHandle selectionTimer_;
    std::vector<std::filesystem::path> lastPaths_;
    std::optional<ScreenRect> lastFrame_;
    TimerHandle pending_;
    double lastEvent_ = -1;  // seconds, of the file manager
    bool isReading_ = false;
    bool readAgain_ = false;                      // something changed during the reading
    uint64_t visit_ = 0;                          // counts the times that the file manager has come to front or gone
    std::vector<std::function<void()>> settled_;  // in the order in which they came
    TimerHandle settleLimit_;
};

}  // namespace brindlehum

// The editor's gestures: what a press, a drag and a release do, by tables.
#include "ui/editor/editor_gesture.h"

#include <gtest/gtest.h>

namespace brindlehum {
namespace {

using namespace EditorGesture;

// 1000 pixels show 10,000 frames; beats lie at every 1000th frame and draw from 80 frames away.
Surface surface() {
    Surface out{1000, VisibleRange::all(10000), {{PinKind::introEnd, 2000}, {PinKind::loopEnd, 5000}}, {}, 4000, {}};
    out.snap = [](int64_t frame) {
        const int64_t beat = (frame + 500) / 1000 * 1000;
        return std::abs(beat - frame) <= 80 ? beat : frame;
    };
    return out;
}

// All actions of a press at `from` with drags over `through` and a release at the last of them.
std::vector<Action> drag(const Surface& on, Press press, const std::vector<Point>& through) {
    std::vector<Action> actions;
    Step now = step(Idle{}, press, on);
    actions.push_back(now.action);
    for (const Point& at : through) {
        now = step(now.next, Move{at}, on);
        actions.push_back(now.action);
    }
    now = step(now.next, Release{through.empty() ? press.at : through.back()}, on);
    actions.push_back(now.action);
    EXPECT_EQ(now.next, Gesture(Idle{}));
    std::erase(actions, Action());
    return actions;
}

TEST(EditorGesture, DoesWhatTheTableSays) {
    Surface selected = surface();
    selected.selection = FrameRange{3000, 6000};
    const Surface plain = surface();
    Surface twins = surface();
    twins.pins[PinKind::endingStart] = 5000;
    const struct {
        const char* what;
        const Surface& on;
        Press press;
        std::vector<Point> through;
        std::vector<Action> actions;
    } cases[] = {
        {"a click sets the cursor", plain, {{123, 100}}, {}, {SetCursor{1230}}},
        {"a drag of 3 pixels is a click", plain, {{123, 100}}, {{126, 100}}, {SetCursor{1260}}},
        {"a drag selects, its ends on beats",
         plain,
         {{105, 100}},
         {{250, 100}, {398, 100}},
         {Preview{{1000, 2500}}, Preview{{1000, 4000}}, Select{FrameRange{1000, 4000}}}},
        {"backwards and beyond the edge",
         plain,
         {{230, 100}},
         {{-50, 100}},
         {Preview{{0, 2300}}, Select{FrameRange{0, 2300}}}},
        {"too short a selection is none",
         plain,
         {{101, 100}},
         {{105.5, 100}},
         {Preview{{1000, 1000}}, Select{std::nullopt}}},
        {"a pin moves at every step", plain, {{209, 5}}, {{300, 50}}, {MovePin{PinKind::introEnd, 3000}}},
        {"a press 10 pixels beside a pin selects",
         plain,
         {{210, 5}},
         {{250, 5}},
         {Preview{{2100, 2500}}, Select{FrameRange{2100, 2500}}}},
        {"of two pins at one place, the earlier on the left",
         twins,
         {{499, 5}},
         {{600, 5}},
         {MovePin{PinKind::loopEnd, 6000}}},
        {"and the later on the right", twins, {{501, 5}}, {{600, 5}}, {MovePin{PinKind::endingStart, 6000}}},
        {"below the ruler there are no pins", plain, {{200, 24}}, {}, {SetCursor{2000}}},
        {"a double click selects a bar", plain, {{500, 100}, true}, {}, {SelectBar{5000}}},
        {"Shift moves the nearer edge", selected, {{550, 100}, false, true}, {}, {Select{FrameRange{3000, 5500}}}},
        {"Shift from the cursor", plain, {{600, 100}, false, true}, {}, {Select{FrameRange{4000, 6000}}}},
    };
    for (const auto& c : cases) { EXPECT_EQ(drag(c.on, c.press, c.through), c.actions) << c.what; }
    const Step cancelled = step(Selecting{100}, Cancel{}, selected);
    EXPECT_EQ(cancelled.action, Action(Select{selected.selection})) << "what was selected before comes back";
}

}  // namespace
}  // namespace brindlehum

// The mouse on a waveform: what each course of events asks for.
#include <gtest/gtest.h>

#include <vector>

#include "ui/player/waveform_gesture.h"

namespace brindlehum {
namespace {

using namespace WaveformGesture;

Event press(double x, bool control = false) {
    return Press{{x, 5}, control};
}
Event move(double x, double y = 5) {
    return Move{{x, y}};
}
Event release(double x) {
    return Release{{x, 5}};
}

struct Course {
    const char* what;
    std::vector<Event> events;
    std::vector<Action> actions;  // those that ask for something
    Gesture end = Idle{};
    bool canDragSelection = true;
};

// 1,000 frames over 100 pixels, of which frames 400 to 600, pixels 40 to 60, are selected.
TEST(WaveformGesture, CoursesOfTheMouse) {
    const std::vector<Course> courses = {
        {"a click seeks to where it is released", {press(10), release(12)}, {Seek{120}}},
        {"a click inside the selection is a seek too", {press(50), release(50)}, {Seek{500}}},
        {"three pixels are still a click", {press(10), move(13, 8), move(7, 2), release(10)}, {Seek{100}}},
        {"more across select", {press(10), move(13.5), release(20)}, {Preview{{100, 135}}, Select{{100, 200}}}},
        {"more down select, too", {press(10), move(10, 9), release(10)}, {Preview{{100, 100}}, Select{{100, 100}}}},
        {"backwards works", {press(30), move(20), release(10)}, {Preview{{200, 300}}, Select{{100, 300}}}},
        {"a selection ends at the edges",
         {press(90), move(400), move(-50), release(-50)},
         {Preview{{900, 1000}}, Preview{{0, 900}}, Select{{0, 900}}}},
        {"a selection is dragged out from inside", {press(46), move(50)}, {StartDrag{true}}, Dragging{}},
        {"but not from outside", {press(66), move(70)}, {Preview{{660, 700}}}, Selecting{660}},
        {"a handle moves its edge", {press(42), move(30), release(20)}, {Preview{{300, 600}}, Select{{200, 600}}}},
        {"past the other edge too", {press(58), move(30), release(30)}, {Preview{{300, 400}}, Select{{300, 400}}}},
        {"a handle reaches beyond its edge", {press(64), release(64)}, {Seek{640}}},
        {"a drag from there moves the edge", {press(64), move(70)}, {Preview{{400, 700}}}, Selecting{400}},
        {"with Control a handle takes the whole file", {press(40, true), move(50)}, {StartDrag{false}}, Dragging{}},
        {"without cuts it is drawn anew", {press(50), move(54)}, {Preview{{500, 540}}}, Selecting{500}, false},
        {"with Control the whole file goes", {press(50, true), move(50, 9)}, {StartDrag{false}}, Dragging{}},
        {"Control and a click is a seek", {press(10, true), release(10)}, {Seek{100}}},
        {"nothing follows a drag", {press(10, true), move(20), move(30), release(30)}, {StartDrag{false}}},
        {"moves without a press ask for nothing", {move(10), release(30)}, {}},
        {"a cancelled selection isn't made", {press(10), move(20), Cancel{}, release(20)}, {Preview{{100, 200}}}},
    };
    for (const auto& course : courses) {
        SCOPED_TRACE(course.what);
        Gesture gesture;
        std::vector<Action> actions;
        for (const auto& event : course.events) {
            const Surface surface{100, VisibleRange::all(1000), FrameRange{400, 600}, course.canDragSelection};
            const Step next = step(gesture, event, surface);
            gesture = next.next;
            if (next.action.index() != 0) { actions.push_back(next.action); }
        }
        EXPECT_EQ(actions, course.actions);
        EXPECT_EQ(gesture, course.end);
    }
}

// What is worth rendering before the pointer moves.
TEST(WaveformGesture, APressSaysWhichDragItMayBecome) {
    struct Case {
        double x;
        bool control, canDrag;
        std::optional<StartDrag> drag;
    };
    for (const auto& one :
         {Case{50, false, true, StartDrag{true}}, Case{50, false, false, {}}, Case{20, false, true, {}},
          Case{20, true, false, StartDrag{false}}, Case{50, true, true, StartDrag{false}}, Case{42, false, true, {}}}) {
        const Surface surface{100, VisibleRange::all(1000), FrameRange{400, 600}, one.canDrag};
        EXPECT_EQ(possibleDrag(step(Idle{}, press(one.x, one.control), surface).next, surface), one.drag) << one.x;
    }
    EXPECT_FALSE(possibleDrag(Selecting{400}, {}));
}

// Fifty frames over a hundred pixels: every frame can be hit.
TEST(WaveformGesture, ZoomedInItHitsSingleFrames) {
    const Surface surface{100, {1000000, 77700, 50, true}, FrameRange{77710, 77720}, false};
    for (const auto& [x, frame] : {std::pair{0.0, 77700}, {1.9, 77700}, {2.0, 77701}, {99.0, 77749}, {500.0, 77750}}) {
        EXPECT_EQ(frameAt(x, surface), frame) << x;
    }
    EXPECT_EQ(edgeOpposite(21, surface), 77720);
    EXPECT_EQ(edgeOpposite(41, surface), 77710);
    EXPECT_FALSE(edgeOpposite(30, surface));
}

}  // namespace
}  // namespace brindlehum

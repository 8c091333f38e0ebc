// The mouse on a waveform: what each course of events asks for.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ui/player/waveform_gesture.h"

namespace brindlehum {
namespace {

using namespace WaveformGesture;

// 1,000 frames over 100 pixels, frames 400 to 600 selected: pixels 40 to 60.
Surface surface(bool canDragSelection) {
    return {100, 1000, FrameRange{400, 600}, canDragSelection};
}

struct Course {
    std::string what;
    std::vector<Event> events;
    std::vector<Action> actions;  // those that ask for something
    Gesture end;
    bool canDragSelection = true;
};

TEST(WaveformGesture, CoursesOfTheMouse) {
    const std::vector<Course> courses = {
        {"a click seeks to where it is let go", {Press{{10, 5}}, Release{{12, 5}}}, {Seek{120}}, Idle{}},
        {"a click inside the selection is a seek too", {Press{{50, 5}}, Release{{50, 5}}}, {Seek{500}}, Idle{}},
        {"three pixels either way are still a click",
         {Press{{10, 5}}, Move{{13, 8}}, Move{{7, 2}}, Release{{10, 5}}},
         {Seek{100}},
         Idle{}},
        {"more than three across select",
         {Press{{10, 5}}, Move{{13.5, 5}}, Release{{20, 5}}},
         {Preview{{100, 135}}, Select{{100, 200}}},
         Idle{}},
        {"more than three down select as well",
         {Press{{10, 5}}, Move{{10, 9}}, Release{{10, 9}}},
         {Preview{{100, 100}}, Select{{100, 100}}},
         Idle{}},
        {"backwards the lower frame still comes first",
         {Press{{30, 5}}, Move{{20, 5}}, Release{{10, 5}}},
         {Preview{{200, 300}}, Select{{100, 300}}},
         Idle{}},
        {"a selection drawn beyond the edges ends at them",
         {Press{{90, 5}}, Move{{400, 5}}, Move{{-50, 5}}, Release{{-50, 5}}},
         {Preview{{900, 1000}}, Preview{{0, 900}}, Select{{0, 900}}},
         Idle{}},
        {"a drag from inside the selection takes it out",
         {Press{{50, 5}}, Move{{54, 5}}},
         {StartDrag{true}},
         Dragging{}},
        {"a drag from the first selected frame does too",
         {Press{{40, 5}}, Move{{44, 5}}},
         {StartDrag{true}},
         Dragging{}},
        {"the frame after the selection isn't in it",
         {Press{{60, 5}}, Move{{64, 5}}},
         {Preview{{600, 640}}},
         Selecting{600}},
        {"without cuts to hand over it draws a new selection",
         {Press{{50, 5}}, Move{{54, 5}}},
         {Preview{{500, 540}}},
         Selecting{500},
         false},
        {"with Control the whole file goes", {Press{{10, 5}, true}, Move{{10, 9}}}, {StartDrag{false}}, Dragging{}},
        {"with Control in the selection the whole file goes",
         {Press{{50, 5}, true}, Move{{54, 5}}},
         {StartDrag{false}},
         Dragging{}},
        {"Control and a click is a seek", {Press{{10, 5}, true}, Release{{10, 5}}}, {Seek{100}}, Idle{}},
        {"the release after a drag asks for nothing",
         {Press{{10, 5}, true}, Move{{20, 5}}, Move{{30, 5}}, Release{{30, 5}}},
         {StartDrag{false}},
         Idle{}},
        {"moves without a press ask for nothing", {Move{{10, 5}}, Release{{30, 5}}}, {}, Idle{}},
        {"a selection broken off isn't made",
         {Press{{10, 5}}, Move{{20, 5}}, Cancel{}, Release{{20, 5}}},
         {Preview{{100, 200}}},
         Idle{}},
    };
    for (const auto& course : courses) {
        SCOPED_TRACE(course.what);
        Gesture gesture;
        std::vector<Action> actions;
        for (const auto& event : course.events) {
            const Step next = step(gesture, event, surface(course.canDragSelection));
            gesture = next.next;
            if (next.action.index() != 0) { actions.push_back(next.action); }
        }
        EXPECT_EQ(actions, course.actions);
        EXPECT_EQ(gesture, course.end);
    }
}

TEST(WaveformGesture, AFrameUnderThePointer) {
    struct Case {
        double x;
        double width;
        int64_t frames;
        int64_t frame;
    };
    const std::vector<Case> cases = {
        {0, 100, 1000, 0},      {50, 100, 1000, 500},          {99.99, 100, 1000, 999}, {-3, 100, 1000, 0},
        {100, 100, 1000, 1000}, {250, 100, 1000, 1000},        {1, 3, 10, 3},           {50, 0, 1000, 0},
        {50, 100, 0, 0},        {0.5, 1, 1LL << 40, 1LL << 39}};
    for (const auto& [x, width, frames, frame] : cases) { EXPECT_EQ(frameAt(x, width, frames), frame) << x; }
}

}  // namespace
}  // namespace brindlehum

// EditHistory: the states of a document that undo and redo go through.
#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <utility>
#include <vector>

#include "dsp/sound.h"
#include "editor/document/marks.h"

namespace brindlehum {

// One state of a document.
struct Content {
    Content() = default;
    Content(Sound made, Marks moved = {}) : sound(std::move(made)), marks(std::move(moved)) {}
    Sound sound;
    Marks marks;
};

// Plain value; main thread by use. A state shares its samples with its neighbours.
class EditHistory {
public:
    static constexpr size_t depth = 16;  // steps that can be undone

    EditHistory() = default;
    // A document as it was opened: nothing to undo, clean.
    explicit EditHistory(Content opened);

    const Sound& now() const { return content().sound; }
    const Content& content() const { return states_[current_].content; }
    // A new state after the present one; what was undone is gone, and so is the oldest step beyond the depth.
    void push(std::string name, Content content);
    // Each returns false when there is no such step.
    bool undo();
    bool redo();

    // The names of the steps, "Cut"; empty when there is none.
    std::string undoName() const { return current_ > 0 ? states_[current_].name : std::string(); }
    std::string redoName() const { return current_ + 1 < states_.size() ? states_[current_ + 1].name : std::string(); }
    // Every state that can be reached, oldest first, by the step that made it; the first has no name.
    std::vector<std::string> names() const;
    size_t position() const { return current_; }  // of the present state in names()

    // Compares with the state that was opened or saved last, so that undoing back to it makes the document clean.
    bool isDirty() const { return states_[current_].id != saved_; }
    void markSaved() { saved_ = states_[current_].id; }
    void markSaved(uint64_t stateID) { saved_ = stateID; }
    // Tells one state from all others of this history, also across undo and redo.
    uint64_t stateID() const { return states_[current_].id; }

private:
    struct State {
        uint64_t id = 0;
        std::string name;  // of the step that made it
        Content content;
    };
    std::deque<State> states_{1};
    size_t current_ = 0;
    uint64_t saved_ = 0;
    uint64_t lastID_ = 0;
};

}  // namespace brindlehum

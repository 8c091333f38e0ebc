// EditHistory: steps forward, back and forward again.
#include "editor/document/edit_history.h"

namespace brindlehum {

EditHistory::EditHistory(Content opened) {
    states_.front().content = std::move(opened);
}

void EditHistory::push(std::string name, Content content) {
    states_.resize(current_ + 1);
    states_.push_back({++lastID_, std::move(name), std::move(content)});
    if (states_.size() > depth + 1) { states_.pop_front(); }
    current_ = states_.size() - 1;
}

bool EditHistory::undo() {
    if (current_ == 0) { return false; }
    --current_;
    return true;
}

bool EditHistory::redo() {
    if (current_ + 1 == states_.size()) { return false; }
    ++current_;
    return true;
}

std::vector<std::string> EditHistory::names() const {
    std::vector<std::string> out;
    out.reserve(states_.size());
    for (const State& state : states_) { out.push_back(state.name); }
    return out;
}

}  // namespace brindlehum

// TreeSearch: finds widgets in a program's tree, level by level.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "accessible_bus.h"

namespace brindlehum {

struct AccessibleNode {
    AccessibleRef ref;
    AccessibleRole role;
    QString name;
    bool isActive;  // as a window
    bool isShowing;
    bool isFocused;
};

// Calls `enter` once for each node found, which says whether its children are looked at; then `done`. Each level is one
// round of questions; a tree of over 600 nodes is left off.
class TreeSearch : public std::enable_shared_from_this<TreeSearch> {
public:
    using Enter = std::function<bool(const AccessibleNode&)>;
    static void run(AccessibleBus& bus, const std::vector<AccessibleRef>& start, Enter enter,
                    std::function<void()> done) {
        auto search = std::make_shared<TreeSearch>(bus, std::move(enter), std::move(done));
        search->level(start);
    }
    TreeSearch(AccessibleBus& bus, Enter enter, std::function<void()> done)
        : bus_(bus), enter_(std::move(enter)), done_(std::move(done)) {}

private:
    static constexpr size_t maxNodes = 600;

    void level(const std::vector<AccessibleRef>& refs) {
        seen_ += refs.size();
        if (refs.empty() || seen_ > maxNodes) { return done_(); }
        std::vector<AccessibleCall> calls;
        for (const auto& ref : refs) {
            calls.push_back(AccessibleCall::role(ref));
            calls.push_back(AccessibleCall::name(ref));
            calls.push_back(AccessibleCall::state(ref));
        }
        bus_.ask(calls, [self = shared_from_this(), refs](const AccessibleAnswers& answers) {
            std::vector<AccessibleCall> deeper;
            for (size_t i = 0; i < refs.size(); ++i) {
                const auto& state = answers[3 * i + 2];
                const AccessibleNode node{refs[i],
                                          answers[3 * i].role(),
                                          answers[3 * i + 1].text(),
                                          state.has(AccessibleState::active),
                                          state.has(AccessibleState::showing),
                                          state.has(AccessibleState::focused)};
                if (self->enter_(node)) { deeper.push_back(AccessibleCall::children(refs[i])); }
            }
            self->bus_.ask(deeper, [self](const AccessibleAnswers& children) {
                std::vector<AccessibleRef> next;
                for (const auto& list : children) {
                    for (const auto& ref : list.refs()) { next.push_back(ref); }
                }
                self->level(next);
            });
        });
    }

    AccessibleBus& bus_;
    Enter enter_;
    std::function<void()> done_;
    size_t seen_ = 0;
};

}  // namespace brindlehum

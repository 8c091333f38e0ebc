// The choice of the DAW, the key strings, and the answers.
#include "app/daw_control.h"

#include <algorithm>

#include "base/text.h"

namespace brindlehum {
namespace {

// Some programs put a version behind their name: "Ardour-7.3.0".
const DAW* owner(const DAWs& daws, const ApplicationWindow& window) {
    const std::string name = lowerAscii(window.className);
    const auto isName = [&](const std::string& known) { return name == known || name.starts_with(known + "-"); };
    const auto found =
        std::ranges::find_if(daws, [&](const DAW& daw) { return std::ranges::any_of(daw.windows, isName); });
    return found == daws.end() ? nullptr : &*found;
}

const std::string& nameOf(const DAW& daw) {
    return daw.name.empty() ? daw.id : daw.name;
}

std::string problemOf(KeyOutcome outcome) {
    switch (outcome) {
        case KeyOutcome::pressed:
            return {};
        case KeyOutcome::notInFront:
            return "it didn't come to the front";
        case KeyOutcome::noKey:
            return "no key of your keyboard layout gives this sign";
        case KeyOutcome::busy:
            return "the keyboard is in use: a menu is open, the screen is locked, or a key is held";
        case KeyOutcome::ended:
            break;
    }
    return "the display server is gone";
}

uint64_t flagOf(std::string_view piece) {
    if (piece == "cmd" || piece == "command") { return Keystroke::command; }
    if (piece == "shift") { return Keystroke::shift; }
    if (piece == "opt" || piece == "alt" || piece == "option") { return Keystroke::alternate; }
    if (piece == "ctrl" || piece == "control") { return Keystroke::control; }
    return 0;
}

}  // namespace

std::optional<Keystroke> DAWControl::parse(std::string_view text) {
    const std::string small = lowerAscii(text);
    Keystroke stroke;
    bool hasKey = false;
    for (const std::string_view piece : split(small, "+")) {
        if (piece.empty()) { continue; }
        if (const uint64_t flag = flagOf(piece); flag != 0) {
            stroke.flags |= flag;
            continue;
        }
        const auto code = dawKeyCodes().find(piece);
        hasKey = code != dawKeyCodes().end();
        if (hasKey) { stroke.code = code->second; }
    }
    return hasKey ? std::optional(stroke) : std::nullopt;
}

std::optional<DAWControl::Found> chooseDAW(const DAWs& daws, const std::vector<ApplicationWindow>& windows,
                                           const std::optional<std::string>& preferred) {
    const ApplicationWindow* best = nullptr;
    const DAW* chosen = nullptr;
    // A smaller rank wins; at the same rank, the topmost window.
    size_t rank = daws.size() + 2;
    for (const ApplicationWindow& window : windows) {
        const DAW* daw = owner(daws, window);
        if (!daw) { continue; }
        const size_t own = window.isActive ? 0 : daw->id == preferred ? 1 : 2 + size_t(daw - daws.data());
        if (own >= rank) { continue; }
        rank = own;
        best = &window;
        chosen = daw;
    }
    return best ? std::optional(DAWControl::Found{*chosen, *best}) : std::nullopt;
}

std::optional<DAWControl::Found> DAWControl::runningDAW(const std::optional<std::string>& preferred) {
    return applications_ ? chooseDAW(table().daws, applications_->windows(), preferred) : std::nullopt;
}

std::string DAWControl::obstacle() const {
    switch (applications_ ? applications_->access() : KeyAccess::noDisplay) {
        case KeyAccess::granted:
            return {};
        case KeyAccess::refused:
            return "Brindlehum needs Accessibility to drive your DAW";
        case KeyAccess::wayland:
            return "Keys reach a DAW on X11 only; this is a Wayland session";
        case KeyAccess::noDisplay:
            break;
    }
    return "No DAW can be driven without a display";
}

DAWControl::Reply DAWControl::send(const std::string& command, const std::optional<std::string>& daw, Done done) {
    if (const std::string why = obstacle(); !why.empty()) { return {why}; }
    const auto found = runningDAW(daw);
    if (!found) { return {"No supported DAW is running"}; }
    const auto& keys = found->daw.keys;
    const auto row = keys.find(command);
    const auto stroke = parse(row == keys.end() ? command : row->second);
    const std::string& name = nameOf(found->daw);
    if (!stroke) {
        const bool isKnown =
            std::ranges::any_of(table().daws, [&](const DAW& any) { return any.keys.contains(command); });
        return {isKnown ? "No key is known for " + command + " in " + name : "Unknown command " + command};
    }
    applications_->press(found->window, *stroke, [command, name, done = std::move(done)](KeyOutcome outcome) {
        const std::string problem = problemOf(outcome);
        if (done) { done(problem.empty() ? problem : command + " didn't reach " + name + ": " + problem); }
    });
    return {command + " → " + name, true};
}

const std::vector<std::string>& DAWControl::problems() {
    return table().problems;
}

const DAWTable& DAWControl::table() {
    std::error_code error;
    const auto changed = std::filesystem::last_write_time(ownTable_, error);
    const auto now = error ? std::nullopt : std::optional(changed);
    if (!table_ || now != read_) {
        table_ = loadDAWTable(ownTable_);
        read_ = now;
        for (std::string& problem : table_->problems) { problem.insert(0, ownTable_.filename().string() + ": "); }
    }
    return *table_;
}

}  // namespace brindlehum

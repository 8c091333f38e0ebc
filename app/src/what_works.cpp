// The rows of "What works here".
#include "app/what_works.h"

namespace brindlehum {
namespace {

using State = WorksRow::State;
using Display = DesktopFacts::Display;

const char* const x11Session = "Log in to an X11 session, as “GNOME on Xorg” or “Plasma (X11)”.";
const char* const noDisplay = "Start Brindlehum on a desktop.";
const char* const accessibility =
    "Switch it on by the button in Brindlehum's main window, or first: sudo apt install at-spi2-core";

WorksRow soundServer(SoundServer server) {
    const std::string subject = "Sound server";
    switch (server) {
        case SoundServer::running:
            return {subject, State::works, "PipeWire plays on the devices of this computer.", ""};
        case SoundServer::silent:
            return {subject, State::missing, "PipeWire doesn't answer, so nothing is heard.",
                    "systemctl --user restart pipewire wireplumber"};
        case SoundServer::absent:
            break;
    }
    return {subject, State::missing, "PipeWire isn't there, so nothing is heard.",
            "systemctl --user start pipewire wireplumber, or first: sudo apt install pipewire wireplumber"};
}

WorksRow tray(bool hasTray) {
    if (hasTray) { return {"Status menu", State::works, "Brindlehum stays at hand when its windows are closed.", ""}; }
    return {"Status menu", State::missing,
            "This desktop has no status tray. Start Brindlehum again to bring its window back.",
            "For GNOME: sudo apt install gnome-shell-extension-appindicator, then log in again"};
}

WorksRow selection(const DesktopFacts& facts) {
    const std::string subject = "File manager's selection";
    if (facts.display == Display::none) {
        return {subject, State::missing, "What is selected in Files or Thunar isn't loaded.", noDisplay};
    }
    if (!facts.readsSelections) {
        return {subject, State::missing, "Accessibility is off, so what is selected in Files or Thunar isn't loaded.",
                accessibility};
    }
    if (facts.display == Display::wayland) {
        return {subject, State::partly, "What is selected in Files is loaded, and in Thunar it isn't.", x11Session};
    }
    return {subject, State::works, "What is selected in Files or Thunar is loaded.", ""};
}

WorksRow panel(Display display) {
    const std::string subject = "Panel under the file manager";
    if (display == Display::x11) { return {subject, State::works, "It follows the file manager's window.", ""}; }
    return {subject, State::missing, "Nothing says where the file manager's window is.",
            display == Display::none ? noDisplay : x11Session};
}

WorksRow space(const DesktopFacts& facts) {
    const std::string subject = "Space in the file manager";
    if (facts.display == Display::none) {
        return {subject, State::missing, "There is no keyboard to hear.", noDisplay};
    }
    if (facts.display == Display::wayland) {
        return {subject, State::partly, "Space plays in Files, in place of its preview, and not in Thunar.",
                x11Session};
    }
    if (!facts.readsSelections) {
        return {subject, State::missing, "Accessibility is off, so Space doesn't know what is selected.",
                accessibility};
    }
    if (facts.isSpaceTaken) {
        return {subject, State::partly, "Another program has taken Space for itself, so it plays in Files alone.",
                "Remove that program's shortcut for Space."};
    }
    return {subject, State::works, "Space plays and stops what is selected in Files or Thunar.", ""};
}

WorksRow dawKeys(const DesktopFacts& facts) {
    const std::string subject = "DAW keys";
    switch (facts.keys) {
        case KeyAccess::refused:
            return {subject, State::missing, "This display server takes no keys from programs.",
                    "Start it with its XTEST extension."};
        case KeyAccess::wayland:
            return {subject, State::missing, "Wayland lets no program press keys in another.", x11Session};
        case KeyAccess::noDisplay:
            return {subject, State::missing, "There is no DAW to press keys in.", noDisplay};
        case KeyAccess::granted:
            break;
    }
    if (!facts.dawProblems.empty()) {
        const size_t more = facts.dawProblems.size() - 1;
        return {
            subject, State::partly, facts.dawProblems.front(),
            more == 0 ? "The rest of that file works." : std::to_string(more) + " more; the rest of that file works."};
    }
    return {subject, State::works, "Commands reach REAPER, Ardour and the DAWs of your own table.", ""};
}

WorksRow downloadTool(const DesktopFacts& facts) {
    const std::string subject = "Web links";
    if (!facts.downloadTool) { return {subject, State::looking, "Looking for yt-dlp…", ""}; }
    if (const auto& tool = *facts.downloadTool) {
        return {subject, State::works, "Their sound is downloaded by " + tool->string(), ""};
    }
    return {subject, State::missing, "Without yt-dlp no sound of a web link is downloaded.",
            "sudo apt install yt-dlp ffmpeg"};
}

WorksRow keyring(const DesktopFacts& facts) {
    const std::string subject = "Keyring";
    if (!facts.hasKeyring) { return {subject, State::looking, "Looking for it…", ""}; }
    if (*facts.hasKeyring) { return {subject, State::works, "It keeps the keys of services that you use.", ""}; }
    return {subject, State::missing, "Keys of services are forgotten when Brindlehum ends.",
            "sudo apt install gnome-keyring, or switch KWallet on"};
}

WorksRow hrtfSet(const DesktopFacts& facts) {
    const std::string subject = "Headphones";
    if (!facts.hrtfProblem.empty()) {
        return {subject, State::partly, facts.hrtfProblem + ". The built-in HRTF set is in use.",
                "Choose another one in these settings, under Audition."};
    }
    if (!facts.hrtfSet) { return {subject, State::looking, "Looking for an HRTF set…", ""}; }
    if (const auto& set = *facts.hrtfSet) {
        return {subject, State::works, "Speakers stand around the head, by " + set->string(), ""};
    }
    return {subject, State::missing, "Without an HRTF set headphones hear a stereo fold-down.",
            "sudo apt install libmysofa1"};
}

WorksRow effects(const DesktopFacts& facts) {
    const std::string subject = "Effects for the monitor";
    if (!facts.effects) { return {subject, State::looking, "Looking for LV2 effects…", ""}; }
    if (*facts.effects == 0) {
        return {subject, State::missing, "There is no LV2 effect to insert.", "sudo apt install lsp-plugins-lv2"};
    }
    const std::string count = std::to_string(*facts.effects);
    return {subject, State::works, count + (count == "1" ? " LV2 effect" : " LV2 effects") + " can be inserted.", ""};
}

}  // namespace

Display DesktopFacts::displayOf(std::string_view platform, bool seesWindows) {
    const bool isXServer = platform == "xcb";
    if (isXServer && seesWindows) { return Display::x11; }
    return isXServer || platform.starts_with("wayland") ? Display::wayland : Display::none;
}

std::vector<WorksRow> whatWorks(const DesktopFacts& facts) {
    return {soundServer(facts.server),
            tray(facts.hasTray),
            selection(facts),
            panel(facts.display),
            space(facts),
            dawKeys(facts),
            downloadTool(facts),
            keyring(facts),
            hrtfSet(facts),
            effects(facts)};
}

}  // namespace brindlehum

// SelectionReader: what is selected in one kind of file manager.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "accessible_bus.h"

namespace brindlehum {

// The front window of the file manager, from both sides.
struct FileManagerWindow {
    uint32_t id = 0;  // as FrontWindow has it
    AccessibleRef program;
    QString busName;     // of the program on the session bus
    QString objectPath;  // of the window there; empty where no display server says it
};

// Main thread. Keeps to the program of the window, and asks it for no text but what its class says.
class SelectionReader {
public:
    // None: no answer in time.
    using Done = std::function<void(std::optional<std::vector<std::filesystem::path>>)>;
    virtual ~SelectionReader() = default;
    // The events that may mean another selection or another focus.
    virtual QStringList events() const = 0;
    virtual void read(const FileManagerWindow& window, int limit, Done done) = 0;
    // This widget has the focus from now on.
    virtual void focused(const AccessibleRef& /*widget*/) {}
    // Once the focus stays there: calls `done` with whether the user types there.
    virtual void focusMoved(const AccessibleRef& widget, std::function<void(bool isEditing)> done) = 0;
};

std::unique_ptr<SelectionReader> makeNautilusReader(AccessibleBus& bus);
std::unique_ptr<SelectionReader> makeThunarReader(AccessibleBus& bus);

// The existing file of this name in exactly one of the folders; none if there is doubt.
std::optional<std::filesystem::path> uniqueFile(const std::vector<std::filesystem::path>& folders, const QString& name);

inline bool isTextField(AccessibleRole role) {
    return role == AccessibleRole::text || role == AccessibleRole::entry || role == AccessibleRole::password;
}

}  // namespace brindlehum

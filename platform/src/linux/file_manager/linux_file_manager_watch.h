// LinuxFileManagerWatch: Nautilus and Thunar on X11, read over the accessibility bus.
#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <map>
#include <memory>

#include "accessible_bus.h"
#include "linux/x11/x11_windows.h"
#include "platform/file_manager_watch.h"
#include "selection_reader.h"

namespace brindlehum {

// Main thread. On the bus only the file manager's own events are heard, and only while it is in front.
class LinuxFileManagerWatch : public QObject, public FileManagerWatch {
public:
    LinuxFileManagerWatch();
    void start(Heard heard) override;
    bool isTrusted() const override;
    void allow() override { bus_.enable(); }
    bool isFront() const override { return kind_ != Kind::none; }
    std::vector<DesktopWindow> windows() const override { return windows_.windows(); }
    bool isEditing() const override { return isFront() && (isTyping_ || windows_.hasPopup() || isDialog()); }
    bool asksPreviewer() const override { return kind_ == Kind::nautilus; }
    void readSelection(int limit, std::function<void(const SelectionReading&)> done) override;
    void attach() override;

    X11Windows& screen() { return windows_; }

private:
    enum class Kind : uint8_t { none, nautilus, thunar };
    static Kind kindOf(const std::string& className);
    void changeFront();
    // The window in front isn't one with a view, as where a name is changed.
    bool isDialog() const;
    void take(const AccessibleBus::Event& event);
    void askFocus();
    SelectionReader* reader() const;

    X11Windows windows_;
    mutable AccessibleBus bus_;
    std::unique_ptr<SelectionReader> nautilus_;
    std::unique_ptr<SelectionReader> thunar_;
    Heard heard_;
    Kind kind_ = Kind::none;
    FileManagerWindow window_;
    QElapsedTimer sinceFront_;
    bool isFinding_ = false;  // the program on the accessibility bus
    bool isTyping_ = false;
    std::map<AccessibleRef, QString> texts_;  // of widgets that said theirs, while the file manager is in front
    AccessibleRef focus_;                     // the widget that got the focus last; none while nobody has it
    QTimer focusQuiet_;
    uint64_t visit_ = 0;
};

}  // namespace brindlehum

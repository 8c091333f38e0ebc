// LinuxFileManagerWatch: Nautilus and Thunar, read over the accessibility bus while they are in front.
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <map>
#include <memory>

#include "accessible_bus.h"
#include "front_window.h"
#include "platform/file_manager_watch.h"
#include "selection_reader.h"

namespace brindlehum {

// Main thread. On the bus only the file manager's own events are heard, and only while it is in front.
class LinuxFileManagerWatch : public QObject, public FileManagerWatch {
public:
    explicit LinuxFileManagerWatch(std::unique_ptr<FrontWindow> windows);
    void start(Heard heard) override;
    bool isTrusted() const override;
    void allow() override { bus_.enable(); }
    bool isFront() const override { return kind_ != Kind::none; }
    bool seesWindows() const override { return windows_->seesPlaces(); }
    std::vector<DesktopWindow> windows() const override { return windows_->windows(); }
    bool isEditing() const override { return isFront() && (isTyping_ || windows_->hasPopup() || isDialog()); }
    bool asksPreviewer() const override { return kind_ == Kind::nautilus; }
    void readSelection(int limit, std::function<void(const SelectionReading&)> done) override;
    void attach() override;

private:
    enum class Kind : uint8_t { none, nautilus, thunar };
    static Kind kindOf(const std::string& className);
    void changeFront();
    // The window in front isn't one with a view, as where a name is changed.
    bool isDialog() const;
    void take(const AccessibleBus::Event& event);
    void askFocus();
    SelectionReader* reader() const;

    std::unique_ptr<FrontWindow> windows_;
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

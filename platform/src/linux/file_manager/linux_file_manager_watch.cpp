// Brings the display server's side and the accessibility bus's side of the file manager together.
#include "linux_file_manager_watch.h"

#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <utility>

namespace brindlehum {
namespace {

constexpr int focusQuietMs = 40;       // between a loss and the gain that belongs to it
constexpr int startPatienceMs = 5000;  // until a file manager that was just started is on the bus

}  // namespace

LinuxFileManagerWatch::LinuxFileManagerWatch(std::unique_ptr<FrontWindow> windows)
    : windows_(std::move(windows)), nautilus_(makeNautilusReader(bus_)), thunar_(makeThunarReader(bus_)) {
    focusQuiet_.setSingleShot(true);
    focusQuiet_.setInterval(focusQuietMs);
    connect(&focusQuiet_, &QTimer::timeout, this, [this] { askFocus(); });
}

LinuxFileManagerWatch::Kind LinuxFileManagerWatch::kindOf(const std::string& className) {
    std::string name = className;
    std::ranges::transform(name, name.begin(), [](unsigned char c) { return char(std::tolower(c)); });
    if (name == "org.gnome.nautilus" || name == "nautilus") { return Kind::nautilus; }
    if (name == "thunar") { return Kind::thunar; }
    return Kind::none;
}

bool LinuxFileManagerWatch::isDialog() const {
    if (!seesWindows()) { return false; }
    return std::ranges::find(windows_->windows(), uint64_t(window_.id), &DesktopWindow::id) ==
           windows_->windows().end();
}

SelectionReader* LinuxFileManagerWatch::reader() const {
    return kind_ == Kind::nautilus ? nautilus_.get() : thunar_.get();
}

void LinuxFileManagerWatch::start(Heard heard) {
    heard_ = std::move(heard);
    windows_->onActive = [this] { changeFront(); };
    windows_->onWindows = [this] {
        heard_.focus();
        heard_.windows();
    };
    windows_->onPopups = [this] { heard_.focus(); };
    bus_.onEvent = [this](const AccessibleBus::Event& event) { take(event); };
    bus_.connectSoon();
    changeFront();
}

// A bus that is still being looked for counts as there.
bool LinuxFileManagerWatch::isTrusted() const {
    bus_.connectSoon();
    return !bus_.hasFailed();
}

void LinuxFileManagerWatch::changeFront() {
    const auto& active = windows_->active();
    const Kind kind = active.pid == uint32_t(::getpid()) ? Kind::none : kindOf(active.className);
    if (kind != Kind::none || kind_ != Kind::none) { windows_->follow(kind != Kind::none); }
    const bool wasFront = kind_ != Kind::none;
    kind_ = kind;
    if (kind == Kind::none && !wasFront) { return; }
    isTyping_ = false;
    focus_ = {};
    if (kind == Kind::none) {
        bus_.hear({}, {});
        texts_.clear();
        window_ = {};
        ++visit_;
    } else {
        if (!wasFront) { sinceFront_.start(); }
        window_.id = active.id;
        window_.busName = QString::fromStdString(active.busName);
        window_.objectPath = QString::fromStdString(active.objectPath);
        attach();
    }
    heard_.front();
}

void LinuxFileManagerWatch::attach() {
    if (kind_ == Kind::none) { return; }
    window_.program = {};
    ++visit_;
    isFinding_ = true;
    bus_.find(windows_->active().pid, [this, visit = visit_](const std::optional<AccessibleRef>& program) {
        if (visit != visit_) { return; }
        isFinding_ = false;
        if (!program) { return; }
        window_.program = *program;
        bus_.hear(program->bus, reader()->events());
        heard_.selection();
    });
}

void LinuxFileManagerWatch::take(const AccessibleBus::Event& event) {
    if (event.kind == QLatin1String("PropertyChange")) {
        // Thunar's status bar says its text again whenever it is asked for it, which would have it asked without end.
        if (std::exchange(texts_[event.source], event.value) != event.value) { heard_.selection(); }
        return;
    }
    if (event.kind != QLatin1String("StateChanged")) { return heard_.selection(); }
    if (event.detail != QLatin1String("focused")) { return; }
    if (event.on) {
        focus_ = event.source;
        reader()->focused(focus_);
    } else if (focus_ == event.source || focus_.bus.isEmpty()) {
        focus_ = {};
    }
    // Thunar's search may get a blank next. Nautilus knows by itself when one is typed, and isn't asked at every step.
    if (event.on && kind_ == Kind::thunar) {
        focusQuiet_.stop();
        return askFocus();
    }
    focusQuiet_.start();
}

// A widget that lost the focus to one that doesn't say so lost it to a text field.
void LinuxFileManagerWatch::askFocus() {
    const auto set = [this, visit = visit_](bool isTyping) {
        if (visit != visit_ || isTyping == isTyping_) { return; }
        isTyping_ = isTyping;
        heard_.focus();
    };
    if (focus_.bus.isEmpty()) { return set(kind_ == Kind::nautilus); }
    reader()->focusMoved(focus_, [this, set](bool isTyping) {
        set(isTyping);
        heard_.selection();
    });
}

void LinuxFileManagerWatch::readSelection(int limit, std::function<void(const SelectionReading&)> done) {
    using Outcome = SelectionReading::Outcome;
    if (kind_ == Kind::none) { return done({Outcome::failed, {}}); }
    if (!bus_.isConnected()) {
        bus_.connectSoon();
        return done({bus_.hasFailed() ? Outcome::denied : Outcome::failed, {}});
    }
    if (window_.program.bus.isEmpty()) {
        const bool isLate = sinceFront_.elapsed() > startPatienceMs;
        if (!isFinding_) { attach(); }
        return done({isLate ? Outcome::denied : Outcome::failed, {}});
    }
    if (isTyping_ && kind_ == Kind::thunar) { return done({Outcome::failed, {}}); }  // the location may be half typed
    reader()->read(window_, limit, [done](const std::optional<std::vector<std::filesystem::path>>& paths) {
        if (!paths) { return done({Outcome::failed, {}}); }
        done({Outcome::read, *paths});
    });
}

}  // namespace brindlehum

// PlayerMessage: the one line of text that the player shows its user.
#pragma once

#include <QObject>
#include <functional>
#include <optional>
#include <string>

#include "platform/main_loop.h"

namespace brindlehum {

// Main thread. A newer text replaces the older one. A problem goes once there was time to read it, a notice stays: it
// may be the progress of work, or have buttons beside it.
class PlayerMessage : public QObject {
    Q_OBJECT
public:
    static constexpr double readingSeconds = 20;

    explicit PlayerMessage(MainLoop& loop) : loop_(loop) {}

    const std::optional<std::string>& text() const { return text_; }
    bool isProblem() const { return isProblem_; }  // false: a notice of successful work

    void notify(std::string text) { set(std::move(text), false); }
    void fail(std::string text) { set(std::move(text), true); }
    void clear() { set(std::nullopt, false); }

Q_SIGNALS:
    void changed();

private:
    void set(std::optional<std::string> text, bool isProblem) {
        ends_ = isProblem ? loop_.after(readingSeconds, [this] { clear(); }) : TimerHandle();
        if (text == text_ && isProblem == isProblem_) { return; }
        text_ = std::move(text);
        isProblem_ = isProblem;
        Q_EMIT changed();
    }

    MainLoop& loop_;
    TimerHandle ends_;
    std::optional<std::string> text_;
    bool isProblem_ = false;
};

}  // namespace brindlehum

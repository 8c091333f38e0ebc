// PlayerMessage: the one line of text that the player shows its user.
#pragma once

#include <QObject>
#include <optional>
#include <string>

namespace brindlehum {

// Main thread. A newer text replaces the older one.
class PlayerMessage : public QObject {
    Q_OBJECT
public:
    const std::optional<std::string>& text() const { return text_; }
    bool isProblem() const { return isProblem_; }  // false: a notice of successful work

    void notify(std::string text) { set(std::move(text), false); }
    void fail(std::string text) { set(std::move(text), true); }
    void clear() { set(std::nullopt, false); }

Q_SIGNALS:
    void changed();

private:
    void set(std::optional<std::string> text, bool isProblem) {
        if (text == text_ && isProblem == isProblem_) { return; }
        text_ = std::move(text);
        isProblem_ = isProblem;
        Q_EMIT changed();
    }

    std::optional<std::string> text_;
    bool isProblem_ = false;
};

}  // namespace brindlehum

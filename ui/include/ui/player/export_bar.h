// ExportBar: the progress of exports, and afterwards a button that shows their files.
#pragma once

#include <QWidget>
#include <filesystem>
#include <functional>
#include <vector>

class QProgressBar;
class QPushButton;

namespace brindlehum {

class ElidedLabel;
class ExportProgress;
class PlayerMessage;

// The closing text itself is the player's message; the button disappears when another message replaces that.
class ExportBar : public QWidget {
    Q_OBJECT
public:
    using Reveal = std::function<void(const std::vector<std::filesystem::path>&)>;
    ExportBar(ExportProgress& progress, PlayerMessage& message, Reveal reveal, QWidget* parent = nullptr);

private:
    void refresh();

    ExportProgress& exports_;
    PlayerMessage& message_;
    ElidedLabel* caption_;
    QProgressBar* bar_;
    QPushButton* cancel_;
    QPushButton* show_;
};

}  // namespace brindlehum

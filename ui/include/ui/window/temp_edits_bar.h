// TempEditsBar: the progress of a batch of temp edits, and afterwards buttons for its folders and skipped files.
#pragma once

#include <QWidget>
#include <filesystem>

class QProgressBar;
class QPushButton;

namespace brindlehum {

class PlayerMessage;
class TempEditBatch;

// The text itself is the player's message; the bar disappears when another message replaces that.
class TempEditsBar : public QWidget {
    Q_OBJECT
public:
    TempEditsBar(TempEditBatch& batch, PlayerMessage& message, QWidget* parent = nullptr);

Q_SIGNALS:
    // The bar lines of the piece are uncertain, and the user wants to set them.
    void barsAsked(const std::filesystem::path& piece);

private:
    void askBars();
    void refresh();
    void tellSkipped();

    TempEditBatch& batch_;
    PlayerMessage& message_;
    QProgressBar* progress_;
    QPushButton* cancel_;
    QPushButton* skipped_;
    QPushButton* bars_;
    QPushButton* folders_;
};

}  // namespace brindlehum

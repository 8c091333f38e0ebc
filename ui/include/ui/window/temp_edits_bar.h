// TempEditsBar: the progress of a batch of temp edits, and afterwards buttons for its folders and skipped files.
#pragma once

#include <QWidget>

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

private:
    void refresh();
    void tellSkipped();

    TempEditBatch& batch_;
    PlayerMessage& message_;
    QProgressBar* progress_;
    QPushButton* cancel_;
    QPushButton* skipped_;
    QPushButton* folders_;
};

}  // namespace brindlehum

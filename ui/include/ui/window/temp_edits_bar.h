// TempEditsBar: the progress of a batch of temp edits, and afterwards buttons for its folders and skipped files.
#pragma once

#include <QWidget>

#include "app/temp_edit_batch.h"

class QProgressBar;
class QPushButton;

namespace brindlehum {

// The text itself is the player's message; the bar disappears when another message replaces that.
class TempEditsBar : public QWidget {
    Q_OBJECT
public:
    TempEditsBar(TempEditBatch& batch, PlayerModel& player, QWidget* parent = nullptr);

private:
    void refresh();
    void tellSkipped();

    TempEditBatch& batch_;
    PlayerModel& player_;
    QProgressBar* progress_;
    QPushButton* cancel_;
    QPushButton* skipped_;
    QPushButton* folders_;
};

}  // namespace brindlehum

// BarsDialog: a user sets where the bars of a piece are, and sees them at once.
#pragma once

#include <QDialog>
#include <filesystem>
#include <memory>

#include "app/piece_bars.h"

class QLabel;
class QPushButton;
class QScrollBar;

namespace brindlehum {

class BarsForm;
class BarsStrip;
class ElidedLabel;
class LoadedSound;
class Transport;

// Not modal: the player can play the piece meanwhile, and its playhead is shown.
class BarsDialog : public QDialog {
    Q_OBJECT
public:
    BarsDialog(std::unique_ptr<PieceBars> piece, const LoadedSound& sound, Transport& transport,
               QWidget* parent = nullptr);

Q_SIGNALS:
    // After the bars have been stored.
    void editsAsked(const std::filesystem::path& file);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void layOut();
    QWidget* makeButtons();
    void connectParts();
    void refresh();
    void showStatus(const QString& text, bool isWarning);
    bool isLoaded() const;  // the player has this piece
    void followPlayhead();
    void followScroll();

    std::unique_ptr<PieceBars> piece_;
    const LoadedSound& sound_;
    Transport& transport_;
    ElidedLabel* status_;
    BarsStrip* strip_;
    QScrollBar* scroll_;
    BarsForm* form_;
    QPushButton* asFound_;
    QPushButton* save_;
    QPushButton* edits_;
    QString typingProblem_;
};

}  // namespace brindlehum

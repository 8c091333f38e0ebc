// FolderBrowser: a plain list of the folders and audio files of one folder, with the path above it.
#pragma once

#include <QWidget>
#include <filesystem>
#include <optional>

#include "ui/folder_model.h"

class QLabel;
class QLineEdit;
class QStackedLayout;
class QToolButton;
class QTreeView;

namespace brindlehum {

class FolderBrowser : public QWidget {
    Q_OBJECT
public:
    explicit FolderBrowser(QWidget* parent = nullptr);

    void setFolder(const std::filesystem::path& path);
    const std::filesystem::path& folder() const { return model_.folder(); }
    // Marks the file in its folder, going there when need be, without announcing it as chosen.
    void reveal(const std::filesystem::path& file);
    // The other way round when it is the order already.
    void sortBy(int column);
    FolderModel& model() { return model_; }
    QTreeView& list() { return *list_; }

    QByteArray saveColumns() const;
    void restoreColumns(const QByteArray& state);

Q_SIGNALS:
    void folderChanged();
    void columnsChanged();
    // The user has moved to this file.
    void fileChosen(const std::filesystem::path& file);
    void togglePlay();
    void openFolderAsked();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget* makePathBar();
    void makeList();
    void goUp();
    void goToTyped();
    void enter(const QModelIndex& index);
    void moved(const QModelIndex& current);
    void showState();
    void selectRow(int row);
    bool handleKey(int key, bool repeated);

    FolderModel model_;
    QToolButton* up_;
    QLineEdit* path_;
    QTreeView* list_;
    QStackedLayout* stack_;
    QLabel* state_;
    QLabel* count_;
    std::optional<std::filesystem::path> wanted_;  // to be marked once the listing is there
    bool quiet_ = false;                           // a move that isn't the user's
};

}  // namespace brindlehum

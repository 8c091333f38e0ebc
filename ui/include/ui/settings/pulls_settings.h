// PullsSettings: where files go that are dragged out of the player, and in which samples.
#pragma once

#include <QWidget>

#include "platform/disk_work.h"

class QPushButton;

namespace brindlehum {

class ElidedLabel;
class FileManager;
class SettingsStore;

class PullsSettings : public QWidget {
    Q_OBJECT
public:
    // `looks` makes the folder before it is shown; it must outlive this object, as all must.
    PullsSettings(SettingsStore& settings, FileManager& fileManager, DiskWork& looks);

private:
    void choose();
    void show();
    void refresh();

    SettingsStore& settings_;
    FileManager& fileManager_;
    DiskWork& looks_;
    Background::Line line_;
    ElidedLabel* path_;
    QPushButton* usual_;
};

}  // namespace brindlehum

// LinkSettings: which tool fetches the sound of a copied link.
#pragma once

#include <QWidget>

#include "platform/disk_work.h"

class QLabel;
class QLineEdit;

namespace brindlehum {

class SettingsStore;

class LinkSettings : public QWidget {
    Q_OBJECT
public:
    // `looks` looks at the disk, which may be a network that doesn't answer; it must outlive this object.
    LinkSettings(SettingsStore& settings, DiskWork& looks);

private:
    void keep();
    void look();
    void say(const QString& text, bool isFine);

    SettingsStore& settings_;
    DiskWork& looks_;
    Background::Line line_;
    QLineEdit* path_;
    QLabel* found_;
};

}  // namespace brindlehum

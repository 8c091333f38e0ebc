// LinkSettings: which tool fetches the sound of a copied link.
#pragma once

#include <QWidget>

#include "platform/background.h"

class QLabel;
class QLineEdit;

namespace brindlehum {

class SettingsStore;

class LinkSettings : public QWidget {
    Q_OBJECT
public:
    // `looks` looks at the disk, which may be a network that doesn't answer; it must outlive this object.
    LinkSettings(SettingsStore& settings, Background& looks);

private:
    void keep();
    void look();

    SettingsStore& settings_;
    Background& looks_;
    Background::Line line_;
    QLineEdit* path_;
    QLabel* found_;
};

}  // namespace brindlehum

// PullsSettings: where files go that are dragged out of the player, and in which samples.
#pragma once

#include <QWidget>

class QPushButton;

namespace brindlehum {

class ElidedLabel;
class SettingsStore;

class PullsSettings : public QWidget {
    Q_OBJECT
public:
    explicit PullsSettings(SettingsStore& settings);

private:
    void choose();
    void refresh();

    SettingsStore& settings_;
    ElidedLabel* path_;
    QPushButton* usual_;
};

}  // namespace brindlehum

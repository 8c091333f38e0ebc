// HRTFSettings: the set of responses that headphones use: the system's, or one of the user's own.
#pragma once

#include <QWidget>
#include <filesystem>

#include "platform/disk_work.h"

class QLabel;
class QPushButton;

namespace brindlehum {

class ElidedLabel;
class SettingsStore;

class HRTFSettings : public QWidget {
    Q_OBJECT
public:
    // `looks` reads the file, which may take a while; it must outlive this object.
    HRTFSettings(SettingsStore& settings, DiskWork& looks);

    // Takes the set into the settings if it can be read, and says why not else.
    void take(const std::filesystem::path& file);

protected:
    void showEvent(QShowEvent* event) override;

private:
    void choose();
    void refresh();
    void check(const std::filesystem::path& file, bool takes);
    void say(const QString& text, bool isProblem);

    SettingsStore& settings_;
    DiskWork& looks_;
    Background::Line line_;
    ElidedLabel* path_;
    QPushButton* usual_;
    QLabel* note_;
};

}  // namespace brindlehum

// SessionSettings: whether Brindlehum starts with the session.
#pragma once

#include <QWidget>

#include <filesystem>

#include "settings/autostart.h"

class QCheckBox;
class QLabel;

namespace brindlehum {

class SessionSettings : public QWidget {
    Q_OBJECT
public:
    explicit SessionSettings(const std::filesystem::path& file = Autostart::defaultFile());

private:
    void showState();
    void change(bool on);

    Autostart autostart_;
    QCheckBox* box_;
    QLabel* note_;  // why it can't be
};

}  // namespace brindlehum

// LinuxDesktop: requests to the desktop over D-Bus, with the freedesktop tools where no service answers.
#pragma once

#include <QObject>

#include "platform/desktop.h"

namespace brindlehum {

class LinuxDesktop : public Desktop {
public:
    void openFolder(const std::filesystem::path& folder) override;
    // Asks `org.freedesktop.FileManager1` to show the file; opens its folder when there's no such service.
    void reveal(const std::vector<std::filesystem::path>& items) override;

private:
    QObject answers_;  // owns what waits for replies
};

}  // namespace brindlehum

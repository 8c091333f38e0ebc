// Places: the user's standard folders, then the volumes.
#include "library/model/places.h"

#include <QStandardPaths>

#include "platform/mounts.h"

namespace brindlehum {
namespace {

namespace fs = std::filesystem;

fs::path standardFolder(QStandardPaths::StandardLocation location) {
    return QStandardPaths::writableLocation(location).toStdString();
}

}  // namespace

fs::path musicFolder() {
    return standardFolder(QStandardPaths::MusicLocation);
}

std::vector<fs::path> placesOf(const std::string& pullsFolder) {
    std::vector<fs::path> places = {musicFolder(), standardFolder(QStandardPaths::DesktopLocation),
                                    standardFolder(QStandardPaths::DownloadLocation), pullsFolder};
    for (fs::path& volume : mountedVolumes()) { places.push_back(std::move(volume)); }
    return places;
}

}  // namespace brindlehum

// AppSettings: the one record of user preferences of the audition side.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "settings/output_profile.h"
#include "upmix/upmix_params.h"

namespace brindlehum {

struct AppSettings {
    std::vector<OutputProfile> profiles = OutputProfile::defaults();
    std::optional<UUID> activeProfileID;
    bool autoPlay = true;
    bool finderPanel = true;
    bool spacePlaysInFinder = true;
    bool monoToCenter = true;
    std::string pullsFolder = defaultPullsFolder();
    std::vector<std::string> libraryRoots;
    std::string ytDlpPath;
    bool tempEditsBesideSource = true;
    bool expertMode = false;
    UpmixSettings upmix;

    bool operator==(const AppSettings&) const = default;

    // The profile of activeProfileID, or the first one.
    const OutputProfile& activeProfile() const;

    // The home folder's "Music/Brindlehum Pulls".
    static std::string defaultPullsFolder();
    // A key that is absent or unreadable keeps its default; none when the text isn't a JSON object.
    static std::optional<AppSettings> decode(const std::string& json);
    std::string encode() const;
};

}  // namespace brindlehum

// AppSettings: the user's preferences for listening, in one record.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "settings/output_profile.h"
#include "upmix/upmix_presets.h"

namespace brindlehum {

struct AppSettings {
    std::vector<OutputProfile> profiles = OutputProfile::defaults();
    std::optional<UUID> activeProfileID;
    bool autoPlay = true;
    bool finderPanel = true;
    bool spacePlaysInFinder = true;
    bool monoToCenter = true;
    std::string hrtfFile;  // a SOFA file of the user's own for headphones; empty: the one that comes with the system
    std::string pullsFolder = defaultPullsFolder();
    bool pullsAsFloat = false;  // 32-bit float files instead of 24 bits
    std::vector<std::string> libraryRoots;
    std::string ytDlpPath;
    bool tempEditsBesideSource = true;
    bool expertMode = false;
    bool mediaShowsTitle = true;                     // the desktop's media controls name what plays
    std::string generationAddress;                   // of the generation service; empty: there is none
    std::string generationHeader = "Authorization";  // that carries its key
    bool generationSendsName = true;
    // Origins (RFC 6454): of the service that the user has agreed to send to, and of the one whose key is in the
    // keyring.
    std::string generationAgreed;
    std::string generationKeyed;
    UpmixSettings upmix;
    OwnUpmixPresets upmixPresets;

    bool operator==(const AppSettings&) const = default;

    // The profile with the id activeProfileID, or the first one.
    const OutputProfile& activeProfile() const;

    // The folder that pulls go to: pullsFolder, or the default one in place of a blank or relative path.
    std::filesystem::path pulls() const;

    // "Music/Brindlehum Pulls" in the home folder.
    static std::string defaultPullsFolder();
    // A missing or unreadable key keeps its default. Returns none when the text isn't a JSON object.
    static std::optional<AppSettings> decode(const std::string& json);
    // Stores every path so that it reads back as it is (base/stored_path.h); in other texts, what isn't UTF-8 becomes
    // U+FFFD. Throws Error for a number that isn't finite.
    std::string encode() const;
};

}  // namespace brindlehum

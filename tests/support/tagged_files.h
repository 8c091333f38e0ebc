// Sound files of every format that holds metadata, with random tags of other programs, and what must stay in them.
#pragma once

#include <nlohmann/json.hpp>
#include <random>
#include <set>
#include <string>

#include "base/text.h"
#include "library/meta/sound_meta.h"
#include "support/audio_files.h"

namespace brindlehum::test {

namespace fs = std::filesystem;

// A name for each format, and how ffmpeg is asked for it.
struct TaggedFormat {
    const char* name;
    const char* arguments;
};
inline constexpr TaggedFormat taggedFormats[] = {
    {"a.wav", ""},
    {"b.rf64", "-rf64 always -f wav"},
    {"c.w64", ""},
    {"d.flac", ""},
    {"e.ogg", "-c:a libvorbis"},
    {"f.opus", "-c:a libopus"},
    {"g.mp3", "-id3v2_version 3 -write_id3v1 1"},
    {"h.mp3", "-id3v2_version 4"},
    {"i.m4a", "-c:a aac"},
    {"j.m4a", "-c:a alac -movflags +faststart"},
    {"k.aif", "-write_id3v2 1"},
    {"l.aiff", ""},
};

using Random = std::mt19937;

inline std::string drawnText(Random& random) {
    static const char* const pieces[] = {"oak", "é",  "日本", "𝄞", " & ", "<b>", "\"q\"",
                                         "'",   "; ", "/",    "=", "\n",  "0"};
    std::string text = "t";
    for (unsigned count = 1 + random() % 6; count > 0; --count) { text += pieces[random() % std::size(pieces)]; }
    return text + "x";
}

inline SoundMeta drawnRecord(Random& random) {
    SoundMeta meta;
    for (const SoundMeta::Tag& tag : SoundMeta::ixmlTags) {
        if (random() % 3 != 0) { meta.*tag.field = drawnText(random); }
    }
    if (meta.fxName.empty()) { meta.fxName = "Slam"; }  // else the file's name would fill it
    meta.rating = int(random() % 6);
    return meta;
}

// Tags that no field of ours stands for, and some that one does.
inline void makeTagged(const fs::path& file, const TaggedFormat& format, Random& random) {
    std::string command = "ffmpeg -y -f lavfi -i 'anoisesrc=d=0.3:r=48000:seed=" + std::to_string(random() % 1000) +
                          "' -ac " + std::to_string(1 + random() % 2);
    for (const char* tag : {"album", "genre", "date", "copyright", "composer", "album_artist", "lyrics", "track",
                            "X_FOREIGN", "title", "artist", "comment"}) {
        if (random() % 2 == 0) { continue; }
        const std::string name = tag;
        const std::string value = name == "track" ? "7/12" : name == "date" ? "2019" : "v" + std::to_string(random());
        command += " -metadata " + name + "='" + value + (name == "album" ? " é日" : "") + "'";
    }
    run(command + " " + format.arguments + " '" + file.string() + "'");
}

inline std::string saidBy(const std::string& command, const fs::path& scratch) {
    run(command + " >'" + scratch.string() + "'");
    return readBytes(scratch);
}

// The encoded sound, as ffmpeg copies it out of the container.
inline std::string soundDigest(const fs::path& file, const fs::path& scratch) {
    return saidBy("ffmpeg -v error -i '" + file.string() + "' -map 0 -c copy -f md5 -", scratch);
}

// The tags that ffprobe and, if asked, ExifTool show, without those that a record uses and those that describe the file
// itself.
inline std::set<std::string> foreignTags(const fs::path& file, const fs::path& scratch, bool exifTool = true) {
    std::set<std::string> own{"title",    "artist",          "comment",    "publisher",  "organization",
                              "keywords", "description",     "rating",     "embedder",   "longdescription",
                              "keyword",  "userdefinedtext", "originator", "encoded_by", "name",
                              "author",   "annotation",      "label"};
    for (const SoundMeta::Tag& tag : SoundMeta::ixmlTags) { own.insert(lowerAscii(tag.name)); }
    std::set<std::string> found;
    const auto note = [&](const std::string& name, const nlohmann::json& value) {
        if (!own.contains(lowerAscii(name))) { found.insert(lowerAscii(name) + "=" + value.dump()); }
    };
    using nlohmann::json;
    const json probe = json::parse(
        saidBy("ffprobe -v error -show_entries format_tags:stream_tags -of json '" + file.string() + "'", scratch));
    for (const json& part : {probe["format"], probe["streams"][0]}) {
        const json tags = part.value("tags", json::object());
        for (const auto& [name, value] : tags.items()) { note(name, value); }
    }
    if (!exifTool || file.extension() == ".w64") { return found; }  // ExifTool doesn't know it
    const json exif = json::parse(saidBy("exiftool -j '" + file.string() + "'", scratch))[0];
    for (const char* name : {"Album", "Genre", "Year", "Date", "Copyright", "Composer", "AlbumArtist", "Lyrics",
                             "Track", "TrackNumber", "ContentCreateDate", "Encoder", "Software", "Product"}) {
        if (exif.contains(name)) { note(name, exif[name]); }
    }
    return found;
}

}  // namespace brindlehum::test

// A made-up sound library of any size: UCS names, folders by category, descriptions of common and of rare words.
#pragma once

#include <algorithm>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "library/catalog/catalog.h"
#include "library/meta/ucs.h"

namespace brindlehum::bench {

class Corpus {
public:
    explicit Corpus(uint64_t seed) : random_(seed) {
        for (const auto& [key, entry] : UCS::shared().entries()) { entries_.push_back(&entry); }
        std::ranges::sort(entries_, {}, [](const UCS::Entry* entry) { return entry->catID; });
        for (const std::string_view word : spoken) { words_.emplace_back(word); }
        // Rare words, as names of places, makers and models are.
        while (words_.size() < 6000) { words_.push_back(madeUp()); }
    }

    struct File {
        std::string path, root;
        SoundMeta meta;
        AudioFileInfo info;
    };

    File next() {
        ++made_;
        const UCS::Entry& entry = *entries_[draw(entries_.size())];
        const auto& maker = makers[draw(std::size(makers))];
        File file;
        SoundMeta& meta = file.meta;
        meta.catID = entry.catID;
        meta.category = entry.category;
        meta.subCategory = entry.subCategory;
        meta.fxName = text(1 + draw(4), true);
        meta.designer = maker.designer;
        meta.source = maker.source;
        meta.library = maker.library;
        meta.description = text(5 + draw(11), false);
        if (draw(3) == 0) { meta.keywords = text(2 + draw(5), false); }
        if (draw(8) == 0) { meta.location = text(2, true); }
        if (draw(8) == 0) { meta.microphone = microphones[draw(std::size(microphones))]; }
        meta.rating = draw(10) == 0 ? int(1 + draw(5)) : 0;
        file.root = roots[draw(std::size(roots))];
        file.path = file.root + "/" + meta.library + "/" + entry.category + "/" + entry.subCategory + "/" +
                    *meta.ucsFileName() + "_" + std::to_string(made_) + ".wav";
        file.info.sampleRate = draw(4) == 0 ? 96000 : 48000;
        file.info.frames = int64_t(file.info.sampleRate) * int64_t(1 + draw(120));
        file.info.channels = draw(5) == 0 ? 6 : 2;
        file.info.bitDepth = 24;
        file.info.codec = "PCM";
        return file;
    }

    // A word as common as they are in descriptions.
    const std::string& word() {
        // By the square of an even draw the first words are the commonest, much as in language.
        const double even = double(random_() >> 11) * 0x1p-53;
        const size_t common = std::size(spoken);
        return draw(12) == 0 ? rareWord() : words_[size_t(even * even * double(common))];
    }
    const std::string& rareWord() { return words_[std::size(spoken) + draw(words_.size() - std::size(spoken))]; }
    uint64_t draw(uint64_t below) { return random_() % below; }

    static inline const std::vector<std::string> roots = {"/srv/sounds/Effects", "/srv/sounds/Foley", "/srv/own"};

private:
    struct Maker {
        const char *library, *designer, *source;
    };
    static constexpr Maker makers[] = {
        {"Grand Doors", "JDoe", "GD01"},      {"City Hours", "MKlein", "CH"},      {"Rolling Stock", "ABerg", "RS2"},
        {"Small Machines", "LRossi", "SMM"},  {"Weather Front", "TOkafor", "WF"},  {"Night Fields", "JDoe", "NF3"},
        {"Kitchen Sink", "PMoreau", "KSK"},   {"Metal Yard", "ABerg", "MY"},       {"Soft Footsteps", "SLind", "SFS"},
        {"Water Works", "MKlein", "WW"},      {"Own Recordings", "Team", "OWN"},   {"Crowd Scenes", "TOkafor", "CS"},
        {"Impacts and Falls", "LRossi", "I"}, {"Engines at Idle", "SLind", "EAI"}, {"Room Tones", "PMoreau", "RT"},
    };
    static constexpr const char* microphones[] = {"MKH 8040", "U 87", "CMIT 5", "KM 184", "Contact"};
    static constexpr std::string_view spoken[] = {
        "door",     "slam",      "heavy",   "wood",       "metal",      "close",     "open",        "soft",
        "hard",     "impact",    "wind",    "rain",       "city",       "traffic",   "crowd",       "distant",
        "interior", "exterior",  "room",    "tone",       "car",        "engine",    "idle",        "pass",
        "by",       "footsteps", "gravel",  "concrete",   "glass",      "break",     "water",       "splash",
        "drop",     "stream",    "ocean",   "wave",       "fire",       "crackle",   "whoosh",      "fast",
        "slow",     "click",     "button",  "switch",     "paper",      "rustle",    "cloth",       "leather",
        "gear",     "machine",   "hum",     "buzz",       "electric",   "spark",     "thunder",     "storm",
        "drone",    "tension",   "riser",   "sub",        "bass",       "low",       "high",        "and",
        "with",     "of",        "the",     "in",         "on",         "from",      "into",        "small",
        "large",    "medium",    "big",     "light",      "long",       "short",     "single",      "multiple",
        "various",  "take",      "loop",    "mono",       "stereo",     "close",     "perspective", "wide",
        "dry",      "wet",       "bird",    "dog",        "horse",      "insect",    "forest",      "night",
        "morning",  "evening",   "street",  "station",    "train",      "bus",       "truck",       "motor",
        "bike",     "boat",      "plane",   "jet",        "helicopter", "propeller", "horn",        "bell",
        "alarm",    "siren",     "beep",    "radio",      "static",     "noise",     "hiss",        "steam",
        "air",      "pressure",  "release", "valve",      "pump",       "drill",     "saw",         "hammer",
        "nail",     "chain",     "rope",    "creak",      "squeak",     "scrape",    "drag",        "roll",
        "bounce",   "hit",       "punch",   "kick",       "body",       "fall",      "debris",      "rock",
        "stone",    "dirt",      "mud",     "snow",       "ice",        "grass",     "leaf",        "branch",
        "snap",     "crack",     "crunch",  "rip",        "tear",       "zip",       "velcro",      "coin",
        "key",      "lock",      "latch",   "handle",     "drawer",     "cabinet",   "fridge",      "oven",
        "pan",      "plate",     "cup",     "pour",       "boil",       "sizzle",    "cut",         "chop",
        "eat",      "drink",     "breath",  "cough",      "laugh",      "scream",    "whisper",     "child",
        "man",      "woman",     "walla",   "restaurant", "bar",        "office",    "keyboard",    "printer",
        "phone",    "computer",  "fan",     "vent",       "elevator",   "escalator", "gun",         "shot",
        "rifle",    "shell",     "reload",  "explosion",  "blast",      "rumble",    "quake",       "magic",
        "spell",    "laser",     "robot",   "servo",      "alien",      "monster",   "growl",       "roar",
        "howl",     "bark",      "chirp",   "buzzing",    "swarm",      "flap",      "swish",       "sword",
        "shield",   "arrow",     "bow",     "armor",      "battle",     "market",    "temple",      "church",
        "choir",    "organ",     "piano",   "guitar",     "string",     "drum",      "cymbal",      "gong",
        "chime",    "music",     "box",
    };

    std::string madeUp() {
        static constexpr std::string_view syllables[] = {"ka",  "lo", "mir", "ten", "sa",  "bru", "vel", "no", "qui",
                                                         "zar", "el", "to",  "pha", "gri", "hu",  "dan", "wy", "ost"};
        std::string word;
        for (uint64_t i = 2 + draw(3); i > 0; --i) { word += syllables[draw(std::size(syllables))]; }
        return word;
    }
    std::string text(uint64_t count, bool title) {
        std::string text;
        for (uint64_t i = 0; i < count; ++i) {
            const size_t start = text.empty() ? 0 : text.size() + 1;
            if (start != 0) { text += ' '; }
            text += word();
            if (title) { text[start] = char(text[start] & ~0x20); }
        }
        return text;
    }

    std::mt19937_64 random_;
    std::vector<const UCS::Entry*> entries_;
    std::vector<std::string> words_;  // spoken ones first, commonest first
    int64_t made_ = 0;
};

}  // namespace brindlehum::bench

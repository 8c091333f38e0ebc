// TagFile: a record as the tags of a file.
#include "meta/tag_file.h"

#include <algorithm>
#include <charconv>
#include <set>

#include "audio/probe/container_content.h"
#include "base/error.h"
#include "base/path.h"
#include "base/text.h"
#include "meta/common_metadata.h"
#include "meta/ixml.h"
#include "meta/tag_store.h"

namespace brindlehum::TagFile {

namespace {

constexpr std::string_view embedder = "Brindlehum";
constexpr int maxRating = 5;
// A field's own tag that is blank hides what others keep in the standard one.
constexpr const char* hidden = " ";

[[noreturn]] void refuse(const std::filesystem::path& file, const std::string& reason) {
    throw Error(ErrorKind::notEmbeddable, writeFailure(file, reason));
}

std::optional<std::string> standardKey(const TagStore& store, std::string_view field) {
    for (const TagStore::Standard& standard : store.standards()) {
        if (standard.field == field) { return std::string(standard.key); }
    }
    return std::nullopt;
}

// 0 for what isn't one of our ratings: other programs count from 0 to 100, or in words.
int ratingIn(const TagStore& store) {
    const std::string text = store.get(store.ownKey("RATING")).value_or("");
    int rating = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), rating);
    return error == std::errc() && end == text.data() + text.size() && rating <= maxRating ? std::max(rating, 0) : 0;
}

// As it is in a file that we wrote.
std::string fieldIn(const TagStore& store, std::string_view field) {
    auto value = store.get(store.ownKey(field));
    const auto standard = standardKey(store, field);
    if (!value && standard) { value = store.get(*standard); }
    return value && *value != hidden ? *value : std::string();
}

Stored recordIn(const TagStore& store) {
    Stored stored;
    stored.isWhole = store.get(store.ownKey("EMBEDDER")) == embedder;
    for (const SoundMeta::Tag& tag : SoundMeta::ixmlTags) {
        stored.meta.*tag.field =
            repairUtf8(stored.isWhole ? fieldIn(store, tag.name) : store.get(store.ownKey(tag.name)).value_or(""));
    }
    stored.meta.rating = ratingIn(store);
    return stored;
}

// What the tags can hold of the record.
SoundMeta storableRecord(SoundMeta meta) {
    for (const SoundMeta::Tag& tag : SoundMeta::ixmlTags) { meta.*tag.field = RIFFMeta::storable(meta.*tag.field); }
    meta.rating = std::clamp(meta.rating, 0, maxRating);
    return meta;
}

void storeField(TagStore& store, std::string_view field, const std::string& value, const Stored& old,
                const std::string& shown) {
    if (fieldIn(store, field) == value) { return; }
    const std::string own = store.ownKey(field);
    const auto wanted = value.empty() ? std::nullopt : std::optional(value);
    const auto standard = standardKey(store, field);
    const auto there = standard ? store.get(*standard) : std::nullopt;
    const bool isOurs = !there || there->empty() || *there == shown || (old.isWhole && !store.get(own));
    if (standard && isOurs) {
        store.set(*standard, wanted);
        store.set(own, std::nullopt);
    } else {
        store.set(own, standard && !wanted ? std::optional<std::string>(hidden) : wanted);
    }
}

void storeRecord(TagStore& store, const SoundMeta& meta, const Stored& old) {
    for (const SoundMeta::Tag& tag : SoundMeta::ixmlTags) {
        storeField(store, tag.name, meta.*tag.field, old, old.meta.*tag.field);
    }
    if (ratingIn(store) != meta.rating) {
        store.set(store.ownKey("RATING"), meta.rating > 0 ? std::optional(std::to_string(meta.rating)) : std::nullopt);
    }
    store.set(store.ownKey("EMBEDDER"), std::string(embedder));
}

Stored load(const std::filesystem::path& file, const std::function<bool()>& stop) {
    Stored stored;
    const FileHandle handle(file);
    TagStream stream(handle, stop);
    if (const auto store = openTags(stream)) { stored = recordIn(*store); }
    stream.rethrow();
    if (!stored.isWhole) { stored.meta.fill(commonMetadata(file, stop)); }
    return stored;
}

// The names under which libavformat shows the tags that a record uses.
const std::set<std::string>& recordTags() {
    static const std::set<std::string> names = [] {
        std::set<std::string> all{"title",     "artist",   "organization", "comment",
                                  "publisher", "keywords", "rating",       "embedder"};
        for (const SoundMeta::Tag& tag : SoundMeta::ixmlTags) { all.insert(lowerAscii(tag.name)); }
        return all;
    }();
    return names;
}

std::optional<ContainerContent> foreignContent(const std::shared_ptr<FileHandle>& file) {
    auto content = containerContent(file);
    if (content) {
        std::erase_if(content->tags, [](const auto& tag) { return recordTags().contains(tag.first); });
    }
    return content;
}

}  // namespace

Stored read(const std::filesystem::path& file, const std::function<bool()>& stop) {
    try {
        return load(file, stop);
    } catch (const std::exception&) {
        return {};  // treat it like a file without metadata
    }
}

Stored readRecord(const std::filesystem::path& file) {
    return load(file, {});
}

ino_t write(const SoundMeta& record, const std::filesystem::path& path) {
    const std::filesystem::path target = followed(path);
    const auto source = std::make_shared<FileHandle>(target);
    const SoundMeta meta = storableRecord(record);
    const Stored old = load(target, {});

    FileReplacement out(target, *source);
    out.reserve(uint64_t(source->size()));
    out.copy(0, uint64_t(source->size()));
    {
        TagStream stream(out);
        const auto store = openTags(stream);
        if (!store) { refuse(target, "its format isn't what its name says"); }
        storeRecord(*store, meta, old);
        const bool saved = store->save();
        stream.rethrow();
        if (!saved) { refuse(target, "its tags can't be edited"); }
    }
    const auto written = out.written();
    TagStream stream(*written, {});
    const auto store = openTags(stream);
    const Stored now = store ? recordIn(*store) : Stored();
    if (!now.isWhole || now.meta != meta) { refuse(target, "its tags can't hold all of the metadata"); }
    const auto before = foreignContent(source);
    if (!before || before != foreignContent(written)) { refuse(target, "its other content wouldn't stay as it is"); }
    return out.commit();
}

}  // namespace brindlehum::TagFile

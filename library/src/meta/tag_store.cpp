// TagStore over TagLib: Vorbis comments, ID3v2 frames, MP4 atoms.
#include "meta/tag_store.h"

#include <taglib/aifffile.h>
#include <taglib/commentsframe.h>
#include <taglib/flacfile.h>
#include <taglib/id3v2framefactory.h>
#include <taglib/id3v2tag.h>
#include <taglib/mp4file.h>
#include <taglib/mpegfile.h>
#include <taglib/oggflacfile.h>
#include <taglib/opusfile.h>
#include <taglib/textidentificationframe.h>
#include <taglib/vorbisfile.h>
#include <taglib/xiphcomment.h>

#include <array>
#include <functional>

#include "base/text.h"

namespace brindlehum {

namespace {

using TagLib::String;

String wide(const std::string& text) {
    return {text, String::UTF8};
}

std::string utf8(const String& text) {
    return text.to8Bit(true);
}

std::optional<std::string> joined(const TagLib::StringList& values) {
    return values.isEmpty() ? std::nullopt : std::optional(utf8(values.toString("; ")));
}

class VorbisComments final : public TagStore {
public:
    VorbisComments(std::unique_ptr<TagLib::File> file, TagLib::Ogg::XiphComment& tags)
        : file_(std::move(file)), tags_(tags) {}
    std::optional<std::string> get(const std::string& key) const override {
        return tags_.contains(wide(key)) ? joined(tags_.fieldListMap()[wide(key)]) : std::nullopt;
    }
    void set(const std::string& key, const std::optional<std::string>& value) override {
        tags_.removeFields(wide(key));
        if (value) { tags_.addField(wide(key), wide(*value), true); }
    }
    bool save() override { return file_->save(); }
    std::span<const Standard> standards() const override {
        static constexpr std::array<Standard, 3> all = {
            {{"TRACKTITLE", "TITLE"}, {"DESIGNER", "ARTIST"}, {"LIBRARY", "ORGANIZATION"}}};
        return all;
    }
    std::string ownKey(std::string_view field) const override { return std::string(field); }

private:
    std::unique_ptr<TagLib::File> file_;
    TagLib::Ogg::XiphComment& tags_;
};

class Mp4Atoms final : public TagStore {
public:
    explicit Mp4Atoms(std::unique_ptr<TagLib::MP4::File> file) : file_(std::move(file)), tags_(*file_->tag()) {}
    std::optional<std::string> get(const std::string& key) const override {
        return tags_.contains(name(key)) ? joined(tags_.item(name(key)).toStringList()) : std::nullopt;
    }
    void set(const std::string& key, const std::optional<std::string>& value) override {
        tags_.removeItem(name(key));
        if (value) { tags_.setItem(name(key), TagLib::StringList(wide(*value))); }
    }
    bool save() override { return file_->save(); }
    std::span<const Standard> standards() const override {
        static constexpr std::array<Standard, 4> all = {
            {{"DESCRIPTION", "desc"}, {"TRACKTITLE", "\251nam"}, {"DESIGNER", "\251ART"}, {"KEYWORDS", "keyw"}}};
        return all;
    }
    // The name that players and other taggers use for free tags.
    std::string ownKey(std::string_view field) const override { return "----:com.apple.iTunes:" + std::string(field); }

private:
    // An atom's name is four bytes, of which the first may be a copyright sign.
    static String name(const std::string& key) { return {key, String::Latin1}; }

    std::unique_ptr<TagLib::MP4::File> file_;
    TagLib::MP4::Tag& tags_;
};

// Keys are a frame's id, or "TXXX:" and the frame's description, in any case.
class Id3Frames final : public TagStore {
public:
    using Save = std::function<bool(TagLib::ID3v2::Version)>;
    Id3Frames(std::unique_ptr<TagLib::File> file, TagLib::ID3v2::Tag& tags, Save save)
        : file_(std::move(file)), tags_(tags), save_(std::move(save)) {}
    std::optional<std::string> get(const std::string& key) const override {
        const TagLib::ID3v2::Frame* frame = find(key);
        if (frame == nullptr) { return std::nullopt; }
        const auto* text = dynamic_cast<const TagLib::ID3v2::TextIdentificationFrame*>(frame);
        if (text == nullptr) { return utf8(frame->toString()); }
        TagLib::StringList values = text->fieldList();
        if (key.starts_with(free) && !values.isEmpty()) { values.erase(values.begin()); }
        return joined(values);
    }
    void set(const std::string& key, const std::optional<std::string>& value) override {
        TagLib::ID3v2::Frame* frame = find(key);
        if (!value) {
            if (frame != nullptr) { tags_.removeFrame(frame); }
            return;
        }
        if (frame == nullptr) { tags_.addFrame(frame = make(key)); }
        // Without this, a frame in Latin-1 would keep its encoding.
        if (auto* text = dynamic_cast<TagLib::ID3v2::TextIdentificationFrame*>(frame)) {
            text->setTextEncoding(String::UTF8);
        } else if (auto* comment = dynamic_cast<TagLib::ID3v2::CommentsFrame*>(frame)) {
            comment->setTextEncoding(String::UTF8);
        }
        frame->setText(wide(*value));
    }
    // In the version that the file has, so that no frame must be translated.
    bool save() override {
        const bool newest = tags_.header()->majorVersion() >= 4;
        return save_(newest ? TagLib::ID3v2::v4 : TagLib::ID3v2::v3);
    }
    std::span<const Standard> standards() const override {
        static constexpr std::array<Standard, 4> all = {
            {{"DESCRIPTION", "COMM"}, {"TRACKTITLE", "TIT2"}, {"DESIGNER", "TPE1"}, {"LIBRARY", "TPUB"}}};
        return all;
    }
    std::string ownKey(std::string_view field) const override { return std::string(free).append(field); }

private:
    static constexpr std::string_view free = "TXXX:";

    TagLib::ID3v2::Frame* find(const std::string& key) const {
        for (TagLib::ID3v2::Frame* frame : tags_.frameList(key.substr(0, 4).c_str())) {
            const auto* user = dynamic_cast<const TagLib::ID3v2::UserTextIdentificationFrame*>(frame);
            const auto* comment = dynamic_cast<const TagLib::ID3v2::CommentsFrame*>(frame);
            if (user != nullptr && lowerAscii(utf8(user->description())) != lowerAscii(key.substr(free.size()))) {
                continue;
            }
            if (comment != nullptr && !comment->description().isEmpty()) { continue; }
            return frame;
        }
        return nullptr;
    }
    static TagLib::ID3v2::Frame* make(const std::string& key) {
        if (key.starts_with(free)) {
            auto* user = new TagLib::ID3v2::UserTextIdentificationFrame(String::UTF8);
            user->setDescription(wide(key.substr(free.size())));
            return user;
        }
        if (key == "COMM") {
            auto* comment = new TagLib::ID3v2::CommentsFrame(String::UTF8);
            comment->setLanguage("eng");
            return comment;
        }
        return new TagLib::ID3v2::TextIdentificationFrame(key.c_str(), String::UTF8);
    }

    std::unique_ptr<TagLib::File> file_;
    TagLib::ID3v2::Tag& tags_;
    Save save_;
};

// Makes the name of the factory's argument public; never instantiated.
struct FrameNames : TagLib::ID3v2::Frame {
    using Header = TagLib::ID3v2::Frame::Header;
};

// Keeps the frames of version 2.3 as they are. TagLib's own factory translates them, and drops some.
class KeepingFactory final : public TagLib::ID3v2::FrameFactory {
public:
    static KeepingFactory& shared() {
        static KeepingFactory factory;
        return factory;
    }

protected:
    bool updateFrame(FrameNames::Header* header) const override {
        return header->version() == 3 || FrameFactory::updateFrame(header);
    }
};

template <typename OggFile>
std::unique_ptr<TagStore> oggTags(TagStream& stream) {
    auto file = std::make_unique<OggFile>(&stream, false);
    auto* tags = file->isValid() ? file->tag() : nullptr;
    return tags != nullptr ? std::make_unique<VorbisComments>(std::move(file), *tags) : nullptr;
}

std::unique_ptr<TagStore> flacTags(TagStream& stream) {
    auto file = std::make_unique<TagLib::FLAC::File>(&stream, &KeepingFactory::shared(), false);
    if (!file->isValid()) { return nullptr; }
    auto& tags = *file->xiphComment(true);
    return std::make_unique<VorbisComments>(std::move(file), tags);
}

std::unique_ptr<TagStore> mp4Tags(TagStream& stream) {
    auto file = std::make_unique<TagLib::MP4::File>(&stream, false);
    const bool usable = file->isValid() && file->tag() != nullptr;
    return usable ? std::make_unique<Mp4Atoms>(std::move(file)) : nullptr;
}

std::unique_ptr<TagStore> aiffTags(TagStream& stream) {
    auto file = std::make_unique<TagLib::RIFF::AIFF::File>(&stream, false);
    if (!file->isValid()) { return nullptr; }
    auto* raw = file.get();
    return std::make_unique<Id3Frames>(std::move(file), *raw->tag(),
                                       [raw](auto version) { return raw->save(version); });
}

std::unique_ptr<TagStore> mp3Tags(TagStream& stream) {
    using File = TagLib::MPEG::File;
    auto file = std::make_unique<File>(&stream, &KeepingFactory::shared(), false);
    if (!file->isValid()) { return nullptr; }
    auto* raw = file.get();
    const auto save = [raw](auto version) {
        return raw->save(File::ID3v2, File::StripNone, version, File::DoNotDuplicate);
    };
    return std::make_unique<Id3Frames>(std::move(file), *raw->ID3v2Tag(true), save);
}

bool startsFrame(const std::string& head) {
    return head.size() > 1 && uint8_t(head[0]) == 0xFF && (uint8_t(head[1]) & 0xE0) == 0xE0;
}

}  // namespace

std::unique_ptr<TagStore> openTags(TagStream& stream) {
    const TagLib::ByteVector bytes = stream.readBlock(40);
    stream.seek(0, TagLib::IOStream::Beginning);
    const std::string head(bytes.data(), bytes.size());
    const auto at = [&](size_t place, std::string_view text) {
        return head.size() >= place && std::string_view(head).substr(place).starts_with(text);
    };
    if (at(0, "fLaC")) { return flacTags(stream); }
    if (at(0, "OggS") && at(28, "\x01vorbis")) { return oggTags<TagLib::Ogg::Vorbis::File>(stream); }
    if (at(0, "OggS") && at(28, "OpusHead")) { return oggTags<TagLib::Ogg::Opus::File>(stream); }
    if (at(4, "ftyp")) { return mp4Tags(stream); }
    if (at(0, "FORM") && (at(8, "AIFF") || at(8, "AIFC"))) { return aiffTags(stream); }
    if (at(0, "ID3") || startsFrame(head)) { return mp3Tags(stream); }
    return nullptr;
}

}  // namespace brindlehum

// Reads packets and tags through libavformat.
#include "audio/probe/container_content.h"

extern "C" {
#include <libavutil/md5.h>
#include <libavutil/mem.h>
}

#include "base/text.h"
#include "decode/ffmpeg_input.h"

namespace brindlehum {

namespace {

struct Freer {
    void operator()(AVMD5* digest) const { av_free(digest); }
};

void collect(const AVDictionary* tags, const std::string& place, ContainerContent& content) {
    const AVDictionaryEntry* tag = nullptr;
    while ((tag = av_dict_get(tags, "", tag, AV_DICT_IGNORE_SUFFIX))) {
        content.tags[place + lowerAscii(tag->key)] += repairUtf8(tag->value) + "\n";
    }
}

void collectTags(const AVFormatContext& container, ContainerContent& content) {
    collect(container.metadata, "", content);
    for (unsigned i = 0; i < container.nb_streams; ++i) {
        // Ogg has the tags of the sound on its stream, which isn't worth a distinction.
        const bool sound = container.streams[i]->codecpar->codec_type == AVMEDIA_TYPE_AUDIO;
        collect(container.streams[i]->metadata, sound ? "" : std::to_string(i) + ".", content);
    }
    for (unsigned i = 0; i < container.nb_chapters; ++i) {
        const AVChapter& chapter = *container.chapters[i];
        const std::string name = "chapter" + std::to_string(i);
        content.tags[name] = std::to_string(chapter.start) + " " + std::to_string(chapter.end);
        collect(chapter.metadata, name + ".", content);
    }
}

}  // namespace

std::optional<ContainerContent> containerContent(const std::shared_ptr<FileHandle>& file) {
    FileCursor cursor;
    cursor.handle = file;
    const FormatContextPtr container = openContainer(cursor);
    const std::unique_ptr<AVMD5, Freer> digest(av_md5_alloc());
    const PacketPtr packet(av_packet_alloc());
    if (!container || !digest || !packet) { return std::nullopt; }
    ContainerContent content;
    collectTags(*container, content);
    av_md5_init(digest.get());
    while (av_read_frame(container.get(), packet.get()) >= 0) {
        const int64_t facts[] = {packet->stream_index, packet->pts, packet->duration, packet->size};
        av_md5_update(digest.get(), reinterpret_cast<const uint8_t*>(facts), sizeof facts);
        av_md5_update(digest.get(), packet->data, size_t(packet->size));
        av_packet_unref(packet.get());
    }
    if (cursor.failed) { return std::nullopt; }
    av_md5_final(digest.get(), content.packets.data());
    return content;
}

}  // namespace brindlehum

// Reads channel layouts straight from the container, because decoding libraries lose or rename them.
#pragma once

#include <optional>

#include "audio/speakers/channel_layout.h"
#include "base/file_handle.h"

namespace brindlehum {

// `packets` means raw streams of MPEG audio or ADTS frames, Ogg without Opus, and anything after an ID3 tag.
enum class Container { riff, rifx, wave64, aiff, caf, flac, mp4, opus, packets, other };

// Decides by the first bytes of the file, whatever its name.
Container containerOf(const FileHandle& file);

// Returns WAVE_FORMAT_EXTENSIBLE's mask as a bitmap, or its Ambisonic B-format as the tag of that layout; the `chan`
// data of CAF and AIFF unchanged; the channel assignment of FLAC as a bitmap; the speaker mapping of Opus as labels.
// None when the container states no layout, and for MP4, whose layouts belong to tracks (mp4_track.h).
std::optional<ChannelLayout> containerLayout(const FileHandle& file, Container container, int channels);

// True for a RIFF file whose `fmt ` chunk ends before the bit depth and whose block size isn't that of 8-bit samples,
// which decoders would take for granted.
bool lacksBitDepth(const FileHandle& file);

// The layout in a `chan` chunk's content: tag, bitmap, count and descriptions, big-endian.
std::optional<ChannelLayout> parseChanChunk(const FileHandle& file, int64_t body, int64_t size);

// The layout that FLAC defines for a channel count (RFC 9639, 9.1.3), or the one in the file's
// WAVEFORMATEXTENSIBLE_CHANNEL_MASK comment (8.6.2).
std::optional<ChannelLayout> flacLayout(const FileHandle& file, int channels);

}  // namespace brindlehum

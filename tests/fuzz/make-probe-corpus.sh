#!/bin/sh
# Makes the seed files of the probe fuzzer: a few milliseconds of every format, with layouts, tags and delays.
set -eu
out=$(cd "$(dirname "$0")" && pwd)/corpus/probe
mkdir -p "$out"
cd "$out"
make() {  # NAME LAYOUT SECONDS ARGUMENTS...
  name=$1 layout=$2 seconds=$3
  shift 3
  ffmpeg -v error -y -f lavfi -i "sine=440:r=8000:d=$seconds,aformat=channel_layouts=$layout" \
    -fflags +bitexact -flags:a +bitexact "$@" "$name"
}
make pcm16.wav mono 0.02
make bext.wav stereo 0.02 -write_bext 1 -metadata description="Rain on a roof" -c:a pcm_s24le
make mask.wav 5.1 0.01
make float.wav stereo 0.02 -c:a pcm_f32le
make ulaw.wav mono 0.05 -c:a pcm_mulaw
make adpcm.wav mono 0.1 -c:a adpcm_ms
make big.wav mono 0.02 -rf64 always
make wave64.w64 stereo 0.02
make plain.aiff mono 0.02
make layout.aiff 5.1 0.01
make ulaw.aifc mono 0.05 -c:a pcm_mulaw -f aiff
make pcm.caf 7.1 0.01
make alac.caf stereo 0.1 -c:a alac
make tag.flac quad 0.05
make xing.mp3 mono 0.3 -b:a 16k -ar 16000
make raw.mp3 mono 0.2 -b:a 16k -ar 16000 -write_xing 0 -id3v2_version 0
make aac.m4a stereo 0.2 -b:a 32k -ar 16000
make alac.m4a stereo 0.1 -c:a alac
make pcm.mov 5.1 0.01 -c:a pcm_s16be
make fragments.mp4 mono 0.3 -b:a 16k -movflags frag_keyframe+empty_moov
make raw.aac mono 0.2 -b:a 16k -ar 16000
make opus.ogg mono 0.1 -c:a libopus -b:a 16k -ar 48000
make vorbis.ogg mono 0.1

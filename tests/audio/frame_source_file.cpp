// FileSource: more and fewer planes than channels, from anywhere in the file.
#include <gtest/gtest.h>

#include "audio/stream/frame_source.h"
#include "base/error.h"
#include "frame_reads.h"
#include "support/audio_files.h"

namespace brindlehum::test {
namespace {

TEST(FileSource, ReadsAnyNumberOfPlanesFromAnywhere) {
    for (const int channels : {1, 2, 6}) {
        const Planes whole = noisePlanes(channels, 9000, 77);
        const TempFolder folder;
        writeAudio(folder / "a.wav", whole);
        FileSource source(folder / "a.wav");
        EXPECT_EQ(source.length(), 9000);
        EXPECT_EQ(source.processingFormat().channels, channels);
        EXPECT_EQ(source.processingFormat().sampleRate, 48000);
        for (const int planes : {1, 2, channels, channels + 2}) {
            for (const int64_t position : {0, 8999, 4096, 9000, -1, 3, 50000, 8000}) {
                expectRead(source, whole, planes, position, 4096);
                expectRead(source, whole, planes, position, 1);
            }
        }
    }
    EXPECT_THROW(FileSource("/nowhere/none.wav"), Error);
}

}  // namespace
}  // namespace brindlehum::test

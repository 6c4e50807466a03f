// A whole document of an Audition 3.0 session with a video track, three
// audio tracks, a bus and the master, automation on volume, mute, pan and
// a send. The session has no header chunk, so its sample rate is 0 and the
// EQ frequencies are fractions of -20 Hz; TrackWriterTest pins them at a
// real rate.
#include <gtest/gtest.h>

#include "TestSupport.h"
#include "TrackPayloads.h"

namespace morvanta::testing {
namespace {

TEST(TrackDocument, ASessionWithEveryKindOfTrack) {
    const ImportResult result = Convert(TracksExampleSession(), {}, "tracks");
    ASSERT_EQ(result.Status, ImportStatus::Converted) << result.Message;
    ExpectGolden("tracks.sesx", result.Document);
}

}  // namespace
}  // namespace morvanta::testing

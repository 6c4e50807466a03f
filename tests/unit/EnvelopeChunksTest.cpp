// The clip envelope chunks "ep20" and "envp".
#include <gtest/gtest.h>

#include "TestSupport.h"
#include "TrackPayloads.h"
#include "TrackRecords.h"
#include "reader/ChunkReaders.h"

namespace morvanta::testing {
namespace {

using Strings = std::vector<std::string>;

// Runs one reader over a file whose only chunk is `payload`, with the
// header's envelope scale already in the session.
Strings ReadAlone(ChunkReader reader, const Bytes& payload, double envelopeGainScale) {
    const auto bytes = SesBuilder().Chunk("envx", payload).Build();
    const ByteReader file(bytes);
    Session session;
    session.EnvelopeGainScale = envelopeGainScale;
    const ConvertOptions options;
    std::vector<Diagnostic> warnings;
    ReadContext ctx{session, file, options, false, static_cast<std::int32_t>(bytes.size()), warnings, nullptr};
    const ChunkHeader chunk{"envx", 12, 20, static_cast<std::int32_t>(payload.Size())};
    EXPECT_EQ(reader(ctx, chunk), chunk.End());
    return Describe(session.EnvelopePoints);
}

TEST(EnvelopeChunks, Ep20ScalesVolumeLanesAndStepsOverOtherKinds) {
    const Bytes payload = Ep20Payload({{7, {{1, {{0, 0.5}, {10, 0.25}}}, {3, {{5, 9.0}}}, {2, {{20, 0.5}}}}},
                                       {300000001, {{2, {{0, -0.75}}}}}});
    EXPECT_EQ(ReadAlone(ReadEp20Chunk, payload, 2.0),
              (Strings{"7 kind 1 @0 1", "7 kind 1 @10 0.5", "7 kind 2 @20 0.5", "300000001 kind 2 @0 -0.75"}));
}

TEST(EnvelopeChunks, EnvpRoundsVolumesTo12PlacesBeforeScaling) {
    const Bytes payload = EnvpPayload({{4, {{0, 0.1234567890123456}, {8, 0.5}}, {{3, 0.1234567890123456}}}});
    EXPECT_EQ(ReadAlone(ReadEnvpChunk, payload, 2.0),
              (Strings{"4 kind 1 @0 0.246913578024", "4 kind 1 @8 1", "4 kind 2 @3 0.1234567890123456"}));
}

TEST(EnvelopeChunks, EnvpIsReadOnlyWhileNoPointsAreThere) {
    const Bytes ep20 = Ep20Payload({{1, {{1, {{0, 0.5}}}}}});
    const Bytes envp = EnvpPayload({{2, {{0, 0.25}}, {}}});
    Session session;
    ASSERT_EQ(ReadSesBytes(SesBuilder().Version("Audition 1.5").Chunk("envp", envp).Chunk("ep20", ep20).Build(),
                           session, {})
                  .Status,
              ImportStatus::Converted);
    EXPECT_EQ(Describe(session.EnvelopePoints), (Strings{"2 kind 1 @0 0.25", "1 kind 1 @0 0.5"}));
    ASSERT_EQ(ReadSesBytes(SesBuilder().Version("Audition 1.5").Chunk("ep20", ep20).Chunk("envp", envp).Build(),
                           session, {})
                  .Status,
              ImportStatus::Converted);
    EXPECT_EQ(Describe(session.EnvelopePoints), (Strings{"1 kind 1 @0 0.5"}));
}

TEST(EnvelopeChunks, AbsurdCountsFailAtTheirOffset) {
    Session session;
    // "ep20" counts are 16-bit loop counters: a lane of 32768 points fails
    // even where the file would hold them.
    Bytes lane = Bytes().Int32(1).Int32(0).Int32(0).Int32(9).Int32(1);
    lane.Int32(32768).Int32(1).Int32(0).Zeros(32768 * 12);
    ImportResult result = ReadSesBytes(SesBuilder().Version("Audition 1.5").Chunk("ep20", lane).Build(), session, {});
    EXPECT_EQ(result.Status, ImportStatus::Failed);
    EXPECT_EQ(result.ErrorOffset, 40 + 20);
    EXPECT_EQ(result.ErrorChunk, "ep20");

    // "envp" counts are bounded by the file alone.
    const Bytes group = Bytes().Int32(1).Int32(0).Int32(9).Int32(1000000).Int32(0);
    result = ReadSesBytes(SesBuilder().Version("Audition 1.5").Chunk("envp", group).Build(), session, {});
    EXPECT_EQ(result.Status, ImportStatus::Failed);
    EXPECT_EQ(result.Message,
              "the volume point count 1000000 at offset 52 needs at least 24000000 bytes from offset 60, but the "
              "file has 0 there");
}

}  // namespace
}  // namespace morvanta::testing

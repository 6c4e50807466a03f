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

// The points of a chunk lie inside it, even where the file behind would
// hold them: otherwise each of many small chunks could read the rest of the
// file again, and the points would pile up by the square of its size. The
// "ep20" counts are 16-bit loop counters besides, "envp" counts are not.
TEST(EnvelopeChunks, CountsThatReachPastTheChunkOrTheLoopCounterFail) {
    struct Case {
        const char* Tag;
        Bytes Payload;
        std::int64_t Offset;
        std::string Message;
    };
    const std::vector<Case> cases{
        {"ep20", Bytes().Int32(3).Int32(0).Int32(0).Int32(7).Int32(0), 40,
         "the envelope group count 3 at offset 40 needs at least 48 bytes from offset 44, but the chunk has 16 there"},
        {"ep20", Bytes().Int32(1).Int32(0).Int32(0).Int32(7).Int32(2).Int32(0).Int32(1).Int32(0), 56,
         "the envelope lane count 2 at offset 56 needs at least 24 bytes from offset 60, but the chunk has 12 there"},
        {"ep20", Bytes().Int32(1).Int32(0).Int32(0).Int32(7).Int32(1).Int32(2).Int32(1).Int32(0).Zeros(12), 60,
         "the envelope point count 2 at offset 60 needs at least 24 bytes from offset 72, but the chunk has 12 "
         "there"},
        {"ep20", Bytes().Int32(1).Int32(0).Int32(0).Int32(9).Int32(1).Int32(32768).Int32(1).Int32(0).Zeros(32768 * 12),
         60, "the envelope point count 32768 at offset 60 is above 32767, the most this list can hold"},
        {"envp", Bytes().Int32(2).Int32(0).Int32(7).Int32(0).Int32(0), 40,
         "the envelope group count 2 at offset 40 needs at least 32 bytes from offset 44, but the chunk has 16 there"},
        {"envp", Bytes().Int32(1).Int32(0).Int32(7).Int32(0).Int32(1), 56,
         "the pan point count 1 at offset 56 needs at least 24 bytes from offset 60, but the chunk has 0 there"},
        {"envp", Bytes().Int32(1).Int32(0).Int32(9).Int32(1000000).Int32(0), 52,
         "the volume point count 1000000 at offset 52 needs at least 24000000 bytes from offset 60, but the chunk has 0 "
         "there"},
    };
    for (const Case& c : cases)
        ExpectFailure(SesBuilder().Version("Audition 1.5").Chunk(c.Tag, c.Payload).Chunk("spar", Bytes().Zeros(200)).Build(),
                      c.Tag, c.Offset, c.Message);
}

}  // namespace
}  // namespace morvanta::testing

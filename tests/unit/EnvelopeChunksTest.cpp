// The clip envelope chunks "ep20" and "envp".
#include <gtest/gtest.h>

#include "TestSupport.h"
#include "TrackPayloads.h"
#include "reader/ChunkReaders.h"

namespace morvanta::testing {
namespace {

// Runs one reader over a file whose only chunk is `payload`, with the
// header's envelope scale already in the session.
Session ReadAlone(ChunkReader reader, const Bytes& payload, double envelopeGainScale) {
    const auto bytes = SesBuilder().Chunk("envx", payload).Build();
    const ByteReader file(bytes);
    Session session;
    session.EnvelopeGainScale = envelopeGainScale;
    const ConvertOptions options;
    std::vector<Diagnostic> warnings;
    ReadContext ctx{session, file, options, false, static_cast<std::int32_t>(bytes.size()), warnings, nullptr};
    const ChunkHeader chunk{"envx", 12, 20, static_cast<std::int32_t>(payload.Size())};
    EXPECT_EQ(reader(ctx, chunk), chunk.End());
    return session;
}

// "ep20" scales volume lanes and steps over lanes of other kinds; "envp"
// rounds volumes to 12 places before scaling, and is read only while no
// points are there.
TEST(EnvelopeChunks, PointsOfBothChunks) {
    const Bytes ep20 = Ep20Payload({{7, {{1, {{0, 0.5}, {10, 0.25}}}, {3, {{5, 9.0}}}, {2, {{20, 0.5}}}}},
                                    {300000001, {{2, {{0, -0.75}}}}}});
    const Bytes envp = EnvpPayload({{4, {{0, 0.1234567890123456}, {8, 0.5}}, {{3, 0.1234567890123456}}}});
    const Bytes ep20One = Ep20Payload({{1, {{1, {{0, 0.5}}}}}});
    const Bytes envpOne = EnvpPayload({{2, {{0, 0.25}}, {}}});
    auto both = [&](const char* firstTag, const Bytes& first, const char* secondTag, const Bytes& second) {
        return ReadOk(SesBuilder().Version("Audition 1.5").Chunk(firstTag, first).Chunk(secondTag, second).Build());
    };
    ExpectGolden("envelope-chunks.model.txt",
                 TitledDump("ep20 scaled by 2", ReadAlone(ReadEp20Chunk, ep20, 2.0)) +
                     TitledDump("envp scaled by 2", ReadAlone(ReadEnvpChunk, envp, 2.0)) +
                     TitledDump("envp, then ep20", both("envp", envpOne, "ep20", ep20One)) +
                     TitledDump("ep20, then envp", both("ep20", ep20One, "envp", envpOne)));
}

// The points of a chunk lie inside it, even where the file behind would
// hold them: otherwise each of many small chunks could read the rest of the
// file again, and the points would pile up by the square of its size. The
// "ep20" counts are 16-bit loop counters besides, "envp" counts are not.
TEST(EnvelopeChunks, CountsThatReachPastTheChunkOrTheLoopCounterFail) {
    const auto in = [](const char* tag, const Bytes& payload) {
        return SesBuilder().Version("Audition 1.5").Chunk(tag, payload).Chunk("spar", Bytes().Zeros(200)).Build();
    };
    ExpectFailures({
        {in("ep20", Bytes().Int32(3).Int32(0).Int32(0).Int32(7).Int32(0)), "ep20", 40,
         "the envelope group count 3 at offset 40 needs at least 48 bytes from offset 44, but the chunk has 16 there"},
        {in("ep20", Bytes().Int32(1).Int32(0).Int32(0).Int32(7).Int32(2).Int32(0).Int32(1).Int32(0)), "ep20", 56,
         "the envelope lane count 2 at offset 56 needs at least 24 bytes from offset 60, but the chunk has 12 there"},
        {in("ep20", Bytes().Int32(1).Int32(0).Int32(0).Int32(7).Int32(1).Int32(2).Int32(1).Int32(0).Zeros(12)), "ep20",
         60,
         "the envelope point count 2 at offset 60 needs at least 24 bytes from offset 72, but the chunk has 12 "
         "there"},
        {in("ep20",
            Bytes().Int32(1).Int32(0).Int32(0).Int32(9).Int32(1).Int32(32768).Int32(1).Int32(0).Zeros(32768 * 12)),
         "ep20", 60, "the envelope point count 32768 at offset 60 is above 32767, the most this list can hold"},
        {in("envp", Bytes().Int32(2).Int32(0).Int32(7).Int32(0).Int32(0)), "envp", 40,
         "the envelope group count 2 at offset 40 needs at least 32 bytes from offset 44, but the chunk has 16 there"},
        {in("envp", Bytes().Int32(1).Int32(0).Int32(7).Int32(0).Int32(1)), "envp", 56,
         "the pan point count 1 at offset 56 needs at least 24 bytes from offset 60, but the chunk has 0 there"},
        {in("envp", Bytes().Int32(1).Int32(0).Int32(9).Int32(1000000).Int32(0)), "envp", 52,
         "the volume point count 1000000 at offset 52 needs at least 24000000 bytes from offset 60, but the chunk has "
         "0 "
         "there"},
    });
}

}  // namespace
}  // namespace morvanta::testing

// The track EQ chunk "tkeq": which versions read it, its field order, and
// how its records find their tracks.
#include <gtest/gtest.h>

#include "TestSupport.h"
#include "TrackPayloads.h"
#include "TrackRecords.h"

namespace morvanta::testing {
namespace {

using Strings = std::vector<std::string>;

TkeqRecord DistinctRecord(std::int32_t key) {
    TkeqRecord r;
    r.TrackKey = key;
    r.LowFrequency = 100;
    r.LowGain = 1;
    r.HighFrequency = 9000;
    r.HighGain = 2;
    r.MidFrequency = 1500;
    r.MidQ = 300;
    r.MidGain = -4;
    r.LowQ = 110;
    r.HighQ = 120;
    return r;
}

TEST(TrackEqChunk, OnlyTheFourVersionsOfTheChunkReadIt) {
    for (const char* version : {"Cool Edit Pro 2.00", "Cool Edit Pro 2.1", "Audition 1.0", "Audition 1.5",
                                "Cool Edit Pro 1.2", "Cool Edit 2000 1.0", "Audition 2.0", "Audition 3.0"}) {
        Session session;
        const auto bytes = SesBuilder().Version(version).Chunk("tkeq", TkeqPayload({DistinctRecord(2)})).Build();
        ASSERT_EQ(ReadSesBytes(bytes, session, {}).Status, ImportStatus::Converted) << version;
        const bool reads = std::string_view(version).starts_with("Audition 1") ||
                           std::string_view(version).starts_with("Cool Edit Pro 2");
        // The middle Q stands in front of the middle gain.
        EXPECT_EQ(Describe(session.TrackEqs),
                  reads ? Strings{"2 low 100/1/110 mid 1500/-4/300 high 9000/2/120 on 1"} : Strings{})
            << version;
    }
}

TEST(TrackEqChunk, ARecordFindsItsTrackByOrdinal) {
    // Audition 1.0 tracks take ids 10001 and 10002; the record names the
    // second by its number.
    TrksRecord first;
    first.Name = "One";
    first.TrackId = 1;
    TrksRecord second = first;
    second.Name = "Two";
    second.TrackId = 2;
    const auto bytes = SesBuilder()
                           .Version("Audition 1.0")
                           .Chunk("trks", TrksPayload(104, false, {first, second}))
                           .Chunk("tkeq", TkeqPayload({DistinctRecord(2)}))
                           .Build();
    const ImportResult result = Convert(bytes);
    ASSERT_EQ(result.Status, ImportStatus::Converted) << result.Message;
    Strings eqLines;
    for (const std::string& line : Lines(result.Document)) {
        if (line.find("id=\"trackEQ\"") != std::string::npos || line.find("EQ Band 3 (Q)") != std::string::npos ||
            line.find("EQ Band 3 (Gain)") != std::string::npos)
            eqLines.push_back(line);
    }
    EXPECT_EQ(eqLines.size(), 9u);  // two tracks and the implicit master
    EXPECT_EQ(Strings(eqLines.begin(), eqLines.begin() + 6),
              (Strings{R"(<component componentID="Audition.EQ" id="trackEQ" name="EQ" powered="false">)",
                       R"x(<parameter index="13" name="EQ Band 3 (Q)" parameterValue="0.0002"/>)x",
                       R"x(<parameter index="14" name="EQ Band 3 (Gain)" parameterValue="0.5"/>)x",
                       R"(<component componentID="Audition.EQ" id="trackEQ" name="EQ" powered="true">)",
                       R"x(<parameter index="13" name="EQ Band 3 (Q)" parameterValue=".03"/>)x",
                       R"x(<parameter index="14" name="EQ Band 3 (Gain)" parameterValue="0.4333333"/>)x"}));
}

TEST(TrackEqChunk, CountsBeyondTheLoopCounterOrTheChunkFail) {
    const auto tooMany = SesBuilder().Version("Audition 1.5").Chunk("tkeq", Bytes().Int32(32768)).Build();
    Session session;
    ImportResult result = ReadSesBytes(tooMany, session, {});
    EXPECT_EQ(result.Status, ImportStatus::Failed);
    EXPECT_EQ(result.ErrorChunk, "tkeq");
    EXPECT_EQ(result.Message, "the EQ record count 32768 at offset 40 is above 32767, the most this list can hold");

    // The records of a chunk lie inside it: a count that reaches into the
    // chunk behind would let every chunk read the rest of the file again.
    const auto cut = SesBuilder()
                         .Version("Audition 1.5")
                         .Chunk("tkeq", Bytes().Int32(2).Zeros(88))
                         .Chunk("tkeq", Bytes().Int32(0).Zeros(100))
                         .Build();
    result = ReadSesBytes(cut, session, {});
    EXPECT_EQ(result.Status, ImportStatus::Failed);
    EXPECT_EQ(result.ErrorOffset, 40);
    EXPECT_EQ(result.Message,
              "the EQ record count 2 at offset 40 needs at least 176 bytes from offset 44, but the chunk has 88 there");
}

}  // namespace
}  // namespace morvanta::testing

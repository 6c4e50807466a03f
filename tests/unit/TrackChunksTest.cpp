// The track chunks: the record layouts of "trks" per version, the entries,
// sections, lanes, rack block and sends of "TRKS", and "tkeq".
#include <gtest/gtest.h>

#include "TestSupport.h"
#include "TrackPayloads.h"
#include "TrackRecords.h"

namespace morvanta::testing {
namespace {

using Strings = std::vector<std::string>;

Session ReadOk(const std::vector<std::uint8_t>& bytes) {
    Session session;
    const ImportResult result = ReadSesBytes(bytes, session, {});
    EXPECT_EQ(result.Status, ImportStatus::Converted) << result.Message;
    return session;
}

std::vector<std::uint8_t> UpperSession(const char* version, std::int32_t count, const std::vector<Bytes>& entries) {
    const bool newer = std::string_view(version).starts_with("Audition 2") ||
                       std::string_view(version).starts_with("Audition 3");
    return SesBuilder().Version(version).Chunk("TRKS", UpperTrksPayload(newer, count, entries)).Build();
}

TEST(TrackChunks, LowerCaseRecordsOfEveryVersion) {
    TrksRecord vocal;
    vocal.Left = 0.5;
    vocal.Right = 0.8;
    vocal.StateCode = 1;
    vocal.Name = "Vocal ";
    vocal.OutputByte = 3;
    vocal.TrackId = 7;
    TrksRecord guitar;
    guitar.Left = 1.0;
    guitar.Right = 0.25;
    guitar.StateCode = 2;
    guitar.Name = "Guitar";
    guitar.TrackId = 8;

    struct Case {
        const char* Version;
        int RecordSize;
        bool SecondHeaderField;
        bool OutputAndId;
    };
    for (const Case& c : {Case{"Cool Edit 2000 1.0", 72, false, false}, Case{"Cool Edit Pro 1.2a", 72, false, false},
                          Case{"Cool Edit Pro 2.00", 96, false, false}, Case{"Cool Edit Pro 2.1", 104, false, true},
                          Case{"Audition 1.0", 104, false, true}, Case{"Audition 1.5", 152, false, true},
                          Case{"Audition 2.0", 152, true, true}, Case{"Audition 3.0", 152, true, true}}) {
        const Session session = ReadOk(
            SesBuilder().Version(c.Version).Chunk("trks", TrksPayload(c.RecordSize, c.SecondHeaderField, {vocal, guitar})).Build());
        // Pan from the left/right cut law; the gains ordered high, low.
        const std::string out = c.OutputAndId ? "3" : "0";
        EXPECT_EQ(Describe(session.SesTracks),
                  (Strings{"'Vocal' id " + std::string(c.OutputAndId ? "7" : "1") +
                               " gains 0.8/0.5 state 1 solo 0 pan 37.5 bus 0 out " + out +
                               " height 66 phase 0 post 0 mode 1",
                           "'Guitar' id " + std::string(c.OutputAndId ? "8" : "2") +
                               " gains 1/0.25 state 2 solo 0 pan -75 bus 0 out 0 height 66 phase 0 post 0 mode 1"}))
            << c.Version;
    }
}

TEST(TrackChunks, Audition15TakesTheIdAt56WhenItIsTheEntryNumber) {
    TrksRecord repaired;
    repaired.TrackId = 0;
    repaired.IdAt56 = 1;
    TrksRecord kept;
    kept.TrackId = 9;
    kept.IdAt56 = 5;
    const auto payload = TrksPayload(152, false, {repaired, kept});
    Session session = ReadOk(SesBuilder().Version("Audition 1.5").Chunk("trks", payload).Build());
    ASSERT_EQ(session.SesTracks.size(), 2u);
    EXPECT_EQ(session.SesTracks[0].TrackId, 1);
    EXPECT_EQ(session.SesTracks[1].TrackId, 9);
    session = ReadOk(SesBuilder().Version("Audition 3.0").Chunk("trks", TrksPayload(152, true, {repaired, kept})).Build());
    EXPECT_EQ(session.SesTracks[0].TrackId, 0);
}

// The walk goes on behind the payload, so the records must lie inside it:
// measured against the file, each of many small chunks could read all the
// records behind it again, taking time by the square of the file's size.
TEST(TrackChunks, LowerCaseRecordsLieInsideTheirChunk) {
    TrksRecord record;
    record.Name = "One";
    const Bytes one = TrksPayload(104, false, {record});
    Bytes payload = Bytes().Int32(2);  // the count claims a second record
    for (std::size_t i = 4; i < one.Size(); ++i) payload.Byte(one.Data()[i]);
    ExpectFailure(SesBuilder().Version("Audition 1.0").Chunk("trks", payload).Chunk("trks", one).Build(), "trks", 40,
                  "the track record count 2 at offset 40 needs at least 208 bytes from offset 44, but the chunk has 104 "
                  "there");
}

// An entry with every part filled, and a plain one behind it that only
// its RecordLength can reach.
TEST(TrackChunks, AnUpperCaseEntryFillsEveryList) {
    TrackEntry full = NamedEntry(5, u"  Lead\u0141 ");
    full.SoloByte = 23;   // "23": 2
    full.StateByte = 30;  // "30": 3
    full.Height = 77;
    full.BusId = 20005;
    full.AutomationMode = 2;
    full.OutputBusId = 30000;
    full.RackPostFader = 1;
    full.Phase = 0.6;
    full.Eq = {0.4, 100, 3, 110, 55, 1000, -6, 120, 9000, 9, 130, 66, 77};
    full.Volume = {{0, 0.5}, {100, 0.75}};
    full.Mute = {{0, 1.0}, {50, 1.0 / 3.0}, {60, 0.3}};
    full.Pan = {{0, -40.0}, {10, 0.0}, {20, 100.0}};
    full.Rack = {AutomatedParameter("Wet", {{0, 0.1}, {5, 2.0 / 3.0}}), AutomatedParameter("Dry", {{0, 0.5}})};
    SendEntry first;
    first.OutputBus = 20002;
    first.Level = 0.75;
    first.PreFader = 1;
    first.Parameters = {AutomatedParameter("Power On/Off", {{0, 1.0}, {9, 0.0}}),
                        AutomatedParameter("Pan", {{0, -50.0}}, 25.0)};
    SendEntry second;
    second.OutputBus = 20003;
    second.Level = 0.5;
    second.Parameters = {AutomatedParameter("Level", {{0, 0.5}, {4, 1.0}})};
    full.Sends = {first, second};
    full.EffectList = Bytes().Int32(3).Zeros(64);

    TrackEntry plain = NamedEntry(6, u"Plain");
    const Session session = ReadOk(UpperSession("Audition 3.0", 2, {TrackEntryBytes(full), TrackEntryBytes(plain)}));

    // A unit above 255 gives its two bytes; the name is trimmed.
    EXPECT_EQ(Describe(session.SesTracks),
              (Strings{"'LeadA\x01' id 5 gains 0.5/0.5 state 3 solo 2 pan -40 bus 20005 out 30000 height 77 "
                       "phase 1 post 1 mode 2",
                       "'Plain' id 6 gains 1/1 state 0 solo 0 pan 0 bus 0 out 0 height 0 phase 0 post 0 mode 1"}));
    // Parameters 5, 12 and 13 keep nothing; 0.4 enables nothing.
    EXPECT_EQ(Describe(session.TrackEqs), (Strings{"5 low 100/3/110 mid 1000/-6/120 high 9000/9/130 on 0",
                                                   "6 low 0/0/0 mid 0/0/0 high 0/0/0 on 0"}));
    EXPECT_EQ(Describe(session.TrackVolumePoints), (Strings{"5 @0 0.5", "5 @100 0.75"}));
    EXPECT_EQ(Describe(session.TrackMutePoints), (Strings{"5 @0 1", "5 @50 0.333333333333", "5 @60 0.3"}));
    EXPECT_EQ(Describe(session.TrackPanPoints), (Strings{"5 @0 0.7", "5 @10 0.5", "5 @20 0"}));
    // A single rack point is no automation.
    EXPECT_EQ(Describe(session.RackAutomation), (Strings{"5 slot 0 'Wet' @0 0.1", "5 slot 0 'Wet' @5 0.666666666667"}));
    // Send points from two up; "Pan" as a fraction, and its last value
    // reaches the slot whatever its count.
    EXPECT_EQ(Describe(session.SendAutomation),
              (Strings{"5 slot 0 'Power On/Off' @0 1", "5 slot 0 'Power On/Off' @9 0", "5 slot 1 'Level' @0 0.5",
                       "5 slot 1 'Level' @4 1"}));
    EXPECT_EQ(Describe(session.TrackSends),
              (Strings{"5 [0: bus 20002 level 0.75 pan 25 pre 1] [1: bus 20003 level 0.5 pan 0 pre 0]", "6"}));
}

TEST(TrackChunks, SendsPast16AreNotKept) {
    TrackEntry entry = NamedEntry(1, u"Many");
    for (int i = 1; i <= 17; ++i) {
        SendEntry send;
        send.OutputBus = 20000 + i;
        send.Parameters = {AutomatedParameter("Pan", {{0, 0.0}, {1, 0.0}}, i)};
        entry.Sends.push_back(send);
    }
    const Session session = ReadOk(UpperSession("Audition 2.0", 1, {TrackEntryBytes(entry)}));
    ASSERT_EQ(session.TrackSends.size(), 1u);
    EXPECT_EQ(session.TrackSends[0].Slots[15].OutputBus, 20016);
    EXPECT_EQ(session.TrackSends[0].Slots[15].Pan, 16);
    EXPECT_EQ(session.SendAutomation.size(), 32u);
    EXPECT_EQ(session.SendAutomation.back().SendSlot, 15);
}

TEST(TrackChunks, AMuteCountAbove250GivesWayToTheOne16BytesOn) {
    TrackEntry entry = NamedEntry(1, u"Mute");
    entry.Mute = {{0, 0.0}, {5, 1.0}};
    entry.MuteCountAbove250 = 251;
    const Session session = ReadOk(UpperSession("Audition 3.0", 1, {TrackEntryBytes(entry)}));
    EXPECT_EQ(Describe(session.TrackMutePoints), (Strings{"1 @0 0", "1 @5 1"}));
}

TEST(TrackChunks, MarkerEntries) {
    // Audition 1.5 has no second header field. The skipped entry counts
    // one; the video entry, counted last, still takes the entry behind it.
    const auto bytes = UpperSession("Audition 1.5", 2,
                                    {MarkerEntryBytes(259999, u"Gone"), MarkerEntryBytes(490000, u" Film\u0141\u00E9 "),
                                     TrackEntryBytes(NamedEntry(3, u"Behind"))});
    const Session session = ReadOk(bytes);
    EXPECT_EQ(Describe(session.SesTracks),
              (Strings{"'Film?\xE9' id 490000 gains 1/1 state 0 solo 0 pan 0 bus 0 out 10000 height 0 phase 0 post 0 "
                       "mode 0",
                       "'Behind' id 3 gains 1/1 state 0 solo 0 pan 0 bus 0 out 0 height 0 phase 0 post 0 mode 1"}));

    // With a charset the name is in that charset's bytes, which the
    // document is recoded from: in ISO-8859-2 the L with stroke is A3 and
    // the e acute E9.
    ConvertOptions latin2;
    latin2.Charset = "ISO-8859-2";
    Session recoded;
    ASSERT_EQ(ReadSesBytes(bytes, recoded, latin2).Status, ImportStatus::Converted);
    EXPECT_EQ(recoded.SesTracks[0].Name, "Film\xA3\xE9");
}

TEST(TrackChunks, TheWalkGoesOnWhereTheLastEntryEnded) {
    // The chunk claims more than its entries hold; the next chunk header
    // stands behind the last entry. A second track chunk replaces the
    // tracks of the first while the point lists grow.
    TrackEntry first = NamedEntry(1, u"First");
    first.Volume = {{0, 0.5}};
    TrackEntry second = NamedEntry(2, u"Second");
    second.Volume = {{0, 0.25}};
    const Bytes one = UpperTrksPayload(true, 1, {TrackEntryBytes(first)});
    const auto bytes = SesBuilder()
                           .Version("Audition 3.0")
                           .ChunkWithLength("TRKS", static_cast<std::int32_t>(one.Size()) + 5000, one)
                           .Chunk("TRKS", UpperTrksPayload(true, 1, {TrackEntryBytes(second)}))
                           .Build();
    const Session session = ReadOk(bytes);
    ASSERT_EQ(session.SesTracks.size(), 1u);
    EXPECT_EQ(session.SesTracks[0].Name, "Second");
    EXPECT_EQ(Describe(session.TrackVolumePoints), (Strings{"1 @0 0.5", "2 @0 0.25"}));
}

// Everything a track entry reads lies inside its record, so an entry may
// read at most twice its own size. Here the RecordLength says 600 while the
// volume section alone holds 1600 bytes of points: lists that run outside
// their entry would let each of many chunks read the same points again, and
// the lists would pile up by the square of the file's size.
TEST(TrackChunks, AnEntryThatReadsFarOutsideItselfFails) {
    TrackEntry wide = NamedEntry(1, u"Wide");
    for (int i = 0; i < 100; ++i) wide.Volume.push_back({i, 0.5});
    wide.RecordLengthOverride = 600;
    // The walk ends behind the claimed record, at 82 + 600.
    const auto bytes = SesBuilder()
                           .Version("Audition 3.0")
                           .Chunk("TRKS", UpperTrksPayload(true, 1, {TrackEntryBytes(wide)}))
                           .DeclaredLength(683)
                           .Build();
    // At the volume count, 412 behind the section's name.
    ExpectFailure(bytes, "TRKS", 956,
                  "the track entry at offset 48 reads more than twice its own 634 bytes at offset 956: its lists run "
                  "outside it or over the same bytes again and again");
}

// Hostile entries fail the file at the field that is wrong.
TEST(TrackChunks, HostileEntriesFailWithTheirOffset) {
    struct Case {
        std::vector<std::uint8_t> Bytes;
        std::int64_t Offset;
        std::string Message;
    };
    TrackEntry longRecord = NamedEntry(1, u"Long");
    longRecord.RecordLengthOverride = 0x7FFFFFF0;
    TrackEntry manyLanes = NamedEntry(1, u"Lanes");
    manyLanes.LaneCountOverride = 100000000;
    const Bytes entry = TrackEntryBytes(NamedEntry(1, u"Cut"));
    Bytes cut;
    for (std::size_t i = 0; i < 500; ++i) cut.Byte(entry.Data()[i]);

    // The payload starts at 40, behind a "vers" chunk of 20 bytes; the
    // first entry at 48, its record at 78.
    const std::vector<Case> cases{
        {UpperSession("Audition 3.0", 1000000, {entry}), 40,
         "the track entry count 1000000 at offset 40 needs at least 24000000 bytes from offset 48, but the file has " +
             std::to_string(entry.Size()) + " there"},
        {UpperSession("Audition 3.0", 1, {TrackEntryBytes(longRecord)}), 78,
         "the track record at offset 78 has length 2147483632, which runs past the end of the file (" +
             std::to_string(48 + TrackEntryBytes(longRecord).Size()) + " bytes)"},
        {AbsurdPointCountSession(), 978,
         "the automation point count 2147483647 at offset 978 needs at least 34359738352 bytes from offset 982, but "
         "the file has 2356 there"},
        {UpperSession("Audition 3.0", 1, {TrackEntryBytes(manyLanes)}), 1834,
         "the automation lane count 100000000 at offset 1834 needs at least 800000000 bytes from offset 1838, but the "
         "file has 1480 there"},
        {UpperSession("Audition 3.0", 1, {cut}), 78,
         "the track record at offset 78 has length " + std::to_string(entry.Size() - 34) +
             ", which runs past the end of the file (548 bytes)"},
    };
    for (const Case& c : cases) ExpectFailure(c.Bytes, "TRKS", c.Offset, c.Message);
}

// The track EQ chunk "tkeq"; how its records find their tracks is pinned by
// the golden documents of the four versions that read it.
TEST(TrackChunks, OnlyTheFourVersionsOfTheEqChunkReadIt) {
    for (const char* version : {"Cool Edit Pro 2.00", "Cool Edit Pro 2.1", "Audition 1.0", "Audition 1.5",
                                "Cool Edit Pro 1.2", "Cool Edit 2000 1.0", "Audition 2.0", "Audition 3.0"}) {
        Session session;
        const TkeqRecord record{.TrackKey = 2, .LowFrequency = 100, .LowGain = 1, .HighFrequency = 9000, .HighGain = 2,
                                .MidFrequency = 1500, .MidQ = 300, .MidGain = -4, .LowQ = 110, .HighQ = 120};
        const auto bytes = SesBuilder().Version(version).Chunk("tkeq", TkeqPayload({record})).Build();
        ASSERT_EQ(ReadSesBytes(bytes, session, {}).Status, ImportStatus::Converted) << version;
        const bool reads = std::string_view(version).starts_with("Audition 1") ||
                           std::string_view(version).starts_with("Cool Edit Pro 2");
        // The middle Q stands in front of the middle gain.
        EXPECT_EQ(Describe(session.TrackEqs),
                  reads ? Strings{"2 low 100/1/110 mid 1500/-4/300 high 9000/2/120 on 1"} : Strings{})
            << version;
    }
}

TEST(TrackChunks, EqCountsBeyondTheLoopCounterOrTheChunkFail) {
    ExpectFailure(SesBuilder().Version("Audition 1.5").Chunk("tkeq", Bytes().Int32(32768)).Build(), "tkeq", 40,
                  "the EQ record count 32768 at offset 40 is above 32767, the most this list can hold");

    // The records of a chunk lie inside it: a count that reaches into the
    // chunk behind would let every chunk read the rest of the file again.
    ExpectFailure(SesBuilder()
                      .Version("Audition 1.5")
                      .Chunk("tkeq", Bytes().Int32(2).Zeros(88))
                      .Chunk("tkeq", Bytes().Int32(0).Zeros(100))
                      .Build(),
                  "tkeq", 40,
                  "the EQ record count 2 at offset 40 needs at least 176 bytes from offset 44, but the chunk has 88 there");
}

}  // namespace
}  // namespace morvanta::testing

// The track chunks: the record layouts of "trks" per version, the entries,
// sections, lanes, rack block and sends of "TRKS", and "tkeq".
#include <gtest/gtest.h>

#include "TestSupport.h"
#include "TrackPayloads.h"

namespace morvanta::testing {
namespace {

std::vector<std::uint8_t> UpperSession(const char* version, std::int32_t count, const std::vector<Bytes>& entries) {
    const bool newer = std::string_view(version).starts_with("Audition 2") ||
                       std::string_view(version).starts_with("Audition 3");
    return SesBuilder().Version(version).Chunk("TRKS", UpperTrksPayload(newer, count, entries)).Build();
}

// Pan from the left/right cut law, the gains ordered high, low; the output
// byte and the id where the record has them. Audition 1.5 alone takes the
// id at 56 when that is the entry's number (the third record), and only then.
TEST(TrackChunks, LowerCaseRecordsOfEveryVersion) {
    const std::vector<TrksRecord> records{
        {.Left = 0.5, .Right = 0.8, .StateCode = 1, .Name = "Vocal ", .OutputByte = 3, .TrackId = 7},
        {.Left = 1.0, .Right = 0.25, .StateCode = 2, .Name = "Guitar", .TrackId = 8},
        {.Name = "Repaired", .TrackId = 0, .IdAt56 = 3},
        {.Name = "Kept", .TrackId = 9, .IdAt56 = 5}};
    struct Case {
        const char* Version;
        int RecordSize;
        bool SecondHeaderField;
    };
    std::string dumps;
    for (const Case& c : {Case{"Cool Edit 2000 1.0", 72, false}, Case{"Cool Edit Pro 1.2a", 72, false},
                          Case{"Cool Edit Pro 2.00", 96, false}, Case{"Cool Edit Pro 2.1", 104, false},
                          Case{"Audition 1.0", 104, false}, Case{"Audition 1.5", 152, false},
                          Case{"Audition 2.0", 152, true}, Case{"Audition 3.0", 152, true}}) {
        const auto payload = TrksPayload(c.RecordSize, c.SecondHeaderField, records);
        dumps += TitledDump(c.Version, ReadOk(SesBuilder().Version(c.Version).Chunk("trks", payload).Build()));
    }
    ExpectGolden("trks-records.model.txt", dumps);
}

// An entry with every part filled.
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

    // A plain entry behind it that only its RecordLength can reach; its mute
    // count above 250 gives way to the one 16 bytes on.
    TrackEntry plain = NamedEntry(6, u"Plain");
    plain.Mute = {{0, 0.0}, {5, 1.0}};
    plain.MuteCountAbove250 = 251;
    // A unit above 255 gives its two bytes and the name is trimmed; EQ
    // parameters 5, 12 and 13 keep nothing and 0.4 enables nothing; a single
    // rack point is no automation; send points count from two, "Pan" as a
    // fraction, and its last value reaches the slot whatever its count.
    ExpectModelGolden("trks-upper-entries",
                      ReadOk(UpperSession("Audition 3.0", 2, {TrackEntryBytes(full), TrackEntryBytes(plain)})));
}

TEST(TrackChunks, SendsPast16AreNotKept) {
    TrackEntry entry = NamedEntry(1, u"Many");
    for (int i = 1; i <= 17; ++i) {
        SendEntry send;
        send.OutputBus = 20000 + i;
        send.Parameters = {AutomatedParameter("Pan", {{0, 0.0}, {1, 0.0}}, i)};
        entry.Sends.push_back(send);
    }
    ExpectModelGolden("trks-sends-past-16", ReadOk(UpperSession("Audition 2.0", 1, {TrackEntryBytes(entry)})));
}

TEST(TrackChunks, MarkerEntries) {
    // Audition 1.5 has no second header field. The skipped entries (250000
    // to 259999) count one each; the video entry, counted last, still takes
    // the entry behind it, whose marker 260000 is none of the two kinds.
    TrackEntry behind = NamedEntry(3, u"Behind");
    behind.Marker = 260000;
    const auto bytes = UpperSession("Audition 1.5", 3,
                                    {MarkerEntryBytes(259999, u"Gone"), MarkerEntryBytes(250000, u"Gone too"),
                                     MarkerEntryBytes(490000, u" Film\u0141\u00E9 "), TrackEntryBytes(behind)});
    ExpectModelGolden("trks-marker-entries", ReadOk(bytes));

    // With a charset the name is in that charset's bytes, which the
    // document is recoded from: in ISO-8859-2 the L with stroke is A3 and
    // the e acute E9.
    ConvertOptions latin2;
    latin2.Charset = "ISO-8859-2";
    EXPECT_EQ(ReadOk(bytes, latin2).SesTracks.at(0).Name, "Film\xA3\xE9");
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
    ExpectModelGolden("trks-second-chunk", ReadOk(bytes));
}

// Hostile records fail the file at the field that is wrong. Their lists lie
// inside their chunk and their entry: measured against the file, each of many
// small chunks could read all the records behind it again, taking time by
// the square of the file's size.
TEST(TrackChunks, HostileRecordsFailWithTheirOffset) {
    // "trks": the count claims a second record, which only the next chunk holds.
    TrksRecord record;
    record.Name = "One";
    const Bytes one = TrksPayload(104, false, {record});
    Bytes twoOfOne = Bytes().Int32(2);
    for (std::size_t i = 4; i < one.Size(); ++i) twoOfOne.Byte(one.Data()[i]);
    // An entry may read at most twice its own size. Here the RecordLength
    // says 600 while the volume section alone holds 1600 bytes of points;
    // the walk ends behind the claimed record, at 82 + 600.
    TrackEntry wide = NamedEntry(1, u"Wide");
    for (int i = 0; i < 100; ++i) wide.Volume.push_back({i, 0.5});
    wide.RecordLengthOverride = 600;
    const auto wideBytes = SesBuilder()
                               .Version("Audition 3.0")
                               .Chunk("TRKS", UpperTrksPayload(true, 1, {TrackEntryBytes(wide)}))
                               .DeclaredLength(683)
                               .Build();
    TrackEntry longRecord = NamedEntry(1, u"Long");
    longRecord.RecordLengthOverride = 0x7FFFFFF0;
    TrackEntry manyLanes = NamedEntry(1, u"Lanes");
    manyLanes.LaneCountOverride = 100000000;
    const Bytes entry = TrackEntryBytes(NamedEntry(1, u"Cut"));
    Bytes cut;
    for (std::size_t i = 0; i < 500; ++i) cut.Byte(entry.Data()[i]);
    const auto eq = [](const Bytes& first, const Bytes& second) {
        return SesBuilder().Version("Audition 1.5").Chunk("tkeq", first).Chunk("tkeq", second).Build();
    };

    // The payload starts at 40, behind a "vers" chunk of 20 bytes; the
    // first entry at 48, its record at 78.
    ExpectFailures({
        {SesBuilder().Version("Audition 1.0").Chunk("trks", twoOfOne).Chunk("trks", one).Build(), "trks", 40,
         "the track record count 2 at offset 40 needs at least 208 bytes from offset 44, but the chunk has 104 there"},
        // At the volume count, 412 behind the section's name.
        {wideBytes, "TRKS", 956,
         "the track entry at offset 48 reads more than twice its own 634 bytes at offset 956: its lists run "
         "outside it or over the same bytes again and again"},
        {UpperSession("Audition 3.0", 1000000, {entry}), "TRKS", 40,
         "the track entry count 1000000 at offset 40 needs at least 24000000 bytes from offset 48, but the file has " +
             std::to_string(entry.Size()) + " there"},
        {UpperSession("Audition 3.0", 1, {TrackEntryBytes(longRecord)}), "TRKS", 78,
         "the track record at offset 78 has length 2147483632, which runs past the end of the file (" +
             std::to_string(48 + TrackEntryBytes(longRecord).Size()) + " bytes)"},
        {AbsurdPointCountSession(), "TRKS", 978,
         "the automation point count 2147483647 at offset 978 needs at least 34359738352 bytes from offset 982, but "
         "the file has 2356 there"},
        {UpperSession("Audition 3.0", 1, {TrackEntryBytes(manyLanes)}), "TRKS", 1834,
         "the automation lane count 100000000 at offset 1834 needs at least 800000000 bytes from offset 1838, but the "
         "file has 1480 there"},
        {UpperSession("Audition 3.0", 1, {cut}), "TRKS", 78,
         "the track record at offset 78 has length " + std::to_string(entry.Size() - 34) +
             ", which runs past the end of the file (548 bytes)"},
        {eq(Bytes().Int32(32768), Bytes()), "tkeq", 40,
         "the EQ record count 32768 at offset 40 is above 32767, the most this list can hold"},
        // A count that reaches into the chunk behind would let every chunk read the rest of the file again.
        {eq(Bytes().Int32(2).Zeros(88), Bytes().Int32(0).Zeros(100)), "tkeq", 40,
         "the EQ record count 2 at offset 40 needs at least 176 bytes from offset 44, but the chunk has 88 there"},
    });
}

// The track EQ chunk "tkeq"; how its records find their tracks is pinned by
// the golden documents of the four versions that read it.
TEST(TrackChunks, OnlyTheFourVersionsOfTheEqChunkReadIt) {
    // The middle Q stands in front of the middle gain.
    const std::vector<TkeqRecord> records{{.TrackKey = 2, .LowFrequency = 100, .LowGain = 1, .HighFrequency = 9000,
                                           .HighGain = 2, .MidFrequency = 1500, .MidQ = 300, .MidGain = -4, .LowQ = 110,
                                           .HighQ = 120},
                                          {.TrackKey = 10000, .LowFrequency = 50, .HighQ = 7}};
    std::string dumps;
    for (const char* version : {"Cool Edit Pro 2.00", "Cool Edit Pro 2.1", "Audition 1.0", "Audition 1.5",
                                "Cool Edit Pro 1.2", "Cool Edit 2000 1.0", "Audition 2.0", "Audition 3.0"})
        dumps += TitledDump(version, ReadOk(SesBuilder().Version(version).Chunk("tkeq", TkeqPayload(records)).Build()));
    ExpectGolden("tkeq-records.model.txt", dumps);
}

}  // namespace
}  // namespace morvanta::testing

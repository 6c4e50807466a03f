// The block chunks "bk25", "bk20", "blk " and "blk2" of every writer version,
// read from built files into the raw block lists.
#include <gtest/gtest.h>

#include <cmath>

#include "BlockPayloads.h"
#include "ModelPrinters.h"
#include "SesBuilder.h"
#include "TestSupport.h"
#include "reader/ChunkReaders.h"

namespace morvanta::testing {
namespace {

// With the version chunk padded to 32 bytes, the next chunk stands at 52
// and its payload at 60.
constexpr std::int64_t kChunk = 52;
constexpr std::int64_t kPayload = 60;

struct TaggedPayload {
    std::string Tag;
    Bytes Payload;
};

// Walks a file of the version and the chunks; the file must convert.
Session Walk(std::string_view version, const std::vector<TaggedPayload>& chunks) {
    SesBuilder builder;
    builder.Version(version, 32);
    for (const TaggedPayload& chunk : chunks) builder.Chunk(chunk.Tag, chunk.Payload);
    Session session;
    const ImportResult result = ReadSesBytes(builder.Build(), session, {});
    EXPECT_EQ(result.Status, ImportStatus::Converted) << result.Message;
    return session;
}

// An Audition 1.5 block names a row of the tracks chunk read before it. The
// tracks reader is not part of these tests, so the rows are put into the
// session and the block reader is run on its chunk directly.
Session ReadAfterTracks(std::string_view version, ChunkReader reader, const std::string& tag, const Bytes& payload,
                        const std::vector<std::int32_t>& trackIds, std::vector<Diagnostic>& warnings) {
    const auto bytes = SesBuilder().Version(version, 32).Chunk(tag, payload).Build();
    Session session;
    session.SesVersion = version;
    for (std::int32_t id : trackIds) {
        SesTrack track;
        track.TrackId = id;
        session.SesTracks.push_back(track);
    }
    const ByteReader file(bytes);
    const ConvertOptions options;
    ReadContext ctx{session, file, options, false, static_cast<std::int32_t>(bytes.size()), warnings, nullptr};
    const ChunkHeader chunk{tag, kChunk, kPayload, static_cast<std::int32_t>(payload.Size())};
    EXPECT_EQ(reader(ctx, chunk), chunk.End());
    return session;
}

// What a reader keeps of a block whose gains are equal.
BlockRecord Raw(const Block& b, bool withGroup = true, bool withHue = true) {
    return BlockRecord{b.BlockId, b.WaveId,  b.LeftGain, b.RightGain,           b.Start,
                       b.Length,  b.SourceStart, b.Flags, b.TrackId, withGroup ? b.GroupId : 0,
                       withHue ? b.Hue : 0};
}

struct GainCase {
    std::string Version;
    std::string Tag;
    double Left;   // expected, from left 1.0 and right 0.5
    double Right;
};

// The chunk that each version's golden document reads (its clip "Rhythm" has
// gains 0.5 and 1.0) is left to that document.
TEST(BlockChunks, DifferingGainsFollowTheClipGainTableOfTheirChunkAndVersion) {
    const double equalPower = std::sqrt((1.0 * 1.0 + 0.5 * 0.5) / 2);  // level of the equal-power law
    const double mean = (1.0 + 0.5) / 2;
    const double rightAsDecibels = std::pow(10.0, 0.5 / 20);          // Cool Edit 2000 "blk " right gain
    const std::vector<GainCase> cases{
        {"Audition 2.0", "bk20", equalPower, equalPower},  // the 72-byte layout outside the old versions
        {"Cool Edit Pro 2.1", "bk25", equalPower, equalPower},
        {"Cool Edit Pro 1.2", "bk25", equalPower, equalPower},
        {"Cool Edit 2000 1.0", "bk20", equalPower, equalPower},
        {"Audition 1.5", "bk20", mean, mean},
        {"Audition 1.0", "blk ", 1.0, 0.5},
        {"Cool Edit 2000 1.0", "blk ", mean, rightAsDecibels},
        {"Cool Edit Pro 2.1", "blk ", mean, mean},
        {"Audition 1.5", "blk ", mean, mean},
        {"Audition 2.0", "blk ", equalPower, equalPower},
        {"Audition 3.0", "blk ", equalPower, equalPower},
    };
    const Block block{.LeftGain = 1.0, .RightGain = 0.5};
    for (const GainCase& c : cases) {
        const bool oldBk20 = c.Tag == "bk20" && (c.Version.starts_with("Cool Edit Pro 2.") || c.Version == "Audition 1.0");
        const Bytes payload = c.Tag == "blk " ? BlkPayload(c.Version, {block})
                              : oldBk20        ? Bk20Payload({block})
                                               : Bk25Payload(c.Version, {block});
        Session s;
        if (c.Version == "Audition 1.5") {
            std::vector<Diagnostic> warnings;
            s = ReadAfterTracks(c.Version, c.Tag == "blk " ? ReadBlkChunk : ReadBk25Chunk, c.Tag, payload, {1},
                                warnings);
        } else {
            s = Walk(c.Version, {{c.Tag, payload}});
        }
        const auto& list = c.Tag == "blk " ? s.BlkRecords : oldBk20 ? s.Bk20Records : s.Bk25Records;
        ASSERT_EQ(list.size(), 1u) << c.Version << " " << c.Tag;
        EXPECT_NEAR(list[0].LeftGain, c.Left, 1e-12) << c.Version << " " << c.Tag;
        EXPECT_NEAR(list[0].RightGain, c.Right, 1e-12) << c.Version << " " << c.Tag;
    }
}

TEST(BlockChunks, EqualGainsStayExactlyAsStored) {
    // 0.3 would come back from decibels as 0.29999999999999993.
    const Block block{.LeftGain = 0.3, .RightGain = 0.3};
    const Block silent{.BlockId = 2, .LeftGain = 0.0, .RightGain = 0.0};
    const Session bk25 = Walk("Audition 3.0", {{"bk25", Bk25Payload("Audition 3.0", {block, silent})}});
    const Session bk20 = Walk("Cool Edit Pro 2.1", {{"bk20", Bk20Payload({block, silent})}});
    const Session blk = Walk("Cool Edit 2000 1.0", {{"blk ", BlkPayload("Cool Edit 2000 1.0", {block, silent})}});
    for (const auto* list : {&bk25.Bk25Records, &bk20.Bk20Records, &blk.BlkRecords}) {
        ASSERT_EQ(list->size(), 2u);
        EXPECT_EQ((*list)[0].LeftGain, 0.3);
        EXPECT_EQ((*list)[0].RightGain, 0.3);
        EXPECT_EQ((*list)[1].LeftGain, 0.0);
        EXPECT_EQ((*list)[1].RightGain, 0.0);
    }
}

TEST(BlockChunks, Audition30FadeRowsAreNumberedByBlockAroundAVideoBlock) {
    const Block audio{.BlockId = 1, .TrackId = 1};
    const Block video{.BlockId = 2, .WaveId = 9, .TrackId = 490000};
    const Block later{.BlockId = 3, .TrackId = 2};
    const BlockFade first{100, 200, 1, 2, 1, 0};
    const BlockFade last{0, 300, 19, 19, 0, 1};
    // A block size of 80: the video block's record takes 80 + 522 bytes.
    const Session s =
        Walk("Audition 3.0", {{"bk25", Bk25Payload("Audition 3.0", {audio, video, later}, {first, {}, last}, 80)}});
    EXPECT_EQ(s.Bk25Records, (std::vector<BlockRecord>{Raw(audio), Raw(video), Raw(later)}));
    EXPECT_EQ(s.Bk25Fades, (std::vector<Bk25Fade>{{100, 200, 1, 2, 1, 0}, {}, {0, 300, 19, 19, 0, 1}}));
}

TEST(BlockChunks, Audition20BlocksOfTheSpecialTracksCarryARecordOfTheirOwn) {
    const Block special{.BlockId = 1, .TrackId = 250000, .SpecialBytes = 30};
    // 260000 is past the range: its length field is not followed by bytes.
    const Block pastRange{.BlockId = 2, .TrackId = 260000, .SpecialBytes = 30};
    const Block below{.BlockId = 3, .TrackId = 249999};
    const Block video{.BlockId = 4, .TrackId = 490000};
    const Block lastSpecial{.BlockId = 5, .TrackId = 259999, .SpecialBytes = 4};
    const Session s = Walk("Audition 2.0", {{"bk25", Bk25Payload("Audition 2.0", {special, pastRange, below, video,
                                                                                 lastSpecial})}});
    EXPECT_EQ(s.Bk25Records, (std::vector<BlockRecord>{Raw(special), Raw(pastRange), Raw(below), Raw(video),
                                                         Raw(lastSpecial)}));
}

TEST(BlockChunks, ALaterChunkReplacesAndAnEmptyOneChangesNothing) {
    // A negative block count reads no record, as a loop up to it would.
    EXPECT_TRUE(Walk("Audition 2.0", {{"blk ", Bytes().Int32(-1)}}).BlkRecords.empty());

    const Block one{.BlockId = 1};
    const Block two{.BlockId = 2};
    const Block nine{.BlockId = 9, .SourceStart = 77};
    // The "blk " of length -8 leaves the walk at its payload, where the next
    // chunk header stands.
    const auto bytes = SesBuilder()
                           .Version("Audition 2.0", 32)
                           .Chunk("bk25", Bk25Payload("Audition 2.0", {one}))
                           .Chunk("bk25", Bk25Payload("Audition 2.0", {two}))
                           .ChunkWithLength("bk25", 0, Bytes())
                           .ChunkWithLength("blk ", -8, Bytes())
                           .Chunk("blk ", BlkPayload("Audition 2.0", {nine}))
                           .Build();
    Session s;
    const ImportResult result = ReadSesBytes(bytes, s, {});
    ASSERT_EQ(result.Status, ImportStatus::Converted) << result.Message;
    EXPECT_EQ(s.Bk25Records, (std::vector<BlockRecord>{Raw(two)}));
    EXPECT_EQ(s.BlkRecords, (std::vector<BlockRecord>{Raw(nine, false, false)}));
}

TEST(BlockChunks, BlkRecordsFollowTheColumnsOfTheirVersion) {
    const Block block{.BlockId = 5, .WaveId = 7, .Start = 100, .Length = 200, .SourceStart = 400, .Flags = 6,
                      .TrackId = 2, .GroupId = 3, .Name = "take one"};
    const BlockRecord oldest{5, 7, 1.0, 1.0, 100, 200, 400, 0, 2, 0, 0};  // flags and group stepped over
    const BlockRecord ce2000{5, 7, 1.0, 1.0, 100, 200, 400, 6, 2, 3, 0};
    const BlockRecord wide{5, 7, 1.0, 1.0, 100, 200, 400, 6, 2, 0, 0};
    for (const auto& [version, expected] : std::vector<std::pair<std::string, BlockRecord>>{
             {"Cool Edit Pro 1.2", oldest},
             {"Audition 1.0", oldest},
             {"Cool Edit 2000 1.0", ce2000},
             {"Cool Edit Pro 2.1", wide},  // source start at 64
             {"Audition 2.0", wide},       // source start at 28
             {"Audition 3.0", wide}}) {
        const Session s = Walk(version, {{"blk ", BlkPayload(version, {block})}});
        EXPECT_EQ(s.BlkRecords, std::vector<BlockRecord>{expected}) << version;
    }
    // Cool Edit Pro 2.00 has no "blk " of its own.
    EXPECT_TRUE(Walk("Cool Edit Pro 2.00", {{"blk ", BlkPayload("Cool Edit Pro 2.1", {block})}}).BlkRecords.empty());
}

TEST(BlockChunks, Blk2HuesAreUnsignedBytesAndAChunkAppends) {
    const Session s = Walk("Cool Edit 2000 1.0", {{"blk2", Blk2Payload({{5, 200}, {6, 17}})},
                                                  {"blk2", Blk2Payload({{7, 255}})}});
    EXPECT_EQ(s.Blk2Records, (std::vector<Blk2Record>{{5, 200}, {6, 17}, {7, 255}}));
    EXPECT_TRUE(Walk("Cool Edit Pro 2.1", {{"blk2", Blk2Payload({{5, 200}})}}).Blk2Records.empty());
}

TEST(BlockChunks, Audition15BlocksNameTheirTrackByRow) {
    auto onRow = [](std::int32_t blockId, std::int32_t row) { return Block{.BlockId = blockId, .TrackId = row}; };
    std::vector<Diagnostic> warnings;
    const Session blk = ReadAfterTracks(
        "Audition 1.5", ReadBlkChunk, "blk ",
        BlkPayload("Audition 1.5", {onRow(11, 1), onRow(12, 3), onRow(13, 9), onRow(14, 0)}), {7, 10000, 3}, warnings);
    ASSERT_EQ(blk.BlkRecords.size(), 2u);
    EXPECT_EQ(blk.BlkRecords[0].TrackId, 7);
    EXPECT_EQ(blk.BlkRecords[1].TrackId, 3);
    ASSERT_EQ(warnings.size(), 1u);
    EXPECT_EQ(warnings[0].Message,
              "2 blocks name a track row that the tracks read before it do not have "
              "(the first, block 13 at offset 240, names row 9 of 3): left out");
    EXPECT_EQ(warnings[0].Offset, kPayload + 4 + 2 * 88);
    EXPECT_EQ(warnings[0].ChunkTag, "blk ");

    warnings.clear();
    const Session bk25 = ReadAfterTracks("Audition 1.5", ReadBk25Chunk, "bk25",
                                         Bk25Payload("Audition 1.5", {onRow(21, 2), onRow(22, 4)}), {7, 10000, 3},
                                         warnings);
    ASSERT_EQ(bk25.Bk25Records.size(), 1u);
    EXPECT_EQ(bk25.Bk25Records[0].TrackId, 10000);
    ASSERT_EQ(warnings.size(), 1u);
    EXPECT_EQ(warnings[0].Message,
              "1 block names a track row that the tracks read before it do not have "
              "(the first, block 22 at offset 140, names row 4 of 3): left out");
    EXPECT_EQ(warnings[0].Offset, kPayload + 8 + 72);
}

TEST(BlockChunks, CountsAndLengthsThatLeaveTheChunkFailTheFile) {
    auto in = [](const char* version, const char* tag, const Bytes& payload) {
        return SesBuilder().Version(version, 32).Chunk(tag, payload).Build();
    };
    const Block video{.TrackId = 490000};
    ExpectFailure(in("Audition 3.0", "bk25", Bytes().Int32(0x7FFFFFFF).Int32(72).Append(Bk25Record({})).Append(
                                                 Bk25FadeRecord({}))),
                  "bk25", kPayload,
                  "the block count 2147483647 at offset 60 needs at least 154618822584 bytes from offset 68, "
                  "but the chunk has 112 there");
    ExpectFailure(in("Cool Edit 2000 1.0", "blk2", Bytes().Int32(3).Zeros(80)), "blk2", kPayload,
                  "the block colour count 3 at offset 60 needs at least 120 bytes from offset 64, but the chunk has 80 there");
    // A video block whose block size points far behind the chunk.
    ExpectFailure(in("Audition 3.0", "bk25", Bytes().Int32(2).Int32(100000).Append(Bk25Record(video)).Append(Bk25Record({}))),
                  "bk25", kPayload + 8,
                  "the video block record at offset 68 ends at offset 100590, past the end of the chunk at offset 212");
    // An Audition 2.0 special record of negative length.
    ExpectFailure(in("Audition 2.0", "bk25",
                     Bytes().Int32(1).Int32(72).Append(Bk25Record(Block{.TrackId = 250000, .SpecialBytes = -100}))),
                  "bk25", kPayload + 8,
                  "the block record with its special record at offset 68 would end at offset 40, inside its own 72 bytes");
    // The last block of an Audition 3.0 chunk without its fade record.
    ExpectFailure(in("Audition 3.0", "bk25", Bytes().Int32(1).Int32(72).Append(Bk25Record({}))), "bk25", kPayload + 80,
                  "the fade record at offset 140 ends at offset 180, past the end of the chunk at offset 140");
    // A chunk that claims more than the file holds: the second record is cut off.
    ExpectFailure(SesBuilder()
                      .Version("Audition 3.0", 32)
                      .ChunkWithLength("blk ", 1000, Bytes().Int32(2).Append(BlkRecord("Audition 3.0", {})))
                      .Build(),
                  "blk ", kPayload + 4 + 88, "a double of 8 bytes at offset 152 runs past the end of the file (0 bytes left)");
}

}  // namespace
}  // namespace morvanta::testing

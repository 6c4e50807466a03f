// The block chunks "bk25", "bk20", "blk " and "blk2" of every writer version,
// read from built files into the raw block lists.
#include <gtest/gtest.h>

#include "BlockPayloads.h"
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
    return ReadOk(builder.Build());
}

// An Audition 1.5 block names a row of the tracks chunk read before it. The
// tracks reader is not part of these tests, so the rows are put into the
// session and the block reader is run on its chunk directly.
Session ReadAfterTracks(std::string_view version, ChunkReader reader, const std::string& tag, const Bytes& payload,
                        const std::vector<std::int32_t>& trackIds, std::vector<Diagnostic>& warnings) {
    const auto bytes = SesBuilder().Version(version, 32).Chunk(tag, payload).Build();
    Session session;
    session.SesVersion = version;
    for (std::int32_t id : trackIds) session.SesTracks.push_back({.Name = {}, .TrackId = id});
    const ByteReader file(bytes);
    const ConvertOptions options;
    ReadContext ctx{session, file, options, false, static_cast<std::int32_t>(bytes.size()), warnings, nullptr};
    const ChunkHeader chunk{tag, kChunk, kPayload, static_cast<std::int32_t>(payload.Size())};
    EXPECT_EQ(reader(ctx, chunk), chunk.End());
    return session;
}

// Gains of 1.0 and 0.5 follow the clip gain table of their chunk and
// version; equal gains stay exactly as stored (0.3 would come back from
// decibels as 0.29999999999999993). The chunk that each version's golden
// document reads is mostly left to that document.
TEST(BlockChunks, GainsFollowTheClipGainTableOfTheirChunkAndVersion) {
    // "bk20" outside the old versions has the 72-byte layout of "bk25".
    const std::vector<std::pair<std::string, std::string>> cases{
        {"Audition 2.0", "bk20"},      {"Cool Edit Pro 2.1", "bk20"},  {"Cool Edit Pro 2.1", "bk25"},
        {"Cool Edit Pro 1.2", "bk25"}, {"Cool Edit 2000 1.0", "bk20"}, {"Audition 1.5", "bk20"},
        {"Audition 3.0", "bk25"},      {"Audition 1.0", "blk "},       {"Cool Edit 2000 1.0", "blk "},
        {"Cool Edit Pro 2.1", "blk "}, {"Audition 1.5", "blk "},       {"Audition 2.0", "blk "},
        {"Audition 3.0", "blk "},
    };
    const std::vector<Block> blocks{{.BlockId = 1, .LeftGain = 1.0, .RightGain = 0.5},
                                    {.BlockId = 2, .LeftGain = 0.3, .RightGain = 0.3},
                                    {.BlockId = 3, .LeftGain = 0.0, .RightGain = 0.0}};
    std::string dumps;
    for (const auto& [version, tag] : cases) {
        const bool oldBk20 = tag == "bk20" && (version.starts_with("Cool Edit Pro 2.") || version == "Audition 1.0");
        const Bytes payload = tag == "blk " ? BlkPayload(version, blocks)
                              : oldBk20     ? Bk20Payload(blocks)
                                            : Bk25Payload(version, blocks);
        std::vector<Diagnostic> warnings;
        const ChunkReader reader = tag == "blk " ? ReadBlkChunk : ReadBk25Chunk;
        const Session s = version == "Audition 1.5" ? ReadAfterTracks(version, reader, tag, payload, {1}, warnings)
                                                    : Walk(version, {{tag, payload}});
        dumps += TitledDump(version + " \"" + tag + "\"", s);
    }
    ExpectGolden("block-gains.model.txt", dumps);
}

// A block size of 80: the video block's record takes 80 + 522 bytes and
// leaves an empty fade row.
TEST(BlockChunks, Audition30FadeRowsAreNumberedByBlockAroundAVideoBlock) {
    const Block audio{.BlockId = 1, .TrackId = 1};
    const Block video{.BlockId = 2, .WaveId = 9, .TrackId = 490000};
    const Block later{.BlockId = 3, .TrackId = 2};
    const BlockFade first{100, 200, 1, 2, 1, 0};
    const BlockFade last{0, 300, 19, 19, 0, 1};
    const Bytes payload = Bk25Payload("Audition 3.0", {audio, video, later}, {first, {}, last}, 80);
    ExpectModelGolden("bk25-fade-rows", Walk("Audition 3.0", {{"bk25", payload}}));
}

// Blocks of tracks 250000 to 259999 carry a record of their own; 260000 is
// past the range, and its length field is not followed by bytes.
TEST(BlockChunks, Audition20BlocksOfTheSpecialTracksCarryARecordOfTheirOwn) {
    const std::vector<Block> blocks{{.BlockId = 1, .TrackId = 250000, .SpecialBytes = 30},
                                    {.BlockId = 2, .TrackId = 260000, .SpecialBytes = 30},
                                    {.BlockId = 3, .TrackId = 249999},
                                    {.BlockId = 4, .TrackId = 490000},
                                    {.BlockId = 5, .TrackId = 259999, .SpecialBytes = 4}};
    ExpectModelGolden("bk25-special-tracks", Walk("Audition 2.0", {{"bk25", Bk25Payload("Audition 2.0", blocks)}}));
}

TEST(BlockChunks, ALaterChunkReplacesAndAnEmptyOneChangesNothing) {
    // A negative block count reads no record, as a loop up to it would.
    EXPECT_TRUE(Walk("Audition 2.0", {{"blk ", Bytes().Int32(-1)}}).BlkRecords.empty());
    // The "blk " of length -8 leaves the walk at its payload, where the next
    // chunk header stands. Left: block 2 of "bk25" and block 9 of "blk ".
    const auto bytes = SesBuilder()
                           .Version("Audition 2.0", 32)
                           .Chunk("bk25", Bk25Payload("Audition 2.0", {{.BlockId = 1}}))
                           .Chunk("bk25", Bk25Payload("Audition 2.0", {{.BlockId = 2}}))
                           .ChunkWithLength("bk25", 0, Bytes())
                           .ChunkWithLength("blk ", -8, Bytes())
                           .Chunk("blk ", BlkPayload("Audition 2.0", {{.BlockId = 9, .SourceStart = 77}}))
                           .Build();
    ExpectModelGolden("block-chunks-replaced", ReadOk(bytes));
}

// Cool Edit Pro 1.2 and Audition 1.0 step over flags and group, Cool Edit
// 2000 alone reads the group, Cool Edit Pro 2.1 takes the source start at
// 64, the later versions at 28; Cool Edit Pro 2.00 has no "blk " of its own.
TEST(BlockChunks, BlkRecordsFollowTheColumnsOfTheirVersion) {
    const Block block{.BlockId = 5, .WaveId = 7, .Start = 100, .Length = 200, .SourceStart = 400, .Flags = 6,
                      .TrackId = 2, .GroupId = 3, .Name = "take one"};
    std::string dumps;
    for (const char* version : {"Cool Edit Pro 1.2", "Audition 1.0", "Cool Edit 2000 1.0", "Cool Edit Pro 2.1",
                                "Audition 2.0", "Audition 3.0"})
        dumps += TitledDump(version, Walk(version, {{"blk ", BlkPayload(version, {block})}}));
    const Bytes borrowed = BlkPayload("Cool Edit Pro 2.1", {block});
    dumps += TitledDump("Cool Edit Pro 2.00", Walk("Cool Edit Pro 2.00", {{"blk ", borrowed}}));
    ExpectGolden("blk-columns.model.txt", dumps);
}

// Hues are unsigned bytes and a second chunk appends; only Cool Edit 2000 reads them.
TEST(BlockChunks, Blk2HuesAreUnsignedBytesAndAChunkAppends) {
    const Session ce2000 =
        Walk("Cool Edit 2000 1.0", {{"blk2", Blk2Payload({{5, 200}, {6, 17}})}, {"blk2", Blk2Payload({{7, 255}})}});
    const Session pro21 = Walk("Cool Edit Pro 2.1", {{"blk2", Blk2Payload({{5, 200}})}});
    ExpectGolden("blk2-hues.model.txt",
                 TitledDump("Cool Edit 2000 1.0", ce2000) + TitledDump("Cool Edit Pro 2.1", pro21));
}

// Tracks 7, 10000 and 3 were read before the blocks.
TEST(BlockChunks, Audition15BlocksNameTheirTrackByRow) {
    auto onRow = [](std::int32_t blockId, std::int32_t row) { return Block{.BlockId = blockId, .TrackId = row}; };
    std::vector<Diagnostic> blkWarnings;
    std::vector<Diagnostic> bk25Warnings;
    const Session blk = ReadAfterTracks(
        "Audition 1.5", ReadBlkChunk, "blk ",
        BlkPayload("Audition 1.5", {onRow(11, 1), onRow(12, 3), onRow(13, 9), onRow(14, 0)}), {7, 10000, 3},
        blkWarnings);
    const Session bk25 = ReadAfterTracks("Audition 1.5", ReadBk25Chunk, "bk25",
                                         Bk25Payload("Audition 1.5", {onRow(21, 2), onRow(22, 4)}), {7, 10000, 3},
                                         bk25Warnings);
    ExpectGolden("blocks-by-track-row.model.txt", TitledDump("\"blk \"", blk) + TitledDump("\"bk25\"", bk25));
    const auto described = [](const std::vector<Diagnostic>& warnings) {
        Strings lines;
        for (const Diagnostic& w : warnings)
            lines.push_back(w.ChunkTag + " " + std::to_string(w.Offset) + ": " + w.Message);
        return lines;
    };
    EXPECT_EQ(described(blkWarnings),
              Strings{"blk  240: 2 blocks name a track row that the tracks read before it do "
                      "not have (the first, block 13 at offset 240, names row 9 of 3): left out"});
    EXPECT_EQ(described(bk25Warnings),
              Strings{"bk25 140: 1 block names a track row that the tracks read before it do "
                      "not have (the first, block 22 at offset 140, names row 4 of 3): left out"});
}

TEST(BlockChunks, CountsAndLengthsThatLeaveTheChunkFailTheFile) {
    auto in = [](const char* version, const char* tag, const Bytes& payload) {
        return SesBuilder().Version(version, 32).Chunk(tag, payload).Build();
    };
    const Block video{.TrackId = 490000};
    ExpectFailures({
        {in("Audition 3.0", "bk25",
            Bytes().Int32(0x7FFFFFFF).Int32(72).Append(Bk25Record({})).Append(Bk25FadeRecord({}))),
         "bk25", kPayload,
         "the block count 2147483647 at offset 60 needs at least 154618822584 bytes from offset 68, but the chunk has "
         "112 there"},
        {in("Cool Edit 2000 1.0", "blk2", Bytes().Int32(3).Zeros(80)), "blk2", kPayload,
         "the block colour count 3 at offset 60 needs at least 120 bytes from offset 64, but the chunk has 80 there"},
        // A video block whose block size points far behind the chunk.
        {in("Audition 3.0", "bk25", Bytes().Int32(2).Int32(100000).Append(Bk25Record(video)).Append(Bk25Record({}))),
         "bk25", kPayload + 8,
         "the video block record at offset 68 ends at offset 100590, past the end of the chunk at offset 212"},
        // An Audition 2.0 special record of negative length.
        {in("Audition 2.0", "bk25",
            Bytes().Int32(1).Int32(72).Append(Bk25Record(Block{.TrackId = 250000, .SpecialBytes = -100}))),
         "bk25", kPayload + 8,
         "the block record with its special record at offset 68 would end at offset 40, inside its own 72 bytes"},
        // The last block of an Audition 3.0 chunk without its fade record.
        {in("Audition 3.0", "bk25", Bytes().Int32(1).Int32(72).Append(Bk25Record({}))), "bk25", kPayload + 80,
         "the fade record at offset 140 ends at offset 180, past the end of the chunk at offset 140"},
        // A chunk that claims more than the file holds: the second record is cut off.
        {SesBuilder()
             .Version("Audition 3.0", 32)
             .ChunkWithLength("blk ", 1000, Bytes().Int32(2).Append(BlkRecord("Audition 3.0", {})))
             .Build(),
         "blk ", kPayload + 4 + 88, "a double of 8 bytes at offset 152 runs past the end of the file (0 bytes left)"},
    });
}

}  // namespace
}  // namespace morvanta::testing

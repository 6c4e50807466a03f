// Clips, fades and clip points out of the raw block and envelope records, the
// video repair and the two clip sorts, on sessions set up by hand.
#include <gtest/gtest.h>

#include "ModelPrinters.h"
#include "reader/Assembly.h"
#include "writer/DocumentWriter.h"

namespace morvanta {
namespace {

Track TrackOf(std::int32_t id, std::int32_t ordinal) {
    Track t;
    t.TrackId = id;
    t.TrackOrdinal = ordinal;
    return t;
}

SessionFile FileOf(std::int32_t id, std::int32_t kind) {
    SessionFile f;
    f.FileId = id;
    f.Kind = kind;
    return f;
}

ClipFade DefaultFade(std::int32_t clipId) { return ClipFade{clipId, 0, 19, 0, 0, 19, 0}; }

void Build(Session& s) {
    std::vector<Diagnostic> warnings;
    BuildClips(s, warnings);
    EXPECT_TRUE(warnings.empty());
}

TEST(ClipAssembly, TheWidePassOfAnAudition30Session) {
    Session s;
    s.SesVersion = "Audition 3.0";
    s.Tracks = {TrackOf(490000, 1), TrackOf(10000, 2), TrackOf(1, 3), TrackOf(2, 4)};
    s.SessionFiles = {FileOf(2000000, 3), FileOf(2000001, 1), FileOf(150000, 1)};
    s.Bk25Records = {
        {.BlockId = 5, .WaveId = 1, .LeftGain = 0.5, .RightGain = 0.5, .Start = 1000, .Length = 500,
         .SourceStart = 20, .Flags = 2, .TrackId = 1, .GroupId = 2, .Hue = 80},
        {.BlockId = 150000, .WaveId = 150000, .LeftGain = 1, .RightGain = 1, .Length = 100, .Flags = 4, .TrackId = 2},
        {.BlockId = 7, .WaveId = 0, .LeftGain = 1, .RightGain = 1, .Length = 1000, .TrackId = 490000},
        {.BlockId = 8, .WaveId = 1, .LeftGain = 1, .RightGain = 1, .Length = 10, .TrackId = 99},  // no such track
    };
    s.Bk25Fades = {{100, 200, 1, 2, 1, 0}, {0, 0, 19, 19, 0, 0}, {}, {5, 6, 7, 8, 0, 1}};
    // Only block ids of 100000 or more reach their stretch records by the raw id.
    s.ClipStretches = {{300000005, 1000}, {8, 5}};
    Build(s);

    const std::vector<Clip> expected{
        Clip{},
        {.ClipId = 300000005, .FileId = 2000001, .SourceStart = 20, .Start = 1000, .Length = 500, .TrackId = 1,
         .TrackOrdinal = 3, .FileKind = 1, .Looped = 1, .Locked = 1, .Gain = 0.5, .Hue = 80, .GroupId = 2},
        {.ClipId = 150000, .FileId = 150000, .Length = 100, .TrackId = 2, .TrackOrdinal = 4, .FileKind = 1,
         .Muted = 1, .Gain = 1},
        {.ClipId = 300000007, .FileId = 2000000, .Length = 1000, .TrackId = 490000, .TrackOrdinal = 1,
         .FileKind = 3, .Gain = 1},
        {.ClipId = 300000008, .FileId = 2000001, .Length = 10, .FileKind = 1, .Gain = 1},
    };
    EXPECT_EQ(s.Clips, expected);
    // No fade for the video clip; the others take the row of their block.
    EXPECT_EQ(s.ClipFades, (std::vector<ClipFade>{{300000005, 100, 1, 1, 200, 2, 0},
                                                  {150000, 0, 19, 0, 0, 19, 0},
                                                  {300000008, 5, 7, 0, 6, 8, 1}}));
}

TEST(ClipAssembly, CoolEdit2000BlocksTakeTheirHueFromBlk2AndTheirGroup) {
    Session s;
    s.SesVersion = "Cool Edit 2000 1.0";
    s.Tracks = {TrackOf(10001, 1), TrackOf(10002, 2)};
    s.SessionFiles = {FileOf(2000001, 1), FileOf(2000002, 1)};
    s.BlkRecords = {
        {.BlockId = 1, .WaveId = 1, .LeftGain = 0.8, .RightGain = 0.8, .Start = 10, .Length = 20, .SourceStart = 5,
         .Flags = 6, .TrackId = 1, .GroupId = 3},
        {.BlockId = 2, .WaveId = 2, .TrackId = 2},
        {.BlockId = 150000, .WaveId = 150000, .TrackId = 5},
    };
    // The first row of a block counts; a large block id never meets its row.
    s.Blk2Records = {{1, 40}, {1, 99}, {150000, 7}};
    Session plain = s;
    Build(s);

    const std::vector<Clip> expected{
        Clip{},
        {.ClipId = 300000001, .FileId = 2000001, .SourceStart = 5, .Start = 10, .Length = 20, .TrackId = 10001,
         .TrackOrdinal = 1, .FileKind = 1, .Muted = 1, .Locked = 1, .Gain = 0.8, .Hue = 40, .GroupId = 3},
        {.ClipId = 300000002, .FileId = 2000002, .TrackId = 10002, .TrackOrdinal = 2, .FileKind = 1},
        // Every file id of this version is small: 150000 becomes 2150000, which no file has.
        {.ClipId = 150000, .FileId = 2150000, .TrackId = 10005},
    };
    EXPECT_EQ(s.Clips, expected);
    EXPECT_EQ(s.ClipFades, (std::vector<ClipFade>{DefaultFade(300000001), DefaultFade(300000002), DefaultFade(150000)}));

    // Without colours every clip has the default hue.
    plain.Blk2Records.clear();
    Build(plain);
    for (std::size_t n = 1; n < plain.Clips.size(); ++n) EXPECT_EQ(plain.Clips[n].Hue, 112) << n;
}

// The "bk20" records and the hue of Cool Edit Pro 1.2 are pinned by the
// golden documents; they hold no "blk " group of Cool Edit Pro 1.2.
TEST(ClipAssembly, GroupAndHueOfTheBlockPassDependOnListAndVersion) {
    const BlockRecord grouped{.BlockId = 1, .WaveId = 1, .TrackId = 1, .GroupId = 4, .Hue = 30};
    auto built = [&](const std::string& version) {
        Session s;
        s.SesVersion = version;
        s.BlkRecords = {grouped};
        Build(s);
        return std::pair{s.Clips[1].GroupId, s.Clips[1].Hue};
    };
    EXPECT_EQ(built("Cool Edit Pro 1.2"), std::pair(4, 112));
    EXPECT_EQ(built("Cool Edit Pro 2.1"), std::pair(0, 112));
    EXPECT_EQ(built("Audition 1.0"), std::pair(0, 112));
    EXPECT_EQ(built("Audition 2.0"), std::pair(0, 0));
}

TEST(ClipAssembly, Bk20WinsOverBlkAndNumbersAllItsFilesFromTheSmallOffset) {
    Session s;
    s.SesVersion = "Cool Edit Pro 2.1";
    s.Tracks = {TrackOf(10001, 1)};
    s.SessionFiles = {FileOf(2150000, 1)};
    s.Bk20Records = {{.BlockId = 3, .WaveId = 150000, .TrackId = 1}};
    s.BlkRecords = {{.BlockId = 9, .WaveId = 1, .TrackId = 1}};
    Build(s);
    ASSERT_EQ(s.Clips.size(), 2u);
    EXPECT_EQ(s.Clips[1].ClipId, 300000003);
    EXPECT_EQ(s.Clips[1].FileId, 2150000);
    EXPECT_EQ(s.Clips[1].FileKind, 1);
    EXPECT_EQ(s.Bk20Records[0].WaveId, 2150000) << "the record takes the file id too";
}

TEST(ClipAssembly, FilesNumberedFromZeroAreFoundThroughTheFirstFile) {
    // The first block names file 0 and the first file is 2000000: the block
    // pass looks files up by wave id + 2000000. Otherwise by the wave id alone.
    auto kinds = [](std::int32_t firstWave) {
        Session s;
        s.SesVersion = "Audition 2.0";
        s.SessionFiles = {FileOf(2000000, 1), FileOf(2000003, 3)};
        s.BlkRecords = {{.BlockId = 1, .WaveId = firstWave}, {.BlockId = 2, .WaveId = 3}};
        Build(s);
        EXPECT_EQ(s.Clips[2].FileId, 2000003);
        return std::pair{s.Clips[1].FileKind, s.Clips[2].FileKind};
    };
    EXPECT_EQ(kinds(0), std::pair(1, 3));
    EXPECT_EQ(kinds(1), std::pair(0, 0));
}

TEST(ClipAssembly, Bk25BlocksBeforeAudition20FindTheirTracksThroughTheOffsetOfTheBlockPass) {
    auto session = [](bool withBlk) {
        Session s;
        s.SesVersion = "Audition 1.5";
        s.Tracks = {TrackOf(10001, 1), TrackOf(10002, 2)};
        s.SessionFiles = {FileOf(2000001, 1), FileOf(2000009, 3)};
        s.Bk25Records = {{.BlockId = 1, .WaveId = 1, .Start = 5, .TrackId = 2},
                         {.BlockId = 2, .WaveId = 9, .TrackId = 7}};  // video, on no track
        if (withBlk) s.BlkRecords = {{.BlockId = 99, .WaveId = 1, .TrackId = 1}};
        Build(s);
        return s;
    };
    const Session found = session(true);
    ASSERT_EQ(found.Clips.size(), 3u) << "bk25 wins";
    EXPECT_EQ(found.Clips[1].ClipId, 300000001);
    EXPECT_EQ(found.Clips[1].TrackId, 10002);
    EXPECT_EQ(found.Clips[1].TrackOrdinal, 2);
    // A video clip of these versions keeps its own track number, ordinal 0.
    EXPECT_EQ(found.Clips[2].TrackId, 10007);
    EXPECT_EQ(found.Clips[2].TrackOrdinal, 0);
    EXPECT_EQ(found.ClipFades, std::vector<ClipFade>{DefaultFade(300000001)});

    const Session lost = session(false);
    EXPECT_EQ(lost.Clips[1].TrackId, 0);
    EXPECT_EQ(lost.Clips[1].TrackOrdinal, 0);
}

TEST(ClipAssembly, ABlockOnTheVideoTrackMakesItsFileAVideo) {
    Session s;
    s.SesVersion = "Cool Edit Pro 2.1";
    s.Tracks = {TrackOf(10001, 1)};
    s.SessionFiles = {FileOf(2000004, 1)};
    s.BlkRecords = {{.BlockId = 1, .WaveId = 4, .Length = 10, .TrackId = 490000}};
    Build(s);
    EXPECT_EQ(s.SessionFiles[0].Kind, 3);
    EXPECT_EQ(s.Clips[1].FileKind, 3);
    EXPECT_EQ(s.Clips[1].TrackId, 500000) << "the block pass adds the offset to every track id";

    // Without a video in the wave list the clip stays where it is.
    Session unrepaired = s;
    RepairVideoClips(unrepaired);
    EXPECT_EQ(unrepaired.Clips, s.Clips);

    s.VideoSeen = true;
    RepairVideoClips(s);
    EXPECT_EQ(s.Clips[1].ClipId, 82847048);
    EXPECT_EQ(s.Clips[1].TrackId, 490000);
    EXPECT_EQ(s.Tracks[0].TrackId, 10001) << "no track had the clip's id";
}

TEST(ClipAssembly, TheVideoRepairMakesTheTrackOfTheVideoTheVideoTrack) {
    Session s;
    s.VideoSeen = true;
    s.Tracks = {TrackOf(10001, 1), TrackOf(10002, 2), TrackOf(10002, 3)};
    s.SessionFiles = {FileOf(2000001, 1), FileOf(2000002, 3), FileOf(2000001, 3)};
    s.Clips = {Clip{},
               {.ClipId = 11, .FileId = 2000002, .TrackId = 10002},
               {.ClipId = 12, .FileId = 2000002, .TrackId = 10002},
               {.ClipId = 13, .FileId = 2000009, .TrackId = 10001, .FileKind = 1},
               // Of two files with its id, the second is a video.
               {.ClipId = 14, .FileId = 2000001, .TrackId = 10001}};
    RepairVideoClips(s);
    // Each video clip moves the first track that still has its id.
    EXPECT_EQ(s.Tracks[0].TrackId, 490000);
    EXPECT_EQ(s.Tracks[1].TrackId, 490000);
    EXPECT_EQ(s.Tracks[2].TrackId, 490000);
    for (std::size_t n : {1u, 2u, 4u}) {
        EXPECT_EQ(s.Clips[n].ClipId, 82847048);
        EXPECT_EQ(s.Clips[n].TrackId, 490000);
        EXPECT_EQ(s.Clips[n].FileKind, 3);
    }
    EXPECT_EQ(s.Clips[3].ClipId, 13) << "a clip whose file is not listed keeps everything";
    EXPECT_EQ(s.Clips[0], Clip{});
}

TEST(ClipAssembly, AClipTakesTheKindOfTheLastFileOfItsIdAndMovesOnceForAnyVideo) {
    Session s;
    s.VideoSeen = true;
    s.Tracks = {TrackOf(10001, 1), TrackOf(10001, 2), TrackOf(10001, 3)};
    s.SessionFiles = {FileOf(2000005, 3), FileOf(2000006, 1), FileOf(2000005, 3), FileOf(2000005, 1)};
    s.Clips = {Clip{},
               {.ClipId = 11, .FileId = 2000005, .TrackId = 10001},
               {.ClipId = 12, .FileId = 2000006, .TrackId = 10001, .FileKind = 3},
               {.ClipId = 13, .FileId = 2000005, .TrackId = 10001}};
    RepairVideoClips(s);
    // Two videos of one id move a single track for each clip.
    EXPECT_EQ(s.Tracks[0].TrackId, 490000);
    EXPECT_EQ(s.Tracks[1].TrackId, 490000);
    EXPECT_EQ(s.Tracks[2].TrackId, 10001);
    for (std::size_t n : {1u, 3u}) {
        EXPECT_EQ(s.Clips[n].ClipId, 82847048);
        EXPECT_EQ(s.Clips[n].TrackId, 490000);
        EXPECT_EQ(s.Clips[n].FileKind, 1) << "the last file of the id is a wave";
    }
    EXPECT_EQ(s.Clips[2].ClipId, 12);
    EXPECT_EQ(s.Clips[2].TrackId, 10001);
    EXPECT_EQ(s.Clips[2].FileKind, 1);
}

TEST(ClipAssembly, ClipPointsTieToTheirClipAndCountFromIt) {
    Session s;
    s.SesVersion = "Cool Edit 2000 1.0";
    s.Clips = {Clip{}, {.ClipId = 300000005, .SourceStart = 100.5, .TrackId = 10001},
               {.ClipId = 150000, .SourceStart = 50, .TrackId = 10002}};
    s.EnvelopePoints = {
        {5, 1, 111, 0.5},       // 111 - 100.5 = 10.5, to the even 10
        {5, 2, 112, 0.25},      // 11.5 to 12
        {5, 1, 40, 1.0},        // before the clip's start: 0
        {150000, 3, 70, 0.7},   // no such kind: 0
        {7, 1, 10, 0.9},        // no such clip
    };
    BuildClipPoints(s);
    EXPECT_EQ(s.ClipPoints, (std::vector<ClipPoint>{{300000005, 1, 10, 0.5, 10001},
                                                    {300000005, 2, 12, 0.25, 10001},
                                                    {300000005, 1, 0, 1.0, 10001},
                                                    {150000, 0, 20, 0.7, 10002},
                                                    {300000007, 0, 0, 0, 0}}));

    // Later versions count from the clip's own start already.
    s.SesVersion = "Audition 3.0";
    BuildClipPoints(s);
    EXPECT_EQ(s.ClipPoints[0].Offset, 111);
    EXPECT_EQ(s.ClipPoints[3].Offset, 70);
}

Clip At(std::int32_t id, std::int32_t ordinal, double start) {
    return Clip{.ClipId = id, .Start = start, .TrackOrdinal = ordinal};
}

std::vector<std::int32_t> Ids(const Session& s) {
    std::vector<std::int32_t> ids;
    for (const Clip& c : s.Clips) ids.push_back(c.ClipId);
    return ids;
}

TEST(ClipAssembly, ClipsSortByTrackThenStartAndTiesKeepTheirOrder) {
    Session s;
    s.Clips = {Clip{}, At(1, 2, 100), At(2, 1, 500), At(3, 1, 100), At(4, 2, 100), At(5, 0, 0), At(6, 0, 7)};
    SortClips(s);
    // Element 0 takes part: a clip without a track at sample 0 stays behind it.
    EXPECT_EQ(Ids(s), (std::vector<std::int32_t>{0, 5, 6, 3, 2, 1, 4}));
    SortClipsForWriting(s.Clips);
    EXPECT_EQ(Ids(s), (std::vector<std::int32_t>{0, 5, 6, 3, 2, 1, 4}));
}

TEST(ClipAssembly, TheWritersExchangeSortDoesNotKeepTiesOfAnUnsortedList) {
    // On a list out of order the exchange sort moves equal clips past each
    // other: 2 and 3 tie and come out the other way round.
    Session s;
    s.Clips = {Clip{}, At(1, 3, 0), At(2, 2, 0), At(3, 2, 0), At(4, 1, 0)};
    SortClipsForWriting(s.Clips);
    EXPECT_EQ(Ids(s), (std::vector<std::int32_t>{0, 4, 3, 2, 1}));
}

}  // namespace
}  // namespace morvanta

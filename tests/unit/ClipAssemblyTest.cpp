// Clips, fades and clip points out of the raw block and envelope records, the
// video repair and the two clip sorts, on sessions set up by hand.
#include <gtest/gtest.h>

#include "TestSupport.h"
#include "reader/Assembly.h"
#include "writer/DocumentWriter.h"

namespace morvanta::testing {
namespace {

Track TrackOf(std::int32_t id, std::int32_t ordinal) {
    return {.TrackId = id, .TrackOrdinal = ordinal, .TrackName = {}};
}

SessionFile FileOf(std::int32_t id, std::int32_t kind) { return {.FileId = id, .Kind = kind, .Path = {}}; }

void Build(Session& s) {
    std::vector<Diagnostic> warnings;
    BuildClips(s, warnings);
    EXPECT_TRUE(warnings.empty());
}

// A block on no track keeps track 0; only block ids of 100000 or more reach
// their stretch records by the raw id; no fade for the video clip, the
// others take the row of their block.
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
        {.BlockId = 8, .WaveId = 1, .LeftGain = 1, .RightGain = 1, .Length = 10, .TrackId = 99},
    };
    s.Bk25Fades = {{100, 200, 1, 2, 1, 0}, {0, 0, 19, 19, 0, 0}, {}, {5, 6, 7, 8, 0, 1}};
    s.ClipStretches = {{300000005, 1000}, {8, 5}};
    Build(s);
    ExpectModelGolden("clips-audition-3.0", s);
}

// The first blk2 row of a block gives its hue, a large block id never meets
// its row, and without rows every clip has the default hue. Every file id
// of this version is small: 150000 becomes 2150000, which no file has.
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
    s.Blk2Records = {{1, 40}, {1, 99}, {150000, 7}};
    Session plain = s;
    plain.Blk2Records.clear();
    Build(s);
    Build(plain);
    ExpectGolden("clips-cool-edit-2000.model.txt", TitledDump("with colours", s) + TitledDump("without", plain));
}

// The "bk20" records and the hue of Cool Edit Pro 1.2 are pinned by the
// golden documents; they hold no "blk " group of Cool Edit Pro 1.2.
TEST(ClipAssembly, GroupAndHueOfTheBlockPassDependOnListAndVersion) {
    std::string dumps;
    for (const char* version : {"Cool Edit Pro 1.2", "Cool Edit Pro 2.1", "Audition 1.0", "Audition 2.0"}) {
        Session s;
        s.SesVersion = version;
        s.BlkRecords = {{.BlockId = 1, .WaveId = 1, .TrackId = 1, .GroupId = 4, .Hue = 30}};
        Build(s);
        dumps += TitledDump(version, s);
    }
    ExpectGolden("clip-group-and-hue.model.txt", dumps);
}

// "bk20" wins over "blk " and numbers all its files from the small offset;
// the record takes the file id too.
TEST(ClipAssembly, Bk20WinsOverBlkAndNumbersAllItsFilesFromTheSmallOffset) {
    Session s;
    s.SesVersion = "Cool Edit Pro 2.1";
    s.Tracks = {TrackOf(10001, 1)};
    s.SessionFiles = {FileOf(2150000, 1)};
    s.Bk20Records = {{.BlockId = 3, .WaveId = 150000, .TrackId = 1}};
    s.BlkRecords = {{.BlockId = 9, .WaveId = 1, .TrackId = 1}};
    Build(s);
    ExpectModelGolden("clips-bk20-over-blk", s);
}

// The first block names file 0 and the first file is 2000000: the block
// pass looks files up by wave id + 2000000. Otherwise by the wave id alone.
TEST(ClipAssembly, FilesNumberedFromZeroAreFoundThroughTheFirstFile) {
    std::string dumps;
    for (const std::int32_t firstWave : {0, 1}) {
        Session s;
        s.SesVersion = "Audition 2.0";
        s.SessionFiles = {FileOf(2000000, 1), FileOf(2000003, 3)};
        s.BlkRecords = {{.BlockId = 1, .WaveId = firstWave}, {.BlockId = 2, .WaveId = 3}};
        Build(s);
        dumps += TitledDump("first wave " + std::to_string(firstWave), s);
    }
    ExpectGolden("clip-files-from-zero.model.txt", dumps);
}

// "bk25" wins over "blk "; without "blk " the block pass has no offset and
// the clip finds no track. A video clip of these versions keeps its own
// track number, ordinal 0.
TEST(ClipAssembly, Bk25BlocksBeforeAudition20FindTheirTracksThroughTheOffsetOfTheBlockPass) {
    std::string dumps;
    for (const bool withBlk : {true, false}) {
        Session s;
        s.SesVersion = "Audition 1.5";
        s.Tracks = {TrackOf(10001, 1), TrackOf(10002, 2)};
        s.SessionFiles = {FileOf(2000001, 1), FileOf(2000009, 3)};
        s.Bk25Records = {{.BlockId = 1, .WaveId = 1, .Start = 5, .TrackId = 2},
                         {.BlockId = 2, .WaveId = 9, .TrackId = 7}};  // video, on no track
        if (withBlk) s.BlkRecords = {{.BlockId = 99, .WaveId = 1, .TrackId = 1}};
        Build(s);
        dumps += TitledDump(withBlk ? "with blk" : "without blk", s);
    }
    ExpectGolden("clips-bk25-audition-1.5.model.txt", dumps);
}

// The block pass adds the offset to every track id; without a video in the
// wave list the clip stays where it is, with one it becomes the video clip
// on the video track, and no track had the clip's id.
TEST(ClipAssembly, ABlockOnTheVideoTrackMakesItsFileAVideo) {
    Session s;
    s.SesVersion = "Cool Edit Pro 2.1";
    s.Tracks = {TrackOf(10001, 1)};
    s.SessionFiles = {FileOf(2000004, 1)};
    s.BlkRecords = {{.BlockId = 1, .WaveId = 4, .Length = 10, .TrackId = 490000}};
    Build(s);
    Session repaired = s;
    RepairVideoClips(s);
    repaired.VideoSeen = true;
    RepairVideoClips(repaired);
    ExpectGolden("clip-on-the-video-track.model.txt",
                 TitledDump("no video seen", s) + TitledDump("video seen", repaired));
}

// Each video clip moves the first track that still has its id; of two
// files with one id the second is a video. A clip whose file is not listed
// keeps everything.
TEST(ClipAssembly, TheVideoRepairMakesTheTrackOfTheVideoTheVideoTrack) {
    Session s;
    s.VideoSeen = true;
    s.Tracks = {TrackOf(10001, 1), TrackOf(10002, 2), TrackOf(10002, 3)};
    s.SessionFiles = {FileOf(2000001, 1), FileOf(2000002, 3), FileOf(2000001, 3)};
    s.Clips = {Clip{},
               {.ClipId = 11, .FileId = 2000002, .TrackId = 10002},
               {.ClipId = 12, .FileId = 2000002, .TrackId = 10002},
               {.ClipId = 13, .FileId = 2000009, .TrackId = 10001, .FileKind = 1},
               {.ClipId = 14, .FileId = 2000001, .TrackId = 10001}};
    RepairVideoClips(s);
    ExpectModelGolden("video-repair", s);
}

// A clip takes the kind of the last file of its id (a wave here), and two
// videos of one id move a single track for each clip.
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
    ExpectModelGolden("video-repair-last-file", s);
}

// Cool Edit 2000 counts a point from the clip's start in its file: 111 -
// 100.5 = 10.5 goes to the even 10, 11.5 to 12, a point before the start
// to 0. A kind other than 1 or 2 is 0, a point of no clip ties to nothing.
// Later versions count from the clip's own start already.
TEST(ClipAssembly, ClipPointsTieToTheirClipAndCountFromIt) {
    Session s;
    s.SesVersion = "Cool Edit 2000 1.0";
    s.Clips = {Clip{}, {.ClipId = 300000005, .SourceStart = 100.5, .TrackId = 10001},
               {.ClipId = 150000, .SourceStart = 50, .TrackId = 10002}};
    s.EnvelopePoints = {{5, 1, 111, 0.5}, {5, 2, 112, 0.25}, {5, 1, 40, 1.0}, {150000, 3, 70, 0.7}, {7, 1, 10, 0.9}};
    Session later = s;
    later.SesVersion = "Audition 3.0";
    BuildClipPoints(s);
    BuildClipPoints(later);
    ExpectGolden("clip-points.model.txt", TitledDump("Cool Edit 2000 1.0", s) + TitledDump("Audition 3.0", later));
}

Clip At(int id, int ordinal, double start) { return {.ClipId = id, .Start = start, .TrackOrdinal = ordinal}; }

std::vector<std::int32_t> Ids(const std::vector<Clip>& clips) {
    std::vector<std::int32_t> ids;
    for (const Clip& c : clips) ids.push_back(c.ClipId);
    return ids;
}

// SortClips orders by track, then start, and ties keep their order; element 0
// takes part: a clip without a track at sample 0 stays behind it. The
// writer's exchange sort leaves that order as it is, but on a list out of
// order it moves equal clips past each other: 2 and 3 tie and come out the
// other way round.
TEST(ClipAssembly, TheTwoClipSorts) {
    Session s;
    s.Clips = {Clip{}, At(1, 2, 100), At(2, 1, 500), At(3, 1, 100), At(4, 2, 100), At(5, 0, 0), At(6, 0, 7)};
    SortClips(s);
    EXPECT_EQ(Ids(s.Clips), (std::vector<std::int32_t>{0, 5, 6, 3, 2, 1, 4}));
    SortClipsForWriting(s.Clips);
    EXPECT_EQ(Ids(s.Clips), (std::vector<std::int32_t>{0, 5, 6, 3, 2, 1, 4}));
    Session many;  // ties keep their order in a list long enough for a sort to split it
    for (std::int32_t id = 1; id <= 40; ++id) many.Clips.push_back(At(id, id % 3, 0));
    SortClips(many);
    for (std::size_t i = 1; i < many.Clips.size(); ++i)
        EXPECT_LT(many.Clips[i - 1].TrackOrdinal * 100 + many.Clips[i - 1].ClipId,
                  many.Clips[i].TrackOrdinal * 100 + many.Clips[i].ClipId);
    std::vector<Clip> unsorted{Clip{}, At(1, 3, 0), At(2, 2, 0), At(3, 2, 0), At(4, 1, 0)};
    SortClipsForWriting(unsorted);
    EXPECT_EQ(Ids(unsorted), (std::vector<std::int32_t>{0, 4, 3, 2, 1}));
}

}  // namespace
}  // namespace morvanta::testing

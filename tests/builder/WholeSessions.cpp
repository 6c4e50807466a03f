// The band session in the chunks and layouts of each writer version.
#include "WholeSessions.h"

#include <string_view>

#include "BlockPayloads.h"
#include "SesBuilder.h"
#include "SessionPayloads.h"
#include "TrackPayloads.h"

namespace morvanta::testing {
namespace {

// What a version writes, told apart by the prefix tests the reader makes.
struct Layout {
    explicit Layout(std::string_view v)
        : pro12(v.starts_with("Cool Edit Pro 1.2")),
          ce2000(v.starts_with("Cool Edit 2000 1.0")),
          pro200(v.starts_with("Cool Edit Pro 2.00")),
          pro21(v.starts_with("Cool Edit Pro 2.1")),
          aud10(v.starts_with("Audition 1.0")),
          aud15(v.starts_with("Audition 1.5")),
          aud20(v.starts_with("Audition 2.0")),
          aud30(v.starts_with("Audition 3.0")) {}

    bool pro12, ce2000, pro200, pro21, aud10, aud15, aud20, aud30;

    // Cool Edit 2000 sessions hold no video.
    bool Video() const { return !ce2000; }
    // "TRKS" from Audition 2.0 on; the fixed-size "trks" before.
    bool UpperTracks() const { return aud20 || aud30; }
    // "bk25" blocks from Audition 1.5 on; "loop" records with them.
    bool WideBlocks() const { return aud15 || aud20 || aud30; }
    // Waves and blocks numbered from 1. The later versions number them from
    // 100001: their file lists take a wave id as it is, while a block adds
    // 2000000 to an id below 100000.
    bool SmallIds() const { return ce2000 || pro12 || pro21 || aud10; }
    // Envelope points count from the start of the wave, not of the clip.
    bool EnvelopesFromWaveStart() const { return ce2000 || pro12; }
    // The track EQ chunk.
    bool TrackEqChunk() const { return pro200 || pro21 || aud10 || aud15; }
    // The metronome chunk of the versions whose readers take it.
    bool Metronome() const { return !(pro200 || aud10); }
};

constexpr std::int32_t kSampleRate = 44100;
constexpr std::int32_t kVideoTrackId = 490000;
// An Audition 2.0 video block stands on a track of this range and carries
// a record of its own behind it.
constexpr std::int32_t kAud20VideoBlockTrack = 250001;
constexpr std::int32_t kAud20VideoRecordBytes = 200;

// ---------------------------------------------------------------- the band session

enum SongWave { VocalWave, VideoWave, GuitarWave, BassWave };
enum SongTrack { VocalsTrack = 1, GuitarTrack, BassTrack, VideoTrack };

struct SongClip {
    std::string Name;
    SongTrack Track;
    SongWave Wave;
    std::int32_t Start;
    std::int32_t Length;
    std::int32_t SourceStart;
    double Left = 1.0;
    double Right = 1.0;
    std::int32_t Flags = 0;  // 2 locked, 4 muted
    std::int32_t Group = 0;
    std::int32_t Hue = 0;
    BlockFade Fade{};  // kept by Audition 3.0 only
};

// In the order they were recorded, which is the order of the block chunks.
// Vocals: "Verse" touches "Take 1" and "Chorus" overlaps "Verse". Guitar:
// "Rhythm" (locked, gains that differ) touches "Fill" (muted). The grouped
// clips are "Verse", "Chorus" and "Rhythm". "Groove" is the stretched clip.
const std::vector<SongClip>& SongClips() {
    static const std::vector<SongClip> clips{
        {.Name = "Take 1", .Track = VocalsTrack, .Wave = VocalWave, .Start = 0, .Length = 88200, .SourceStart = 0,
         .Hue = 40, .Fade = {.FadeInLength = 2205, .FadeInShape = 19, .FadeOutShape = 19}},
        {.Name = "Rhythm", .Track = GuitarTrack, .Wave = GuitarWave, .Start = 44100, .Length = 132300,
         .SourceStart = 0, .Left = 0.5, .Right = 1.0, .Flags = 2, .Group = 1, .Hue = 160,
         .Fade = {.FadeOutLength = 4410, .FadeInShape = 19, .FadeOutShape = 19, .FadeOutType = 1}},
        {.Name = "Chorus", .Track = VocalsTrack, .Wave = VocalWave, .Start = 150000, .Length = 66150,
         .SourceStart = 176400, .Group = 1, .Hue = 40,
         .Fade = {.FadeInLength = 11025, .FadeOutLength = 22050, .FadeInShape = 19, .FadeOutShape = 25,
                  .FadeInType = 1}},
        {.Name = "Groove", .Track = BassTrack, .Wave = BassWave, .Start = 0, .Length = 264600, .SourceStart = 0,
         .Left = 0.9, .Right = 0.9, .Hue = 1, .Fade = {.FadeInShape = 19, .FadeOutShape = 19}},
        {.Name = "Verse", .Track = VocalsTrack, .Wave = VocalWave, .Start = 88200, .Length = 88200,
         .SourceStart = 22050, .Left = 0.75, .Right = 0.75, .Group = 1, .Hue = 40,
         .Fade = {.FadeInShape = 19, .FadeOutShape = 19}},
        {.Name = "Rough cut", .Track = VideoTrack, .Wave = VideoWave, .Start = 0, .Length = 441000,
         .SourceStart = 0},
        {.Name = "Fill", .Track = GuitarTrack, .Wave = GuitarWave, .Start = 176400, .Length = 44100,
         .SourceStart = 132300, .Flags = 4, .Hue = 160, .Fade = {.FadeInShape = 19, .FadeOutShape = 19}},
    };
    return clips;
}

constexpr std::size_t kVerse = 4;
constexpr std::size_t kGroove = 3;
constexpr std::int32_t kGrooveStretchedLength = 291060;

// Envelope points of a clip, counted from the clip's start in its wave.
struct SongEnvelope {
    std::size_t Clip;
    std::vector<EnvelopeSample> Volume;
    std::vector<EnvelopeSample> Pan;
};

const std::vector<SongEnvelope>& SongEnvelopes() {
    static const std::vector<SongEnvelope> envelopes{
        {kVerse, {{0, 1.0}, {44100, 0.5}, {88200, 1.0}}, {{0, 0.5}, {88200, 0.25}}},
        {kGroove, {{0, 1.0}, {264600, 0.8}}, {}},
    };
    return envelopes;
}

std::int32_t BlockIdOf(const Layout& layout, std::size_t clip) {
    return static_cast<std::int32_t>(clip) + (layout.SmallIds() ? 1 : 100001);
}

std::int32_t WaveIdOf(const Layout& layout, SongWave wave) {
    return static_cast<std::int32_t>(wave) + (layout.SmallIds() ? 1 : 100001);
}

// ---------------------------------------------------------------- chunks

Bytes WaveList(const Layout& layout) {
    const bool withLength = layout.WideBlocks();
    std::vector<WaveEntry> waves{
        {"wav ", WaveIdOf(layout, VocalWave), "C:\\Band Session\\Vocal take 1.wav", withLength ? 441000 : 0}};
    // The video stands between the waves; the file list puts it first.
    if (layout.Video()) waves.push_back({"VDEO", WaveIdOf(layout, VideoWave), "C:\\Band Session\\Video\\Rough cut.avi", 0});
    // A name that has lost its extension.
    waves.push_back({"wav ", WaveIdOf(layout, GuitarWave), "C:\\Band Session\\Guitar DI", withLength ? 308700 : 0});
    waves.push_back({"wav ", WaveIdOf(layout, BassWave), "C:\\Band Session\\Bass & Drums.wav", withLength ? 882000 : 0});
    return WaveListBytes(waves, layout.ce2000 || layout.pro12 ? WaveLayout::Packed : WaveLayout::Padded);
}

// Audition 1.5 and later keep the names a second time, in 16-bit characters,
// which a conversion with a language reads instead. The kind of an entry
// that is not a wave file is not kept there.
Bytes WideWaveList(const Layout& layout) {
    std::vector<WideWaveEntry> waves{{"wav ", WaveIdOf(layout, VocalWave), u"C:\\Band Session\\Vocal take 1.wav"}};
    if (layout.Video()) waves.push_back({"VDEO", WaveIdOf(layout, VideoWave), u"C:\\Band Session\\Video\\Rough cut.avi"});
    waves.push_back({"wav ", WaveIdOf(layout, GuitarWave), u"C:\\Band Session\\Guitar DI"});
    waves.push_back({"wav ", WaveIdOf(layout, BassWave), u"C:\\Band Session\\Bass & Drums.wav"});
    return WideWaveListBytes(waves);
}

// The raw track id each block names: the track's number, in Audition 1.5
// the row of the tracks chunk, and in Audition 2.0 and 3.0 the video block's
// own track.
std::int32_t BlockTrackOf(const Layout& layout, SongTrack track) {
    if (track == VideoTrack && layout.aud30) return kVideoTrackId;
    if (track == VideoTrack && layout.aud20) return kAud20VideoBlockTrack;
    return static_cast<std::int32_t>(track);
}

Bytes LowerTracks(const Layout& layout) {
    const int recordSize = layout.ce2000 || layout.pro12 ? 72 : layout.pro200 ? 96 : layout.pro21 || layout.aud10 ? 104 : 152;
    // Audition 1.5 numbers its tracks by its own count, which a deleted
    // track leaves with gaps; its blocks name rows.
    const std::vector<std::int32_t> ids = layout.aud15 ? std::vector<std::int32_t>{1, 3, 4, 6}
                                                       : std::vector<std::int32_t>{1, 2, 3, 4};
    std::vector<TrksRecord> records{
        {.Left = 1.0, .Right = 1.0, .Name = "Vocals", .TrackId = ids[0]},
        {.Left = 0.8, .Right = 0.8, .Name = "Guitar", .TrackId = ids[1]},
        {.Left = 1.0, .Right = 0.6, .Name = "Bass", .TrackId = ids[2]},
    };
    if (layout.Video()) records.push_back({.Name = "Video", .TrackId = ids[3]});
    return TrksPayload(recordSize, false, records);
}

Bytes UpperTracks() {
    TrackEntry vocals = NamedEntry(1, u"Vocals");
    vocals.Height = 90;
    vocals.Volume = {{0, 1.0}};
    TrackEntry guitar = NamedEntry(2, u"Guitar");
    guitar.Volume = {{0, 0.8}};
    TrackEntry bass = NamedEntry(3, u"Bass");
    bass.Pan = {{0, -40.0}};
    TrackEntry master = NamedEntry(10000, u"Master");
    master.Height = 48;
    master.Volume = {{0, 1.0}};
    // The video entry and the vocals behind it take two of the five entries.
    return UpperTrksPayload(true, 5,
                            {MarkerEntryBytes(kVideoTrackId, u"Rough cut.avi"), TrackEntryBytes(vocals),
                             TrackEntryBytes(guitar), TrackEntryBytes(bass), TrackEntryBytes(master)});
}

std::vector<Block> Blocks(const Layout& layout) {
    std::vector<Block> blocks;
    const auto& clips = SongClips();
    for (std::size_t i = 0; i < clips.size(); ++i) {
        const SongClip& c = clips[i];
        if (c.Track == VideoTrack && !layout.Video()) continue;
        Block b;
        b.BlockId = BlockIdOf(layout, i);
        b.WaveId = WaveIdOf(layout, c.Wave);
        b.LeftGain = c.Left;
        b.RightGain = c.Right;
        b.Start = c.Start;
        b.Length = c.Length;
        b.SourceStart = c.SourceStart;
        b.Flags = c.Flags;
        b.TrackId = BlockTrackOf(layout, c.Track);
        b.GroupId = c.Group;
        b.Hue = c.Hue;
        b.Name = c.Name;
        if (b.TrackId == kAud20VideoBlockTrack) b.SpecialBytes = kAud20VideoRecordBytes;
        blocks.push_back(b);
    }
    return blocks;
}

std::vector<BlockFade> Fades(const Layout& layout) {
    std::vector<BlockFade> fades;
    for (const SongClip& c : SongClips())
        if (c.Track != VideoTrack || layout.Video()) fades.push_back(c.Fade);
    return fades;
}

std::vector<EnvelopeSample> Positioned(const Layout& layout, const SongClip& clip,
                                       const std::vector<EnvelopeSample>& points) {
    std::vector<EnvelopeSample> placed = points;
    if (!layout.EnvelopesFromWaveStart()) return placed;
    for (EnvelopeSample& p : placed) p.Position += clip.SourceStart;
    return placed;
}

Bytes Ep20(const Layout& layout) {
    std::vector<Ep20Group> groups;
    for (const SongEnvelope& e : SongEnvelopes()) {
        const SongClip& clip = SongClips()[e.Clip];
        Ep20Group group{BlockIdOf(layout, e.Clip), {{1, Positioned(layout, clip, e.Volume)}}};
        if (!e.Pan.empty()) group.Lanes.push_back({2, Positioned(layout, clip, e.Pan)});
        groups.push_back(group);
    }
    return Ep20Payload(groups);
}

Bytes Envp(const Layout& layout) {
    std::vector<EnvpGroup> groups;
    for (const SongEnvelope& e : SongEnvelopes()) {
        const SongClip& clip = SongClips()[e.Clip];
        EnvpGroup group{BlockIdOf(layout, e.Clip), Positioned(layout, clip, e.Volume), Positioned(layout, clip, e.Pan)};
        // A point left in front of the clip after its start was trimmed.
        if (layout.EnvelopesFromWaveStart() && clip.SourceStart > 0)
            group.Volume.insert(group.Volume.begin(), EnvelopeSample{clip.SourceStart / 2, 1.0});
        groups.push_back(group);
    }
    return EnvpPayload(groups);
}

}  // namespace

const std::vector<WriterVersion>& WriterVersions() {
    static const std::vector<WriterVersion> versions{
        {"Cool Edit Pro 1.2", "cool-edit-pro-1.2"},   {"Cool Edit Pro 1.2a", "cool-edit-pro-1.2a"},
        {"Cool Edit 2000 1.0", "cool-edit-2000"},     {"Cool Edit Pro 2.00", "cool-edit-pro-2.00"},
        {"Cool Edit Pro 2.1", "cool-edit-pro-2.1"},   {"Audition 1.0", "audition-1.0"},
        {"Audition 1.5", "audition-1.5"},             {"Audition 2.0", "audition-2.0"},
        {"Audition 3.0", "audition-3.0"},
    };
    return versions;
}

std::vector<std::uint8_t> WholeSession(const std::string& version) {
    const Layout layout(version);
    SesBuilder builder;
    builder.Chunk("hdr ", HeaderBytes(kSampleRate)).Version(version, 32);
    builder.Chunk("stat", StatBytes(88200, 176400));
    builder.Chunk("tmpo", TempoBytes(96.0, 4, 16, 4));
    if (layout.Metronome()) builder.Chunk("mtro", MetronomeBytes(4, 1, "1 3 2 3"));
    builder.Chunk("LIST", WaveList(layout));
    if (layout.WideBlocks()) builder.Chunk("WLST", WideWaveList(layout));

    // The tracks come before the blocks, which in Audition 1.5 name them by row.
    if (layout.UpperTracks()) builder.Chunk("TRKS", UpperTracks());
    else builder.Chunk("trks", LowerTracks(layout));
    if (layout.TrackEqChunk()) {
        // The vocals' EQ; the key is the track's number.
        TkeqRecord vocals{.TrackKey = 1, .LowFrequency = 100, .LowGain = -2, .HighFrequency = 8000,
                          .HighGain = 1.5, .MidFrequency = 2500, .MidQ = 4, .MidGain = 3, .LowQ = 2, .HighQ = 2};
        builder.Chunk("tkeq", TkeqPayload({vocals}));
    }
    // Cool Edit 2000 stores a colour number, the others a hue.
    builder.Chunk(layout.ce2000 || layout.pro12 ? "grps" : "grp2", GroupBytes({{1, layout.ce2000 ? 3 : 80}}));

    // Every version but Cool Edit Pro 2.00 keeps "blk "; "bk20" wins over it
    // in Cool Edit Pro 2.x and Audition 1.0, "bk25" over both from Audition
    // 1.5 on. Before Audition 2.0, "bk25" blocks find their tracks only
    // through the offset that the "blk " records leave.
    const std::vector<Block> blocks = Blocks(layout);
    if (!layout.pro200) builder.Chunk("blk ", BlkPayload(version, blocks));
    if (layout.ce2000) {
        std::vector<BlockHue> hues;
        for (const Block& b : blocks) hues.push_back({b.BlockId, static_cast<std::uint8_t>(b.Hue)});
        builder.Chunk("blk2", Blk2Payload(hues));
    }
    if (layout.pro200 || layout.pro21 || layout.aud10) builder.Chunk("bk20", Bk20Payload(blocks));
    // Audition 1.0 keeps a "bk25" of 88-byte records as well, which nothing reads.
    if (layout.aud10 || layout.WideBlocks()) builder.Chunk("bk25", Bk25Payload(version, blocks, Fades(layout)));

    if (layout.EnvelopesFromWaveStart()) {
        builder.Chunk("envp", Envp(layout));
    } else {
        builder.Chunk("ep20", Ep20(layout));
        // Audition 1.0 keeps the older envelopes behind; "ep20" wins.
        if (layout.aud10) {
            EnvpGroup older{BlockIdOf(layout, kVerse), {{0, 0.25}}, {}};
            builder.Chunk("envp", EnvpPayload({older}));
        }
    }
    if (layout.WideBlocks()) builder.Chunk("loop", LoopBytes({{BlockIdOf(layout, kGroove), kGrooveStretchedLength}}));
    builder.Chunk("cues", CueBytes({{0, 0, "Intro", "count-in"}, {150000, 66150, "Chorus", ""}},
                                   layout.pro12 ? CueLayout::WithoutCueType : CueLayout::WithCueType));
    return builder.Build();
}

}  // namespace morvanta::testing

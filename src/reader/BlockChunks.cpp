// Readers of the block chunks "bk25", "bk20", "blk " and "blk2": the raw
// records of a session's clips, with their gains as the clip gain table says
// (docs/format/clips.md, "Block chunks").
#include <string>
#include <string_view>

#include "model/VersionClasses.h"
#include "reader/ChunkReaders.h"
#include "reader/ReadError.h"
#include "reader/ReadLimits.h"
#include "services/Conversions.h"

namespace morvanta {
namespace {

constexpr std::int64_t kBk25RecordSize = 72;
constexpr std::int64_t kAud10Bk25RecordSize = 88;  // not understood: stepped over
constexpr std::int64_t kBk25FadeSize = 40;
constexpr std::int64_t kBk20RecordSize = 56;
constexpr std::int64_t kBlkRecordSize = 88;
constexpr std::int64_t kBlk2RecordSize = 40;

// Audition 3.0 keeps more bytes behind a block of the video track than the
// block size says; Audition 2.0 keeps a record of its own, whose length
// stands at offset 64 of the block, behind blocks of these track ids.
constexpr std::int64_t kVideoBlockTail = 522;
constexpr std::int32_t kAud20SpecialTracksFrom = 250000;
constexpr std::int32_t kAud20SpecialTracksTo = 260000;  // excluded

// ---------------------------------------------------------------- bounds

// A record that runs from `start` to `next` must lie inside the chunk and
// take at least its own `smallest` bytes.
void RequireRecordExtent(const ChunkHeader& chunk, std::int64_t start, std::int64_t next,
                         std::int64_t smallest, const char* what) {
    if (next < start + smallest) {
        throw ReadError(start, std::string("the ") + what + " at offset " + std::to_string(start) +
                                   " would end at offset " + std::to_string(next) +
                                   ", inside its own " + std::to_string(smallest) + " bytes");
    }
    if (next > chunk.End()) {
        throw ReadError(start, std::string("the ") + what + " at offset " + std::to_string(start) +
                                   " ends at offset " + std::to_string(next) +
                                   ", past the end of the chunk at offset " + std::to_string(chunk.End()));
    }
}

// ---------------------------------------------------------------- gains

enum class GainLaw {
    Stays,       // no such pair in this record, or it is not the clip's gain
    CutLaw,      // ConvertGainBack(vol of LeftRightToPanVolA_Old)
    MeanLevel,   // ConvertGainBack(lr_to_vol)
    EqualPower,  // ConvertGainBack(vol of LeftRightToPanVolC)
    MeanLevelAndRawRight,  // left as MeanLevel, right ConvertGainBack(right)
};

// The clip gain table: rows of one chunk are tried from the top.
GainLaw ClipGainLaw(std::string_view tag, std::string_view v) {
    if (tag == "blk ") {
        if (Pro12(v) || Aud10(v)) return GainLaw::Stays;
        if (Ce2000(v)) return GainLaw::MeanLevelAndRawRight;
        if (Pro20(v) || Pro21(v) || Aud15(v)) return GainLaw::MeanLevel;
        return GainLaw::EqualPower;
    }
    if (tag == "bk20" && (Pro20(v) || Pro21(v) || Aud10(v))) return GainLaw::CutLaw;
    if (tag == "bk25" && Aud10(v)) return GainLaw::Stays;
    if (Aud15(v)) return GainLaw::MeanLevel;
    return GainLaw::EqualPower;
}

// Equal gains stay exactly as stored; only a pair that differs is replaced.
void ApplyGainRule(BlockRecord& r, std::string_view tag, std::string_view version) {
    if (r.LeftGain == r.RightGain) return;
    double pan = 0;
    double vol = 0;
    switch (ClipGainLaw(tag, version)) {
    case GainLaw::Stays:
        return;
    case GainLaw::CutLaw:
        LeftRightToPanVolA_Old(r.LeftGain, r.RightGain, pan, vol);
        r.LeftGain = r.RightGain = ConvertGainBack(vol);
        return;
    case GainLaw::MeanLevel:
        r.LeftGain = r.RightGain = ConvertGainBack(lr_to_vol(r.LeftGain, r.RightGain));
        return;
    case GainLaw::EqualPower:
        LeftRightToPanVolC(r.LeftGain, r.RightGain, pan, vol);
        r.LeftGain = r.RightGain = ConvertGainBack(vol);
        return;
    case GainLaw::MeanLevelAndRawRight: {
        const double left = ConvertGainBack(lr_to_vol(r.LeftGain, r.RightGain));
        r.RightGain = ConvertGainBack(r.RightGain);
        r.LeftGain = left;
        return;
    }
    }
}

// ---------------------------------------------------------------- Audition 1.5 track rows

// In Audition 1.5 files a block names its track by the row of the tracks
// chunk read before it. A block whose row is not there cannot be placed: it
// is left out, and the chunk reports how many were, with the first of them.
class TrackRows {
public:
    TrackRows(ReadContext& ctx, const ChunkHeader& chunk) : ctx_(ctx), chunk_(chunk) {}

    // Replaces the row number by the track's id; false when there is no such row.
    bool Resolve(BlockRecord& r, std::int64_t recordStart) {
        const auto& tracks = ctx_.session.SesTracks;
        if (r.TrackId >= 1 && static_cast<std::size_t>(r.TrackId) <= tracks.size()) {
            r.TrackId = tracks[static_cast<std::size_t>(r.TrackId) - 1].TrackId;
            return true;
        }
        if (missing_++ == 0) {
            firstOffset_ = recordStart;
            firstBlock_ = r.BlockId;
            firstRow_ = r.TrackId;
        }
        return false;
    }

    // One warning for the chunk, when any block was left out.
    void Report() {
        if (missing_ == 0) return;
        ctx_.warnings.push_back(Diagnostic{
            std::to_string(missing_) + (missing_ == 1 ? " block names" : " blocks name") +
                " a track row that the tracks read before it do not have (the first, block " +
                std::to_string(firstBlock_) + " at offset " + std::to_string(firstOffset_) + ", names row " + std::to_string(firstRow_) + " of " +
                std::to_string(ctx_.session.SesTracks.size()) + "): left out",
            firstOffset_, chunk_.Tag});
    }

private:
    ReadContext& ctx_;
    const ChunkHeader& chunk_;
    int missing_ = 0;
    std::int64_t firstOffset_ = -1;
    std::int32_t firstBlock_ = 0;
    std::int32_t firstRow_ = 0;
};

// The first 44 bytes, which the 72-byte record of "bk25" and the 56-byte
// record of the old "bk20" share.
BlockRecord ReadCommonBlockFields(const ByteReader& f, std::int64_t q) {
    BlockRecord r;
    r.BlockId = f.Int32(q);
    r.WaveId = f.Int32(q + 4);
    r.LeftGain = f.Double(q + 8);
    r.RightGain = f.Double(q + 16);
    r.Start = f.Int32(q + 24);
    r.Length = f.Int32(q + 28);
    r.SourceStart = f.Int32(q + 32);
    r.Flags = f.Int32(q + 36);
    r.TrackId = f.Int32(q + 40);
    return r;
}

// The 72-byte record of "bk25" (and of "bk20" outside the old layout).
BlockRecord ReadBk25Record(const ByteReader& f, std::int64_t q) {
    BlockRecord r = ReadCommonBlockFields(f, q);
    r.GroupId = f.Int32(q + 44);
    r.Hue = f.Int32(q + 60);
    return r;
}

Bk25Fade ReadBk25Fade(const ByteReader& f, std::int64_t q) {
    Bk25Fade fade;
    fade.FadeInLength = f.Int32(q);
    fade.FadeOutLength = f.Int32(q + 4);
    fade.FadeInShape = f.Int32(q + 8);
    fade.FadeOutShape = f.Int32(q + 12);
    fade.FadeInType = f.Int32(q + 16);
    fade.FadeOutType = f.Int32(q + 20);
    return fade;
}

enum class BlkLayout { Pro12, Ce2000, Wide };

BlkLayout BlkLayoutOf(std::string_view v) {
    if (Pro12(v) || Aud10(v)) return BlkLayout::Pro12;
    if (Ce2000(v)) return BlkLayout::Ce2000;
    // Cool Edit Pro 2.1 and Audition 1.5 to 3.0; also a file read without a version.
    return BlkLayout::Wide;
}

}  // namespace

std::int64_t ReadBk25Chunk(ReadContext& ctx, const ChunkHeader& chunk) {
    if (chunk.PayloadLength <= 0) return chunk.PayloadPosition;
    Session& s = ctx.session;
    const std::string& v = s.SesVersion;
    const ByteReader& f = ctx.file;
    // A later chunk replaces an earlier one.
    s.Bk25Records.clear();
    s.Bk25Fades.clear();

    const std::int64_t p = chunk.PayloadPosition;
    const std::int32_t count = f.Int32(p);
    const std::int32_t blockSize = f.Int32(p + 4);
    const std::int64_t first = Aud10(v) ? p + 12 : p + 8;
    RequireRoomBefore(chunk.End(), "chunk", p, count, Aud10(v) ? kAud10Bk25RecordSize : kBk25RecordSize, first, "block");

    TrackRows rows(ctx, chunk);
    std::int64_t position = first;
    for (std::int32_t i = 0; i < count; ++i) {
        const std::int64_t start = position;
        if (Aud10(v)) {
            // The record of these files has another shape, which nothing
            // here understands. Its blocks are stepped over and not kept, so
            // they cannot replace the clips of the file's "bk20" or "blk ".
            position = start + kAud10Bk25RecordSize;
            continue;
        }
        BlockRecord r = ReadBk25Record(f, start);
        ApplyGainRule(r, chunk.Tag, v);
        std::int64_t next = start + kBk25RecordSize;
        bool special = false;
        if (Aud30(v) && r.TrackId == kVideoTrackId) {
            special = true;
            next = start + blockSize + kVideoBlockTail;
            RequireRecordExtent(chunk, start, next, kBk25RecordSize, "video block record");
        } else if (Aud20(v) && r.TrackId >= kAud20SpecialTracksFrom && r.TrackId < kAud20SpecialTracksTo) {
            special = true;
            next = start + kBk25RecordSize + f.Int32(start + 64);
            RequireRecordExtent(chunk, start, next, kBk25RecordSize, "block record with its special record");
        }
        const bool placed = !Aud15(v) || rows.Resolve(r, start);
        if (Aud30(v)) {
            // Fade rows are numbered by block: a special block leaves a zero row.
            Bk25Fade fade;
            if (!special) {
                RequireRecordExtent(chunk, next, next + kBk25FadeSize, kBk25FadeSize, "fade record");
                fade = ReadBk25Fade(f, next);
                next += kBk25FadeSize;
            }
            s.Bk25Fades.push_back(fade);
        }
        if (placed) s.Bk25Records.push_back(r);
        position = next;
    }
    rows.Report();
    return chunk.End();
}

std::int64_t ReadBk20Chunk(ReadContext& ctx, const ChunkHeader& chunk) {
    if (chunk.PayloadLength <= 0) return chunk.PayloadPosition;
    Session& s = ctx.session;
    const ByteReader& f = ctx.file;
    s.Bk20Records.clear();

    const std::int64_t p = chunk.PayloadPosition;
    const std::int32_t count = f.Int32(p);
    const std::int64_t first = p + 8;
    RequireRoomBefore(chunk.End(), "chunk", p, count, kBk20RecordSize, first, "block");
    for (std::int32_t i = 0; i < count; ++i) {
        const std::int64_t q = first + i * kBk20RecordSize;
        BlockRecord r = ReadCommonBlockFields(f, q);
        r.Hue = f.Int32(q + 44);
        ApplyGainRule(r, "bk20", s.SesVersion);
        s.Bk20Records.push_back(r);
    }
    return chunk.End();
}

std::int64_t ReadBlkChunk(ReadContext& ctx, const ChunkHeader& chunk) {
    if (chunk.PayloadLength <= 0) return chunk.PayloadPosition;
    Session& s = ctx.session;
    const std::string& v = s.SesVersion;
    const ByteReader& f = ctx.file;
    s.BlkRecords.clear();

    const std::int64_t p = chunk.PayloadPosition;
    const std::int32_t count = f.Int32(p);
    const std::int64_t first = p + 4;
    RequireRoomBefore(chunk.End(), "chunk", p, count, kBlkRecordSize, first, "block");
    const BlkLayout layout = BlkLayoutOf(v);
    TrackRows rows(ctx, chunk);
    for (std::int32_t i = 0; i < count; ++i) {
        const std::int64_t q = first + i * kBlkRecordSize;
        BlockRecord r;
        // In the Cool Edit Pro 1.2 layout the pair at 0 and 8 is the clip's
        // gain as stored; the table's row for it reads other fields.
        r.LeftGain = f.Double(q);
        r.RightGain = f.Double(q + 8);
        r.Start = f.Int32(q + 32);
        r.Length = f.Int32(q + 36);
        r.BlockId = f.Int32(q + 40);
        if (layout != BlkLayout::Pro12) r.Flags = f.Int32(q + 44);
        r.WaveId = f.Int32(q + 48);
        r.TrackId = f.Int32(q + 52);
        if (layout == BlkLayout::Ce2000) r.GroupId = f.Int32(q + 56);
        r.SourceStart = (layout == BlkLayout::Wide && !Pro21(v)) ? f.Int32(q + 28) : f.Int32(q + 64);
        ApplyGainRule(r, "blk ", v);
        if (Aud15(v) && !rows.Resolve(r, q)) continue;
        s.BlkRecords.push_back(r);
    }
    rows.Report();
    return chunk.End();
}

std::int64_t ReadBlk2Chunk(ReadContext& ctx, const ChunkHeader& chunk) {
    if (chunk.PayloadLength <= 0) return chunk.PayloadPosition;
    const ByteReader& f = ctx.file;
    const std::int64_t p = chunk.PayloadPosition;
    const std::int32_t count = f.Int32(p);
    const std::int64_t first = p + 4;
    RequireRoomBefore(chunk.End(), "chunk", p, count, kBlk2RecordSize, first, "block colour");
    // Appended: the list is not emptied by a second chunk.
    for (std::int32_t i = 0; i < count; ++i) {
        const std::int64_t q = first + i * kBlk2RecordSize;
        ctx.session.Blk2Records.push_back(Blk2Record{f.Int32(q), f.Byte(q + 4)});
    }
    return chunk.End();
}

}  // namespace morvanta

#include "BlockPayloads.h"

namespace morvanta::testing {
namespace {

bool StartsWith(std::string_view version, std::string_view prefix) { return version.substr(0, prefix.size()) == prefix; }

constexpr std::int32_t kVideoTrack = 490000;
constexpr std::size_t kVideoTailBeyondBlockSize = 522;

// The Audition 2.0 tracks whose blocks carry a record of their own.
bool Aud20SpecialTrack(std::int32_t trackId) { return trackId >= 250000 && trackId < 260000; }

// A text field of `width` bytes: the characters, cut or padded with zeros.
Bytes TextField(std::string_view text, std::size_t width) {
    return Bytes().Text(text.substr(0, width)).PadTo(width);
}

}  // namespace

Bytes Bk25Record(const Block& b) {
    Bytes r;
    r.Int32(b.BlockId).Int32(b.WaveId).Double(b.LeftGain).Double(b.RightGain);
    r.Int32(b.Start).Int32(b.Length).Int32(b.SourceStart).Int32(b.Flags).Int32(b.TrackId).Int32(b.GroupId);
    r.Zeros(12).Int32(b.Hue).Int32(b.SpecialBytes).Zeros(4);
    return r;
}

Bytes Bk25FadeRecord(const BlockFade& f) {
    Bytes r;
    r.Int32(f.FadeInLength).Int32(f.FadeOutLength).Int32(f.FadeInShape).Int32(f.FadeOutShape);
    r.Int32(f.FadeInType).Int32(f.FadeOutType).Zeros(16);
    return r;
}

Bytes Bk20Record(const Block& b) {
    Bytes r;
    r.Int32(b.BlockId).Int32(b.WaveId).Double(b.LeftGain).Double(b.RightGain);
    r.Int32(b.Start).Int32(b.Length).Int32(b.SourceStart).Int32(b.Flags).Int32(b.TrackId).Int32(b.Hue);
    r.Zeros(8);
    return r;
}

// Three layouts of 88 bytes. Flags (44) and GroupId (56) are written in all
// of them, although the oldest readers step over them. Source start stands
// at 64, except in Audition 1.5 to 3.0, where it stands at 28.
Bytes BlkRecord(std::string_view version, const Block& b) {
    const bool oldest = StartsWith(version, "Cool Edit Pro 1.2") || StartsWith(version, "Audition 1.0");
    const bool ce2000 = StartsWith(version, "Cool Edit 2000 1.0");
    const bool sourceAt64 = oldest || ce2000 || StartsWith(version, "Cool Edit Pro 2.1");
    Bytes r;
    r.Double(b.LeftGain).Double(b.RightGain).Zeros(12);
    r.Int32(sourceAt64 ? 0 : b.SourceStart);
    r.Int32(b.Start).Int32(b.Length).Int32(b.BlockId).Int32(b.Flags).Int32(b.WaveId).Int32(b.TrackId);
    r.Int32(b.GroupId).Zeros(4).Int32(sourceAt64 ? b.SourceStart : 0);
    if (oldest) {
        r.Zeros(20);
    } else if (ce2000) {
        r.Zeros(4).Append(TextField(b.Name, 12)).Zeros(4);
    } else {
        r.Zeros(8).Append(TextField(b.Name, 12));
    }
    return r;
}

Bytes Bk25Payload(std::string_view version, const std::vector<Block>& blocks, const std::vector<BlockFade>& fades,
                  std::int32_t blockSize) {
    const bool aud10 = StartsWith(version, "Audition 1.0");
    const bool aud20 = StartsWith(version, "Audition 2.0");
    const bool aud30 = StartsWith(version, "Audition 3.0");
    Bytes p;
    p.Int32(static_cast<std::int32_t>(blocks.size())).Int32(blockSize);
    if (aud10) p.Int32(0);
    for (std::size_t i = 0; i < blocks.size(); ++i) {
        const Block& b = blocks[i];
        if (aud10) {
            // 76 bytes and a 12-character text.
            Bytes r = Bk25Record(b);
            r.PadTo(76).Append(TextField(b.Name, 12));
            p.Append(r);
            continue;
        }
        p.Append(Bk25Record(b));
        if (aud30 && b.TrackId == kVideoTrack) {
            p.Zeros(static_cast<std::size_t>(blockSize) + kVideoTailBeyondBlockSize - 72);
        } else if (aud20 && Aud20SpecialTrack(b.TrackId)) {
            p.Zeros(static_cast<std::size_t>(b.SpecialBytes));
        } else if (aud30) {
            p.Append(Bk25FadeRecord(i < fades.size() ? fades[i] : BlockFade{}));
        }
    }
    return p;
}

Bytes Bk20Payload(const std::vector<Block>& blocks) {
    Bytes p;
    p.Int32(static_cast<std::int32_t>(blocks.size())).Zeros(4);
    for (const Block& b : blocks) p.Append(Bk20Record(b));
    return p;
}

Bytes BlkPayload(std::string_view version, const std::vector<Block>& blocks) {
    Bytes p;
    p.Int32(static_cast<std::int32_t>(blocks.size()));
    for (const Block& b : blocks) p.Append(BlkRecord(version, b));
    return p;
}

Bytes Blk2Payload(const std::vector<BlockHue>& hues) {
    Bytes p;
    p.Int32(static_cast<std::int32_t>(hues.size()));
    for (const BlockHue& h : hues) p.Append(Bytes().Int32(h.BlockId).Byte(h.Hue).PadTo(40));
    return p;
}

void AppendBlockFuzzSeeds(std::vector<NamedFile>& seeds) {
    // A count far beyond the one block and fade the chunk holds.
    Bytes hugeCount;
    hugeCount.Int32(0x7FFFFFFF).Int32(72).Append(Bk25Record(Block{})).Append(Bk25FadeRecord(BlockFade{}));
    seeds.push_back({"huge-block-count.ses", SesBuilder().Version("Audition 3.0").Chunk("bk25", hugeCount).Build()});

    // A video block whose block size sends the next record past the chunk.
    Block video;
    video.TrackId = kVideoTrack;
    Bytes overrun;
    overrun.Int32(2).Int32(100000).Append(Bk25Record(video)).Append(Bk25Record(Block{}));
    seeds.push_back({"video-block-past-chunk.ses", SesBuilder().Version("Audition 3.0").Chunk("bk25", overrun).Build()});
}

}  // namespace morvanta::testing

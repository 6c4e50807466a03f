// Clips, fades and clip points out of the raw block and envelope records, the
// video repair and the clip order (docs/format/clips.md, "Clip assembly").
#include <algorithm>
#include <cstdint>
#include <set>
#include <unordered_map>
#include <unordered_set>

#include "model/VersionClasses.h"
#include "reader/Assembly.h"
#include "services/NumberText.h"

namespace morvanta {
namespace {

// Added to the raw track ids of the versions before Audition 2.0.
constexpr std::int32_t kOldTrackIdOffset = 10000;
constexpr std::int32_t kDefaultFadeShape = 19;
constexpr std::int32_t kDefaultClipHue = 112;

// Ids are 32-bit. A sum that leaves that range wraps round, as the stored
// bits would, and then names nothing real.
std::int32_t Wrapped(std::int64_t value) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(value & 0xFFFFFFFF));
}

// The clip id of a block, and of every tie to a block (fades, envelopes).
std::int32_t ClipIdOf(std::int32_t blockId) {
    return blockId < kSmallIdLimit ? blockId + kSmallBlockIdOffset : blockId;
}

// First position of each id in a list, for the "find the first" searches.
template <class List, class IdOf>
std::unordered_map<std::int32_t, std::size_t> FirstPositions(const List& list, IdOf idOf) {
    std::unordered_map<std::int32_t, std::size_t> first;
    for (std::size_t i = 0; i < list.size(); ++i) first.try_emplace(idOf(list[i]), i);
    return first;
}

// The lookups of one BuildClips run. Track and file ids do not change while
// the clips are built (only the Kind of a file does).
struct ClipTies {
    explicit ClipTies(const Session& s)
        : tracks(FirstPositions(s.Tracks, [](const Track& t) { return t.TrackId; })),
          files(FirstPositions(s.SessionFiles, [](const SessionFile& f) { return f.FileId; })) {
        for (const ClipStretch& stretch : s.ClipStretches) stretched.insert(stretch.ClipId);
    }

    const Track* FindTrack(const Session& s, std::int32_t trackId) const {
        const auto it = tracks.find(trackId);
        return it == tracks.end() ? nullptr : &s.Tracks[it->second];
    }
    SessionFile* FindFile(Session& s, std::int32_t fileId) const {
        const auto it = files.find(fileId);
        return it == files.end() ? nullptr : &s.SessionFiles[it->second];
    }

    std::unordered_map<std::int32_t, std::size_t> tracks;
    std::unordered_map<std::int32_t, std::size_t> files;
    std::unordered_set<std::int32_t> stretched;
};

ClipFade DefaultFade(std::int32_t clipId) {
    return ClipFade{.ClipId = clipId,
                    .FadeInLength = 0,
                    .FadeInShape = kDefaultFadeShape,
                    .FadeInType = 0,
                    .FadeOutLength = 0,
                    .FadeOutShape = kDefaultFadeShape,
                    .FadeOutType = 0};
}

void TakeFlags(Clip& c, const BlockRecord& r) {
    c.Locked = (r.Flags & kBlockFlagLocked) != 0 ? 1 : 0;
    c.Muted = (r.Flags & kBlockFlagMuted) != 0 ? 1 : 0;
}

enum class BlockList { Bk20, Blk };

// The pass over "bk20" or "blk " records. Leaves in `trackOffset` what its
// last record set.
void BlockPass(Session& s, const ClipTies& ties, std::vector<BlockRecord>& list, BlockList which,
               std::int32_t& trackOffset) {
    const std::string& v = s.SesVersion;
    // Versions whose blocks all name their file by a small number.
    const bool smallWaveIds = which == BlockList::Bk20 ? (Pro21(v) || Aud10(v))
                                                       : (Ce2000(v) || Pro12(v) || Pro21(v) || Aud10(v));
    std::unordered_map<std::int32_t, std::int32_t> blk2Hues;  // first row of each clip id
    for (const Blk2Record& row : s.Blk2Records)
        blk2Hues.try_emplace(Wrapped(std::int64_t{row.BlockId} + kSmallBlockIdOffset), row.Hue);

    for (BlockRecord& r : list) {
        Clip c;
        c.Gain = r.LeftGain;
        c.ClipId = ClipIdOf(r.BlockId);
        if (smallWaveIds) {
            r.WaveId = Wrapped(std::int64_t{r.WaveId} + kSmallFileIdOffset);
            c.FileId = r.WaveId;
        } else {
            c.FileId = r.WaveId < kSmallIdLimit ? r.WaveId + kSmallFileIdOffset : r.WaveId;
        }
        c.SourceStart = r.SourceStart;
        c.Start = r.Start;
        c.Length = r.Length;
        TakeFlags(c, r);
        trackOffset = (Aud20(v) || Aud30(v)) ? 0 : kOldTrackIdOffset;
        const std::int32_t trackId = Wrapped(std::int64_t{r.TrackId} + trackOffset);
        c.TrackId = trackId;

        if (which == BlockList::Bk20) {
            c.Hue = (Pro21(v) || Aud10(v)) ? r.Hue : 0;
        } else {
            if (Ce2000(v) || Pro12(v)) c.GroupId = r.GroupId;
            if (Ce2000(v)) {
                if (s.Blk2Records.empty()) {
                    c.Hue = kDefaultClipHue;
                } else {
                    const auto it = blk2Hues.find(c.ClipId);
                    c.Hue = it == blk2Hues.end() ? 0 : it->second;
                }
            } else if (Pro12(v) || Pro21(v) || Aud10(v)) {
                c.Hue = kDefaultClipHue;
            }
        }

        if (const Track* track = ties.FindTrack(s, trackId)) c.TrackOrdinal = track->TrackOrdinal;

        // Files of these sessions may be numbered from 0 while the file list
        // holds them from 2000000 on.
        const std::int32_t fileOffset =
            list.front().WaveId == 0 && !s.SessionFiles.empty() && s.SessionFiles.front().FileId == kSmallFileIdOffset
                ? kSmallFileIdOffset
                : 0;
        SessionFile* file = ties.FindFile(s, Wrapped(std::int64_t{r.WaveId} + fileOffset));
        if (file) c.FileKind = file->Kind;
        if (r.TrackId == kVideoTrackId) {
            if (file) file->Kind = kFileKindVideo;
            c.FileKind = kFileKindVideo;
        }

        s.Clips.push_back(c);
        s.ClipFades.push_back(DefaultFade(c.ClipId));
    }
}

// The pass over "bk25" records, which wins over the others when it has any.
void WidePass(Session& s, const ClipTies& ties, std::int32_t trackOffset) {
    const std::string& v = s.SesVersion;
    const bool oldTrackIds = Aud15(v) || Pro200(v) || Pro21(v) || Aud10(v);
    for (std::size_t i = 0; i < s.Bk25Records.size(); ++i) {
        BlockRecord& r = s.Bk25Records[i];
        if (r.WaveId < kSmallIdLimit) r.WaveId += kSmallFileIdOffset;
        Clip c;
        c.FileId = r.WaveId;
        c.Gain = r.LeftGain;
        c.ClipId = ClipIdOf(r.BlockId);
        c.SourceStart = r.SourceStart;
        c.Start = r.Start;
        c.Length = r.Length;
        c.Hue = r.Hue;
        c.GroupId = r.GroupId;
        c.Looped = ties.stretched.contains(c.ClipId) ? 1 : 0;

        const std::int32_t ownTrackId = oldTrackIds ? Wrapped(std::int64_t{r.TrackId} + kOldTrackIdOffset) : r.TrackId;
        if (const SessionFile* file = ties.FindFile(s, c.FileId)) c.FileKind = file->Kind;
        if (c.FileKind == kFileKindVideo) {
            if (oldTrackIds) {
                c.TrackId = ownTrackId;
            } else {
                c.TrackId = kVideoTrackId;
                c.TrackOrdinal = 1;
            }
        }
        if (const Track* track = ties.FindTrack(s, Wrapped(std::int64_t{r.TrackId} + trackOffset))) {
            c.TrackOrdinal = track->TrackOrdinal;
            c.TrackId = ownTrackId;
        }
        TakeFlags(c, r);
        SessionFile* file = ties.FindFile(s, r.WaveId);
        if (file) c.FileKind = file->Kind;
        if (r.TrackId == kVideoTrackId) {
            if (file) file->Kind = kFileKindVideo;
            c.FileKind = kFileKindVideo;
        }

        s.Clips.push_back(c);
        if (c.FileKind == kFileKindVideo) continue;
        if (Aud30(v)) {
            // The fade rows are numbered by block, like the records.
            const Bk25Fade fade = i < s.Bk25Fades.size() ? s.Bk25Fades[i] : Bk25Fade{};
            s.ClipFades.push_back(ClipFade{.ClipId = c.ClipId,
                                           .FadeInLength = fade.FadeInLength,
                                           .FadeInShape = fade.FadeInShape,
                                           .FadeInType = fade.FadeInType,
                                           .FadeOutLength = fade.FadeOutLength,
                                           .FadeOutShape = fade.FadeOutShape,
                                           .FadeOutType = fade.FadeOutType});
        } else {
            s.ClipFades.push_back(DefaultFade(c.ClipId));
        }
    }
}

}  // namespace

void BuildClips(Session& s, std::vector<Diagnostic>&) {
    s.Clips.assign(1, Clip{});
    s.ClipFades.clear();
    const ClipTies ties(s);
    // Set by the block pass; 0 when that pass had no records.
    std::int32_t trackOffset = 0;
    if (!s.Bk20Records.empty())
        BlockPass(s, ties, s.Bk20Records, BlockList::Bk20, trackOffset);
    else if (!s.BlkRecords.empty())
        BlockPass(s, ties, s.BlkRecords, BlockList::Blk, trackOffset);
    if (!s.Bk25Records.empty()) {
        // "bk25" wins. What the block pass did to the offset and to the kind
        // of files stays.
        s.Clips.assign(1, Clip{});
        s.ClipFades.clear();
        WidePass(s, ties, trackOffset);
    }
}

void BuildClipPoints(Session& s) {
    s.ClipPoints.clear();
    // In these versions an envelope point counts from the start of the file,
    // not of the clip.
    const bool fromFileStart = Ce2000(s.SesVersion) || Pro12(s.SesVersion);
    std::unordered_map<std::int32_t, std::size_t> clipOfId;  // first clip of each id; element 0 is no clip
    for (std::size_t n = 1; n < s.Clips.size(); ++n) clipOfId.try_emplace(s.Clips[n].ClipId, n);

    s.ClipPoints.reserve(s.EnvelopePoints.size());
    for (const EnvelopePoint& e : s.EnvelopePoints) {
        ClipPoint point;
        point.ClipId = ClipIdOf(e.ClipId);
        const auto it = clipOfId.find(point.ClipId);
        if (it != clipOfId.end()) {
            const Clip& clip = s.Clips[it->second];
            point.TrackId = clip.TrackId;
            double position = e.SamplePosition;
            if (fromFileStart) position -= clip.SourceStart;
            if (position < 0) position = 0;
            point.Offset = RoundHalfEven(position);
            point.Value = e.Value;
            point.Kind = (e.Kind == 1 || e.Kind == 2) ? e.Kind : 0;
        }
        s.ClipPoints.push_back(point);
    }
}

void RepairVideoClips(Session& s) {
    if (!s.VideoSeen) return;
    // A clip takes the kind of each file of its id in turn, and the first
    // video among them moves it to the video track; any later one finds
    // it there already. So the kind of the last file, and whether any is a
    // video, is all that the files of one id tell.
    struct FilesOfId {
        std::int32_t LastKind{};
        bool AnyVideo = false;
    };
    std::unordered_map<std::int32_t, FilesOfId> filesOfId;
    for (const SessionFile& file : s.SessionFiles) {
        FilesOfId& files = filesOfId[file.FileId];
        files.LastKind = file.Kind;
        if (file.Kind == kFileKindVideo) files.AnyVideo = true;
    }
    // Track ids change on the way, so the first track of an id is looked up
    // in ordered sets that follow the changes.
    std::unordered_map<std::int32_t, std::set<std::size_t>> tracksOfId;
    for (std::size_t t = 0; t < s.Tracks.size(); ++t) tracksOfId[s.Tracks[t].TrackId].insert(t);

    for (std::size_t n = 1; n < s.Clips.size(); ++n) {
        Clip& c = s.Clips[n];
        const auto files = filesOfId.find(c.FileId);
        if (files == filesOfId.end()) continue;
        c.FileKind = files->second.LastKind;
        if (!files->second.AnyVideo) continue;
        // The track that held the video becomes the video track.
        if (auto holders = tracksOfId.find(c.TrackId); holders != tracksOfId.end() && !holders->second.empty()) {
            const std::size_t t = *holders->second.begin();
            holders->second.erase(holders->second.begin());
            s.Tracks[t].TrackId = kVideoTrackId;
            tracksOfId[kVideoTrackId].insert(t);
        }
        c.ClipId = kVideoClipId;
        c.TrackId = kVideoTrackId;
    }
}

void SortClips(Session& s) {
    // By track, then by start; clips that tie keep their order of arrival.
    // Element 0 takes part, as the writer's sort does. The numbers are
    // compared as numbers: for every start from 0 to ten digits this is the
    // order a text key of ordinal and zero-padded start gives.
    std::stable_sort(s.Clips.begin(), s.Clips.end(), [](const Clip& a, const Clip& b) {
        return a.TrackOrdinal < b.TrackOrdinal || (a.TrackOrdinal == b.TrackOrdinal && a.Start < b.Start);
    });
}

}  // namespace morvanta

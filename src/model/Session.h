// The in-memory picture of one session while it is converted: what the
// chunk readers fill, what the assembly turns into document lists, and what
// the writer walks. One value per file; nothing here is shared between files.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace morvanta {

// Reserved numbers that carry the model's identities (docs/format/model.md).
inline constexpr std::int32_t kMasterTrackId = 10000;
inline constexpr std::int32_t kBusIdLimit = 20000;
inline constexpr std::int32_t kVideoTrackId = 490000;
inline constexpr std::int32_t kSmallIdLimit = 100000;
inline constexpr std::int32_t kSmallFileIdOffset = 2000000;
inline constexpr std::int32_t kSmallBlockIdOffset = 300000000;
inline constexpr std::int32_t kVideoClipId = 82847048;

// Text fields of the file format hold at most 255 characters.
inline constexpr std::size_t kFixedTextWidth = 255;

// ---------------------------------------------------------------- document lists

struct Track {
    std::int32_t TrackId{};
    std::int32_t TrackOrdinal{};
    std::int32_t AutomationMode{};
    double Volume{};
    std::int32_t BusId{};
    std::int32_t OutputBusId{};
    std::int32_t Muted{};
    std::int32_t Soloed{};
    double Pan{};
    std::int32_t TrackHeight{};
    std::int32_t RackPostFader{};
    std::int32_t PhaseInverted{};
    std::string TrackName;
    bool operator==(const Track&) const = default;
};

struct Clip {
    std::int32_t ClipId{};
    std::int32_t FileId{};
    double SourceStart{};
    double Start{};
    double Length{};
    std::int32_t TrackId{};
    std::int32_t TrackOrdinal{};
    std::int32_t FileKind{};
    std::int32_t Looped{};
    std::int32_t Muted{};
    std::int32_t Locked{};
    double Gain{};
    std::int32_t Hue{};
    std::int32_t GroupId{};
    bool operator==(const Clip&) const = default;
};

inline constexpr std::int32_t kFileKindAudio = 1;
inline constexpr std::int32_t kFileKindVideo = 3;

struct SessionFile {
    double LengthSamples{};
    std::int32_t FileId{};
    std::int32_t Kind{};
    std::string Path;
    bool operator==(const SessionFile&) const = default;
};

struct CueMarker {
    std::int32_t Length{};
    double Start{};
    std::string Comment;
    std::string Name;
    bool operator==(const CueMarker&) const = default;
};

struct ClipFade {
    std::int32_t ClipId{};
    std::int32_t FadeInLength{};
    std::int32_t FadeInShape{};
    std::int32_t FadeInType{};
    std::int32_t FadeOutLength{};
    std::int32_t FadeOutShape{};
    std::int32_t FadeOutType{};
    bool operator==(const ClipFade&) const = default;
};

struct ClipPoint {
    std::int32_t ClipId{};
    std::int32_t Kind{};  // 1 volume, 2 pan, 0 clip not found
    std::int32_t Offset{};
    double Value{};
    std::int32_t TrackId{};
    bool operator==(const ClipPoint&) const = default;
};

struct ClipGroup {
    std::int32_t Hue{};
    std::int32_t GroupId{};
    bool operator==(const ClipGroup&) const = default;
};

// A record of the "loop" chunk; only two of its 176 bytes' fields are used.
struct ClipStretch {
    std::int32_t ClipId{};
    std::int32_t StretchedLength{};
    bool operator==(const ClipStretch&) const = default;
};

struct SesBus {
    std::string Name;
    double GainHigh{};
    double GainLow{};
    double Pan{};
    std::int32_t BusId{};
    bool operator==(const SesBus&) const = default;
};

// ---------------------------------------------------------------- raw lists of the readers

struct SesCue {
    std::string Name;
    std::string Comment;
    std::int32_t Start{};
    std::int32_t Length{};
    std::int32_t CueType{};
    bool operator==(const SesCue&) const = default;
};

struct SesWave {
    std::int32_t WaveId{};
    std::string Name;
    std::string Tag;  // four characters
    std::int32_t LengthSamples{};
    bool operator==(const SesWave&) const = default;
};

// The fields that the block lists "bk25", "bk20" and "blk " share.
struct BlockRecord {
    std::int32_t BlockId{};
    std::int32_t WaveId{};
    double LeftGain{};
    double RightGain{};
    std::int32_t Start{};
    std::int32_t Length{};
    std::int32_t SourceStart{};
    std::int32_t Flags{};
    std::int32_t TrackId{};
    std::int32_t GroupId{};
    std::int32_t Hue{};
    bool operator==(const BlockRecord&) const = default;
};

inline constexpr std::int32_t kBlockFlagLocked = 2;
inline constexpr std::int32_t kBlockFlagMuted = 4;

struct Bk25Fade {
    std::int32_t FadeInLength{};
    std::int32_t FadeOutLength{};
    std::int32_t FadeInShape{};
    std::int32_t FadeOutShape{};
    std::int32_t FadeInType{};
    std::int32_t FadeOutType{};
    bool operator==(const Bk25Fade&) const = default;
};

struct Blk2Record {
    std::int32_t BlockId{};
    std::int32_t Hue{};
    bool operator==(const Blk2Record&) const = default;
};

struct SesTrack {
    std::string Name;
    std::int32_t TrackId{};
    double GainHigh{1.0};
    double GainLow{1.0};
    std::int32_t StateCode{};
    std::int32_t SoloCode{};
    double Pan{};
    std::int32_t BusId{};
    std::int32_t OutputBusId{};
    std::int32_t TrackHeight{66};
    std::int32_t PhaseInverted{};
    std::int32_t RackPostFader{};
    std::int32_t AutomationMode{1};
    bool operator==(const SesTrack&) const = default;
};

// TrackVolumePoints, TrackPanPoints, TrackMutePoints.
struct TrackPoint {
    std::int32_t TrackId{};
    std::int32_t SampleOffset{};
    double Value{};
    bool operator==(const TrackPoint&) const = default;
};

// SendAutomation and RackAutomation.
struct NamedAutomationPoint {
    std::int32_t TrackId{};
    std::int32_t SampleOffset{};
    double Value{};
    std::int32_t SendSlot{};
    std::string ParameterName;  // at most 25 characters
    bool operator==(const NamedAutomationPoint&) const = default;
};

struct SendSlotSettings {
    std::int32_t OutputBus{};
    double Level{};
    double Pan{};
    std::int32_t PreFader{};
    bool operator==(const SendSlotSettings&) const = default;
};

inline constexpr std::size_t kSendSlotCount = 16;

struct TrackSend {
    std::int32_t TrackId{};
    std::array<SendSlotSettings, kSendSlotCount> Slots{};
    bool operator==(const TrackSend&) const = default;
};

struct TrackEq {
    std::int32_t TrackKey{};
    double LowFrequency{};
    double LowGain{};
    double HighFrequency{};
    double HighGain{};
    double MidFrequency{};
    double MidGain{};
    double MidQ{};
    double LowQ{};
    double HighQ{};
    std::int32_t EqEnabled{};
    bool operator==(const TrackEq&) const = default;
};

struct EnvelopePoint {
    std::int32_t ClipId{};
    std::int32_t Kind{};  // 1 volume, 2 pan
    std::int32_t SamplePosition{};
    double Value{};
    bool operator==(const EnvelopePoint&) const = default;
};

struct RackSlot {
    std::int32_t OwnerId{};
    std::string EffectName;   // at most 256 characters
    std::string ComponentId;  // at most 256 characters
    std::int32_t EditorHeight{};
    std::int32_t EditorLeft{};
    std::int32_t EditorTop{};
    std::int32_t EditorWidth{};
    std::int32_t SlotNumber{};
    std::string PresetText;  // at most 4096 characters
    bool operator==(const RackSlot&) const = default;
};

struct RackParameter {
    std::int32_t OwnerId{};
    std::string EffectName;
    std::int32_t ParameterIndex{};
    std::string ParameterName;
    std::string SesParameterName;
    std::string ValueExpression;  // at most 50 characters
    double Value{};
    std::string ValueFormat;  // at most 20 characters
    std::int32_t SlotNumber{};
    bool operator==(const RackParameter&) const = default;
};

struct EffectAutomationPoint {
    std::int32_t TrackId{};
    std::int32_t SampleOffset{};
    double Value{};
    std::int32_t SlotNumber{};
    std::int32_t SlotRow{};  // 1-based row of the effect's RackSlots entry
    std::string ParameterName;  // at most 25 characters
    bool operator==(const EffectAutomationPoint&) const = default;
};

// ---------------------------------------------------------------- the session

struct Session {
    // Scalars. Every one starts afresh for each file.
    std::string SesVersion;
    bool VersionRead = false;  // a "vers" chunk has been seen
    std::int32_t SampleRate{};
    double SmpteStart{};
    double MasterVolume{1.0};
    double EnvelopeGainScale{1.0};
    std::int32_t TimeFormat{};
    std::int32_t SelectionStart{};
    std::int32_t SelectionEnd{};
    double Tempo{};
    double BeatsPerBar{};
    std::int32_t Subdivisions{};
    std::int32_t NoteLength{};
    std::int32_t MetronomeSoundSet{};
    std::int32_t MetronomeEnabled{};
    std::string MetronomePattern;
    std::string SourcePath;
    bool VideoSeen = false;  // the wave list named a video file ("VDEO")

    // Derived just before the writer runs.
    std::string BeatsPerBarText;
    std::string TempoText;
    std::string SubdivisionsText;
    std::string NoteLengthText;

    // Document lists. Clips keeps an all-zero element 0: both clip sorts and
    // the crossfade test of the first clip look at it. The other lists are
    // plain, zero-based sequences.
    std::vector<Track> Tracks;
    std::vector<Clip> Clips = std::vector<Clip>(1);
    std::vector<SessionFile> SessionFiles;
    std::vector<CueMarker> CueMarkers;
    std::vector<ClipFade> ClipFades;
    std::vector<ClipPoint> ClipPoints;
    std::vector<ClipGroup> ClipGroups;
    std::vector<ClipStretch> ClipStretches;
    std::vector<SesBus> SesBuses;

    // Raw lists of the chunk readers.
    std::vector<SesCue> SesCues;
    std::vector<SesWave> SesWaves;
    std::vector<BlockRecord> Bk25Records;
    std::vector<Bk25Fade> Bk25Fades;
    std::vector<BlockRecord> Bk20Records;
    std::vector<BlockRecord> BlkRecords;
    std::vector<Blk2Record> Blk2Records;
    std::vector<SesTrack> SesTracks;
    std::vector<TrackPoint> TrackVolumePoints;
    std::vector<TrackPoint> TrackPanPoints;
    std::vector<TrackPoint> TrackMutePoints;
    std::vector<NamedAutomationPoint> SendAutomation;
    std::vector<NamedAutomationPoint> RackAutomation;
    std::vector<TrackSend> TrackSends;
    std::vector<TrackEq> TrackEqs;
    std::vector<EnvelopePoint> EnvelopePoints;
    std::vector<RackSlot> RackSlots;
    std::vector<RackParameter> RackParameters;
    std::vector<EffectAutomationPoint> EffectAutomation;

    bool operator==(const Session&) const = default;
};

// Cuts a text to the width of its field, as every store into a fixed field does.
std::string FixedText(std::string text, std::size_t width = kFixedTextWidth);

}  // namespace morvanta

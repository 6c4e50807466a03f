// The track chunks: the fixed-size records of "trks" and the large
// self-describing entries of "TRKS" (docs/format/tracks.md, "Track chunks").
// Both leave one SesTracks record per track; "TRKS" also fills the track
// point lists, TrackEqs, TrackSends and the send and rack automation.
#include <algorithm>
#include <limits>
#include <utility>

#include "model/VersionClasses.h"
#include "reader/ChunkReaders.h"
#include "reader/ReadError.h"
#include "reader/ReadLimits.h"
#include "reader/TrackVersions.h"
#include "reader/WideText.h"
#include "reader/effects/EffectRacks.h"
#include "reader/effects/ValueExpression.h"
#include "services/Conversions.h"
#include "services/NumberText.h"
#include "services/TextHelpers.h"

namespace morvanta {
namespace {

// ---------------------------------------------------------------- "trks"

struct TrksLayout {
    std::int64_t RecordSize;
    bool OutputAndId;  // output byte at 93 and TrackId at 96
};

TrksLayout TrksLayoutFor(std::string_view v) {
    if (Ce2000(v) || Pro12(v)) return {72, false};  // Pro12 takes in Pro12a
    if (Pro200(v)) return {96, false};
    if (Pro21(v) || Aud10(v)) return {104, true};
    return {152, true};
}

constexpr std::int64_t kTrksStateOffset = 16;
constexpr std::int64_t kTrksNameOffset = 20;
constexpr std::int64_t kTrksAud15IdOffset = 56;
constexpr std::int64_t kTrksOutputOffset = 93;
constexpr std::int64_t kTrksTrackIdOffset = 96;
constexpr std::uint8_t kNoOutputBus = 255;

// The name runs to its first zero byte, and never beyond its own record.
std::string RecordName(const ByteReader& file, std::int64_t from, std::int64_t recordEnd) {
    std::string name;
    for (std::int64_t p = from; p < recordEnd; ++p) {
        const std::uint8_t b = file.Byte(p);
        if (b == 0) break;
        name.push_back(static_cast<char>(b));
    }
    return name;
}

void ReadTrksRecords(ReadContext& ctx, const ChunkHeader& chunk, std::int64_t countPosition, std::int32_t count,
                     std::int64_t first) {
    const ByteReader& file = ctx.file;
    const std::string& version = ctx.session.SesVersion;
    const TrksLayout layout = TrksLayoutFor(version);
    // The walk goes on behind the payload, so the records lie inside it.
    // Measured against the file, each of many small chunks could read all
    // the records behind it again, by the square of the file's size.
    RequireRoomBefore(chunk.End(), "chunk", countPosition, count, layout.RecordSize, first, "track record");

    for (std::int32_t number = 1; number <= count; ++number) {
        const std::int64_t r = first + (number - 1) * layout.RecordSize;
        const double left = file.Double(r);
        const double right = file.Double(r + 8);
        SesTrack track;
        track.StateCode = file.Int32(r + kTrksStateOffset);
        track.Name = FixedText(TrimBlanks(RecordName(file, r + kTrksNameOffset, r + layout.RecordSize)));
        track.TrackId = number;
        if (layout.OutputAndId) {
            const std::uint8_t output = file.Byte(r + kTrksOutputOffset);
            if (output != kNoOutputBus) track.OutputBusId = output;
            track.TrackId = file.Int32(r + kTrksTrackIdOffset);
        }
        if (Aud15(version) && track.TrackId != number && file.Int32(r + kTrksAud15IdOffset) == number)
            track.TrackId = number;

        double pan = 0;
        double volume = 0;  // dropped: the gains themselves are kept
        LeftRightToPanVolA_Old(left, right, pan, volume);
        track.Pan = pan;
        track.GainHigh = left;
        track.GainLow = right;
        if (right > left) std::swap(track.GainHigh, track.GainLow);
        ctx.session.SesTracks.push_back(std::move(track));
    }
}

// ---------------------------------------------------------------- "TRKS"

constexpr std::int32_t kVideoMarker = kVideoTrackId;
constexpr std::int32_t kSkippedMarkersFrom = 250000;
constexpr std::int32_t kSkippedMarkersTo = 260000;  // not included

constexpr std::int64_t kMarkerEntryTail = 12;
constexpr std::int64_t kMinimumEntrySize = 24;  // a marker entry with an empty name
constexpr std::int64_t kEntryLead = 30;
constexpr std::int64_t kTrackFieldsSize = 48;  // from anchor S to anchor E
constexpr std::int64_t kPointSize = 16;

// Section offsets, from the position behind the section's name.
constexpr std::int64_t kParameterListOffset = 36;
constexpr std::int64_t kVolumeCountOffset = 412;
constexpr std::int64_t kMuteCountOffset = 770;
constexpr std::int64_t kMuteAlternateCountOffset = 786;
constexpr std::int32_t kMuteAlternateAbove = 250;
// Offsets inside a lane, a rack parameter and a send parameter.
constexpr std::int64_t kLanePointCountOffset = 310;
constexpr std::int64_t kAutomationCountOffset = 300;
constexpr int kPanLane = 4;
constexpr std::int64_t kRackFieldsSize = 16;
constexpr std::int64_t kSendEntryTail = 20;
constexpr std::size_t kParameterNameWidth = 25;

// The smallest size of each repeated item, for the count checks.
constexpr std::int64_t kMinimumParameterSize = 8;       // name and length
constexpr std::int64_t kMinimumLaneSize = 8;            // name and length
constexpr std::int64_t kMinimumRackParameterSize = 22;  // name, 10 bytes, text, length
constexpr std::int64_t kMinimumSendEntrySize = 64;

// The effect list.
constexpr std::int64_t kMinimumEffectEntrySize = 44;  // two texts, a length, 28 bytes, a text
constexpr std::int64_t kEffectNameOffset = 28;
constexpr std::int64_t kEffectParameterNameOffset = 26;
constexpr std::int64_t kEffectPointCountOffset = 306;
constexpr std::size_t kEffectNameWidth = 256;
constexpr std::int64_t kLargestPreset = 500000;
constexpr std::int64_t kLargestHardLimitingPreset = 100;
constexpr std::pair<std::string_view, std::string_view> kRenamedKeys[] = {
    {"PSP\\EasyVerb", "PSP Easyverb"},
    {"PSP\\NobleQ", "PSP NobleQ"},
    {"PSP\\NobleQex", "PSP NobleQex"},
    {"PSP\\MixTreble2", "PSP MixTreble2"},
    {"PSP\\oldTimer", "PSP oldTimer"},
    {"PSP\\oldTimerME", "PSP oldTimerME"},
    {"PSP\\MicroWarmer", "PSP MicroWarmer"},
    {"PSP\\MixGate2", "PSP MixGate2"},
    {"PSP\\VintageWarmer", "PSP VintageWarmer"},
    {"PSP\\VintageWarmer2", "PSP VintageWarmer2"},
    {"PSP\\StereoEnhancer", "PSP StereoEnhancer"},
    {"PSP\\PseudoStereo", "PSP PseudoStereo"},
    {"PSP\\StereoAnalyser", "PSP StereoAnalyser"},
    {"PSP\\StereoController", "PSP StereoController"},
    {"PSP\\Neon\\STD", "PSP Neon STD"},
    {"PSP\\Neon\\HR", "PSP Neon HR"},
    {"PSP\\Neon\\MIX", "PSP Neon MIX"},
    {"PSP\\MixBass2", "PSP MixBass2"},
    {"PSP\\MixPressor2", "PSP MixPressor2"},
    {"PSP\\MixSaturator2", "PSP MixSaturator2"},
    {"PSP\\MixSync2", "PSP MixSync2"},
    {"PSP\\608 MultiDelay", "PSP 608 MultiDelay"},
    {"PSP\\85", "PSP 85"},
    {"PSP\\PianoVerb", "PSP PianoVerb"},
    {"PSP\\Xenon", "PSP Xenon"},
};

constexpr int kPhaseParameter = 2;
constexpr int kEqParameters = 12;

// A source byte gives the first digit of its decimal text: 3 and 30 give 3.
std::int32_t FirstDigit(std::uint8_t b) {
    while (b >= 10) b = static_cast<std::uint8_t>(b / 10);
    return b;
}

// A pan percent as a fraction of the automation lane: -100 is 1, +100 is 0.
double PercentToFraction(double percent) {
    if (percent == 0) return 0.5;
    if (percent < 0) return (-percent / 100) / 2 + 0.5;
    return 0.5 - (percent / 100) / 2;
}

// One "TRKS" chunk. Every offset of an entry is counted from its anchors:
// Q the track record, S behind the name, E the texts behind the fields, B
// behind a section's name, T behind the fifth section, V a lane's body, X
// the rack block's length, A a send's parameter list, D a send parameter.
class UpperTrackChunk {
public:
    explicit UpperTrackChunk(ReadContext& ctx)
        : ctx_(ctx), file_(ctx.file), session_(ctx.session), encoder_(ctx.options.Charset) {}

    // Reads `count` entries from `position`; returns where the last ended.
    std::int64_t ReadEntries(std::int64_t countPosition, std::int32_t count, std::int64_t position) {
        RequireRoomFor(file_, countPosition, count, kMinimumEntrySize, position, "track entry");
        for (std::int32_t entry = 1; entry <= count; ++entry) {
            const std::int32_t marker = file_.Int32(position + 4);
            if (marker >= kSkippedMarkersFrom && marker < kSkippedMarkersTo) {
                position = SkipText(position + 8) + kMarkerEntryTail;
            } else if (marker == kVideoMarker) {
                const std::int64_t end = SkipText(position + 8) + kMarkerEntryTail;
                Allow(position, end);
                SesTrack video;
                video.TrackId = kVideoTrackId;
                video.Name = FixedText(TrimBlanks(Utf16Text(position + 8)));
                video.OutputBusId = kMasterTrackId;
                video.TrackHeight = 0;
                video.AutomationMode = 0;
                session_.SesTracks.push_back(std::move(video));
                position = end;
                // The entry behind a video entry is a track entry, whatever
                // its marker says, and the two use up two of the count.
                position = ReadTrackEntry(position);
                ++entry;
            } else {
                position = ReadTrackEntry(position);
            }
        }
        return position;
    }

private:
    // The work of an entry is bounded by its own size. In a sound file
    // everything an entry reads lies inside it and no two items share
    // bytes, so reading all of them costs less than twice that. Lists that
    // overlap, or that run outside their entry, could otherwise make a small
    // file take for ever, and entries of many chunks could all read the same
    // points again and pile them up by the square of the file's size.
    void Allow(std::int64_t entry, std::int64_t end) {
        entry_ = entry;
        entrySize_ = end - entry;
        work_ = 2 * entrySize_ + 64;
    }

    // Texts spend a unit a byte, points their 16 bytes, other items one.
    void Spend(std::int64_t units, std::int64_t position) {
        work_ -= units;
        if (work_ >= 0) return;
        throw ReadError(position, "the track entry at offset " + std::to_string(entry_) +
                                      " reads more than twice its own " + std::to_string(entrySize_) +
                                      " bytes at offset " + std::to_string(position) +
                                      ": its lists run outside it or over the same bytes again and again");
    }

    std::int64_t TextUnits(std::int64_t position) const {
        const std::int32_t n = file_.Int32(position);
        if (n < 0) {
            throw ReadError(position, "the text length " + std::to_string(n) + " at offset " +
                                          std::to_string(position) + " is negative");
        }
        file_.Require(position + 4, 2 * static_cast<std::int64_t>(n), "a counted text");
        return n;
    }

    // A counted text: an int32 n and n 16-bit units. Returns the position
    // behind it.
    std::int64_t SkipText(std::int64_t position) const { return position + 4 + 2 * TextUnits(position); }

    // Every non-zero byte of the units, one character each.
    std::string ZeroSkippedText(std::int64_t position) {
        const std::int64_t bytes = 2 * TextUnits(position);
        Spend(bytes, position);
        return file_.NonZeroBytes(position + 4, bytes);
    }

    // One character a unit, zero units dropped. Our texts are 8-bit: each
    // character becomes the bytes of the charset the document is recoded
    // from, so that a character above 255 comes back in the document.
    std::string Utf16Text(std::int64_t position) {
        const std::int64_t units = TextUnits(position);
        Spend(2 * units, position);
        std::string text;
        for (std::int64_t i = 0; i < units; ++i) {
            const std::int64_t at = position + 4 + 2 * i;
            const auto unit = static_cast<std::uint16_t>(file_.Byte(at) | (file_.Byte(at + 1) << 8));
            if (unit != 0) encoder_.Append(unit, text);
        }
        return text;
    }

    // A parameter name in one byte a character with zero bytes between,
    // ended by two zero bytes in a row. Only its first 25 characters are
    // kept, so the reading stops there too.
    std::string SpacedName(std::int64_t position) const {
        std::string name;
        bool lastWasZero = false;
        for (std::int64_t p = position; name.size() < kParameterNameWidth; ++p) {
            const std::uint8_t b = file_.Byte(p);
            if (b == 0) {
                if (lastWasZero) break;
                lastWasZero = true;
            } else {
                name.push_back(static_cast<char>(b));
                lastWasZero = false;
            }
        }
        return name;
    }

    // `count` automation points from `first`: offset, skip, value.
    template <class Take>
    void ReadPoints(std::int64_t countPosition, std::int32_t count, std::int64_t first, Take&& take) {
        RequireRoomFor(file_, countPosition, count, kPointSize, first, "automation point");
        if (count <= 0) return;
        Spend(count * kPointSize, countPosition);
        for (std::int32_t i = 0; i < count; ++i) {
            const std::int64_t point = first + i * kPointSize;
            take(i, file_.Int32(point), file_.Double(point + 8));
        }
    }

    // A parameter list: int32 count, then per parameter a name, an int32
    // length and that many bytes, handed to `visit` as (number from 1, first
    // byte behind the length, length). Only the first `wanted` are looked
    // at; the section's own length steps over the rest. `what` names the
    // parameters in messages.
    template <class Visit>
    void ReadParameters(std::int64_t countPosition, int wanted, Visit&& visit, const char* what = "parameter") {
        const std::int32_t count = file_.Int32(countPosition);
        RequireRoomFor(file_, countPosition, count, kMinimumParameterSize, countPosition + 4, what);
        std::int64_t p = countPosition + 4;
        for (int number = 1; number <= std::min(count, wanted); ++number) {
            Spend(1, p);
            p = SkipText(p);
            const std::int64_t length = ReadLength(file_, p, what);
            visit(number, p + 4, length);
            p += 4 + length;
        }
    }

    // The head of sections 1 and 2 and of the rack block: a text at `base` +
    // 36, an int32 skip, then the parameter count. Returns the count's
    // position.
    std::int64_t ParameterCountPosition(std::int64_t base) const {
        return SkipText(base + kParameterListOffset) + 4;
    }

    std::int64_t ReadTrackEntry(std::int64_t entry) {
        const std::int64_t q = entry + kEntryLead;
        const std::int64_t recordLength = ReadLength(file_, q, "track record");
        const std::int64_t next = q + 4 + recordLength;
        if (next > file_.Size()) {
            throw ReadError(q, "the track record at offset " + std::to_string(q) + " has length " +
                                   std::to_string(recordLength) + ", which runs past the end of the file (" +
                                   std::to_string(file_.Size()) + " bytes)");
        }
        Allow(entry, next);

        SesTrack track;
        track.TrackId = file_.Int32(q + 4);
        track.Name = FixedText(TrimBlanks(ZeroSkippedText(q + 8)));
        const std::int64_t s = SkipText(q + 8);
        track.SoloCode = FirstDigit(file_.Byte(s));
        track.StateCode = FirstDigit(file_.Byte(s + 4));
        track.TrackHeight = file_.Byte(s + 10);
        if (const std::int32_t bus = file_.Int32(s + 28); bus > kBusIdLimit && bus < 30000) track.BusId = bus;
        track.AutomationMode = file_.Int32(s + 32);

        std::int64_t p = s + kTrackFieldsSize;  // anchor E
        p = SkipText(p) + 4;
        p = SkipText(SkipText(p));
        if (const std::int32_t output = file_.Int32(p); output >= kBusIdLimit && output <= 30000)
            track.OutputBusId = output;
        p = SkipText(p + 4);
        track.RackPostFader = file_.Int32(p + 4);  // the second of five int32
        p += 20;

        p = ReadSections(track, p);
        p = ReadLanes(track, p);
        p = ReadRackBlock(track, p);
        // The effect list closes the record; a record that ends with its
        // send list has none.
        p = ReadSendList(track, p);
        if (p + 4 <= next) ReadEffectList(track, p);
        // Anything behind the effect list, up to the record's end, is stepped over.
        session_.SesTracks.push_back(std::move(track));
        return next;
    }

    // Five sections in a fixed order; the first four have a body whose
    // length leads to the next. Returns anchor T, behind the fifth's name.
    std::int64_t ReadSections(SesTrack& track, std::int64_t p) {
        // 1: track parameters. The second holds the phase, 24 bytes before
        // its end.
        std::int64_t b = SkipText(p);
        ReadParameters(ParameterCountPosition(b), kPhaseParameter,
                       [&](int number, std::int64_t payload, std::int64_t length) {
                           if (number == kPhaseParameter)
                               track.PhaseInverted = RoundHalfEven(file_.Double(payload + length - 24));
                       });
        p = b + 4 + ReadLength(file_, b, "section");

        // 2: EQ, one value in the last 8 bytes of each parameter; the
        // parameter's place, not its name, says which.
        b = SkipText(p);
        TrackEq eq;
        eq.TrackKey = track.TrackId;
        ReadParameters(ParameterCountPosition(b), kEqParameters,
                       [&](int number, std::int64_t payload, std::int64_t length) {
                           const double value = file_.Double(payload + length - 8);
                           switch (number) {
                               case 1: eq.EqEnabled = RoundHalfEven(value); break;
                               case 2: eq.LowFrequency = value; break;
                               case 3: eq.LowGain = value; break;
                               case 4: eq.LowQ = value; break;
                               case 6: eq.MidFrequency = value; break;
                               case 7: eq.MidGain = value; break;
                               case 8: eq.MidQ = value; break;
                               case 9: eq.HighFrequency = value; break;
                               case 10: eq.HighGain = value; break;
                               case 11: eq.HighQ = value; break;
                               default: break;  // 5 and 12 are not kept
                           }
                       });
        session_.TrackEqs.push_back(eq);
        p = b + 4 + ReadLength(file_, b, "section");

        // 3: volume. The first point gives the track's gains.
        b = SkipText(p);
        const std::int64_t volumeCount = b + kVolumeCountOffset;
        ReadPoints(volumeCount, file_.Int32(volumeCount), volumeCount + 4,
                   [&](std::int32_t i, std::int32_t offset, double value) {
                       session_.TrackVolumePoints.push_back({track.TrackId, offset, value});
                       if (i != 0) return;
                       track.GainHigh = track.GainLow = value;
                       if (track.TrackId == kMasterTrackId) session_.MasterVolume = value;
                   });
        p = b + 4 + ReadLength(file_, b, "section");

        // 4: mute. A count above 250 gives way to a smaller one 16 bytes
        // further on, and the points move with it.
        b = SkipText(p);
        std::int64_t muteCount = b + kMuteCountOffset;
        std::int32_t count = file_.Int32(muteCount);
        if (count > kMuteAlternateAbove) {
            const std::int32_t alternate = file_.Int32(b + kMuteAlternateCountOffset);
            if (alternate < count) {
                count = alternate;
                muteCount = b + kMuteAlternateCountOffset;
            }
        }
        ReadPoints(muteCount, count, muteCount + 4, [&](std::int32_t, std::int32_t offset, double value) {
            if (value != 0 && value != 1) value = RoundTo12Places(value);
            session_.TrackMutePoints.push_back({track.TrackId, offset, value});
        });
        p = b + 4 + ReadLength(file_, b, "section");

        // 5: a name alone.
        return SkipText(p);
    }

    // The automation lanes; the fourth holds the pan. Returns the position
    // behind the last lane.
    std::int64_t ReadLanes(SesTrack& track, std::int64_t t) {
        const std::int64_t countPosition = SkipText(t + 32) + 4;
        const std::int32_t count = file_.Int32(countPosition);
        RequireRoomFor(file_, countPosition, count, kMinimumLaneSize, countPosition + 4, "automation lane");
        std::int64_t p = countPosition + 4;
        for (std::int32_t lane = 1; lane <= count; ++lane) {
            Spend(1, p);
            const std::int64_t v = SkipText(p);
            const std::int64_t length = ReadLength(file_, v, "lane");
            if (lane == kPanLane) {
                const std::int64_t pointCount = v + kLanePointCountOffset;
                ReadPoints(pointCount, file_.Int32(pointCount), pointCount + 4,
                           [&](std::int32_t i, std::int32_t offset, double value) {
                               if (i == 0) track.Pan = value;
                               session_.TrackPanPoints.push_back({track.TrackId, offset, PercentToFraction(value)});
                           });
            }
            p = v + 4 + length;
        }
        return p;
    }

    // The rack block: its parameters' automation. Returns where the send
    // list starts, which its length gives whatever was read inside.
    std::int64_t ReadRackBlock(const SesTrack& track, std::int64_t p) {
        const std::int64_t x = SkipText(p + kRackFieldsSize);
        const std::int64_t sendList = x + 4 + ReadLength(file_, x, "rack block");
        const std::int64_t countPosition = ParameterCountPosition(x);
        const std::int32_t count = file_.Int32(countPosition);
        RequireRoomFor(file_, countPosition, count, kMinimumRackParameterSize, countPosition + 4,
                       "rack parameter");
        p = countPosition + 4;
        for (std::int32_t i = 0; i < count; ++i) {
            Spend(1, p);
            const std::int64_t m = SkipText(p) + 10;
            const std::int64_t m2 = SkipText(m);
            const std::int64_t length = ReadLength(file_, m2, "rack parameter");
            const std::string name = SpacedName(m2 + 8);
            const std::int64_t pointCount = m + kAutomationCountOffset;
            // A single point is no automation.
            if (const std::int32_t n = file_.Int32(pointCount); n > 1) {
                ReadPoints(pointCount, n, pointCount + 4, [&](std::int32_t, std::int32_t offset, double value) {
                    session_.RackAutomation.push_back({track.TrackId, offset, RoundTo12Places(value), 0, name});
                });
            }
            p = m2 + 4 + length;
        }
        return sendList;
    }

    // The send list: 16 slots are kept, later sends are stepped over.
    // Returns the position behind it.
    std::int64_t ReadSendList(const SesTrack& track, std::int64_t p) {
        const std::int32_t count = file_.Int32(p);
        RequireRoomFor(file_, p, count, kMinimumSendEntrySize, p + 4, "send");
        TrackSend sends;
        sends.TrackId = track.TrackId;
        p += 4;
        for (std::int32_t entry = 1; entry <= count; ++entry) {
            Spend(1, p);
            p = SkipText(SkipText(p) + 4 + 28);
            const std::int64_t listLength = ReadLength(file_, p, "send parameter list");
            const std::int64_t a = p + 4;
            p = a + listLength + kSendEntryTail;
            if (entry > static_cast<std::int32_t>(kSendSlotCount)) continue;

            const std::int32_t slotNumber = entry - 1;
            SendSlotSettings& slot = sends.Slots[static_cast<std::size_t>(slotNumber)];
            ReadSendParameters(track, slotNumber, slot, a);
            slot.Level = file_.Double(a + listLength - 8);
            slot.OutputBus = file_.Int32(a + listLength + 12);
            slot.PreFader = file_.Int32(a + listLength + 16);
        }
        session_.TrackSends.push_back(sends);
        return p;
    }

    void ReadSendParameters(const SesTrack& track, std::int32_t slotNumber, SendSlotSettings& slot,
                            std::int64_t countPosition) {
        const auto readOne = [&](int, std::int64_t d, std::int64_t length) {
            const std::int64_t m = d + 6;
            const std::string name = SpacedName(SkipText(m) + 8);
            const bool isPan = name == "Pan";
            const std::int64_t pointCount = m + kAutomationCountOffset;
            if (const std::int32_t n = file_.Int32(pointCount); n > 1) {
                ReadPoints(pointCount, n, pointCount + 4, [&](std::int32_t, std::int32_t offset, double value) {
                    value = RoundTo12Places(value);
                    if (isPan) value = PercentToFraction(value);
                    session_.SendAutomation.push_back({track.TrackId, offset, value, slotNumber, name});
                });
            }
            if (isPan) slot.Pan = file_.Double(d + length - 8);
        };
        ReadParameters(countPosition, std::numeric_limits<int>::max(), readOne, "send parameter");
    }

    // The effect list behind the send list (docs/format/effects.md, "Effect
    // lists"). Each entry's own length leads to the next, whatever was read.
    void ReadEffectList(const SesTrack& track, std::int64_t p) {
        const std::int32_t count = file_.Int32(p);
        RequireRoomFor(file_, p, count, kMinimumEffectEntrySize, p + 4, "effect");
        p += 4;
        for (std::int32_t e = 1; e <= count; ++e) {
            Spend(1, p);
            const std::int64_t lengthPosition = SkipText(p);
            const std::int64_t entryLength = ReadLength(file_, lengthPosition, "effect entry");
            const std::int64_t a = lengthPosition + 4;
            ReadEffectEntry(track, e, a);
            p = a + entryLength;
        }
    }

    void ReadEffectEntry(const SesTrack& track, std::int32_t e, std::int64_t a) {
        const std::string nameField = ZeroSkippedText(a + kEffectNameOffset);
        const std::int64_t presetPosition = SkipText(a + kEffectNameOffset);
        const std::int64_t presetBytes = 2 * TextUnits(presetPosition);
        const std::string presetField = ZeroSkippedText(presetPosition);

        // The key: the first half of the name field, behind its first
        // backslash, trimmed, and renamed by the table.
        std::string name = nameField.substr(0, static_cast<std::size_t>(
                                                   RoundHalfEven(static_cast<double>(nameField.size()) / 2)));
        if (const auto slash = name.find('\\'); slash != std::string::npos) name.erase(0, slash + 1);
        std::string key = TrimBlanks(name);
        for (const auto& [from, to] : kRenamedKeys)
            if (key == from) key = to;
        const std::string fileKey = ReplaceAll(key, "\\", "");

        const bool presetKept = presetBytes <= kLargestPreset && key != "Ambience" && key != "Delay" &&
                                key != "Multiband Compressor" &&
                                (key != "Hard Limiting" || presetBytes <= kLargestHardLimitingPreset);
        RackSlot slot;
        slot.OwnerId = track.TrackId;
        slot.EffectName = FixedText(name, kEffectNameWidth);
        slot.PresetText = presetKept ? PresetTextOf(presetField) : std::string();

        const EffectSource source{"track " + std::to_string(track.TrackId) + " \"" + track.Name + "\"", key, a};
        const std::string& version = session_.SesVersion;
        const EffectCatalogue* catalogue =
            Aud30(version) || Aud20(version) ? FindCatalogue(ctx_, source, fileKey, CatalogueGeneration::Named)
                                             : nullptr;
        if (!catalogue) {
            AppendFallbackEffect(ctx_, source, fileKey, std::move(slot));
            return;
        }
        slot.SlotNumber = e - 1;
        EffectRows rows = AppendCatalogueEffect(ctx_, source, *catalogue, fileKey + "30.Kelfx", std::move(slot), e - 1);

        // The parameter block behind the preset: 16 bytes, a text, 4 bytes, the count.
        const std::int64_t countPosition = SkipText(SkipText(presetPosition) + 16) + 4;
        const auto readOne = [&](int, std::int64_t d, std::int64_t length) {
            const std::string parameter = EffectParameterName(d + kEffectParameterNameOffset);
            const std::int64_t pointCount = d + kEffectPointCountOffset;
            // A single point is no automation.
            if (const std::int32_t n = file_.Int32(pointCount); n > 1) {
                ReadPoints(pointCount, n, pointCount + 4, [&](std::int32_t, std::int32_t offset, double value) {
                    session_.EffectAutomation.push_back({track.TrackId, offset, RoundTo12Places(value), e - 1,
                                                         static_cast<std::int32_t>(rows.Slot + 1),
                                                         FixedText(parameter, kParameterNameWidth)});
                });
            }
            const double value = file_.Double(d + length - 8);
            try {
                TranslateNamedParameter(session_, key, rows, parameter, value, mismatchSeen_);
            } catch (const ExpressionError& error) {
                FailEffect(source, d, error);
            } catch (const EffectStepError& error) {
                FailEffect(source, d, error);
            }
        };
        ReadParameters(countPosition, std::numeric_limits<int>::max(), readOne, "effect parameter");
    }

    // An effect parameter's name: one byte a character with zero bytes
    // between, ended by two zero bytes in a row or by the end of the file.
    // No catalogue name is longer than the width kept here.
    std::string EffectParameterName(std::int64_t position) {
        std::string name;
        bool lastWasZero = false;
        for (std::int64_t p = position; p < file_.Size() && name.size() < kEffectNameWidth; ++p) {
            const std::uint8_t b = file_.Byte(p);
            if (b == 0) {
                if (lastWasZero) break;
                lastWasZero = true;
            } else {
                name.push_back(static_cast<char>(b));
                lastWasZero = false;
            }
        }
        Spend(static_cast<std::int64_t>(name.size()), position);
        return name;
    }

    ReadContext& ctx_;
    const ByteReader& file_;
    Session& session_;
    // Once a parameter of this chunk has been tried against a catalogue row
    // of another name, a failing step of a later one no longer fails the file.
    bool mismatchSeen_ = false;
    WideTextEncoder encoder_;     // into the 8-bit texts' charset, when one is named
    std::int64_t entry_ = 0;      // the entry being read
    std::int64_t entrySize_ = 0;  // its size, up to where the next entry starts
    std::int64_t work_ = 0;       // what it may still read
};

}  // namespace

std::int64_t ReadTrackChunk(ReadContext& ctx, const ChunkHeader& chunk) {
    // A second track chunk replaces the tracks of the first; the point lists
    // go on growing.
    ctx.session.SesTracks.clear();
    const ByteReader& file = ctx.file;
    const std::int64_t countPosition = chunk.PayloadPosition;
    const std::int32_t count = file.Int32(countPosition);
    // The newer layout has a second header field.
    const std::int64_t first = countPosition + (OlderTrackLayout(ctx.session.SesVersion) ? 4 : 8);

    if (chunk.Tag == "trks") {
        ReadTrksRecords(ctx, chunk, countPosition, count, first);
        return chunk.End();
    }
    // The walk goes on where the last entry ended.
    return UpperTrackChunk(ctx).ReadEntries(countPosition, count, first);
}

}  // namespace morvanta

// Payloads of the track chunks "trks" and "TRKS", the track EQ chunk
// "tkeq" and the clip envelope chunks "ep20" and "envp", laid out field by
// field from the format's tables. Skipped fields are zero; every body that
// carries its own length gets spare bytes at its end, so that a reader that
// steps on by where its reading ended, not by the length, goes astray.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "ExampleSessions.h"
#include "SesBuilder.h"

namespace morvanta::testing {

// ---------------------------------------------------------------- "tkeq"

struct TkeqRecord {
    std::int32_t TrackKey = 0;
    double LowFrequency = 0, LowGain = 0, HighFrequency = 0, HighGain = 0, MidFrequency = 0;
    double MidQ = 0, MidGain = 0, LowQ = 0, HighQ = 0;
};

// The record count, then 88-byte records.
Bytes TkeqPayload(const std::vector<TkeqRecord>& records);

// ---------------------------------------------------------------- envelopes

struct EnvelopeSample {
    std::int32_t Position = 0;
    double Value = 0;
};

struct Ep20Lane {
    std::int32_t Kind = 1;  // 1 volume, 2 pan, others are not stored
    std::vector<EnvelopeSample> Points;
};

struct Ep20Group {
    std::int32_t ClipId = 0;
    std::vector<Ep20Lane> Lanes;
};

Bytes Ep20Payload(const std::vector<Ep20Group>& groups);

struct EnvpGroup {
    std::int32_t ClipId = 0;
    std::vector<EnvelopeSample> Volume;
    std::vector<EnvelopeSample> Pan;
};

Bytes EnvpPayload(const std::vector<EnvpGroup>& groups);

// ---------------------------------------------------------------- "trks"

struct TrksRecord {
    double Left = 1.0;
    double Right = 1.0;
    std::int32_t StateCode = 0;
    std::string Name;
    std::uint8_t OutputByte = 255;  // records of 104 and 152 bytes
    std::int32_t TrackId = 0;       // records of 104 and 152 bytes, at 96
    std::int32_t IdAt56 = 0;        // the field an Audition 1.5 id is repaired from
};

// `recordSize` is 72, 96, 104 or 152; `secondHeaderField` is the int32 that
// the Audition 2.0 and 3.0 layout has behind the count.
Bytes TrksPayload(int recordSize, bool secondHeaderField, const std::vector<TrksRecord>& records);

// ---------------------------------------------------------------- "TRKS"

struct AutomationSample {
    std::int32_t SampleOffset = 0;
    double Value = 0;
};

// A parameter of the rack block or of a send: its name, its automation
// points, and (sends) the value in its last 8 bytes.
struct NamedParameter {
    std::string Name;
    std::vector<AutomationSample> Points;
    double Value = 0;
};

struct SendEntry {
    std::int32_t OutputBus = 0;
    double Level = 0;
    std::int32_t PreFader = 0;
    std::vector<NamedParameter> Parameters;
};

struct TrackEntry {
    std::int32_t Marker = 1;  // the lead's marker; anything but the two marker kinds
    std::int32_t TrackId = 0;
    std::u16string Name;
    std::uint8_t SoloByte = 0;
    std::uint8_t StateByte = 0;
    std::uint8_t Height = 0;
    std::int32_t BusId = 0;  // the field at 28 behind the name
    std::int32_t AutomationMode = 1;
    std::int32_t OutputBusId = 0;
    std::int32_t RackPostFader = 0;
    double Phase = 0;         // the second track parameter
    std::vector<double> Eq;   // EQ parameter values, first parameter first
    std::vector<AutomationSample> Volume;
    std::vector<AutomationSample> Mute;
    // When set, the mute section has this count (above 250) at its usual
    // place, and the real count 16 bytes later with the points behind it.
    std::optional<std::int32_t> MuteCountAbove250;
    std::vector<AutomationSample> Pan;  // in the fourth lane
    int LaneCount = 4;
    std::vector<NamedParameter> Rack;
    std::vector<SendEntry> Sends;
    Bytes EffectList;  // whatever stands behind the send list
    // Hostile forms: counts and lengths other than the content's own.
    std::optional<std::int32_t> VolumeCountOverride;
    std::optional<std::int32_t> LaneCountOverride;
    std::optional<std::int32_t> RecordLengthOverride;
};

TrackEntry NamedEntry(std::int32_t trackId, const std::u16string& name);
NamedParameter AutomatedParameter(const std::string& name, const std::vector<AutomationSample>& points,
                                  double value = 0);

// A normal entry: the 30-byte lead and the track record.
Bytes TrackEntryBytes(const TrackEntry& entry);

// A video (490000) or skipped (250000 to 259999) entry: lead, UTF-16 name,
// 12 bytes.
Bytes MarkerEntryBytes(std::int32_t marker, const std::u16string& name);

// The count, the second header field when asked for, and the entries.
Bytes UpperTrksPayload(bool secondHeaderField, std::int32_t entryCount, const std::vector<Bytes>& entries);

// A counted text: int32 n, then n 16-bit units, low byte first.
Bytes CountedText(const std::u16string& text);

// An Audition 3.0 session with three tracks, a bus, the master and a video
// track, with volume, mute, pan, EQ and send automation.
std::vector<std::uint8_t> TracksExampleSession();

// A "TRKS" entry whose volume point count is far beyond the file.
std::vector<std::uint8_t> AbsurdPointCountSession();

// Fuzz seeds of the track family: the session above, an Audition 1.0
// session with "trks", "tkeq", "ep20" and "envp", and the absurd count.
std::vector<NamedFile> TrackFuzzSeeds();

}  // namespace morvanta::testing

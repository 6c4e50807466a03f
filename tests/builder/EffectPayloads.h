// Effects of a session: the effect list that closes a "TRKS" track record,
// the older racks of "tkfx", and the buses of "BUSS" and "buss" with their
// racks. Skipped fields are zero, and every part that carries its own length
// gets spare bytes at its end, as in the other payloads.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "SesBuilder.h"
#include "TrackPayloads.h"

namespace morvanta::testing {

// A parameter record of an effect list entry: the name as the file spells
// it, its automation points and its value.
struct EffectParameterRecord {
    std::string Name;
    std::vector<AutomationSample> Points{};
    double Value = 0;
};

struct EffectListEntry {
    // The effect's name; the name field holds it in its first half, behind
    // a folder and a backslash when one is given.
    std::u16string Name;
    std::u16string Folder = u"Effects";
    std::string PresetHex{};  // the plug-in state as base-16 text
    std::vector<EffectParameterRecord> Parameters{};
};

// The effect count and the entries, to put behind a track's send list.
Bytes EffectListBytes(const std::vector<EffectListEntry>& entries);

// An effect of an older rack or bus: its path and its comma-separated values.
struct RackEffect {
    std::string Path;  // "Effects\\Name"
    std::string Values;
};

struct TrackRack {
    std::int32_t TrackNumber = 1;  // the row of the track in the track chunk
    std::vector<RackEffect> Effects{};
};

Bytes TkfxPayload(const std::vector<TrackRack>& racks);

struct BusRecord {
    std::string Name;
    double GainHigh = 1;
    double GainLow = 1;
    std::vector<RackEffect> Effects{};
};

// "BUSS": texts in 16-bit units, the rack with its own length. "buss":
// texts in bytes. Both store an effect's path with its name followed by as
// many characters again, of which the readers keep the first half.
Bytes WideBusPayload(const std::vector<BusRecord>& buses);
Bytes NarrowBusPayload(const std::vector<BusRecord>& buses);

// A session of the later track chunks (for "Audition 3.0", "Audition 2.0"
// or "Audition 1.5"): two tracks and a bus with an equaliser of each kind,
// dynamics, a channel mixer, a plug-in with its state, an effect no
// catalogue knows, and automation on a parameter.
std::vector<std::uint8_t> EffectsSession(const std::string& version);

// A "Cool Edit Pro 2.1" session with "tkfx" racks on two tracks and two
// buses from "BUSS" and "buss" with their racks.
std::vector<std::uint8_t> OlderEffectsSession();

}  // namespace morvanta::testing

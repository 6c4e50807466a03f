// Assembly of Tracks: the track records of the track chunks in file order,
// then the buses (docs/format/tracks.md, "Track assembly").
#include <cstdint>
#include <utility>

#include "reader/Assembly.h"
#include "reader/TrackVersions.h"
#include "services/TextHelpers.h"

namespace morvanta {
namespace {

constexpr std::int32_t kDefaultTrackHeight = 118;

// Ids of the older layout take 10000. A raw id near the top of the range
// wraps around as two's complement rather than overflowing.
std::int32_t PlusMasterId(std::int32_t id) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(id) + static_cast<std::uint32_t>(kMasterTrackId));
}

}  // namespace

void AssembleTracks(Session& session) {
    const std::string& version = session.SesVersion;
    const bool idList = OlderTrackLayout(version);
    const bool numberList = TrackNumberList(version);
    const bool masterFirst = !session.SesTracks.empty() && session.SesTracks.front().TrackId == kMasterTrackId;

    // The assembly's own flag: the video record has been met. Ordinals
    // behind it count it.
    std::int32_t videoSeen = 0;
    std::int32_t position = 0;  // 1-based place in SesTracks
    for (const SesTrack& raw : session.SesTracks) {
        ++position;
        Track track;
        track.TrackId = raw.TrackId;
        if (raw.TrackId != kVideoTrackId && idList) track.TrackId = PlusMasterId(raw.TrackId);

        if (track.TrackId == kVideoTrackId) {
            track.TrackOrdinal = 1;
            videoSeen = 1;
        } else if (raw.TrackId == kMasterTrackId || numberList || !masterFirst) {
            track.TrackOrdinal = position + videoSeen;
        } else {
            track.TrackOrdinal = position;  // behind a master record that stands first
        }

        track.TrackName = FixedText(TrimBlanks(raw.Name));
        track.TrackHeight = raw.TrackHeight == 0 ? kDefaultTrackHeight : raw.TrackHeight;
        track.Volume = raw.GainHigh;
        track.PhaseInverted = raw.PhaseInverted;
        track.Pan = raw.Pan;
        track.BusId = raw.BusId;
        track.OutputBusId = raw.OutputBusId;
        track.RackPostFader = raw.RackPostFader;
        track.AutomationMode = raw.AutomationMode;

        if (raw.SoloCode == 1) track.Soloed = 1;
        if (raw.StateCode == 1 || raw.StateCode == 3) track.Muted = 1;
        if (raw.StateCode == 2 || raw.StateCode == 3) track.Soloed = 1;
        session.Tracks.push_back(std::move(track));
    }

    // A bus becomes a track with its number, name and gain; everything else
    // stays zero, its height and pan too.
    for (const SesBus& bus : session.SesBuses) {
        Track track;
        const auto number = static_cast<std::int32_t>(session.Tracks.size() + 1);
        track.TrackId = number + kMasterTrackId;
        track.TrackOrdinal = number;
        track.BusId = bus.BusId;
        track.TrackName = FixedText(TrimBlanks(bus.Name));
        track.Volume = bus.GainHigh;
        session.Tracks.push_back(std::move(track));
    }
}

}  // namespace morvanta

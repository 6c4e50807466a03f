// The track writers' lookups by track id, send slot and bus, built once per
// document. Searching the session lists for every track would cost the
// number of tracks times the length of each list.
#pragma once

#include <compare>
#include <cstdint>
#include <string>

#include "writer/DocumentWriter.h"
#include "writer/PositionIndex.h"

namespace morvanta {

struct SendParameterKey {
    std::int32_t TrackId{};
    std::int32_t SendSlot{};
    std::string Name;  // blanks trimmed
    auto operator<=>(const SendParameterKey&) const = default;
};

// Neither the lists nor the tracks' ids and buses change while the tracks
// are written; `tracks` are the tracks in writing order.
struct TrackLookups {
    TrackLookups(const Session& s, const std::vector<Track>& tracks);

    PositionIndex<std::int32_t> volumePoints;  // TrackVolumePoints by TrackId
    PositionIndex<std::int32_t> mutePoints;    // TrackMutePoints by TrackId
    PositionIndex<std::int32_t> panPoints;     // TrackPanPoints by TrackId
    PositionIndex<SendParameterKey> sendPoints;  // SendAutomation
    PositionIndex<std::int32_t> sends;         // TrackSends by TrackId
    PositionIndex<std::int32_t> eqs;           // TrackEqs by TrackKey
    PositionIndex<std::int32_t> busTracks;     // the tracks in writing order by BusId
};

const TrackLookups& TrackLookupsOf(DocumentWriter& w);

}  // namespace morvanta

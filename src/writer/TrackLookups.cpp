#include "writer/TrackLookups.h"

#include "services/TextHelpers.h"

namespace morvanta {

TrackLookups::TrackLookups(const Session& s, const std::vector<Track>& tracks)
    : volumePoints(s.TrackVolumePoints, [](const TrackPoint& p) { return p.TrackId; }),
      mutePoints(s.TrackMutePoints, [](const TrackPoint& p) { return p.TrackId; }),
      panPoints(s.TrackPanPoints, [](const TrackPoint& p) { return p.TrackId; }),
      sendPoints(s.SendAutomation,
                 [](const NamedAutomationPoint& p) {
                     return SendParameterKey{p.TrackId, p.SendSlot, TrimBlanks(p.ParameterName)};
                 }),
      sends(s.TrackSends, [](const TrackSend& record) { return record.TrackId; }),
      eqs(s.TrackEqs, [](const TrackEq& eq) { return eq.TrackKey; }),
      busTracks(tracks, [](const Track& track) { return track.BusId; }) {}

const TrackLookups& TrackLookupsOf(DocumentWriter& w) {
    if (!w.trackLookups) w.trackLookups = std::make_shared<const TrackLookups>(w.session, w.Tracks);
    return *w.trackLookups;
}

}  // namespace morvanta

// Assembly of cue markers and of the file list from the raw cue and wave
// records (docs/format/session.md, docs/format/media.md).
#include "reader/Assembly.h"
#include "writer/TextHelpers.h"

namespace morvanta {
void BuildCueMarkers(Session& session) {
    for (const SesCue& cue : session.SesCues) {
        CueMarker marker;
        marker.Start = cue.Start;
        marker.Length = cue.Length;
        marker.Name = FixedText(TrimBlanks(cue.Name));
        marker.Comment = FixedText(TrimBlanks(cue.Comment));
        session.CueMarkers.push_back(std::move(marker));
    }
}

void BuildSessionFiles(Session&, const ConvertOptions&) {}

}  // namespace morvanta

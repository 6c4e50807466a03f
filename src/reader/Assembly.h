// The assembly that runs after the walk: raw chunk records become the lists
// the writer reads.
#pragma once

#include <vector>

#include "model/ConvertOptions.h"
#include "model/Diagnostic.h"
#include "model/Session.h"

namespace morvanta {

// All assembly steps, in their fixed order.
void AssembleSession(Session& session, const ConvertOptions& options, std::vector<Diagnostic>& warnings);

// CueMarkers from SesCues.
void BuildCueMarkers(Session& session);
// SessionFiles from SesWaves: video first, names repaired; sets VideoSeen.
void BuildSessionFiles(Session& session, const ConvertOptions& options);
// Tracks from SesTracks, then SesBuses.
void AssembleTracks(Session& session);
// Clips and ClipFades from the block records.
void BuildClips(Session& session, std::vector<Diagnostic>& warnings);
// ClipPoints from EnvelopePoints.
void BuildClipPoints(Session& session);
void RepairVideoClips(Session& session);
void SortClips(Session& session);

// The four tempo texts of <timeFormatState>, with their defaults for 0.
void BuildTempoTexts(Session& session);

}  // namespace morvanta

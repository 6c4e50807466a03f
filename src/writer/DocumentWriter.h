// The state of one document being written, and the section writers. The
// session is only read: the order the document needs and the numbers it
// gives out are kept here.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "model/ConvertOptions.h"
#include "model/Diagnostic.h"
#include "model/Session.h"
#include "services/TextHelpers.h"
#include "writer/ExportSesx.h"

namespace morvanta {

// The clip writers' lookups by track, file and clip id, and the track
// writers' by track id, send slot and bus, and the effects rack's by owner,
// slot and parameter, each built once per document.
struct ClipIndex;
struct TrackLookups;
struct RackLookups;

// The GroupItemId of a clip that was left out of the document: no group item names it.
inline constexpr std::int32_t kClipLeftOut = -1;

struct DocumentWriter {
    // Puts the tracks and clips in writing order.
    DocumentWriter(const Session& session, const ConvertOptions& options, std::vector<Diagnostic>& warnings);

    const Session& session;
    const ConvertOptions& options;
    std::vector<Diagnostic>& warnings;
    std::string out;

    // The session's tracks with the master last (a second master record is
    // dropped), and its clips by track and start, element 0 included.
    std::vector<Track> Tracks;
    std::vector<Clip> Clips;
    // The group item number each clip of Clips was given by the clip writer
    // (kClipLeftOut for a clip left out; 0 for one never written).
    std::vector<std::int32_t> GroupItemIds;

    // Track loop state.
    int TrackIndex = 0;
    bool AnySolo = false;
    bool MasterWritten = false;  // the session has a master track of its own

    std::shared_ptr<const ClipIndex> clipIndex{};
    std::shared_ptr<const TrackLookups> trackLookups{};
    std::shared_ptr<const RackLookups> rackLookups{};

    // Clips left out for a file the session does not list; the first few
    // are reported one by one, the rest in one count.
    std::size_t ClipsLeftOut = 0;

    // A text of the session (a name, a path) as the document holds it: with
    // WellFormed its "<", ">" and '"' are escaped, else it stays as it is.
    std::string Text(std::string text) const { return options.WellFormed ? EscapeMarkup(text) : text; }

    // One element a line, each ended by a single line feed.
    void Line(std::string_view text) {
        out += text;
        out += '\n';
        if (out.size() > options.MaxDocumentBytes) throw DocumentTooLarge(options.MaxDocumentBytes);
    }
};

// The exchange sort of the clips by (TrackOrdinal, Start); ties stay only
// when the list is in order already.
void SortClipsForWriting(std::vector<Clip>& clips);

// Sections, in document order.
void WriteTracks(DocumentWriter& w);
void WriteSessionState(DocumentWriter& w);
void WriteCueMarkers(DocumentWriter& w);
void WriteClipGroups(DocumentWriter& w);
void WriteMetronome(DocumentWriter& w);
void WriteFiles(DocumentWriter& w);

// Pieces of a track: its effects rack (written only when the track owns
// rack slots), and its clips.
void WriteEffectsRack(DocumentWriter& w, const Track& track);
void WriteAudioClips(DocumentWriter& w, const Track& track);
void WriteVideoClips(DocumentWriter& w, const Track& track);
// After the tracks: the count of left-out clips that were not named one by one.
void ReportMoreClipsLeftOut(DocumentWriter& w);

// The components of a track's <trackAudioParameters>, and its send list.
void WriteTrackComponents(DocumentWriter& w, const Track& track);  // fader, mute, pan
void WriteImplicitMasterComponents(DocumentWriter& w);
const TrackEq* FindTrackEq(DocumentWriter& w, const Track& track);
void WriteSendList(DocumentWriter& w, const Track& track);

// Pieces the track writer shares with other sections.
void WriteTrackEq(DocumentWriter& w, const TrackEq* eq);
std::string BuildMetronomePattern(const std::string& pattern);

}  // namespace morvanta

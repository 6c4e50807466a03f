#include "reader/Assembly.h"

#include "services/NumberText.h"

namespace morvanta {

void BuildTempoTexts(Session& session) {
    if (session.Tempo > 360) session.Tempo = 120;
    auto text = [](double value, const char* fallback) {
        return value == 0 ? std::string(fallback) : GeneralText(value);
    };
    session.BeatsPerBarText = text(session.BeatsPerBar, "4");
    session.TempoText = text(session.Tempo, "120");
    session.SubdivisionsText = text(session.Subdivisions, "16");
    session.NoteLengthText = text(session.NoteLength, "4");
}

void AssembleSession(Session& session, const ConvertOptions& options, std::vector<Diagnostic>& warnings) {
    BuildCueMarkers(session);
    BuildSessionFiles(session, options);
    AssembleTracks(session);
    BuildClips(session, warnings);
    BuildClipPoints(session);
    RepairVideoClips(session);
    SortClips(session);
    BuildTempoTexts(session);
}

}  // namespace morvanta

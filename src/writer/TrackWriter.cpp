// The track loop of the document: the master-last order and the implicit
// master track (docs/format/tracks.md).
#include <utility>

#include "writer/DocumentWriter.h"
#include "writer/NumberText.h"

namespace morvanta {

void ReorderTracks(DocumentWriter& w) {
    std::vector<Track> ordered;
    ordered.reserve(w.session.Tracks.size());
    const Track* master = nullptr;
    for (const Track& track : w.session.Tracks) {
        if (track.TrackId != kMasterTrackId) ordered.push_back(track);
        else if (!master) master = &track;  // a second master record is dropped
    }
    if (master) {
        ordered.push_back(*master);
        w.MasterWritten = true;
    }
    w.session.Tracks = std::move(ordered);
}

namespace {

void WriteImplicitMaster(DocumentWriter& w) {
    w.Line(R"(<masterTrack automationLaneOpenState="true" id="10000" index=")" + IntegerText(w.TrackIndex) +
           R"(" select="false">)");
    w.Line(R"(<trackParameters trackHeight="48">)");
    w.Line("<name>");
    w.Line("Master");
    w.Line("</name>");
    w.Line("</trackParameters>");
    w.Line(std::string(R"(<trackAudioParameters audioChannelType="stereo" automationMode="1" monitoring="false" recordArmed="false" solo=")") +
           (w.AnySolo ? "true" : "false") + R"(" soloSafe="false">)");
    w.Line(R"(<trackOutput outputID="1" type="hardwareOutput"/>)");
    w.Line(R"(<trackInput inputID="1"/>)");
    w.Line(R"(<component componentID="Audition.Fader" id="trackFader" name="volume" powered="true">)");
    w.Line(R"(<parameter index="0" name="volume" parameterValue=")" + PlainNumberText(w.session.MasterVolume) + R"("/>)");
    w.Line(R"(<parameter index="1" name="static gain" parameterValue="1"/>)");
    w.Line("</component>");
    w.Line(R"(<component componentID="Audition.Mute" id="trackMute" name="Mute" powered="true">)");
    w.Line(R"(<parameter index="0" parameterValue="0"/>)");
    w.Line(R"(<parameter index="1" name="mute" parameterValue="0"/>)");
    w.Line("</component>");
    w.Line(R"(<component componentID="Audition.StereoPanner" id="trackPan" name="StereoPanner" powered="true">)");
    w.Line(R"(<parameter index="0" name="Pan" parameterValue="0"/>)");
    w.Line("</component>");
    WriteTrackEq(w, nullptr);
    w.Line("</trackAudioParameters>");
    w.Line("</masterTrack>");
}

}  // namespace

void WriteTracks(DocumentWriter& w) {
    // Tracks of the session are written here once their chunks are read;
    // until then every document has the implicit master alone.
    if (!w.MasterWritten) WriteImplicitMaster(w);
}

}  // namespace morvanta

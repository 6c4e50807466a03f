// The track loop of the document: the master-last order, the element each
// track becomes with its parameters and children, and the implicit master
// track (docs/format/tracks.md, "Track elements").
#include "writer/DocumentWriter.h"
#include "services/NumberText.h"
#include "services/TextHelpers.h"
#include "writer/TrackLookups.h"

namespace morvanta {

namespace {

enum class TrackElement { Video, Bus, Master, Audio };

TrackElement ElementOf(const Track& track) {
    if (track.TrackId == kVideoTrackId) return TrackElement::Video;
    if (track.BusId > kBusIdLimit) return TrackElement::Bus;
    if (track.TrackId == kMasterTrackId) return TrackElement::Master;
    return TrackElement::Audio;
}

const char* TrueFalse(bool value) { return value ? "true" : "false"; }

// The track a track feeds: the last track whose BusId is its OutputBusId,
// the master when there is none.
std::int32_t OutputId(DocumentWriter& w, const Track& track) {
    if (track.OutputBusId <= kBusIdLimit) return kMasterTrackId;
    const auto bus = TrackLookupsOf(w).busTracks.Last(track.OutputBusId);
    return bus ? w.Tracks[*bus].TrackId : kMasterTrackId;
}

void WriteTrack(DocumentWriter& w, const Track& track) {
    const bool soloed = track.Soloed == 1;
    if (soloed) w.AnySolo = true;
    const char* solo = TrueFalse(soloed);
    const char* phase = TrueFalse(track.PhaseInverted == 1);
    const TrackElement element = ElementOf(track);

    std::string height = PlainNumberText(track.TrackHeight);
    switch (element) {
        case TrackElement::Video:
            w.Line(R"(<videoTrack id="0" select="false">)");
            break;
        case TrackElement::Master:
            w.Line(R"(<masterTrack automationLaneOpenState="true" id="10000" index=")" + IntegerText(w.TrackIndex) +
                   R"(" select="false">)");
            height = "48";
            break;
        case TrackElement::Bus:
        case TrackElement::Audio:
            w.Line(std::string(element == TrackElement::Bus ? "<busTrack" : "<audioTrack") +
                   R"( automationLaneOpenState="false" id=")" + IntegerText(track.TrackId) + R"(" index=")" +
                   IntegerText(w.TrackIndex) + R"(" phaseInverted=")" + phase + R"(" select="false" solo=")" + solo +
                   R"(" soloSafe="false">)");
            break;
    }
    if (element != TrackElement::Video) ++w.TrackIndex;  // the video track takes no index

    w.Line(R"(<trackParameters trackHeight=")" + height + R"(">)");
    w.Line("<name>" + w.Text(EscapeText(TrimBlanks(track.TrackName), false)) + "</name>");
    w.Line("</trackParameters>");

    if (element == TrackElement::Video) {
        WriteVideoClips(w, track);
        w.Line("</videoTrack>");
        return;
    }

    const std::string mode = track.AutomationMode < 2 ? PlainNumberText(track.AutomationMode) : "1";
    w.Line(R"(<trackAudioParameters audioChannelType="stereo" automationMode=")" + mode +
           R"(" monitoring="false" recordArmed="false" solo=")" + solo + R"(" soloSafe="false">)");
    w.Line(R"(<trackOutput outputID=")" + IntegerText(OutputId(w, track)) + R"(" type="trackID"/>)");
    w.Line(std::string(R"(<trackInput inputID=")") + (track.BusId > 0 ? "-1" : "1") + R"("/>)");
    WriteTrackComponents(w, track);
    WriteTrackEq(w, FindTrackEq(w, track));
    w.Line("</trackAudioParameters>");
    WriteEffectsRack(w, track);
    WriteSendList(w, track);
    WriteAudioClips(w, track);

    // The closing tag asks BusId > 0 where the opening one asked > 20000;
    // every bus number lies above 20000, so the two agree.
    if (track.BusId > 0) w.Line("</busTrack>");
    else if (track.TrackId == kMasterTrackId) w.Line("</masterTrack>");
    else w.Line("</audioTrack>");
}

// Written when the session has no master track of its own. It has no
// rack, no send list and no clips.
void WriteImplicitMaster(DocumentWriter& w) {
    w.Line(R"(<masterTrack automationLaneOpenState="true" id="10000" index=")" + IntegerText(w.TrackIndex) +
           R"(" select="false">)");
    w.Line(R"(<trackParameters trackHeight="48">)");
    w.Line("<name>");
    w.Line("Master");
    w.Line("</name>");
    w.Line("</trackParameters>");
    w.Line(std::string(R"(<trackAudioParameters audioChannelType="stereo" automationMode="1" monitoring="false" recordArmed="false" solo=")") +
           TrueFalse(w.AnySolo) + R"(" soloSafe="false">)");
    w.Line(R"(<trackOutput outputID="1" type="hardwareOutput"/>)");
    w.Line(R"(<trackInput inputID="1"/>)");
    WriteImplicitMasterComponents(w);
    WriteTrackEq(w, nullptr);
    w.Line("</trackAudioParameters>");
    w.Line("</masterTrack>");
}

}  // namespace

void WriteTracks(DocumentWriter& w) {
    for (const Track& track : w.Tracks) WriteTrack(w, track);
    if (!w.MasterWritten) WriteImplicitMaster(w);
}

}  // namespace morvanta

// The fader, mute and pan components of a track's <trackAudioParameters>
// (docs/format/tracks.md, "Fader, mute and pan").
#include "services/Conversions.h"
#include "writer/DocumentWriter.h"
#include "writer/Keyframes.h"
#include "services/NumberText.h"
#include "writer/TrackLookups.h"

namespace morvanta {

void WriteTrackComponents(DocumentWriter& w, const Track& track) {
    const Session& session = w.session;
    const TrackLookups& lookups = TrackLookupsOf(w);

    // The fader shows the last point's stored gain; its keyframes are fader
    // positions.
    const auto volume = lookups.volumePoints.Select(session.TrackVolumePoints, track.TrackId);
    const PointSelection volumeSelection = CountParameterPoints(volume);
    w.Line(R"(<component componentID="Audition.Fader" id="trackFader" name="volume" powered="true">)");
    w.Line(R"(<parameter index="0" name="volume" parameterValue=")" +
           PlainNumberText(volumeSelection.Found ? volumeSelection.LastValue : track.Volume) + R"(">)");
    WriteRuledKeyframes(w, volume, [](const TrackPoint& point) {
        return PlainNumberText(GetNormalizedValue(ConvertGain(point.Value)));
    });
    w.Line("</parameter>");
    w.Line(R"(<parameter index="1" name="static gain" parameterValue="1"/>)");
    w.Line("</component>");

    // The file's mute envelope runs the other way from the parameter.
    const auto mute = lookups.mutePoints.Select(session.TrackMutePoints, track.TrackId);
    w.Line(R"(<component componentID="Audition.Mute" id="trackMute" name="Mute" powered="true">)");
    w.Line(R"(<parameter index="0" parameterValue="0"/>)");
    w.Line(R"(<parameter index="1" name="mute" parameterValue=")" + IntegerText(track.Muted) + R"(">)");
    WriteRuledKeyframes(w, mute, [](const TrackPoint& point) { return IntegerText(IsBelowHalf(point.Value)); });
    w.Line("</parameter>");
    w.Line("</component>");

    // Pan stands in percent; the points are already fractions.
    const auto pan = lookups.panPoints.Select(session.TrackPanPoints, track.TrackId);
    w.Line(R"(<component componentID="Audition.StereoPanner" id="trackPan" name="StereoPanner" powered="true">)");
    w.Line(R"(<parameter index="0" name="Pan" parameterValue=")" + PlainNumberText(track.Pan) + R"(">)");
    WriteRuledKeyframes(w, pan, [](const TrackPoint& point) { return PlainNumberText(point.Value); });
    w.Line("</parameter>");
    w.Line("</component>");
}

void WriteImplicitMasterComponents(DocumentWriter& w) {
    w.Line(R"(<component componentID="Audition.Fader" id="trackFader" name="volume" powered="true">)");
    w.Line(R"(<parameter index="0" name="volume" parameterValue=")" + PlainNumberText(w.session.MasterVolume) +
           R"("/>)");
    w.Line(R"(<parameter index="1" name="static gain" parameterValue="1"/>)");
    w.Line("</component>");
    w.Line(R"(<component componentID="Audition.Mute" id="trackMute" name="Mute" powered="true">)");
    w.Line(R"(<parameter index="0" parameterValue="0"/>)");
    w.Line(R"(<parameter index="1" name="mute" parameterValue="0"/>)");
    w.Line("</component>");
    w.Line(R"(<component componentID="Audition.StereoPanner" id="trackPan" name="StereoPanner" powered="true">)");
    w.Line(R"(<parameter index="0" name="Pan" parameterValue="0"/>)");
    w.Line("</component>");
}

}  // namespace morvanta

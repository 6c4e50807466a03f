// The fader, mute and pan components of a track's <trackAudioParameters>
// (docs/format/tracks.md, "Fader, mute and pan").
#include "services/Conversions.h"
#include "writer/DocumentWriter.h"
#include "writer/Keyframes.h"
#include "writer/NumberText.h"

namespace morvanta {

void WriteTrackComponents(DocumentWriter& w, const Track& track) {
    const Session& session = w.session;
    auto ofTrack = [&](const TrackPoint& point) { return point.TrackId == track.TrackId; };

    // The fader shows the last point's stored gain; its keyframes are fader
    // positions.
    const PointSelection volume = CountParameterPoints(session.TrackVolumePoints, ofTrack);
    w.Line(R"(<component componentID="Audition.Fader" id="trackFader" name="volume" powered="true">)");
    w.Line(R"(<parameter index="0" name="volume" parameterValue=")" +
           PlainNumberText(volume.Found ? volume.LastValue : track.Volume) + R"(">)");
    WriteRuledKeyframes(w, session.TrackVolumePoints, volume, ofTrack, [](const TrackPoint& point) {
        return PlainNumberText(GetNormalizedValue(ConvertGain(point.Value)));
    });
    w.Line("</parameter>");
    w.Line(R"(<parameter index="1" name="static gain" parameterValue="1"/>)");
    w.Line("</component>");

    // The file's mute envelope runs the other way from the parameter.
    const PointSelection mute = CountParameterPoints(session.TrackMutePoints, ofTrack);
    w.Line(R"(<component componentID="Audition.Mute" id="trackMute" name="Mute" powered="true">)");
    w.Line(R"(<parameter index="0" parameterValue="0"/>)");
    w.Line(R"(<parameter index="1" name="mute" parameterValue=")" + IntegerText(track.Muted) + R"(">)");
    WriteRuledKeyframes(w, session.TrackMutePoints, mute, ofTrack,
                        [](const TrackPoint& point) { return IntegerText(IsBelowHalf(point.Value)); });
    w.Line("</parameter>");
    w.Line("</component>");

    // Pan stands in percent; the points are already fractions.
    const PointSelection pan = CountParameterPoints(session.TrackPanPoints, ofTrack);
    w.Line(R"(<component componentID="Audition.StereoPanner" id="trackPan" name="StereoPanner" powered="true">)");
    w.Line(R"(<parameter index="0" name="Pan" parameterValue=")" + PlainNumberText(track.Pan) + R"(">)");
    WriteRuledKeyframes(w, session.TrackPanPoints, pan, ofTrack,
                        [](const TrackPoint& point) { return PlainNumberText(point.Value); });
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

// The clips of a track: <audioClip> with its volume, mute and pan
// components, fades and stretch, and <videoClip> (docs/format/clips.md,
// "Clip elements").
#include <filesystem>
#include <optional>
#include <unordered_map>

#include "services/Conversions.h"
#include "writer/DocumentWriter.h"
#include "writer/Keyframes.h"
#include "services/NumberText.h"
#include "writer/PositionIndex.h"
#include "services/TextHelpers.h"

namespace morvanta {

struct ClipPointKey {
    std::int32_t ClipId{};
    std::int32_t TrackId{};
    std::int32_t Kind{};
    auto operator<=>(const ClipPointKey&) const = default;
};

// Every clip writer call would otherwise search all clips, files, fades and
// points again; the lists do not change while the tracks are written.
struct ClipIndex {
    ClipIndex(const Session& s, const std::vector<Clip>& clips);

    PositionIndex<std::int32_t> clipsOfTrack;  // the clips in writing order from element 1, by TrackId
    PositionIndex<std::int32_t> files;         // SessionFiles by FileId
    PositionIndex<ClipPointKey> points;        // ClipPoints by clip, track and kind
    PositionIndex<std::int32_t> stretches;     // ClipStretches by ClipId
    std::unordered_map<std::int32_t, ClipFade> fadeOfClip;  // the ClipFades rows of each clip id, merged
};

namespace {

// What the fade texts take from the ClipFades rows of one clip id, read in
// list order: the shapes of the last row, the cosine type of any row that
// has it, and the last length above 0 (0 when there is none).
ClipFade MergeFade(ClipFade merged, const ClipFade& row) {
    merged.ClipId = row.ClipId;
    merged.FadeInShape = row.FadeInShape;
    merged.FadeOutShape = row.FadeOutShape;
    if (row.FadeInType == 1) merged.FadeInType = 1;
    if (row.FadeOutType == 1) merged.FadeOutType = 1;
    if (row.FadeInLength > 0) merged.FadeInLength = row.FadeInLength;
    if (row.FadeOutLength > 0) merged.FadeOutLength = row.FadeOutLength;
    return merged;
}

}  // namespace

ClipIndex::ClipIndex(const Session& s, const std::vector<Clip>& clips)
    : clipsOfTrack(clips, [](const Clip& c) { return c.TrackId; }, 1),
      files(s.SessionFiles, [](const SessionFile& f) { return f.FileId; }),
      points(s.ClipPoints, [](const ClipPoint& p) { return ClipPointKey{p.ClipId, p.TrackId, p.Kind}; }),
      stretches(s.ClipStretches, [](const ClipStretch& st) { return st.ClipId; }) {
    for (const ClipFade& row : s.ClipFades) fadeOfClip[row.ClipId] = MergeFade(fadeOfClip[row.ClipId], row);
}

namespace {

const ClipIndex& IndexOf(DocumentWriter& w) {
    if (!w.clipIndex) w.clipIndex = std::make_shared<const ClipIndex>(w.session, w.Clips);
    return *w.clipIndex;
}

// A clip whose file the session does not list is left out whole. Tracks that
// share an id repeat each other's clips, so past the first few the clips are
// only counted, for ReportMoreClipsLeftOut.
constexpr std::size_t kClipsLeftOutNamed = 100;

void ReportLeftOut(DocumentWriter& w, const Clip& c, const char* kind) {
    if (++w.ClipsLeftOut > kClipsLeftOutNamed) return;
    w.warnings.push_back(Diagnostic{std::string(kind) + " clip " + std::to_string(c.ClipId) + " on track " +
                                        std::to_string(c.TrackId) + " at sample " + IntegerText(c.Start) +
                                        " refers to file " + std::to_string(c.FileId) +
                                        ", which the session does not list: the clip is left out",
                                    -1, ""});
}

// An integer text read back as a number: the crossfade tests compare these.
double IntegerValue(double value) { return ParseNumberPrefix(IntegerText(value)); }

struct FadeTexts {
    std::string Head = "-1";
    std::string Tail = "-1";
    std::string InEnd = "0";
    std::string InStart = "0";
    std::string InShape = "0";
    std::string InType = "log";
    std::string OutEnd;
    std::string OutStart;
    std::string OutShape = "0";
    std::string OutType = "log";
};

// The fade texts of clip n, and its crossfade marks. Both come only from
// rows of ClipFades: a clip without one keeps the start values. Several
// rows of one clip id act as their merge.
FadeTexts FadesOf(const std::vector<Clip>& clips, const ClipIndex& index, std::size_t n, std::int32_t trackId) {
    const Clip& c = clips[n];
    FadeTexts t;
    t.OutEnd = t.OutStart = IntegerText(c.Length);
    const auto merged = index.fadeOfClip.find(c.ClipId);
    if (merged == index.fadeOfClip.end()) return t;
    const ClipFade& f = merged->second;
    t.InShape = GeneralText(f.FadeInShape);
    t.OutShape = GeneralText(f.FadeOutShape);
    if (f.FadeInType == 1) t.InType = "cosine";
    if (f.FadeOutType == 1) t.OutType = "cosine";
    if (f.FadeInLength > 0) {
        t.InStart = "0";
        t.InEnd = IntegerText(f.FadeInLength);
    }
    if (f.FadeOutLength > 0) {
        t.OutStart = IntegerText(c.Length - f.FadeOutLength);
        t.OutEnd = IntegerText(c.Length);
    }
    // Overlaps with the neighbours in the sorted list, strictly: clips that
    // only touch are not marked.
    if (n + 1 < clips.size()) {
        const Clip& next = clips[n + 1];
        if (next.TrackId == trackId && IntegerValue(c.Start + c.Length) > IntegerValue(next.Start)) t.Tail = "1";
    }
    const Clip& before = clips[n - 1];
    if (before.TrackId == trackId && IntegerValue(before.Start + before.Length) > IntegerValue(c.Start)) t.Head = "1";
    return t;
}

// The file's hue scale of 0 to 240 in degrees, not rounded.
std::string HueText(std::int32_t hue) {
    return PlainNumberText(ScaleFromRange(0, 360, NormalizeToRange(0, 240, hue)));
}

// A clip volume point as a fader position; below 0.000001 it is 0.
std::string ClipVolumeText(double gain) {
    double position = GetNormalizedValue(ConvertGain(gain));
    if (position < 0.000001) position = 0;
    return FixedPlacesText(position, 8);
}

void WriteClipEnvelope(DocumentWriter& w, const ClipIndex& index, const Clip& c, std::int32_t kind,
                       std::string (*valueText)(double)) {
    WriteParameterKeyframes(
        w, index.points.Select(w.session.ClipPoints, ClipPointKey{c.ClipId, c.TrackId, kind}),
        // A clip point counts from the clip's start in the file.
        [&](const ClipPoint& p) { return IntegerText(p.Offset + c.SourceStart); },
        [&](const ClipPoint& p) { return valueText(p.Value); });
}

std::string PanValueText(double value) { return PlainNumberText(value); }

}  // namespace

void WriteAudioClips(DocumentWriter& w, const Track& track) {
    const Session& s = w.session;
    const ClipIndex& index = IndexOf(w);
    // Both count the clips of this track that are written.
    std::int32_t ClipCounter = 0;
    std::int32_t GroupItemCounter = 0;
    for (std::size_t n : index.clipsOfTrack.Positions(track.TrackId)) {
        const Clip& c = w.Clips[n];
        const auto k = index.files.First(c.FileId);
        if (!k) {
            ReportLeftOut(w, c, "audio");
            w.GroupItemIds[n] = kClipLeftOut;
            continue;
        }
        const SessionFile& file = s.SessionFiles[*k];
        const auto stretch = index.stretches.First(c.ClipId);
        const std::string looped = stretch && c.Looped == 1 ? "true" : "false";
        const std::string locked = c.Locked == 1 ? "true" : "false";
        const FadeTexts fades = FadesOf(w.Clips, index, n, track.TrackId);

        w.Line(R"(<audioClip clipAutoCrossfade="true" crossFadeHeadClipID=")" + fades.Head +
               R"(" crossFadeTailClipID=")" + fades.Tail + R"(" endPoint=")" + IntegerText(c.Start + c.Length) +
               R"(" fileID=")" + IntegerText(static_cast<double>(*k)) + R"(" hue=")" + HueText(c.Hue) +
               R"(" id=")" + PlainNumberText(ClipCounter) + R"(" lockedInTime=")" + locked + R"(" looped=")" +
               looped + R"(" name="" offline="false" select="false" sourceInPoint=")" + IntegerText(c.SourceStart) +
               R"(" sourceOutPoint=")" + IntegerText(c.SourceStart + c.Length) + R"(" startPoint=")" +
               IntegerText(c.Start) + R"(" zOrder=")" + PlainNumberText(static_cast<double>(n)) + R"(">)");
        ++ClipCounter;
        if (c.GroupId > 0) w.GroupItemIds[n] = GroupItemCounter;
        ++GroupItemCounter;

        w.Line(R"(<component componentID="Audition.Fader" id="clipGain" name="volume">)");
        w.Line(R"(<parameter index="0" name="volume" parameterValue="0">)");
        WriteClipEnvelope(w, index, c, 1, ClipVolumeText);
        w.Line("</parameter>");
        w.Line(R"(<parameter index="1" name="static gain" parameterValue=")" + PlainNumberText(c.Gain) + R"("/>)");
        w.Line("</component>");

        w.Line(R"(<component componentID="Audition.Mute" id="clipMute" name="Mute" powered="true">)");
        w.Line(R"(<parameter index="0" parameterValue="0"/>)");
        w.Line(R"(<parameter index="1" name="mute" parameterValue=")" + PlainNumberText(c.Muted) + R"("/>)");
        w.Line("</component>");
        w.Line(R"(<component componentID="Audition.StereoPanner" id="clipPan" name="StereoPanner">)");
        w.Line(R"(<parameter index="0" name="Pan" parameterValue="0">)");
        WriteClipEnvelope(w, index, c, 2, PanValueText);
        w.Line("</parameter>");
        w.Line("</component>");

        w.Line(R"(<fadeIn crossFadeLinkType="linkedAsymmetric" endPoint=")" + fades.InEnd + R"(" shape=")" +
               fades.InShape + R"(" startPoint=")" + fades.InStart + R"(" type=")" + fades.InType + R"("/>)");
        w.Line(R"(<fadeOut crossFadeLinkType="linkedAsymmetric" endPoint=")" + fades.OutEnd + R"(" shape=")" +
               fades.OutShape + R"(" startPoint=")" + fades.OutStart + R"(" type=")" + fades.OutType + R"("/>)");

        if (stretch && c.Looped != 1) {
            // The stretch stands on the closing line, without a line end of its own.
            const ClipStretch& st = s.ClipStretches[*stretch];
            const double fileLength = file.LengthSamples > 0 ? file.LengthSamples : st.StretchedLength;
            w.out += R"(<clipStretch adaptiveWindowSize="37" pitchAdjustment="0" preserveFormants="true" stretchMode="realtime" stretchQuality="high" stretchRatio=")" +
                     GeneralText(st.StretchedLength / fileLength) +
                     R"(" stretchType="solo" transientSensitivity="40"/>)";
        }
        w.Line("</audioClip>");
    }
}

void WriteVideoClips(DocumentWriter& w, const Track& track) {
    const Session& s = w.session;
    const ClipIndex& index = IndexOf(w);
    for (std::size_t n : index.clipsOfTrack.Positions(track.TrackId)) {
        const Clip& c = w.Clips[n];
        const auto k = index.files.First(c.FileId);
        if (!k) {
            ReportLeftOut(w, c, "video");
            continue;
        }
        const std::string path = TrimBlanks(s.SessionFiles[*k].Path);
        std::error_code ec;
        const std::string out =
            std::filesystem::exists(path, ec) ? IntegerText(c.SourceStart + c.Length) : std::string("-1");
        w.Line(R"(<videoClip endPoint="-1" fileID=")" + IntegerText(static_cast<double>(*k)) +
               R"(" hue="-1" id="0" lockedInTime=")" + (c.Locked == 1 ? "true" : "false") + R"(" name=")" +
               w.Text(FileNameOf(path)) + R"(" offline="false" select="false" sourceInPoint=")" + IntegerText(c.SourceStart) +
               R"(" sourceOutPoint=")" + out + R"(" startPoint=")" + IntegerText(c.Start) + R"(" zOrder="0">)");
        w.Line("<videoFormat />");
        w.Line("</videoClip>");
    }
}

void ReportMoreClipsLeftOut(DocumentWriter& w) {
    if (w.ClipsLeftOut <= kClipsLeftOutNamed) return;
    w.warnings.push_back(Diagnostic{std::to_string(w.ClipsLeftOut - kClipsLeftOutNamed) +
                                        " more clips refer to files that the session does not list: they are left out",
                                    -1, ""});
}

}  // namespace morvanta

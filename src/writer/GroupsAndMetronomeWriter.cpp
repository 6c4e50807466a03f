// <clipGroups> and <metronome> (docs/format/document.md, "Groups and metronome").
#include <array>
#include <cmath>
#include <unordered_map>
#include <vector>

#include "services/Conversions.h"
#include "writer/DocumentWriter.h"
#include "services/NumberText.h"
#include "services/TextHelpers.h"

namespace morvanta {
namespace {

constexpr std::array<std::string_view, 10> kSoundSets{
    "African 1", "African 2", "Beeps", "Cymbals", "Kit", "Latin 1", "Latin 2", "Latin 3", "Sticks", "Tabla",
};

}  // namespace

std::string BuildMetronomePattern(const std::string& pattern) {
    // Each beat ends at a blank; the last one at the blank added here.
    const std::string beats = pattern + " ";
    std::string result;
    for (std::size_t from = 0, blank = beats.find(' '); blank != std::string::npos;
         from = blank + 1, blank = beats.find(' ', from)) {
        const double code = ParseNumberPrefix(beats.substr(from, blank - from));
        if (code == 1) result += "downBeat ";
        else if (code == 2) result += "upBeat ";
        else if (code == 3) result += "subdivision ";
    }
    if (TrimBlanks(result).empty()) result = "downBeat subdivision subdivision subdivision ";
    return result;
}

void WriteClipGroups(DocumentWriter& w) {
    const Session& s = w.session;
    if (s.ClipGroups.empty()) return;
    // The members of each group, in list order. A clip left out of the
    // document has no item either.
    std::unordered_map<std::int32_t, std::vector<std::size_t>> members;
    for (std::size_t i = 1; i < w.Clips.size(); ++i) {
        const Clip& clip = w.Clips[i];
        if (clip.GroupId > 0 && w.GroupItemIds[i] != kClipLeftOut) members[clip.GroupId].push_back(i);
    }
    w.Line("<clipGroups>");
    for (const ClipGroup& group : s.ClipGroups) {
        // Unlike a clip's, a group's hue is a whole number of degrees.
        const double degrees = ScaleFromRange(0, 360, NormalizeToRange(0, 240, group.Hue));
        w.Line(R"(<clipGroup hue=")" + PlainNumberText(std::nearbyint(degrees)) + R"(" id=")" +
               PlainNumberText(static_cast<double>(group.GroupId) - 1) + R"(">)");
        w.Line("<name>Group " + PlainNumberText(group.GroupId) + "</name>");
        if (const auto it = members.find(group.GroupId); it != members.end()) {
            for (const std::size_t i : it->second)
                w.Line(R"(<item clipID=")" + PlainNumberText(w.GroupItemIds[i]) + R"(" trackID=")" +
                       PlainNumberText(w.Clips[i].TrackId) + R"("/>)");
        }
        w.Line("</clipGroup>");
    }
    w.Line("</clipGroups>");
}

void WriteMetronome(DocumentWriter& w) {
    const Session& s = w.session;
    const auto soundSet = s.MetronomeSoundSet >= 0 && s.MetronomeSoundSet < 10
                              ? kSoundSets[static_cast<std::size_t>(s.MetronomeSoundSet)]
                              : std::string_view("Kit");
    w.Line(std::string(R"(<metronome enabled=")") + (s.MetronomeEnabled == 1 ? "true" : "false") +
           R"(" pattern=")" + BuildMetronomePattern(s.MetronomePattern) + R"(" soundSet=")" +
           std::string(soundSet) + R"(">)");
    w.Line(R"(<metronomeTrack automationLaneOpenState="true" id="0" index=")" + IntegerText(w.TrackIndex + 1) +
           R"(" select="false">)");
    w.Line(R"(<trackParameters trackHeight="243">)");
    w.Line("<name>Metronome</name>");
    w.Line("</trackParameters>");
    w.Line(R"(<trackAudioParameters audioChannelType="mono" automationMode="1" monitoring="false" recordArmed="false" solo="false" soloSafe="true">)");
    w.Line(R"(<trackOutput outputID="10000" type="trackID"/>)");
    w.Line(R"(<trackInput inputID="-1"/>)");
    w.Line("</trackAudioParameters>");
    w.Line("</metronomeTrack>");
    w.Line("</metronome>");
}

}  // namespace morvanta

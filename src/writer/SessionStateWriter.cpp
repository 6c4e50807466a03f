// <sessionState> and the XMP packet of cue markers
// (docs/format/document.md, "Session state").
#include <array>

#include "writer/DocumentWriter.h"
#include "services/NumberText.h"
#include "services/TextHelpers.h"

namespace morvanta {
namespace {

struct TimeFormatRow {
    std::string_view DropFrame, FrameRate, Ntsc, Format;
};

constexpr std::array<TimeFormatRow, 6> kTimeFormats{{
    {"false", "75", "false", "timeFormatDecimal"},
    {"false", "24", "false", "timeFormatSamples"},
    {"false", "25", "false", "timeFormatTimeCode"},
    {"true", "30", "true", "timeFormatDecimal"},
    {"false", "24", "false", "timeFormatBarsAndBeats"},
    {"false", "30", "true", "timeFormatTimeCode"},
}};

std::string CleanMarkerText(const std::string& text) {
    std::string clean;
    for (char c : text)
        if (c != '\0') clean += c;
    return EscapeText(TrimBlanks(clean));
}

}  // namespace

void WriteSessionState(DocumentWriter& w) {
    const Session& s = w.session;
    // A format the old writers never used falls back to the first row.
    const auto& row = kTimeFormats[s.TimeFormat >= 0 && s.TimeFormat < 6 ? static_cast<std::size_t>(s.TimeFormat) : 0];
    w.Line(R"(<sessionState ctiPosition="0" smpteStart=")" + PlainNumberText(s.SmpteStart) + R"(">)");
    w.Line(R"(<selectionState selectionDuration=")" +
           PlainNumberText(static_cast<double>(s.SelectionEnd) - static_cast<double>(s.SelectionStart)) +
           R"(" selectionStart=")" + PlainNumberText(s.SelectionStart) + R"("/>)");
    w.Line(R"(<timeFormatState beatsPerBar=")" + s.BeatsPerBarText + R"(" beatsPerMinute=")" +
           FixedPlacesText(ParseNumberPrefix(s.TempoText), 2) +
           R"(" linkToDefaultTimeSettings="false" noteLength=")" + s.NoteLengthText + R"(" subdivisions=")" +
           s.SubdivisionsText + R"(" timeCodeDropFrame=")" + std::string(row.DropFrame) +
           R"(" timeCodeFrameRate=")" + std::string(row.FrameRate) + R"(" timeCodeNTSC=")" +
           std::string(row.Ntsc) + R"(" timeFormat=")" + std::string(row.Format) + R"("/>)");
    w.Line("</sessionState>");
}

void WriteCueMarkers(DocumentWriter& w) {
    const Session& s = w.session;
    if (s.CueMarkers.empty()) return;
    w.Line(R"(<xmpMetadata><![CDATA[<?xpacket begin="?" id="W5M0MpCehiHzreSzNTczkc9d"?>)");
    w.Line(R"(<x:xmpmeta xmlns:x="adobe:ns:meta/" x:xmptk="Adobe XMP Core 5.2-c001 61.138310, 2010/08/03-07:50:39        ">)");
    w.Line(R"(<rdf:RDF xmlns:rdf="http://www.w3.org/1999/02/22-rdf-syntax-ns#">)");
    w.Line(R"(<rdf:Description rdf:about="")");
    w.Line(R"(xmlns:xmpDM="http://ns.adobe.com/xmp/1.0/DynamicMedia/">)");
    w.Line("<xmpDM:Tracks>");
    w.Line("<rdf:Bag>");
    w.Line(R"(<rdf:li rdf:parseType="Resource">)");
    w.Line("<xmpDM:trackName>CuePoint Markers</xmpDM:trackName>");
    w.Line("<xmpDM:trackType>Cue</xmpDM:trackType>");
    w.Line("<xmpDM:frameRate>f254016000000</xmpDM:frameRate>");
    w.Line("<xmpDM:markers>");
    w.Line("<rdf:Seq>");
    const std::string rate = IntegerText(s.SampleRate);
    for (const CueMarker& cue : s.CueMarkers) {
        w.Line(R"(<rdf:li rdf:parseType="Resource">)");
        w.Line("<xmpDM:startTime>" + IntegerText(cue.Start) + "f" + rate + "</xmpDM:startTime>");
        w.Line("<xmpDM:duration>" + IntegerText(cue.Length) + "f" + rate + "</xmpDM:duration>");
        // The packet is XML of its own inside the CDATA section, so the
        // texts are escaped as they would be in an element's text.
        w.Line("<xmpDM:comment>" + w.Text(CleanMarkerText(cue.Comment)) + "</xmpDM:comment>");
        w.Line("<xmpDM:name>" + w.Text(CleanMarkerText(cue.Name)) + "</xmpDM:name>");
        w.Line("</rdf:li>");
    }
    w.Line("</rdf:Seq>");
    w.Line("</xmpDM:markers>");
    w.Line("</rdf:li>");
    w.Line("</rdf:Bag>");
    w.Line("</xmpDM:Tracks>");
    w.Line("</rdf:Description>");
    w.Line("</rdf:RDF>");
    w.Line("</x:xmpmeta>");
    w.Line(R"(<?xpacket end="w"?>]]></xmpMetadata>)");
}

}  // namespace morvanta

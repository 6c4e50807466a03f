// The one form in which automation points become <parameterKeyframes>, and
// the rule that decides whether a parameter gets them. Tracks, sends, racks
// and clips all use it (docs/format/tracks.md, "Keyframes"). Each takes the
// points its parameter selects, in their list order.
#pragma once

#include <string>
#include <vector>

#include "writer/DocumentWriter.h"
#include "services/NumberText.h"

namespace morvanta {

struct PointSelection {
    int Count = 0;          // points selected
    bool Found = false;     // Count > 0
    double LastValue = 0;   // Value of the last selected point, unconverted
    bool SameTwo = false;   // the second selected point's Value equals the first's
};

template <class Point>
PointSelection CountParameterPoints(const std::vector<Point>& selected) {
    PointSelection s;
    s.Count = static_cast<int>(selected.size());
    s.Found = s.Count > 0;
    if (s.Found) s.LastValue = selected.back().Value;
    if (s.Count >= 2) s.SameTwo = selected[1].Value == selected[0].Value;
    return s;
}

// Tracks, sends and racks: more than two points, or two that differ.
inline bool KeyframesWanted(const PointSelection& s) { return s.Count > 2 || (s.Count == 2 && !s.SameTwo); }

// Writes the element for the selected points in list order; nothing is
// sorted, merged or added.
template <class Point, class OffsetText, class ValueText>
void WriteParameterKeyframes(DocumentWriter& w, const std::vector<Point>& selected, OffsetText&& offsetText,
                             ValueText&& valueText) {
    w.Line(R"(<parameterKeyframes enableSplines="false">)");
    for (const Point& point : selected) {
        w.Line(R"(<parameterKeyframe sampleOffset=")" + offsetText(point) +
               R"(" select="false" type="linear" value=")" + valueText(point) + R"("/>)");
    }
    w.Line("</parameterKeyframes>");
}

// Tracks, sends and racks: the element only when the rule wants it, with
// each point's own sample offset as integer text.
template <class Point, class ValueText>
void WriteRuledKeyframes(DocumentWriter& w, const std::vector<Point>& selected, ValueText&& valueText) {
    if (!KeyframesWanted(CountParameterPoints(selected))) return;
    WriteParameterKeyframes(
        w, selected, [](const Point& point) { return IntegerText(point.SampleOffset); }, valueText);
}

}  // namespace morvanta

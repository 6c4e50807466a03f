// The one form in which automation points become <parameterKeyframes>, and
// the rule that decides whether a parameter gets them. Tracks, sends, racks
// and clips all use it (docs/format/tracks.md, "Keyframes").
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "writer/DocumentWriter.h"
#include "writer/NumberText.h"

namespace morvanta {

struct PointSelection {
    int Count = 0;             // points selected
    bool Found = false;        // Count > 0
    double LastValue = 0;      // Value of the last selected point, unconverted
    std::size_t FirstIndex = 0;  // list position of the first selected point
    bool SameTwo = false;      // the second selected point's Value equals the first's
};

// Selects the points for which `selected(point)` holds, in list order.
template <class Point, class Selected>
PointSelection CountParameterPoints(const std::vector<Point>& points, Selected&& selected) {
    PointSelection s;
    double first = 0;
    for (std::size_t i = 0; i < points.size(); ++i) {
        if (!selected(points[i])) continue;
        ++s.Count;
        if (s.Count == 1) {
            s.FirstIndex = i;
            first = points[i].Value;
        } else if (s.Count == 2) {
            s.SameTwo = points[i].Value == first;
        }
        s.LastValue = points[i].Value;
    }
    s.Found = s.Count > 0;
    return s;
}

// Tracks, sends and racks: more than two points, or two that differ.
inline bool KeyframesWanted(const PointSelection& s) { return s.Count > 2 || (s.Count == 2 && !s.SameTwo); }

// Writes the element for the selected points in list order; nothing is
// sorted, merged or added.
template <class Point, class Selected, class OffsetText, class ValueText>
void WriteParameterKeyframes(DocumentWriter& w, const std::vector<Point>& points, Selected&& selected,
                             OffsetText&& offsetText, ValueText&& valueText) {
    w.Line(R"(<parameterKeyframes enableSplines="false">)");
    for (const Point& point : points) {
        if (!selected(point)) continue;
        w.Line(R"(<parameterKeyframe sampleOffset=")" + offsetText(point) +
               R"(" select="false" type="linear" value=")" + valueText(point) + R"("/>)");
    }
    w.Line("</parameterKeyframes>");
}

// Tracks, sends and racks: the element only when the rule wants it, with
// each point's own sample offset as integer text.
template <class Point, class Selected, class ValueText>
void WriteRuledKeyframes(DocumentWriter& w, const std::vector<Point>& points, const PointSelection& selection,
                         Selected&& selected, ValueText&& valueText) {
    if (!KeyframesWanted(selection)) return;
    WriteParameterKeyframes(
        w, points, selected, [](const Point& point) { return IntegerText(point.SampleOffset); }, valueText);
}

}  // namespace morvanta

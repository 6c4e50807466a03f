// The 44-parameter trackEQ component of every audio, bus and master track
// (docs/format/tracks.md, "Track EQ").
#include <array>
#include <optional>

#include "services/Conversions.h"
#include "writer/DocumentWriter.h"
#include "services/NumberText.h"
#include "writer/TrackLookups.h"

namespace morvanta {
namespace {

struct EqParameter {
    std::string_view Name;
    std::string_view Neutral;  // the value without an EQ record
};

// Frequencies are fractions of (Nyquist - 20 Hz) at 48 kHz, Q values q / 10000.
constexpr std::array<EqParameter, 44> kEqParameters{{
    {"Low Shelf Frequency", "0.000834"},
    {"Low Shelf Gain", "0.5"},
    {"High Shelf Frequency", "0.7497915"},
    {"High Shelf Gain", "0.5"},
    {"EQ Band 1 (Center Frequency)", "0.001251"},
    {"EQ Band 1 (Q)", "0.0002"},
    {"EQ Band 1 (Gain)", "0.5"},
    {"EQ Band 1 Enable", "1"},
    {"EQ Band 2 (Center Frequency)", "0.0075063"},
    {"EQ Band 2 (Q)", "0.0002"},
    {"EQ Band 2 (Gain)", "0.5"},
    {"EQ Band 2 Enable", "1"},
    {"EQ Band 3 (Center Frequency)", "0.0325271"},
    {"EQ Band 3 (Q)", "0.0002"},
    {"EQ Band 3 (Gain)", "0.5"},
    {"EQ Band 3 Enable", "1"},
    {"EQ Band 4 (Center Frequency)", "0.1326105"},
    {"EQ Band 4 (Q)", "0.0002"},
    {"EQ Band 4 (Gain)", "0.5"},
    {"EQ Band 4 Enable", "1"},
    {"EQ Band 5 (Center Frequency)", "0.5329441"},
    {"EQ Band 5 (Q)", "0.0002"},
    {"EQ Band 5 (Gain)", "0.5"},
    {"EQ Band 5 Enable", "1"},
    {"Master Gain", "0.6666667"},
    {"ConstantQ", "1"},
    {"Low Shelf Filter Order", "0"},
    {"High Shelf Filter Order", "0"},
    {"Ultra-Quiet Mode", "0"},
    {"Low Shelf Enable", "1"},
    {"High Shelf Enable", "1"},
    {"Original Sample Rate", "0.25"},
    {"EQ Band 1 (Bandwidth)", "0.0025"},
    {"EQ Band 2 (Bandwidth)", "0.01"},
    {"EQ Band 3 (Bandwidth)", "0.04"},
    {"EQ Band 4 (Bandwidth)", "0.16"},
    {"EQ Band 5 (Bandwidth)", "0.64"},
    {"High-Pass Filter Enable", "0"},
    {"High-Pass Cutoff Frequency", "0"},
    {"High-Pass Slope", "4"},
    {"Low-Pass Filter Enable", "0"},
    {"Low-Pass Cutoff Frequency", "0.8331943"},
    {"Low-Pass Slope", "4"},
    {"Bypass", "0"},
}};

}  // namespace

// A "tkeq" record names the track by its ordinal, one of a track record by
// its id; the first record that names the track either way is its EQ.
const TrackEq* FindTrackEq(DocumentWriter& w, const Track& track) {
    const TrackLookups& lookups = TrackLookupsOf(w);
    std::optional<std::size_t> first = lookups.eqs.First(track.TrackOrdinal);
    if (const auto byId = lookups.eqs.First(track.TrackId); byId && (!first || *byId < *first)) first = byId;
    return first ? &w.session.TrackEqs[*first] : nullptr;
}

void WriteTrackEq(DocumentWriter& w, const TrackEq* eq) {
    const double sampleRate = w.session.SampleRate;
    auto frequencyText = [&](double f) {
        return FixedPlacesText((f - 20.0) / ((sampleRate / 2.0) - 20.0), 7);
    };
    auto qText = [](double q) { return PlainNumberText(q / 10000.0); };
    auto gainText = [](double g) { return FixedPlacesText(AA4_db_to_x(g), 7); };

    std::array<std::string, 44> values;
    for (std::size_t i = 0; i < values.size(); ++i) values[i] = std::string(kEqParameters[i].Neutral);
    if (eq) {
        values[4] = frequencyText(eq->LowFrequency);
        values[5] = qText(eq->LowQ);
        values[6] = gainText(eq->LowGain);
        values[11] = "0";
        values[12] = frequencyText(eq->MidFrequency);
        values[13] = qText(eq->MidQ);
        values[14] = gainText(eq->MidGain);
        values[19] = "0";
        values[20] = frequencyText(eq->HighFrequency);
        values[21] = qText(eq->HighQ);
        values[22] = PlainNumberText(AA4_db_to_x(eq->HighGain));  // band 5 alone is plain
        values[29] = "0";
        values[30] = "0";
    }

    const bool powered = eq && eq->EqEnabled == 1;
    w.Line(std::string(R"(<component componentID="Audition.EQ" id="trackEQ" name="EQ" powered=")") +
           (powered ? "true" : "false") + R"(">)");
    for (std::size_t i = 0; i < values.size(); ++i) {
        w.Line(R"(<parameter index=")" + std::to_string(i) + R"(" name=")" +
               std::string(kEqParameters[i].Name) + R"(" parameterValue=")" + values[i] + R"("/>)");
    }
    w.Line("</component>");
}

}  // namespace morvanta

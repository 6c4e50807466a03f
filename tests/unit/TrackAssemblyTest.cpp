// The assembly of Tracks from the track records and the buses: ids,
// ordinals, heights, solo and mute.
#include <gtest/gtest.h>

#include "TestSupport.h"
#include "reader/Assembly.h"

namespace morvanta::testing {
namespace {

SesTrack Raw(std::int32_t id, const std::string& name, std::int32_t height = 66) {
    return {.Name = name, .TrackId = id, .TrackHeight = height};
}

Session Assembled(const std::string& version, const std::vector<SesTrack>& raws,
                  const std::vector<SesBus>& buses = {}) {
    Session session;
    session.SesVersion = version;
    session.SesTracks = raws;
    session.SesBuses = buses;
    AssembleTracks(session);
    return session;
}

// Newer layout: ids as in the file, and a master first numbers the tracks
// behind it from 2; a video record is ordinal 1 and the tracks behind it
// count it. Older layout: ids take 10000 and a raw master becomes 20000.
// Behind a master record that stands first, the video is counted only by
// the versions of the number list.
TEST(TrackAssembly, IdsAndOrdinalsOfEachVersionList) {
    const std::vector<SesTrack> masterVideoTrack{Raw(10000, "M"), Raw(490000, "V"), Raw(1, "A")};
    const std::vector<std::pair<std::string, std::vector<SesTrack>>> cases{
        {"Audition 3.0", {Raw(10000, "M"), Raw(1, "A"), Raw(2, "B")}},
        {"Audition 3.0", {Raw(490000, "V", 0), Raw(1, "A"), Raw(2, "B")}},
        {"Audition 1.0", {Raw(1, "A"), Raw(2, "B"), Raw(10000, "M")}},
        {"Audition 1.0", masterVideoTrack},
        {"Audition 1.5", masterVideoTrack},
        {"Cool Edit 2000 1.0", masterVideoTrack},
        {"Audition 3.0", masterVideoTrack},
    };
    std::string dumps;
    for (const auto& [version, raws] : cases) {
        std::string names;
        for (const SesTrack& raw : raws) names += " " + raw.Name;
        dumps += TitledDump(version + ":" + names, Assembled(version, raws));
    }
    ExpectGolden("track-ids-and-ordinals.model.txt", dumps);
}

// Names trimmed, height 0 becomes 118, solo and mute from both codes; a bus
// keeps its number, name and first gain, its height and pan stay 0.
TEST(TrackAssembly, FieldsHeightsAndSoloMuteCodes) {
    const std::vector<SesTrack> raws{
        {.Name = "  Both  ", .TrackId = 1, .GainHigh = 0.8, .GainLow = 0.5, .StateCode = 3, .Pan = -20, .BusId = 20002,
         .OutputBusId = 20001, .TrackHeight = 0, .PhaseInverted = 1, .RackPostFader = 1, .AutomationMode = 2},
        {.Name = "Solo", .TrackId = 2, .SoloCode = 1},
        {.Name = "StateSolo", .TrackId = 3, .StateCode = 2},
        {.Name = "Muted", .TrackId = 4, .StateCode = 1},
        {.Name = "Neither", .TrackId = 5, .StateCode = 4, .SoloCode = 2}};
    const SesBus bus{.Name = "Bus 1 ", .GainHigh = 0.9, .GainLow = 0.1, .Pan = 33, .BusId = 20001};
    ExpectModelGolden("track-fields", Assembled("Audition 2.0", raws, {bus}));
}

}  // namespace
}  // namespace morvanta::testing

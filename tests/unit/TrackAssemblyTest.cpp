// The assembly of Tracks from the track records and the buses: ids,
// ordinals, heights, solo and mute.
#include <gtest/gtest.h>

#include "TrackRecords.h"
#include "reader/Assembly.h"

namespace morvanta::testing {
namespace {

using Strings = std::vector<std::string>;

SesTrack Raw(std::int32_t id, const std::string& name, std::int32_t height = 66) {
    SesTrack raw;
    raw.TrackId = id;
    raw.Name = name;
    raw.TrackHeight = height;
    return raw;
}

Strings Assemble(const std::string& version, const std::vector<SesTrack>& raws,
                 const std::vector<SesBus>& buses = {}) {
    Session session;
    session.SesVersion = version;
    session.SesTracks = raws;
    session.SesBuses = buses;
    AssembleTracks(session);
    // Only the ids and ordinals, which the cases below are about.
    Strings lines;
    for (const Track& t : session.Tracks)
        lines.push_back(t.TrackName + " " + std::to_string(t.TrackId) + "/" + std::to_string(t.TrackOrdinal));
    return lines;
}

TEST(TrackAssembly, IdsAndOrdinalsOfEachVersionList) {
    // Newer layout: ids as in the file; a master first numbers the tracks
    // behind it from 2.
    EXPECT_EQ(Assemble("Audition 3.0", {Raw(10000, "M"), Raw(1, "A"), Raw(2, "B")}),
              (Strings{"M 10000/1", "A 1/2", "B 2/3"}));
    // A video record is ordinal 1 and the tracks behind it count it.
    EXPECT_EQ(Assemble("Audition 3.0", {Raw(490000, "V", 0), Raw(1, "A"), Raw(2, "B")}),
              (Strings{"V 490000/1", "A 1/3", "B 2/4"}));
    // Older layout: ids take 10000, a raw master becomes 20000.
    EXPECT_EQ(Assemble("Audition 1.0", {Raw(1, "A"), Raw(2, "B"), Raw(10000, "M")}),
              (Strings{"A 10001/1", "B 10002/2", "M 20000/3"}));
    // Behind a master record that stands first, the video is counted only
    // by the versions of the number list.
    const std::vector<SesTrack> masterVideoTrack{Raw(10000, "M"), Raw(490000, "V"), Raw(1, "A")};
    EXPECT_EQ(Assemble("Audition 1.0", masterVideoTrack), (Strings{"M 20000/1", "V 490000/1", "A 10001/4"}));
    EXPECT_EQ(Assemble("Audition 1.5", masterVideoTrack), (Strings{"M 20000/1", "V 490000/1", "A 10001/3"}));
    EXPECT_EQ(Assemble("Cool Edit 2000 1.0", masterVideoTrack), (Strings{"M 20000/1", "V 490000/1", "A 10001/3"}));
    EXPECT_EQ(Assemble("Audition 3.0", masterVideoTrack), (Strings{"M 10000/1", "V 490000/1", "A 1/3"}));
}

TEST(TrackAssembly, FieldsHeightsAndSoloMuteCodes) {
    SesTrack both = Raw(1, "  Both  ", 0);
    both.StateCode = 3;
    both.GainHigh = 0.8;
    both.GainLow = 0.5;
    both.Pan = -20;
    both.BusId = 20002;
    both.OutputBusId = 20001;
    both.RackPostFader = 1;
    both.PhaseInverted = 1;
    both.AutomationMode = 2;
    SesTrack solo = Raw(2, "Solo");
    solo.SoloCode = 1;
    SesTrack stateSolo = Raw(3, "StateSolo");
    stateSolo.StateCode = 2;
    SesTrack muted = Raw(4, "Muted");
    muted.StateCode = 1;
    SesTrack neither = Raw(5, "Neither");
    neither.StateCode = 4;
    neither.SoloCode = 2;

    Session session;
    session.SesVersion = "Audition 2.0";
    session.SesTracks = {both, solo, stateSolo, muted, neither};
    SesBus bus;
    bus.Name = "Bus 1 ";
    bus.GainHigh = 0.9;
    bus.GainLow = 0.1;
    bus.Pan = 33;
    bus.BusId = 20001;
    session.SesBuses = {bus};
    AssembleTracks(session);
    EXPECT_EQ(Describe(session.Tracks),
              (Strings{"'Both' id 1 ordinal 1 volume 0.8 bus 20002 out 20001 muted 1 soloed 1 pan -20 height 118 "
                       "post 1 phase 1 mode 2",
                       "'Solo' id 2 ordinal 2 volume 1 bus 0 out 0 muted 0 soloed 1 pan 0 height 66 post 0 phase 0 "
                       "mode 1",
                       "'StateSolo' id 3 ordinal 3 volume 1 bus 0 out 0 muted 0 soloed 1 pan 0 height 66 post 0 "
                       "phase 0 mode 1",
                       "'Muted' id 4 ordinal 4 volume 1 bus 0 out 0 muted 1 soloed 0 pan 0 height 66 post 0 phase 0 "
                       "mode 1",
                       "'Neither' id 5 ordinal 5 volume 1 bus 0 out 0 muted 0 soloed 0 pan 0 height 66 post 0 phase 0 "
                       "mode 1",
                       // A bus keeps its number, name and first gain; its height and pan stay 0.
                       "'Bus 1' id 10006 ordinal 6 volume 0.9 bus 20001 out 0 muted 0 soloed 0 pan 0 height 0 post 0 "
                       "phase 0 mode 0"}));
}

}  // namespace
}  // namespace morvanta::testing

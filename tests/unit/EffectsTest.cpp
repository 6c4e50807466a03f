// Effects from session to document: the effect lists of the later track
// chunks, the older racks and buses, through the test's own catalogues in
// tests/catalogues (never the shipped ones), and the catalogues themselves.
#include <gtest/gtest.h>

#include <fstream>

#include "BlockPayloads.h"
#include "EffectPayloads.h"
#include "SessionPayloads.h"
#include "TestSupport.h"
#include "reader/effects/Catalogues.h"

namespace morvanta::testing {
namespace {

const std::filesystem::path kTestCatalogues = kSourceDir / "tests" / "catalogues";

ConvertOptions WithTestCatalogues() {
    ConvertOptions options;
    options.CatalogueFolder = kTestCatalogues;
    return options;
}

std::vector<std::string> WarningTexts(const ImportResult& result) {
    std::vector<std::string> texts;
    for (const Diagnostic& warning : result.Warnings) texts.push_back(warning.Message);
    return texts;
}

std::vector<std::string> Routes(const ImportResult& result) {
    std::vector<std::string> routes;
    for (const EffectReport& e : result.Effects) routes.push_back(e.Owner + " " + e.Effect + ": " + e.Route);
    return routes;
}

TEST(Effects, TheEffectListsOfATrackChunkReachTheDocument) {
    const ImportResult result = Convert(EffectsSession("Audition 3.0"), WithTestCatalogues(), "effects-audition-3.0");
    ASSERT_EQ(result.Status, ImportStatus::Converted) << result.Message;
    ExpectGolden("effects-audition-3.0.sesx", result.Document);
    EXPECT_EQ(Routes(result), (std::vector<std::string>{
                                  "track 1 \"Vocal\" Parametric Equalizer: catalogue Parametric Equalizer30.Kelfx",
                                  "track 1 \"Vocal\" Reverb: left out",
                                  "track 1 \"Vocal\" Warm Tape: fallback line 1 of EverythingElse30.Kelfx",
                                  "track 1 \"Vocal\" Channel Mixer: catalogue Channel Mixer30.Kelfx",
                                  "track 2 \"Guitar\" Graphic Equalizer: catalogue Graphic Equalizer30.Kelfx",
                                  "track 2 \"Guitar\" Dynamics Processing: catalogue Dynamics Processing30.Kelfx",
                                  "track 20001 \"Reverb bus\" Channel Mixer: catalogue Channel Mixer30.Kelfx",
                              }));
    EXPECT_EQ(WarningTexts(result),
              (std::vector<std::string>{
                  "effect \"Reverb\" on track 1 \"Vocal\" is left out: no catalogue and no line in "
                  "EverythingElse30.Kelfx name it",
                  "effect \"Warm Tape\" on track 1 \"Vocal\" is written without its parameters, by line 1 of "
                  "EverythingElse30.Kelfx",
                  "effect \"Channel Mixer\" on track 1 \"Vocal\" is written without its parameters: they keep its "
                  "place in the file's rack, slot number 3, and its slot is written as slotIndex 2",
              }));

    // Audition 1.5 takes every effect of its track chunk to the fallback
    // file. Its slots carry the record's own track id, and these versions'
    // tracks take 10000 more, so no rack reaches the document.
    const ImportResult older = Convert(EffectsSession("Audition 1.5"), WithTestCatalogues());
    ASSERT_EQ(older.Status, ImportStatus::Converted) << older.Message;
    std::vector<std::string> routes;
    for (const EffectReport& e : older.Effects) routes.push_back(e.Effect + ": " + e.Route);
    const std::string warmTape = "left out (fallback line 1 of EverythingElse30.Kelfx): no track of the document "
                                 "has the id 1 that its slot carries";
    EXPECT_EQ(routes, (std::vector<std::string>{"Parametric Equalizer: left out", "Reverb: left out",
                                                "Warm Tape: " + warmTape, "Channel Mixer: left out",
                                                "Graphic Equalizer: left out", "Dynamics Processing: left out",
                                                "Channel Mixer: left out"}));
    ASSERT_EQ(older.Warnings.size(), 7u);
    EXPECT_EQ(older.Warnings[2].Message, "effect \"Warm Tape\" on track 1 \"Vocal\" is left out: no track of the "
                                         "document has the id 1 that its slot carries");
    EXPECT_EQ(LinesStartingWith(older.Document, "<slot "), std::vector<std::string>{});
}

TEST(Effects, OlderRacksAndBusesReachTheDocument) {
    const ImportResult result = Convert(OlderEffectsSession(), WithTestCatalogues(), "effects-cool-edit-pro-2.1");
    // The reader alone, settled as `morvanta info` settles it, gives the same routes.
    Session session;
    ImportResult read = ReadSesBytes(OlderEffectsSession(), session, WithTestCatalogues());
    SettlePlannedEffectRoutes(session, read.Effects);
    EXPECT_EQ(Routes(read), Routes(result));
    ASSERT_EQ(result.Status, ImportStatus::Converted) << result.Message;
    ExpectGolden("effects-cool-edit-pro-2.1.sesx", result.Document);
    EXPECT_EQ(Routes(result), (std::vector<std::string>{
                                  "track 10001 \"Drums\" Amplify: catalogue Amplify15.Kelfx",
                                  "track 10001 \"Drums\" Channel Mixer: catalogue Channel Mixer15.Kelfx",
                                  "track 10001 \"Drums\" Old Chorus: fallback line 3 of EverythingElse30.Kelfx",
                                  "track 10001 \"Drums\" Unknown: left out",
                                  "track 10001 \"Drums\" ..\\Amplify: left out",
                                  "track 10002 \"Keys\" Amplify: catalogue Amplify15.Kelfx",
                                  "bus 20001 \"Reverb bus\" Amplify: catalogue Amplify15.Kelfx",
                                  "bus 20001 \"Reverb bus\" Unknown: left out",
                                  "bus 20001 \"Reverb bus\" Amplify: left out (catalogue Amplify15.Kelfx): a bus's "
                                  "slots stop at a gap, and this is effect 3 of the bus's rack, behind the gap at "
                                  "effect 2",
                                  "bus 20002 \"Narrow bus\" Amplify: catalogue Amplify15.Kelfx",
                              }));
    const std::string notKnown = " is left out: no catalogue and no line in EverythingElse30.Kelfx name it";
    EXPECT_EQ(WarningTexts(result),
              (std::vector<std::string>{
                  "effect \"Old Chorus\" on track 10001 \"Drums\" is written without its parameters, by line 3 of "
                  "EverythingElse30.Kelfx",
                  "effect \"Unknown\" on track 10001 \"Drums\"" + notKnown,
                  "effect \"..\\Amplify\" on track 10001 \"Drums\"" + notKnown,
                  "effect \"Unknown\" on bus 20001 \"Reverb bus\"" + notKnown,
                  "effect \"Amplify\" on bus 20001 \"Reverb bus\" is left out: a bus's slots stop at a gap, and this "
                  "is effect 3 of the bus's rack, behind the gap at effect 2",
              }));
}

// The slots and the parameters of every rack of a document.
std::vector<std::string> SlotLines(const std::string& document) {
    std::vector<std::string> lines;
    bool inSlot = false;
    for (const std::string& line : Lines(document)) {
        if (line.starts_with("<slot ")) inSlot = true;
        if (inSlot && (line.starts_with("<slot ") || line.starts_with("<parameter "))) lines.push_back(line);
        if (line == "</slot>") inSlot = false;
    }
    return lines;
}

// An effect whose slot the racks do not write as read: a track's effect
// behind one left out keeps its place number for its parameters, so its
// slot goes without them or takes those of an effect of its name; a bus
// slot whose place the rack has passed, and a slot of the video track, are
// not written at all.
TEST(Effects, EffectsThatDoNotReachTheDocumentWholeAreWarnedAbout) {
    const auto older = [](Bytes racks, const char* tag) {
        return SesBuilder()
            .Version("Cool Edit Pro 2.1", 32)
            .Chunk("trks", TrksPayload(104, false, {{.Name = "Drums", .TrackId = 1}}))
            .Chunk(tag, std::move(racks))
            .Build();
    };
    const auto videoTrack = [] {
        TrackEntry video = NamedEntry(kVideoTrackId, u"Video");
        video.EffectList =
            EffectListBytes({{.Name = u"Channel Mixer", .Parameters = {{"Gain Left to Left", {}, 0.25}}}});
        return SesBuilder()
            .Version("Audition 3.0", 32)
            .Chunk("TRKS", UpperTrksPayload(true, 1, {TrackEntryBytes(video)}))
            .Build();
    };
    const std::string amplify = "effect \"Amplify\" on ";
    const struct {
        std::vector<std::uint8_t> Session;
        std::vector<std::string> Warnings;
        std::vector<std::string> Slots;
    } table[] = {
        {older(TkfxPayload({{1, {{"Effects\\Unknown", "1,"}, {"Effects\\Amplify", "0.1,0.3,"},
                                 {"Effects\\Amplify", "0.2,0.4,"}}}}),
               "tkfx"),
         {"effect \"Unknown\" on track 10001 \"Drums\" is left out: no catalogue and no line in "
          "EverythingElse30.Kelfx name it",
          amplify + "track 10001 \"Drums\" is written without its parameters: they keep its place in the file's "
                    "rack, slot number 1, and its slot is written as slotIndex 0",
          amplify + "track 10001 \"Drums\" is written with the parameters of another effect of its name: its slot is "
                    "slotIndex 1, the slot number those parameters keep from the file"},
         {R"(<slot powered="true" slotIndex="0">)", R"(<slot powered="true" slotIndex="1">)",
          R"(<parameter index="0" name="Left Gain" parameterValue="0.0500000000">)",
          R"(<parameter index="1" name="Right Gain" parameterValue="0.090">)"}},
        // "BUSS" and then "buss" both fill the rack of the first bus.
        {SesBuilder()
             .Version("Cool Edit Pro 2.1", 32)
             .Chunk("BUSS", WideBusPayload({{"Bus", 1, 1, {{"Effects\\Amplify", "0.8,0.5"}}}}))
             .Chunk("buss", NarrowBusPayload({{"Bus", 1, 1, {{"Effects\\Amplify", "0.2,0.1,"}}}}))
             .Build(),
         {amplify + "bus 20001 \"Bus\" is written with the parameters of another effect of its name: its slot is "
                    "slotIndex 0, the slot number those parameters keep from the file",
          amplify + "bus 20001 \"Bus\" is left out: it is effect 1 of the bus's rack, a place the bus's slots have "
                    "passed already"},
         {R"(<slot powered="true" slotIndex="0">)",
          R"(<parameter index="0" name="Left Gain" parameterValue="0.4000000000">)",
          R"(<parameter index="1" name="Right Gain" parameterValue="0.250">)",
          R"(<parameter index="2" name="Left Gain" parameterValue="0.1000000000">)",
          R"(<parameter index="3" name="Right Gain" parameterValue="0.010">)"}},
        {videoTrack(),
         {"effect \"Channel Mixer\" on track 490000 \"Video\" is left out: the video track has no effects rack"},
         {}},
        // The track that holds the video clip becomes the video track.
        {SesBuilder()
             .Version("Cool Edit Pro 2.1", 32)
             .Chunk("LIST", WaveListBytes({{"VDEO", 1, "C:\\v.avi", 100}}, WaveLayout::Padded))
             .Chunk("trks", TrksPayload(104, false, {{.Name = "Drums", .TrackId = 1}}))
             .Chunk("blk ", BlkPayload("Cool Edit Pro 2.1", {{.BlockId = 1, .WaveId = 1, .TrackId = 1}}))
             .Chunk("tkfx", TkfxPayload({{1, {{"Effects\\Amplify", "0.1,0.3,"}}}}))
             .Build(),
         {amplify + "track 10001 \"Drums\" is left out: no track of the document has the id 10001 that its slot "
                    "carries"},
         {}},
    };
    for (const auto& row : table) {
        const ImportResult result = Convert(row.Session, WithTestCatalogues());
        ASSERT_EQ(result.Status, ImportStatus::Converted) << result.Message;
        EXPECT_EQ(WarningTexts(result), row.Warnings);
        EXPECT_EQ(SlotLines(result.Document), row.Slots);
    }
}

// The steps built in for the effects of the session's own writers, each on
// a small input through a test catalogue, against values worked out by hand
// at 44100 Hz: frequencies f become (f - 20) / 22030, 0 dB becomes 0.5.
TEST(Effects, TheBuiltInStepsOfEachEffect) {
    const auto session = [](std::string_view version, const std::string& tag, Bytes payload) {
        SesBuilder b;
        b.Chunk("hdr ", HeaderBytes(44100)).Version(std::string(version), 32);
        if (tag != "TRKS") b.Chunk("trks", TrksPayload(104, false, {{.Name = "T", .TrackId = 1}}));
        return b.Chunk(tag, std::move(payload)).Build();
    };
    const auto older = [&](const std::string& effect, const std::string& values) {
        return session("Cool Edit Pro 2.1", "tkfx", TkfxPayload({{1, {{"Effects\\" + effect, values}}}}));
    };
    const auto named = [&](const std::vector<EffectListEntry>& entries) {
        TrackEntry track = NamedEntry(1, u"T");
        track.EffectList = EffectListBytes(entries);
        return session("Audition 3.0", "TRKS", UpperTrksPayload(true, 1, {TrackEntryBytes(track)}));
    };
    std::string bands;  // band k of 30 at k / 100
    for (int k = 1; k <= 30; ++k) bands += "0." + std::string(k < 10 ? "0" : "") + std::to_string(k) + ",";
    // Values 1 to 26 of the older equaliser: ConstantQ, the shelves, five
    // band frequencies, five bandwidths, five gains and the master gain.
    const std::string equaliser = "0,1000,0,20,0,0,0,0,0,0,1000,2020,20,22050,11035,100,400,10,1000,50,0,0,0,0,0,0";
    const double f1000 = 980.0 / 22030;
    struct Case {
        const char* What;
        std::vector<std::uint8_t> Session;
        std::size_t Rows;
        std::string Slot;                                  // "name|component id"
        std::vector<std::pair<std::size_t, double>> Values;  // row from 1, value
    };
    const Case table[] = {
        {"equaliser, ConstantQ off: bandwidths become f / width / 10000",
         older("Parametric Equalizer", equaliser + ","), 37, "Parametric Equalizer|id-parametric",
         {{1, f1000}, {2, 0.5}, {3, 0}, {4, 0.5}, {5, f1000}, {6, 0.25}, {7, 0.5}, {9, 2000.0 / 22030}, {13, 0},
          {17, 1}, {21, 0.5}, {23, 0.5}, {25, 96.0 / 144}, {26, 0}, {33, 0.001}, {34, 0.000505}, {35, 0.0002},
          {36, 0.002205}, {37, 0.02207}}},
        {"equaliser on a bus, ConstantQ on: Q rows take width / 10000",
         session("Cool Edit Pro 2.1", "BUSS",
                 WideBusPayload({{"Bus", 1, 1, {{"Effects\\Parametric Equalizer", "1" + equaliser.substr(1)}}}})),
         37, "Parametric Equalizer|id-parametric",
         {{1, f1000}, {5, f1000}, {6, 0.01}, {10, 0.04}, {14, 0.001}, {18, 0.1}, {22, 0.005}, {25, 96.0 / 144},
          {26, 1}, {33, 100}, {34, 400}, {35, 10}, {36, 1000}, {37, 50}}},
        {"dynamics, 3 pairs: value 8 is j = 18, value 9 j = 19",
         older("Dynamics Processing", "3,100,0,0,0,0,600,250,1000,0.3,0,0,0,0,0,24,0,0,11035,"), 12,
         "Dynamics Processing|id-dynamics",
         {{1, 3.0 / 7}, {2, 0.1}, {3, 0.6}, {4, 0.25}, {5, 0.25}, {6, 0.25}, {7, 0.5}, {8, 0.5}, {9, 0.5},
          {10, 0.3}, {11, 0.75}, {12, 0.5}}},
        {"dynamics, 8 pairs", older("Dynamics Processing", "8,2000,0,0,0,0,700,0,0,0,0,0,0,0,0,5,5,100,200,"), 12,
         "Dynamics Processing|id-dynamics",
         {{1, 1}, {2, 2}, {3, 0.7}, {4, 0}, {5, 0}, {6, 0}, {7, 0.2}, {8, 0.2}, {9, 0.1}, {10, 0.25}, {11, 0.25},
          {12, 0.25}}},
        {"graphic equaliser of 10 bands: value 34 ends the walk",
         older("Graphic Equalizer", bands + "0.6,0.7,10,60,0.9,"), 15,
         "Graphic Equalizer (10 Bands)|3792d46f-5036-4be6-ab5a-177622246a5d",
         {{1, 0.6}, {2, 0.7}, {3, 58.5 / 118.5}, {4, 0.5}, {5, 0.5}, {6, 0.01}, {15, 0.1}}},
        {"graphic equaliser of 25 bands", older("Graphic Equalizer", bands + "0.6,0.7,25,1.5,"), 30,
         "Graphic Equalizer (30 Bands)|c6ba8ed5-e0d5-4ed9-a209-08adec9b18a9", {{3, 0}, {4, 0.5}, {30, 0.25}}},
        {"multiband compressor",
         named({{.Name = u"Multiband Compressor",
                 .Parameters = {{"Crossover Mid Cutoff", {}, 0.123456789}, {"Crossover High Cutoff", {}, 0.00000004},
                                {"Limiter Attack", {}, 0.99999995}, {"Output Gain", {}, 0.123456789}}}}),
         4, "Multiband Compressor|id-multiband", {{1, 0.1234568}, {2, 0}, {3, 1}, {4, 0.123456789}}},
        {"graphic phase shifter",
         named({{.Name = u"Graphic Phase Shifter",
                 .Parameters = {{"Linear/Log", {}, 0.8}, {"Attenuate All", {}, 0.25},
                                {"Lower DTMF Attenuation", {}, 0.5}, {"Upper DTMF Attenuation", {}, 0.9},
                                {"FFT Size", {}, 0.123456789}, {"Number of X/Y Pairs", {}, 0.3}}}}),
         6, "Graphic Phase Shifter|id-phase-shifter", {{1, 1}, {2, 0.75}, {3, 0}, {4, 0.9}, {5, 0.1234568}, {6, 6}}},
        {"notch filter",
         named({{.Name = u"Notch Filter",
                 .Parameters = {{"Attenuation 1", {}, 0.25}, {"Attenuate All", {}, 0.1},
                                {"Lower DTMF Attenuation", {}, 0.74}, {"Upper DTMF Attenuation", {}, 0.75}}}}),
         4, "Notch Filter|id-notch", {{1, 0.75}, {2, 0.9}, {3, 0}, {4, 0.75}}},
        {"automatic phase correction, at and above its thresholds",
         named({{.Name = u"Automatic Phase Correction",
                 .Parameters = {{"ms", {}, 0.5}, {"Analysis Size", {}, 0.0002}, {"Channel", {}, 0.18},
                                {"Responsiveness (Slow to Fast)", {}, 0.04}}},
                {.Name = u"Automatic Phase Correction",
                 .Parameters = {{"ms", {}, 0.51}, {"Analysis Size", {}, 0.00021}, {"Channel", {}, 0.61},
                                {"Responsiveness (Slow to Fast)", {}, 0.2}}}}),
         8, "Automatic Phase Correction|id-phase-correction",
         {{1, 3}, {2, 128}, {3, 1}, {4, 0.5}, {5, 0.51}, {6, 256}, {7, 3}, {8, 1}}},
        {"adaptive noise reduction",
         named({{.Name = u"Adaptive Noise Reduction",
                 .Parameters = {{"FFT Size", {}, 0.000031}, {"High Quality Mode", {}, 0.6}}},
                {.Name = u"Adaptive Noise Reduction",
                 .Parameters = {{"FFT Size", {}, 0.3}, {"High Quality Mode", {}, 0.4}}}}),
         4, "Adaptive Noise Reduction|id-noise-reduction", {{1, 128}, {2, 1}, {3, 8192}, {4, 0.4}}},
        {"flanger: the last row takes 2 / (rate x 60000)",
         named({{.Name = u"Flanger", .Parameters = {{"Modulation Rate", {}, 0.5}, {"Mix", {}, 0.4}}}}), 3,
         "Flanger|id-flanger", {{1, 0.5}, {2, 0.4}, {3, 1.0 / 15000}}},
    };
    for (const Case& row : table) {
        SCOPED_TRACE(row.What);
        const Session s = ReadOk(row.Session, WithTestCatalogues());
        ASSERT_EQ(s.RackParameters.size(), row.Rows);
        ASSERT_FALSE(s.RackSlots.empty());
        EXPECT_EQ(s.RackSlots.back().EffectName + "|" + s.RackSlots.back().ComponentId, row.Slot);
        const std::string name = row.Slot.substr(0, row.Slot.find('|'));
        for (const RackParameter& p : s.RackParameters) EXPECT_EQ(p.EffectName, name);
        for (const auto& [r, value] : row.Values) EXPECT_DOUBLE_EQ(s.RackParameters[r - 1].Value, value) << "row " << r;
    }
}

// A catalogue that cannot be parsed fails each file that needs it, naming
// the catalogue and its line; a file that needs none of it converts.
TEST(Effects, ABrokenCatalogueFailsTheFilesThatNeedIt) {
    TempDir dir;
    struct Broken {
        const char* File;
        const char* Text;
        const char* Message;
    };
    const Broken table[] = {
        {"Amplify15.Kelfx", "Amplify\nid\n2\nLeft|1|\n", "line 5: the catalogue ends before its parameter row 2 of 2"},
        {"Amplify15.Kelfx", "Amplify\nid\n1\nLeft 1\n", "line 4: a parameter row needs ParameterName|ParameterIndex|"
                                                         "ValueExpression, with an optional |ValueFormat: \"Left 1\""},
        {"Amplify15.Kelfx", "Amplify\nid\n1\nLeft|1|\n0\n1\n2\n", "line 8: the catalogue ends before its editor top"},
        {"Amplify15.Kelfx", "Amplify\nid\n1\nLeft|1|1 +\n0\n0\n0\n0\n0\n",
         "the expression \"11 +\" cannot be evaluated: it ends where a value or \")\" is wanted"},
        {"EverythingElse30.Kelfx", "a|b|c\n\nx|Old Chorus|id\n",
         "line 2: a fallback line needs at least three fields: free text|key|component id"},
        {"EverythingElse30.Kelfx", "x|Old Chorus|id|1|2\n",
         "line 1: a fallback line has three fields, or seven with the editor's height, left, top and width"},
    };
    const auto bytes = SesBuilder()
                           .Version("Cool Edit Pro 2.1", 32)
                           .Chunk("trks", TrksPayload(104, false, {{.Name = "Drums", .TrackId = 1}}))
                           .Chunk("tkfx", TkfxPayload({{1, {{"Effects\\Amplify", "1,"}, {"Effects\\Old Chorus", "1"}}}}))
                           .Build();
    for (const Broken& row : table) {
        std::filesystem::remove_all(dir.Path());
        std::filesystem::create_directories(dir.Path());
        std::filesystem::copy(kTestCatalogues, dir.Path());
        WriteFile(dir / row.File, std::string(row.Text));
        ConvertOptions options;
        options.CatalogueFolder = dir.Path();
        const ImportResult result = Convert(bytes, options);
        EXPECT_EQ(result.Status, ImportStatus::Failed) << row.Text;
        EXPECT_EQ(result.ErrorChunk, "tkfx");
        const std::string expected = std::string(row.Message).starts_with("the expression")
                                         ? row.Message
                                         : (dir / row.File).string() + ", " + row.Message;
        const std::string effect = std::string(row.File).starts_with("Every") ? "Old Chorus" : "Amplify";
        EXPECT_EQ(result.Message, "effect \"" + effect + "\" on track 10001 \"Drums\": " + expected);
    }
}

TEST(Effects, CatalogueNamesStayInsideTheirFolder) {
    const std::filesystem::path folder = "/cat";
    EXPECT_EQ(CataloguePath(folder, "Amplify15.Kelfx"), folder / "Amplify15.Kelfx");
    EXPECT_EQ(CataloguePath(folder, "PSP\\Neon15.Kelfx"), folder / "PSP" / "Neon15.Kelfx");
    for (const char* name : {"..\\x15.Kelfx", "a/../../x15.Kelfx", "\\x15.Kelfx", "/etc/x", "C:x15.Kelfx", "a\\\\b", ""})
        EXPECT_EQ(CataloguePath(folder, name), std::nullopt) << name;
}

// Every shipped catalogue parses and names a well-formed component id: a
// lower-case GUID, or the plug-in forms "2:", "3:", "4:".
TEST(Effects, EveryShippedCatalogueParses) {
    auto wellFormed = [](const std::string& id) {
        if (id.starts_with("2:") || id.starts_with("3:") || id.starts_with("4:")) return id.size() > 2;
        if (id.size() != 36) return false;
        for (std::size_t i = 0; i < id.size(); ++i) {
            const bool dash = i == 8 || i == 13 || i == 18 || i == 23;
            if (dash ? id[i] != '-' : !((id[i] >= '0' && id[i] <= '9') || (id[i] >= 'a' && id[i] <= 'f'))) return false;
        }
        return true;
    };
    int files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(kSourceDir / "catalogues")) {
        const std::string name = entry.path().filename().string();
        if (!name.ends_with(".Kelfx")) continue;
        ++files;
        const std::string text = ReadFile(entry.path());
        if (name == kFallbackFileName) {
            for (const FallbackLine& line : ParseFallbackLines(text)) {
                ASSERT_GE(line.Fields.size(), 3u) << name << " line " << line.LineNumber;
                EXPECT_TRUE(line.Fields.size() == 3 || line.Fields.size() == 7) << name << " line " << line.LineNumber;
                EXPECT_TRUE(wellFormed(line.Fields[2])) << name << " line " << line.LineNumber;
            }
            continue;
        }
        const auto generation = name.ends_with("30.Kelfx") ? CatalogueGeneration::Named : CatalogueGeneration::Positional;
        try {
            const EffectCatalogue catalogue = ParseCatalogue(text, generation, name);
            EXPECT_TRUE(wellFormed(catalogue.ComponentId)) << name << ": " << catalogue.ComponentId;
            EXPECT_FALSE(catalogue.Rows.empty()) << name;
        } catch (const CatalogueError& error) {
            ADD_FAILURE() << error.what();
        }
    }
    EXPECT_GT(files, 0);
}

}  // namespace
}  // namespace morvanta::testing

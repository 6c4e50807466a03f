// Effects from session to document: the effect lists of the later track
// chunks, the older racks and buses, through the test's own catalogues in
// tests/catalogues (never the shipped ones), and the catalogues themselves.
#include <gtest/gtest.h>

#include <fstream>

#include "BlockPayloads.h"
#include "EffectPayloads.h"
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
    // The reader alone, as `morvanta info` runs it, settles the same routes.
    Session session;
    EXPECT_EQ(Routes(ReadSesBytes(OlderEffectsSession(), session, WithTestCatalogues())), Routes(result));
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

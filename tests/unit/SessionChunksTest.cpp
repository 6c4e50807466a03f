// Header, selection, tempo, groups, cues, stretch records and metronome:
// built sessions and the documents they give.
#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

#include "SesBuilder.h"
#include "SessionPayloads.h"
#include "TestSupport.h"
#include "reader/Assembly.h"
#include "services/NumberText.h"

namespace morvanta::testing {
namespace {

std::string LineStarting(const std::string& document, const std::string& start) {
    for (const std::string& line : Lines(document))
        if (line.starts_with(start)) return line;
    return "(no line starting with " + start + ")";
}

// The time format at 320 needs a declared length above 324, the envelope
// scale at 372 one above 372, and only an exact 2.0 doubles the envelopes.
// The header's first 36 bytes are read whatever its own length says: here
// the volume and SMPTE start lie in the chunk behind it.
TEST(SessionState, TheHeaderAndItsFixedPlaces) {
    std::string dumps;
    for (const auto& [declared, scale] : std::vector<std::pair<std::int32_t, double>>{
             {324, 2.0}, {325, 2.0}, {372, 2.0}, {373, 2.0}, {373, 3.0}, {373, 1.0}}) {
        // No "vers": with "hdr " alone the walk ends behind it whatever the length says.
        const auto bytes = SesBuilder().Chunk("hdr ", HeaderBytes(44100, 1, 0, 2, scale)).DeclaredLength(declared).Build();
        dumps += TitledDump("declared " + std::to_string(declared) + ", scale " + GeneralText(scale), ReadOk(bytes));
    }
    const auto shortHeader = SesBuilder()
                                 .ChunkWithLength("hdr ", 4, Bytes().Int32(22050))
                                 .Chunk("pad ", Bytes().Int32(0).Double(0.25).Zeros(8).Int32(7))
                                 .Version("Audition 3.0")
                                 .Build();
    dumps += TitledDump("a header of 4 bytes", ReadOk(shortHeader));
    ExpectGolden("header-fixed-places.model.txt", dumps);
}

// Audition 1.0 reads no tempo, Cool Edit Pro 2.00 no note length; 16 bits
// of 65548 are 12, negatives stay; the assembly gives a 0 its default and a
// tempo above 360 120.
TEST(SessionState, TempoByVersionWithItsDefaultsAndLimits) {
    std::string dumps;
    for (const auto& [version, tempo, beatsPerBar, subdivisions, noteLength] :
         std::vector<std::tuple<std::string, double, std::int32_t, std::int32_t, std::int32_t>>{
             {"Audition 1.0", 98.5, 3, 8, 2},
             {"Cool Edit Pro 2.00", 98.5, 3, 8, 2},
             {"Cool Edit Pro 2.1", 360, 0, 65548, -2},
             {"Cool Edit 2000 1.0", 360.5, 7, 0, 8},
             {"Cool Edit Pro 1.2", -60, -3, 4, 0},
             {"Audition 1.5", 0.125, 5, 1, 1}}) {
        Session session =
            ReadOk(SessionOf(version).Chunk("tmpo", TempoBytes(tempo, beatsPerBar, subdivisions, noteLength)).Build());
        BuildTempoTexts(session);
        dumps += TitledDump(version, session);
    }
    ExpectGolden("tempo-by-version.model.txt", dumps);
}

// Cool Edit 2000 keeps a colour: 112 / (value + 1) half to even gives 112,
// 56, 28, 16, 4 (3.5) and 0 (0.5). The others keep the hue, and every group
// chunk appends.
TEST(SessionState, GroupColoursAndHues) {
    const auto ce2000 =
        SessionOf("Cool Edit 2000 1.0").Chunk("grps", GroupBytes({{1, 0}, {2, 1}, {3, 3}, {4, 6}, {5, 31}, {6, 223}}));
    const auto later = SessionOf("Audition 3.0")
                           .Chunk("grp2", GroupBytes({{2, 160}}))
                           .Chunk("grps", GroupBytes({{1, 100}}))
                           .ChunkWithLength("grps", 0, Bytes());
    ExpectGolden("group-hues.model.txt", TitledDump("Cool Edit 2000 1.0", ReadOk(ce2000.Build())) +
                                             TitledDump("Audition 3.0", ReadOk(later.Build())));
}

TEST(SessionState, CueMarkersMakeTheXmpPacket) {
    const std::vector<CueEntry> cues{{44100, 0, "Intro", ""},
                                     {88200, 22050, "  Verse & chorus  ", " take <2> ", "mark"}};
    const std::string packet =
        Section(DocumentOf(SessionOf("Audition 3.0").Chunk("cues", CueBytes(cues, CueLayout::WithCueType)).Build()),
                "<xmpMetadata>", "<?xpacket end=");
    ExpectGolden("cue-markers.xmp", packet);

    // The oldest layout has no CueType; the two texts follow each other.
    for (const char* version : {"Cool Edit Pro 1.2", "Cool Edit Pro 1.2a"}) {
        const auto old = SessionOf(version).Chunk("cues", CueBytes(cues, CueLayout::WithoutCueType)).Build();
        EXPECT_EQ(Section(DocumentOf(old), "<xmpMetadata>", "<?xpacket end="), packet) << version;
    }
}

// A cue text runs to the end of the file; without a payload there is no
// count to read, and no records.
TEST(SessionState, CueTextsAndAnEmptyCueChunkAtTheEndOfTheFile) {
    const auto unended =
        SessionOf("Audition 1.5")
            .Chunk("cues", Bytes().Int32(1).Int32(10).Int32(5).Int32(0).ZeroText("Last").Text("rgn ").Text("no end"))
            .Build();
    ExpectGolden(
        "cue-texts.model.txt",
        TitledDump("unended", ReadOk(unended)) +
            TitledDump("empty", ReadOk(SessionOf("Audition 3.0").ChunkWithLength("cues", 0, Bytes()).Build())));
}

// Audition 1.5 and later read them, as their golden documents show.
TEST(SessionState, StretchRecordsAreNotReadBeforeAudition15) {
    for (const char* version : {"Audition 1.0", "Cool Edit Pro 2.1", "Cool Edit 2000 1.0"})
        EXPECT_TRUE(ReadOk(SessionOf(version).Chunk("loop", LoopBytes({{5, 1000}, {300000007, 88200}})).Build())
                        .ClipStretches.empty())
            << version;
}

// The session's rate, its state block, the metronome and the master's
// volume: the header, the selection and the tempo fill the block (the
// master track without a record of its own takes the header's volume); an
// unknown time format writes the first row; Cool Edit Pro 2.00 and Audition
// 1.0 do not read the metronome.
TEST(SessionState, StateBlockAndMetronome) {
    const auto format = [](std::int16_t code) {
        return SessionOf("Audition 2.0", HeaderBytes(44100, 1, 0, code)).Build();
    };
    const auto metronome = [](const char* version, const Bytes& payload) {
        return SessionOf(version).Chunk("mtro", payload).Build();
    };
    const std::vector<std::pair<std::string, std::vector<std::uint8_t>>> table{
        {"48 kHz, volume 0.5, SMPTE 3600, time format 3, selection, tempo",
         SessionOf("Audition 3.0", HeaderBytes(48000, 0.5, 3600, 3))
             .Chunk("stat", StatBytes(1000, 45100))
             .Chunk("tmpo", TempoBytes(98.5, 3, 8, 2))
             .Build()},
        {"time format 4", format(4)},
        {"time format 5", format(5)},
        {"time format 6", format(6)},
        {"time format -1", format(-1)},
        {"Audition 3.0", metronome("Audition 3.0", MetronomeBytes(3, 1, "1 3 3 2"))},
        {"Cool Edit Pro 2.1", metronome("Cool Edit Pro 2.1", MetronomeBytes(2, 2, "7 9 x", ""))},
        {"Cool Edit 2000 1.0", metronome("Cool Edit 2000 1.0", MetronomeBytes(10, 1, "2", "Click track"))},
        {"Cool Edit Pro 1.2", metronome("Cool Edit Pro 1.2", MetronomeBytes(-1, 1, ""))},
        {"Audition 2.0", metronome("Audition 2.0", MetronomeBytes(9, 1, std::string("1 2\0 3", 6)))},
        {"Audition 1.5", metronome("Audition 1.5", MetronomeBytes(0, 0, "1 1 1"))},
        {"Cool Edit Pro 2.00", metronome("Cool Edit Pro 2.00", MetronomeBytes(8, 1, "1"))},
        {"Audition 1.0", metronome("Audition 1.0", MetronomeBytes(8, 1, "1"))},
    };
    std::string lines;
    for (const auto& [title, bytes] : table) {
        const std::string document = DocumentOf(bytes);
        lines += "## " + title + "\n" + LineStarting(document, "<session ") + "\n" +
                 Section(document, "<sessionState", "</sessionState>") + LineStarting(document, "<metronome ") + "\n" +
                 LineStarting(document, R"(<parameter index="0" name="volume")") + "\n";
    }
    ExpectGolden("session-state-and-metronome.txt", lines);
}

TEST(SessionState, MetronomeBeatsAreTheNumbersBetweenSingleBlanks) {
    const auto metronomeLine = [](const std::string& pattern) {
        return LineStarting(DocumentOf(SessionOf("Audition 3.0").Chunk("mtro", MetronomeBytes(4, 1, pattern)).Build()),
                            "<metronome ");
    };
    // Empty beats between two blanks and codes other than 1 to 3 add
    // nothing; a beat is read as far as it is a number, and only a blank
    // ends it (a tab is white space in front of a number).
    EXPECT_EQ(metronomeLine(" 1  2 3x 2.0 01 -1 1e0 +2 &H2 \t1"),
              R"(<metronome enabled="true" pattern="downBeat upBeat subdivision upBeat downBeat downBeat upBeat downBeat " soundSet="Kit">)");
    std::string pattern, expected;
    for (int i = 0; i < 20000; ++i) {
        pattern += i % 3 == 0 ? "1 " : i % 3 == 1 ? "3 " : "2 ";
        expected += i % 3 == 0 ? "downBeat " : i % 3 == 1 ? "subdivision " : "upBeat ";
    }
    EXPECT_EQ(metronomeLine(pattern), R"(<metronome enabled="true" pattern=")" + expected + R"(" soundSet="Kit">)");
}

// A count or length that the file cannot hold fails it at its offset. The
// counts of several chunks must fit in the file together too: two chunks of
// 4 bytes at 52 and 64, each a count whose records reach over what follows,
// then zeros. Each count alone fits in the rest of the file; together they
// claim more records than the whole file holds. Many such chunks would pile
// up records quadratically in the file's size.
TEST(SessionState, AbsurdCountsAndLengthsFailTheFileAtTheirOffset) {
    const auto one = [](const std::string& version, const char* tag, const Bytes& payload) {
        return SessionOf(version).Chunk(tag, payload).Build();
    };
    const auto two = [](const char* version, const char* tag, std::int32_t first, std::int32_t second,
                        std::size_t padding) {
        return SesBuilder()
            .Version(version, 32)
            .Chunk(tag, Bytes().Int32(first))
            .Chunk(tag, Bytes().Int32(second))
            .Chunk("pad ", Bytes().Zeros(padding))
            .Build();
    };
    ExpectFailures({
        {one("Audition 3.0", "cues", Bytes().Int32(30000).Zeros(40)), "cues", kFirstPayload,
         "the cue count 30000 at offset 468 needs at least 360000 bytes from offset 472, but the file has 40 there"},
        {one("Audition 3.0", "grps", Bytes().Int32(1 << 30).Zeros(16)), "grps", kFirstPayload,
         "the group count 1073741824 at offset 468 needs at least 17179869184 bytes from offset 472, but the file has "
         "16 there"},
        {one("Audition 2.0", "loop", Bytes().Int32(3).Zeros(176)), "loop", kFirstPayload,
         "the stretch record count 3 at offset 468 needs at least 528 bytes from offset 472, but the file has 176 "
         "there"},
        {one("Cool Edit 2000 1.0", "grps", GroupBytes({{1, -1}})), "grps", kFirstPayload + 8,
         "the group colour -1 at offset 476 gives no hue (112 / 0)"},
        {one("Audition 3.0", "mtro", Bytes().Zeros(48).Int32(-4).Zeros(8)), "mtro", kFirstPayload + 48,
         "the metronome text length -4 at offset 516 is negative"},
        {one("Audition 3.0", "mtro", Bytes().Zeros(48).Int32(0).Int32(4000)), "mtro", kFirstPayload + 56,
         "a field of 4000 bytes at offset 524 runs past the end of the file (0 bytes left)"},
        {one("Audition 3.0", "stat", Bytes().Zeros(40)), "stat", kFirstPayload,
         "the selection record of 48 bytes at offset 468 runs past the end of the file (40 bytes left)"},
        {two("Audition 3.0", "grps", 8, 7, 116), "grps", 72,
         "the group count 7 at offset 72 brings the groups of this file to 15, more than its 200 bytes can hold"},
        {two("Audition 3.0", "loop", 2, 2, 360), "loop", 72,
         "the stretch record count 2 at offset 72 brings the stretch records of this file to 4, more than its 444 "
         "bytes can hold"},
        {two("Audition 2.0", "cues", 12, 18, 216), "cues", 72,
         "the cue count 18 at offset 72 brings the cues of this file to 30, more than its 300 bytes can hold"},
    });
}

}  // namespace
}  // namespace morvanta::testing

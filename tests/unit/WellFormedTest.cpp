// Documents read back by an XML parser: every golden document and the
// document of every example session, and sessions whose names break the
// markup, with the warnings of a default run and the repairs of a
// well-formed one.
#include <gtest/gtest.h>

#include <pugixml.hpp>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "SesBuilder.h"
#include "SessionPayloads.h"
#include "TestSupport.h"
#include "TrackPayloads.h"
#include "services/MarkupCheck.h"

namespace morvanta::testing {
namespace {

using Strings = std::vector<std::string>;

constexpr unsigned kParseOptions =
    pugi::parse_default | pugi::parse_comments | pugi::parse_declaration | pugi::parse_doctype;

// pugixml stops at a "<" or a quote where none may stand, but reads "--" in
// a comment, stray "&" and bytes that are not UTF-8 without a word; the
// document's own check covers those.
::testing::AssertionResult ParsesAsXml(const std::string& document) {
    pugi::xml_document xml;
    const pugi::xml_parse_result parsed = xml.load_buffer(document.data(), document.size(), kParseOptions);
    if (!parsed) {
        return ::testing::AssertionFailure()
               << parsed.description() << " at byte " << parsed.offset << ": "
               << document.substr(static_cast<std::size_t>(parsed.offset), 60);
    }
    const MarkupCheck check = CheckMarkup(document);
    if (check.Total > 0) {
        ::testing::AssertionResult failure = ::testing::AssertionFailure();
        for (const Diagnostic& warning : MarkupWarnings(check, false)) failure << warning.Message << "\n";
        return failure;
    }
    return ::testing::AssertionSuccess();
}

Strings Messages(const std::vector<Diagnostic>& warnings) {
    Strings messages;
    for (const Diagnostic& warning : warnings) messages.push_back(warning.Message);
    return messages;
}

// No golden document is malformed by design: their names hold "&" at most.
TEST(WellFormed, EveryGoldenDocumentParses) {
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(kSourceDir / "tests" / "golden")) {
        if (entry.path().extension() != ".sesx") continue;
        EXPECT_TRUE(ParsesAsXml(ReadFile(entry.path()))) << entry.path();
        ++count;
    }
    EXPECT_GE(count, 13);
}

TEST(WellFormed, TheDocumentOfEveryExampleParses) {
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(kSourceDir / "examples")) {
        if (entry.path().extension() != ".ses") continue;
        const std::string bytes = ReadFile(entry.path());
        const ImportResult result =
            ConvertSesBytes(std::vector<std::uint8_t>(bytes.begin(), bytes.end()), {},
                            "examples/" + entry.path().filename().string(), entry.path().stem().string() + ".sesx");
        ASSERT_EQ(result.Status, ImportStatus::Converted) << entry.path() << ": " << result.Message;
        EXPECT_TRUE(ParsesAsXml(result.Document)) << entry.path();
        for (const std::string& message : Messages(result.Warnings))
            EXPECT_EQ(message.find("well-formed"), std::string::npos) << entry.path() << ": " << message;
        ++count;
    }
    EXPECT_GE(count, 11);
}

// A Cool Edit Pro 2.1 session with one track, one cue marker and one file,
// saved as "C:\Sessions\<source>.ses".
struct Hostile {
    const char* Title;
    std::string Source = "band";
    std::string TrackName = "Drums";
    CueEntry Cue{44100, 0, "Intro", "first"};
    std::string FilePath = "C:\\Takes\\take.wav";
    Strings Warnings{};   // of a default run
    std::string Line{};   // the line the repair changes, as a well-formed run writes it
    Strings Remaining{};  // the warnings of a well-formed run
};

ImportResult ConvertHostile(const Hostile& row, bool wellFormed) {
    SesBuilder builder;
    builder.Chunk("hdr ", HeaderBytes(44100))
        .Version("Cool Edit Pro 2.1", 32)
        .Chunk("LIST", WaveListBytes({{"wav ", 1, row.FilePath, 1000}}, WaveLayout::Padded))
        .Chunk("trks", TrksPayload(104, false, {{.Name = row.TrackName, .TrackId = 1}}))
        .Chunk("cues", CueBytes({row.Cue}, CueLayout::WithCueType));
    ConvertOptions options;
    options.WellFormed = wellFormed;
    return ConvertSesBytes(builder.Build(), options, "C:\\Sessions\\" + row.Source + ".ses", row.Source + ".sesx");
}

// The cue marker packet in the CDATA section of <xmpMetadata>.
std::string Packet(const std::string& document) {
    pugi::xml_document xml;
    if (!xml.load_buffer(document.data(), document.size(), kParseOptions)) return {};
    return xml.child("sesx").child("session").child("xmpMetadata").text().get();
}

TEST(WellFormed, HostileNamesAreNamedByDefaultAndRepairedOnRequest) {
    const std::string line = "document line ";
    const std::string advice = " (name the session's language with --language)";
    const std::vector<Hostile> table{
        {.Title = "\"<\" and \">\" in a track name",
         .TrackName = "Verse <1> <Gtr> DI",
         .Warnings = {line + "10 is not well-formed XML: unescaped \"<\" in the text of <name> (--well-formed escapes it)"},
         .Line = "<name>Verse &lt;1&gt; &lt;Gtr&gt; DI</name>"},
        {.Title = "\"--\" in the source file's name",
         .Source = "mix--final",
         .Warnings = {line + "292 is not well-formed XML: \"--\" inside a comment (--well-formed separates it)"},
         .Line = "<!-- Converted C:\\Sessions\\mix- -final.ses (Cool Edit Pro 2.1) --> "},
        {.Title = "a marker with quotes",
         .Cue = {44100, 0, "\"Chorus\" & out", "say \"when\""},
         .Warnings = {},
         .Line = "<xmpDM:name>&quot;Chorus&quot; &amp; out</xmpDM:name>"},
        {.Title = "a marker comment with \"<\"",
         .Cue = {44100, 0, "Intro", "take <2>"},
         .Warnings = {line + "264 is not well-formed XML: unescaped \"<\" in the text of <xmpDM:comment> "
                             "(--well-formed escapes it)"},
         .Line = "<xmpDM:comment>take &lt;2&gt;</xmpDM:comment>"},
        {.Title = "a quote in a file's path",
         .FilePath = "C:\\Takes\\\"loud\" take.wav",
         .Warnings = {line + "289 is not well-formed XML: unescaped '\"' in the attribute absolutePath of <file> "
                             "(--well-formed escapes it)",
                      line + "289 is not well-formed XML: unescaped '\"' in the attribute relativePath of <file> "
                             "(--well-formed escapes it)"},
         .Line = "<file absolutePath=\"C:\\Takes\\&quot;loud&quot; take.wav\" id=\"0\" "
                 "relativePath=\"./&quot;loud&quot; take.wav\"/>"},
        // No repair touches 8-bit bytes: recoding them is the language's work.
        {.Title = "an 8-bit track name",
         .TrackName = "Caf\xE9",
         .Warnings = {line + "10 is not well-formed XML: bytes that are not UTF-8 in the text of <name>" + advice},
         .Line = "<name>Caf\xE9</name>",
         .Remaining = {line + "10 is not well-formed XML: bytes that are not UTF-8 in the text of <name>" + advice}},
    };
    for (const Hostile& row : table) {
        const ImportResult plain = ConvertHostile(row, false);
        ASSERT_EQ(plain.Status, ImportStatus::Converted) << row.Title << ": " << plain.Message;
        EXPECT_EQ(Messages(plain.Warnings), row.Warnings) << row.Title;

        const ImportResult repaired = ConvertHostile(row, true);
        ASSERT_EQ(repaired.Status, ImportStatus::Converted) << row.Title << ": " << repaired.Message;
        const Strings lines = Lines(repaired.Document);
        EXPECT_NE(std::find(lines.begin(), lines.end(), row.Line), lines.end()) << row.Title << "\n" << repaired.Document;
        // Only what is escaped or separated differs.
        EXPECT_EQ(Lines(plain.Document).size(), lines.size()) << row.Title;
        pugi::xml_document xml;
        EXPECT_TRUE(xml.load_buffer(repaired.Document.data(), repaired.Document.size(), kParseOptions)) << row.Title;
        // The cue marker packet is read as XML of its own.
        const std::string packetText = Packet(repaired.Document);
        pugi::xml_document packet;
        EXPECT_TRUE(packet.load_buffer(packetText.data(), packetText.size(), kParseOptions)) << row.Title;
        EXPECT_EQ(packet.select_nodes("//xmpDM:name").size(), 1u) << row.Title;
        EXPECT_EQ(Messages(repaired.Warnings), row.Remaining) << row.Title;
    }
}

// A document without any of these texts is the same byte for byte.
TEST(WellFormed, TheRepairLeavesAPlainDocumentAsItIs) {
    const Hostile plain{.Title = "plain"};
    EXPECT_EQ(ConvertHostile(plain, true).Document, ConvertHostile(plain, false).Document);
}

}  // namespace
}  // namespace morvanta::testing

// The check of finished documents and the repair of a well-formed run: each
// fault a session's text can bring in, named by line and place; sessions
// whose names break the markup, warned about by default and repaired on
// request; and, where the build has an XML parser of its own (pugixml), the
// repaired documents, every golden document and the document of every
// example session read back by it.
#include <gtest/gtest.h>

#ifdef MORVANTA_TESTS_READ_XML
#include <pugixml.hpp>
#endif

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "ExampleSessions.h"
#include "SesBuilder.h"
#include "SessionPayloads.h"
#include "TestSupport.h"
#include "TrackPayloads.h"
#include "services/MarkupCheck.h"

namespace morvanta::testing {
namespace {

Strings Messages(const std::vector<Diagnostic>& warnings) {
    Strings messages;
    for (const Diagnostic& warning : warnings) messages.push_back(warning.Message);
    return messages;
}

struct Case {
    const char* Title;
    std::string Document;
    bool Recoded = false;  // a recoded document has had its chance at UTF-8: no advice follows
    std::size_t NamedAtMost = 10;
};

// The warnings of each document are compared with tests/golden/markup-check.txt.
TEST(MarkupCheck, NamesEachFaultByLineAndPlace) {
    const std::string counted = "<s>\n<n>a<</n>\n<n>b<</n>\n<n>c<</n>\n</s>";
    const std::vector<Case> table{
        {"a well-formed document",
         "\xEF\xBB\xBF<?xml version=\"1.0\"?>\n<!DOCTYPE sesx>\n<a x='1' y=\"&lt;&#60;&#x3c;\">\n"
         "t &amp; &quot;u&apos; > ]] <b/><![CDATA[ <&> ]]><!-- - - -->\xC3\xA9\xF0\x9F\x8E\xB5</a>\n<!-- c --> \n"},
        {"\"<\" in a name", "<s>\n<name>a<b</name>\n</s>"},
        {"a name that reads as a start tag", "<s>\n<name>a <b> c</name>\n</s>"},
        {"a name that reads as an end tag", "<s>\n<name>a</b></name>\n</s>"},
        {"two in one text make one fault", "<s><name>a<b<c</name></s>"},
        {"a quote in a value", "<f>\n<file absolutePath=\"C:\\a\"b.wav\" id=\"0\"/>\n</f>"},
        {"a quote and a blank in a value", "<f>\n<file absolutePath=\"a\" b.wav\" id=\"0\"/>\n</f>"},
        {"\"<\" in a value", "<f><slot name=\"a<b>\"/></f>"},
        {"\"]]>\" in a text", "<s>\n\n<name>a]]>b</name></s>"},
        {"ampersands", "<s><n>a & b &foo; &#1;</n>\n<p v=\"&\"/></s>"},
        {"\"--\" in the closing comment", "<s/>\n<!-- Converted C:\\mix--final.ses (Audition 3.0) --> \n"},
        {"a comment that ends in a hyphen", "<s/><!-- a --->"},
        {"8-bit bytes", "<s>\n<name>Caf\xE9 \xE9t\xE9</name>\n<file p=\"\xC3\"/></s>"},
        {"8-bit bytes of a recoded document", "<s>\xE9</s>", true},
        {"overlong forms and surrogates", "<s>\xC0\xBC\xED\xA0\x80</s>"},
        {"control characters", std::string("<s><name>a\x01</name><!--\x1F--><n>\xEF\xBF\xBE") + '\0' + "</n></s>"},
        {"unclosed markup", "<s>\n<a>\n<!-- x"},
        {"outside the root", "x<s/>\n<t/>\n<"},
        {"the cue marker packet is XML too",
         "<s>\n<xmpMetadata><![CDATA[<?xpacket begin=\"?\"?>\n<x:xmpmeta>\n<xmpDM:comment>take <2></xmpDM:comment>\n"
         "<xmpDM:name>a]]>b</xmpDM:name>\n</x:xmpmeta>\n<?xpacket end=\"w\"?>]]></xmpMetadata>\n</s>"},
        {"a CDATA section elsewhere is not", "<s><p><![CDATA[ <2> & ]]></p></s>"},
        // The first faults are named, the rest counted.
        {"one of three named", counted, false, 1},
        {"two of three named", counted, false, 2},
        {"none named", counted, false, 0},
    };
    std::string warnings;
    for (const Case& c : table) {
        warnings += "## " + std::string(c.Title) + "\n";
        for (const std::string& warning : Messages(MarkupWarnings(CheckMarkup(c.Document, c.NamedAtMost), c.Recoded)))
            warnings += warning + "\n";
    }
    ExpectGolden("markup-check.txt", warnings);
}

// Whatever the bytes, the check ends and names lines inside the document.
TEST(MarkupCheck, EveryCutOfADocumentIsChecked) {
    const std::string document =
        "\xEF\xBB\xBF<?xml version=\"1.0\"?>\n<!DOCTYPE s [<!ENTITY e \"x\">]>\n<s a=\"1\" b='&e;'>\n<n>&e; <\xE9</n>"
        "<![CDATA[x]]><!-- - -->\n<xmpMetadata><![CDATA[<p>\n<q>&</q></p>]]></xmpMetadata>\n</s>\n";
    for (std::size_t length = 0; length <= document.size(); ++length) {
        const std::string cut = document.substr(0, length);
        const MarkupCheck check = CheckMarkup(cut, 100);
        EXPECT_EQ(check.Total, check.Faults.size()) << length;
        for (const MarkupFault& fault : check.Faults) EXPECT_LE(fault.Line, 9u) << length;
    }
    // The whole document has the three faults its text holds: the stray "<" and
    // its 8-bit byte, and the "&" in the packet.
    EXPECT_EQ(CheckMarkup(document).Total, 3u);
}

#ifdef MORVANTA_TESTS_READ_XML
constexpr unsigned kParseOptions =
    pugi::parse_default | pugi::parse_comments | pugi::parse_declaration | pugi::parse_doctype;

// pugixml stops at a "<" or a quote where none may stand, but reads "--" in
// a comment, stray "&" and bytes that are not UTF-8 without a word; the
// document's own check covers those.
::testing::AssertionResult ParsesAsXml(const std::string& document) {
    pugi::xml_document xml;
    const pugi::xml_parse_result parsed = xml.load_buffer(document.data(), document.size(), kParseOptions);
    if (!parsed)
        return ::testing::AssertionFailure() << parsed.description() << " at byte " << parsed.offset << ": "
                                             << document.substr(static_cast<std::size_t>(parsed.offset), 60);
    const Strings faults = Messages(MarkupWarnings(CheckMarkup(document), false));
    if (faults.empty()) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << faults.front() << " (and " << faults.size() - 1 << " more)";
}

// No golden document is malformed by design: their names hold "&" at most.
TEST(WellFormed, EveryGoldenDocumentAndTheDocumentOfEveryExampleParse) {
    int goldens = 0;
    for (const auto& entry : std::filesystem::directory_iterator(kSourceDir / "tests" / "golden")) {
        if (entry.path().extension() != ".sesx") continue;
        EXPECT_TRUE(ParsesAsXml(ReadFile(entry.path()))) << entry.path();
        ++goldens;
    }
    EXPECT_GE(goldens, 13);
    // The examples/ folder holds these sessions (DocumentFrame.CommittedExamplesAreWhatTheBuilderMakes).
    for (const NamedFile& example : ExampleSessions()) {
        const ImportResult result = ConvertSesBytes(example.Bytes, {}, "examples/" + example.Name, "example.sesx");
        ASSERT_EQ(result.Status, ImportStatus::Converted) << example.Name << ": " << result.Message;
        EXPECT_TRUE(ParsesAsXml(result.Document)) << example.Name;
    }
}
#endif

// A Cool Edit Pro 2.1 session with one track, one cue marker and one file,
// saved as "C:\Sessions\<source>.ses".
struct Hostile {
    const char* Title;
    std::string Source = "band";
    std::string TrackName = "Drums";
    CueEntry Cue{44100, 0, "Intro", "first"};
    std::string FilePath = "C:\\Takes\\take.wav";
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
    return Convert(builder.Build(), options, row.Source);
}

// For each session, compared with tests/golden/well-formed-repairs.txt: the
// warnings of a default run, each line a well-formed run changes ("-" as the
// default run writes it, "+" as the repair does; the two documents have as
// many lines), and the warnings left after the repair. No repair touches
// 8-bit bytes: recoding them is the language's work.
TEST(WellFormed, HostileNamesAreNamedByDefaultAndRepairedOnRequest) {
    const std::vector<Hostile> table{
        {.Title = "nothing to repair"},
        {.Title = "\"<\" and \">\" in a track name", .TrackName = "Verse <1> <Gtr> DI"},
        {.Title = "\"--\" in the source file's name", .Source = "mix--final"},
        {.Title = "a marker with quotes", .Cue = {44100, 0, "\"Chorus\" & out", "say \"when\""}},
        {.Title = "a marker comment with \"<\"", .Cue = {44100, 0, "Intro", "take <2>"}},
        {.Title = "a quote in a file's path", .FilePath = "C:\\Takes\\\"loud\" take.wav"},
        {.Title = "an 8-bit track name", .TrackName = "Caf\xE9"},
    };
    std::string report;
    for (const Hostile& row : table) {
        const ImportResult plain = ConvertHostile(row, false);
        const ImportResult repaired = ConvertHostile(row, true);
        ASSERT_EQ(plain.Status, ImportStatus::Converted) << row.Title << ": " << plain.Message;
        ASSERT_EQ(repaired.Status, ImportStatus::Converted) << row.Title << ": " << repaired.Message;
        report += "## " + std::string(row.Title) + "\n";
        for (const std::string& warning : Messages(plain.Warnings)) report += "warning: " + warning + "\n";
        const Strings before = Lines(plain.Document), after = Lines(repaired.Document);
        EXPECT_EQ(before.size(), after.size()) << row.Title;
        for (std::size_t i = 0; i < std::min(before.size(), after.size()); ++i)
            if (before[i] != after[i]) report += "- " + before[i] + "\n+ " + after[i] + "\n";
        for (const std::string& warning : Messages(repaired.Warnings)) report += "left: " + warning + "\n";
#ifdef MORVANTA_TESTS_READ_XML
        // The cue marker packet in the CDATA section of <xmpMetadata> is read as XML of its own.
        pugi::xml_document xml;
        EXPECT_TRUE(xml.load_buffer(repaired.Document.data(), repaired.Document.size(), kParseOptions)) << row.Title;
        const std::string packetText = xml.child("sesx").child("session").child("xmpMetadata").text().get();
        pugi::xml_document packet;
        EXPECT_TRUE(packet.load_buffer(packetText.data(), packetText.size(), kParseOptions)) << row.Title;
        EXPECT_EQ(packet.select_nodes("//xmpDM:name").size(), 1u) << row.Title;
#endif
    }
    ExpectGolden("well-formed-repairs.txt", report);
}

}  // namespace
}  // namespace morvanta::testing

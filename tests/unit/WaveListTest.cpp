// The media lists "LIST" and "WLST", the file list made from them, and
// <files>: built sessions and the documents they give.
#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

#include "SesBuilder.h"
#include "SessionPayloads.h"
#include "TestSupport.h"
#include "reader/Assembly.h"

namespace morvanta::testing {
namespace {

const std::vector<std::string> kVersions{
    "Cool Edit Pro 1.2",  "Cool Edit Pro 1.2a", "Cool Edit 2000 1.0", "Cool Edit Pro 2.00", "Cool Edit Pro 2.1",
    "Audition 1.0",       "Audition 1.5",       "Audition 2.0",       "Audition 3.0",
};

WaveLayout LayoutOf(const std::string& version) {
    const bool packed = version.starts_with("Cool Edit Pro 1.2") || version.starts_with("Cool Edit 2000");
    return packed ? WaveLayout::Packed : WaveLayout::Padded;
}

std::string Files(const SesBuilder& builder, const ConvertOptions& options = {}) {
    return Section(DocumentOf(builder.Build(), options), "<files>", "</files>");
}

// Reads and assembles the file list, for what the document does not show.
Session FilesOf(const SesBuilder& builder, const ConvertOptions& options = {}) {
    Session session;
    const ImportResult result = ReadSesBytes(builder.Build(), session, options);
    EXPECT_EQ(result.Status, ImportStatus::Converted) << result.Message;
    BuildSessionFiles(session, options);
    return session;
}

// One list holding every repair; the video entry stands last but is listed first.
const std::vector<WaveEntry> kRepairs{
    {"wav ", 1, "C:\\Takes\\take 1.wav", 1000},
    {"wav ", 2, "C:\\Takes\\take 2", 2000},
    {"mp3 ", 3, "C:\\Takes\\take.wav", 3000},
    {"midi", 4, "C:\\Takes\\song.mid", 0},
    {"WAV ", 5, "C:\\a\\Audio for clip.avi.wav", 5000},
    {"wav ", 6, "C:\\Audio for x\\b.wav", 6000},
    {"aif ", 7, "Audio for loop", 0},
    {"VDEO", 8, "C:\\Video\\Scene & 3.avi", 0},
};

// Names without their tag get it unless they have an extension of their
// own, "Audio for " goes, MIDI files are left out.
TEST(WaveList, EveryVersionReadsItsOwnLayoutAndRepairsTheNames) {
    std::string dumps;
    for (const std::string& version : kVersions) {
        const SesBuilder b = SessionOf(version).Chunk("LIST", WaveListBytes(kRepairs, LayoutOf(version)));
        dumps += TitledDump(version, FilesOf(b));
    }
    ExpectGolden("wave-list-repairs.model.txt", dumps);
}

TEST(WaveList, TheListEndsByItsLengthOrAtTheListFileMark) {
    // Behind the list, still inside the chunk, stands one more entry that
    // must not be read. The walk steps over it as an unknown chunk.
    const std::vector<WaveEntry> shortNames{{"wav ", 1, "a"}, {"wav ", 2, "b"}, {"wav ", 3, "c"},
                                            {"wav ", 4, "d"}, {"wav ", 5, "e"}, {"wav ", 6, "f"}};
    const std::string expected =
        "<files>\n<file absolutePath=\"a.wav\" id=\"0\"/>\n<file absolutePath=\"b.wav\" id=\"1\"/>\n"
        "<file absolutePath=\"c.wav\" id=\"2\"/>\n<file absolutePath=\"d.wav\" id=\"3\"/>\n"
        "<file absolutePath=\"e.wav\" id=\"4\"/>\n<file absolutePath=\"f.wav\" id=\"5\"/>\n</files>\n";
    for (const std::string& version : kVersions) {
        const WaveLayout layout = LayoutOf(version);
        const SesBuilder byLength = SessionOf(version).Chunk(
            "LIST", WaveListBytes(shortNames, layout, WaveEntryBytes({"wav ", 9, "decoy"}, layout)));
        EXPECT_EQ(Files(byLength), expected) << version;

        // A list length beyond the entries: the "LIST" "FILE" mark ends them.
        Bytes entries;
        for (const WaveEntry& entry : shortNames) entries.Append(WaveEntryBytes(entry, layout));
        const SesBuilder byMark = SessionOf(version).Chunk(
            "LIST",
            WaveListBytes(shortNames, layout, Bytes().Text("LISTFILE"), static_cast<std::int32_t>(entries.Size() + 8)));
        EXPECT_EQ(Files(byMark), expected) << version;
    }
}

// The next chunk stands behind the list length, not the payload length; an
// empty list steps 16 or 28 bytes, an empty wide list 28.
TEST(WaveList, WhereTheNextChunkStands) {
    const Session s =
        ReadOk(SessionOf("Audition 3.0")
                   .ChunkWithLength("LIST", 100000, WaveListBytes({{"wav ", 1, "C:\\x.wav"}}, WaveLayout::Padded))
                   .Chunk("stat", StatBytes(10, 30))
                   .Build());
    EXPECT_EQ(s.SesWaves.at(0).Name, "C:\\x.wav");
    EXPECT_EQ(s.SelectionEnd, 30);
    for (const std::string& version : kVersions) {
        const bool sixteen = version == "Cool Edit Pro 2.00" || version.starts_with("Cool Edit Pro 1.2") ||
                             version == "Cool Edit Pro 2.1" || version == "Audition 1.0";
        const SesBuilder b = SessionOf(version)
                                 .ChunkWithLength("LIST", 0, Bytes().Zeros(sixteen ? 16 : 28))
                                 .Chunk("stat", StatBytes(100, 400));
        EXPECT_EQ(ReadOk(b.Build()).SelectionEnd, 400) << version;
    }
    ConvertOptions language;
    language.NonEnglish = true;
    const SesBuilder wide =
        SessionOf("Audition 1.5").ChunkWithLength("WLST", 0, Bytes().Zeros(28)).Chunk("stat", StatBytes(1, 2));
    EXPECT_EQ(ReadOk(wide.Build(), language).SelectionEnd, 2);
}

// Small ids get 2000000 in some versions (video and audio differ in Cool
// Edit 2000); only Audition 1.5 on keeps a length, and only for a name that
// ends in its tag.
TEST(WaveList, IdsAndLengthsByVersion) {
    std::string dumps;
    for (const std::string& version : kVersions) {
        const SesBuilder b = SessionOf(version).Chunk(
            "LIST", WaveListBytes(
                        {{"wav ", 7, "C:\\a.wav", 441000}, {"wav ", 8, "C:\\b", 882000}, {"VDEO", 9, "C:\\v.avi", 123}},
                        LayoutOf(version)));
        dumps += TitledDump(version, FilesOf(b));
    }
    ExpectGolden("wave-list-ids.model.txt", dumps);
}

// The <files> section. Paths are cut at 255 characters at every store: the
// added extension loses its end before the prefix goes, 253 + ".w", and
// 254 + "." less the prefix. Without path names only the file name is
// written. With the language option the old versions read both lists (the
// later ones read "WLST" instead of "LIST":
// WholeSessions.WithALanguageTheNamesComeFromTheWideList), and a kind other
// than "wav " is no kind at all. Wide names become bytes of the chosen
// charset: without one a character below 256 stands for itself, with one the
// character comes back whole once the document is recoded.
TEST(WaveList, FileSections) {
    const std::string folder = "C:\\" + std::string(236, 'f') + "\\";  // 240 characters
    const SesBuilder cut =
        SessionOf("Audition 3.0")
            .Chunk("LIST",
                   WaveListBytes({{"wav ", 1, folder + "take number 1"}, {"wav ", 2, folder + "Audio for clip"}},
                                 WaveLayout::Padded));
    const SesBuilder wide =
        SessionOf("Audition 3.0").Chunk("WLST", WideWaveListBytes({{"wav ", 1, u"C:\\\u00e9t\u00e9 \u0416.wav"}}));
    ConvertOptions noPaths, language;
    noPaths.NoPathNames = true;
    language.NonEnglish = true;
    ConvertOptions cyrillic = language;
    cyrillic.Charset = "WINDOWS-1251";
    const std::vector<std::tuple<std::string, SesBuilder, ConvertOptions>> table{
        {"paths of more than 255 characters", cut, {}},
        {"without path names",
         SessionOf("Audition 2.0")
             .Chunk("LIST", WaveListBytes({{"wav ", 1, "C:\\a\\take 1.wav"}, {"VDEO", 2, "C:\\v\\film & co.avi"}},
                                          WaveLayout::Padded)),
         noPaths},
        {"both lists of Cool Edit Pro 2.00",
         SessionOf("Cool Edit Pro 2.00")
             .Chunk("LIST", WaveListBytes({{"wav ", 1, "C:\\narrow.wav"}}, WaveLayout::Padded))
             .Chunk("WLST", WideWaveListBytes({{"wav ", 2, u"C:\\wide.wav"}, {"VDEO", 3, u"C:\\Loop take"}})),
         language},
        {"wide names without a charset", wide, language},
        {"wide names in WINDOWS-1251", wide, cyrillic},
    };
    std::string sections;
    for (const auto& [title, builder, options] : table) sections += "## " + title + "\n" + Files(builder, options);
    ExpectGolden("wave-list-files.txt", sections);
    EXPECT_FALSE(FilesOf(cut).VideoSeen);
}

TEST(WaveList, NameBuffersThatReadTheFileAgainAndAgainFailIt) {
    // Cool Edit 2000 entries 17 bytes and more apart, each with a name buffer
    // of 1016 bytes: every buffer holds the next entries, whose EntrySize
    // byte is the only non-zero byte of a header, so the names are 3, 2, 1
    // characters long and the entries stand at 64, 84, 103 and 121. Buffers
    // that overlap this way could read a file of megabytes for hours; here
    // the third makes 3048 bytes, more than twice the file's 1160.
    Bytes payload;
    payload.Int32(1000);
    for (const std::size_t at : {4u, 24u, 43u, 61u}) payload.PadTo(at).Zeros(4).Int32(1024).Zeros(8);
    payload.PadTo(1100);
    const auto bytes = SesBuilder().Version("Cool Edit 2000 1.0", 32).Chunk("LIST", payload).Build();
    ASSERT_EQ(bytes.size(), 1160u);
    ExpectFailures({{bytes, "LIST", 119,
                     "the wave list names reach offset 119 again and again: they describe more than the file's 1160 "
                     "bytes can hold"}});
}

TEST(WaveList, EntriesTooSmallForTheirNameFailTheFile) {
    ConvertOptions wide;
    wide.NonEnglish = true;
    const auto in = [](const char* version, const char* tag, const Bytes& payload) {
        return SessionOf(version).Chunk(tag, payload).Build();
    };
    ExpectFailures({
        {in("Audition 3.0", "LIST", Bytes().Int32(40).Text("wav ").Int32(12).Int32(1).Zeros(40)), "LIST",
         kFirstPayload + 8, "the wave list entry at offset 472 declares a size of 12, too small for its name"},
        {in("Cool Edit 2000 1.0", "LIST", Bytes().Int32(40).Text("wav ").Int32(4).Int32(1).Zeros(40)), "LIST",
         kFirstPayload + 8, "the wave list entry at offset 472 declares a size of 4, too small for its name"},
        {in("Audition 3.0", "WLST", Bytes().Text("wav ").Int32(-100).Int32(1).Zeros(20)), "WLST", kFirstPayload + 4,
         "the 16-bit wave list entry at offset 468 declares a size of -100, too small for its name", wide},
        // A list that claims far more than the file holds ends at the file's end.
        {in("Audition 3.0", "LIST", Bytes().Int32(1 << 30).Text("wav ").Int32(17).Int32(1).Zeros(4).ZeroText("a")),
         "LIST", kFirstPayload + 4 + 22,
         "a 32-bit integer of 4 bytes at offset 494 lies outside the file of 490 bytes"},
        {in("Audition 3.0", "WLST", Bytes().Text("wav ").Int32(1000).Int32(1).Zeros(20)), "WLST", kFirstPayload + 24,
         "a field of 984 bytes at offset 492 runs past the end of the file (8 bytes left)", wide},
    });
}

}  // namespace
}  // namespace morvanta::testing

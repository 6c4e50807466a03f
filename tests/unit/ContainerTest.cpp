// The container walk, the version gate, the probe and the failure of broken files.
#include <gtest/gtest.h>

#include "SesBuilder.h"
#include "TestSupport.h"

namespace morvanta::testing {
namespace {

ImportResult Read(const std::vector<std::uint8_t>& bytes, bool versionOnly = false) {
    Session session;
    return ReadSesBytes(bytes, session, {}, versionOnly);
}

// What a read tells: its status and result, the version text if one was
// read, the chunk and offset of a failure, its message, and whether it made
// a document.
std::string Outcome(const ImportResult& r) {
    const char* const status[] = {"Converted", "Probed", "NotSession", "Refused", "Failed"};
    return status[static_cast<int>(r.Status)] + (" " + std::to_string(r.Result)) +
           (r.VersionRead ? " \"" + r.Version + "\"" : "") +
           (r.Status == ImportStatus::Failed ? " in \"" + r.ErrorChunk + "\" at " + std::to_string(r.ErrorOffset)
                                             : "") +
           (r.Message.empty() ? "" : ": " + r.Message) + (r.Document.empty() ? "" : ", a document");
}

const std::string kNotSession = "NotSession -1: not a session file: it does not start with \"COOLNESS\"";

TEST(Container, WhatAReadTells) {
    ASSERT_EQ(SesBuilder().Build().size(), 12u);
    auto notCoolness = SesBuilder().Version("Audition 3.0").Build();
    notCoolness[0] = 'c';
    auto truncated = SesBuilder().Version("Audition 3.0").Build();  // 12 + 8 + 12 = 32
    truncated.resize(36, 0);
    truncated[8] = 60;  // DeclaredLength 60: no chunk header of 8 bytes fits at 32
    // Padding and embedded zeros: "Audi\0tion 3.0 [build 7283]\0\0..."; a
    // text that starts with a class name belongs to that class.
    const ImportResult build = Convert(
        SesBuilder().Chunk("vers", Bytes().Text("Audi").Byte(0).Text("tion 3.0 [build 7283]").Zeros(19)).Build());
    // A chunk at offset 12 with a DeclaredLength of 13: 12 + 1 < 13 fails,
    // so the truncated chunk behind the header is never read. With 14 it is
    // read, and its payload runs past the end: the walk stops at the next
    // chunk, which lies outside the file (5020 + 1 is not below 14).
    const auto declared = [](const char* tag, std::int32_t length) {
        return Read(SesBuilder().ChunkWithLength(tag, 5000, Bytes()).DeclaredLength(length).Build());
    };
    const std::vector<std::pair<ImportResult, std::string>> table{
        {Convert(SesBuilder().Build()), "Converted 0, a document"},
        {declared("hdr ", 13), "Converted 0"},
        {declared("abcd", 14), "Converted 0"},
        // Bytes behind the declared length are never read.
        {Read(SesBuilder()
                  .Version("Audition 3.0")
                  .Trailer(Bytes().Text("vers").Int32(17).Text("Cool Edit Pro 1.0"))
                  .Build()),
         "Converted 0 \"Audition 3.0\""},
        {Convert(notCoolness), kNotSession},
        {Convert({'C', 'O', 'O', 'L'}), kNotSession},
        {Convert({}), kNotSession},
        {build, "Converted 0 \"Audition 3.0 [build 7283]\", a document"},
        // A broken container fails the file at the offset that is wrong; how a
        // failure is described to the user is pinned by ConversionRunTest.
        {Convert(truncated),
         "Failed 0 \"Audition 3.0\" in \"\" at 32: the chunk header of 8 bytes at offset 32 runs past the end of the "
         "file (36 bytes; the header declares 60)"},
        {Convert(SesBuilder()
                     .Version("Audition 3.0")
                     .ChunkWithLength("TRKM", 4000, Bytes().Int32(3))
                     .DeclaredLength(10000)
                     .Build()),
         "Failed 0 \"Audition 3.0\" in \"TRKM\" at 32: chunk \"TRKM\" at offset 32 ends at offset 4040, past the end "
         "of the file (44 bytes)"},
        {Convert(SesBuilder().Version("Audition 3.0").ChunkWithLength("junk", -8, Bytes()).Build()),
         "Failed 0 \"Audition 3.0\" in \"junk\" at 32: chunk \"junk\" at offset 32 has length -8, which does not move "
         "the walk forward"},
        {Convert({'C', 'O', 'O', 'L', 'N', 'E', 'S', 'S', 1, 2}),
         "Failed 0 in \"\" at 8: a 32-bit integer of 4 bytes at offset 8 runs past the end of the file (2 bytes left)"},
        // A probe stops at the version chunk, refused or not.
        {Read(SesBuilder().Version("Cool Edit Pro 2.01").ChunkWithLength("TRKS", 99999, Bytes()).Build(), true),
         "Probed 0 \"Cool Edit Pro 2.01\""},
    };
    for (const auto& [result, expected] : table) EXPECT_EQ(Outcome(result), expected);
    EXPECT_NE(Convert(SesBuilder().Build()).Document.find("<masterTrack "), std::string::npos);
    EXPECT_EQ(Lines(build.Document).rbegin()[1],
              "<!-- Converted C:\\Sessions\\test.ses (Audition 3.0 [build 7283]) --> ");

    // The classes are exact, case-sensitive prefixes: "Cool Edit Pro 2.0" is none of them.
    for (const std::string version :
         {"Cool Edit Pro 2.01", "Cool Edit Pro 2.0", "Cool Edit Pro 1.0", "Audition 4.0", "cool edit pro 2.1", ""})
        EXPECT_EQ(Outcome(Convert(SesBuilder().Version(version).Build())),
                  "Refused 0 \"" + version + "\": " + version + " is not currently supported");
}

// The probe of a file on disk reads only its head. A version behind the head
// is found in the whole file; a file cut short fails as the whole walk fails
// it. An empty "LIST" moves the walk 28 bytes on, not by its length of 0:
// what stands in those bytes looks like a version chunk but is none.
TEST(Container, TheProbeOfAFileOnDisk) {
    TempDir dir;
    WriteFile(dir / "a.ses", SesBuilder()
                                 .ChunkWithLength("junk", 8, Bytes().Zeros(8))
                                 .Version("Audition 1.5", 32)
                                 .ChunkWithLength("TRKS", 99999, Bytes())
                                 .Build());
    WriteFile(dir / "none.ses", SesBuilder().Chunk("hdr ", Bytes().Zeros(40)).Build());
    WriteFile(dir / "text.ses", std::string("just some text, not a session"));
    auto late = SesBuilder().Chunk("junk", Bytes().Zeros(100000)).Version("Audition 2.0").Build();
    WriteFile(dir / "late.ses", late);
    late.resize(90000);
    WriteFile(dir / "cut.ses", late);
    const auto emptyList =
        SesBuilder()
            .Chunk("hdr ", Bytes().Zeros(36))
            .ChunkWithLength("LIST", 0, Bytes().Text("vers").Int32(20).Text("Cool Edit Pro 1.0").Zeros(3))
            .Version("Audition 3.0")
            .Build();
    WriteFile(dir / "list.ses", emptyList);
    std::vector<std::string> outcomes;
    for (const char* name : {"a.ses", "none.ses", "text.ses", "late.ses", "cut.ses", "list.ses"})
        outcomes.push_back(Outcome(ProbeSesFile(dir / name)));
    EXPECT_EQ(
        outcomes,
        (std::vector<std::string>{
            "Probed 0 \"Audition 1.5\"", "Probed 0", kNotSession, "Probed 0 \"Audition 2.0\"",
            "Failed 0 in \"junk\" at 12: chunk \"junk\" at offset 12 ends at offset 100020, past the end of the file "
            "(90000 bytes)",
            "Probed 0 \"Audition 3.0\""}));
    EXPECT_EQ(Outcome(Read(emptyList, true)), "Probed 0 \"Audition 3.0\"");
    EXPECT_FALSE(std::filesystem::exists(dir / "a.sesx"));
}

}  // namespace
}  // namespace morvanta::testing

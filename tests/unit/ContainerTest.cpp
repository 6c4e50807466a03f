// The container walk, the version gate and the failure of broken files.
#include <gtest/gtest.h>

#include "SesBuilder.h"
#include "TestSupport.h"

namespace morvanta::testing {
namespace {

ImportResult Read(const std::vector<std::uint8_t>& bytes, bool versionOnly = false) {
    Session session;
    return ReadSesBytes(bytes, session, {}, versionOnly);
}

TEST(Container, AFileOfTwelveBytesIsAnEmptySession) {
    const auto bytes = SesBuilder().Build();
    ASSERT_EQ(bytes.size(), 12u);
    const ImportResult result = Convert(bytes);
    EXPECT_EQ(result.Status, ImportStatus::Converted);
    EXPECT_EQ(result.Result, 0);
    EXPECT_FALSE(result.VersionRead);
    EXPECT_NE(result.Document.find("<masterTrack "), std::string::npos);
}

TEST(Container, TheWalkEndsOneByteBeforeTheDeclaredLength) {
    // A chunk at offset 12 with a DeclaredLength of 13: 12 + 1 < 13 fails, so
    // the truncated chunk behind the header is never read.
    const auto bytes = SesBuilder().ChunkWithLength("hdr ", 5000, Bytes()).DeclaredLength(13).Build();
    EXPECT_EQ(Read(bytes).Status, ImportStatus::Converted);
    // With 14 it is read, and its payload runs past the end: the walk stops
    // at the next chunk, which lies outside the file.
    const auto longer = SesBuilder().ChunkWithLength("abcd", 5000, Bytes()).DeclaredLength(14).Build();
    const ImportResult result = Read(longer);
    EXPECT_EQ(result.Status, ImportStatus::Converted) << "the walk ends: 5020 + 1 is not below 14";
}

TEST(Container, BytesBehindTheDeclaredLengthAreNeverRead) {
    const auto bytes = SesBuilder()
                           .Version("Audition 3.0")
                           .Trailer(Bytes().Text("vers").Int32(17).Text("Cool Edit Pro 1.0"))
                           .Build();
    const ImportResult result = Read(bytes);
    EXPECT_EQ(result.Status, ImportStatus::Converted);
    EXPECT_EQ(result.Version, "Audition 3.0");
}

TEST(Container, NotACoolnessFileGivesMinusOne) {
    auto bytes = SesBuilder().Version("Audition 3.0").Build();
    bytes[0] = 'c';
    const ImportResult result = Convert(bytes);
    EXPECT_EQ(result.Result, -1);
    EXPECT_EQ(result.Status, ImportStatus::NotSession);
    EXPECT_TRUE(result.Document.empty());
    EXPECT_EQ(Convert({'C', 'O', 'O', 'L'}).Result, -1);
    EXPECT_EQ(Convert({}).Result, -1);
}

TEST(Container, RefusedVersionsCarryTheirMessage) {
    // The classes are exact, case-sensitive prefixes: "Cool Edit Pro 2.0" is none of them.
    for (const std::string version :
         {"Cool Edit Pro 2.01", "Cool Edit Pro 2.0", "Cool Edit Pro 1.0", "Audition 4.0", "cool edit pro 2.1", ""}) {
        const ImportResult result = Convert(SesBuilder().Version(version).Build());
        EXPECT_EQ(result.Status, ImportStatus::Refused) << version;
        EXPECT_EQ(result.Result, 0);
        EXPECT_EQ(result.Message, version + " is not currently supported");
        EXPECT_TRUE(result.Document.empty());
    }
}

TEST(Container, ZeroBytesInTheVersionTextAreDroppedAndABuildNumberIsKept) {
    // Padding and embedded zeros: "Audi\0tion 3.0 [build 7283]\0\0..."; a
    // text that starts with a class name belongs to that class.
    const auto bytes =
        SesBuilder().Chunk("vers", Bytes().Text("Audi").Byte(0).Text("tion 3.0 [build 7283]").Zeros(19)).Build();
    const ImportResult result = Convert(bytes);
    ASSERT_EQ(result.Status, ImportStatus::Converted) << result.Message;
    EXPECT_EQ(result.Version, "Audition 3.0 [build 7283]");
    EXPECT_EQ(Lines(result.Document).rbegin()[1], "<!-- Converted C:\\Sessions\\test.ses (Audition 3.0 [build 7283]) --> ");
}

TEST(Container, ProbeStopsAtTheVersionChunk) {
    const auto bytes = SesBuilder()
                           .Version("Cool Edit Pro 2.01")  // refused, but a probe only reads it
                           .ChunkWithLength("TRKS", 99999, Bytes())
                           .Build();
    const ImportResult probe = Read(bytes, true);
    EXPECT_EQ(probe.Status, ImportStatus::Probed);
    EXPECT_TRUE(probe.VersionRead);
    EXPECT_EQ(probe.Version, "Cool Edit Pro 2.01");
}

TEST(Container, ProbeOfAFileOnDiskReadsOnlyTheHead) {
    TempDir dir;
    WriteFile(dir / "a.ses", SesBuilder()
                                 .ChunkWithLength("junk", 8, Bytes().Zeros(8))
                                 .Version("Audition 1.5", 32)
                                 .ChunkWithLength("TRKS", 99999, Bytes())
                                 .Build());
    const ImportResult probe = ProbeSesFile(dir / "a.ses");
    EXPECT_EQ(probe.Status, ImportStatus::Probed);
    EXPECT_EQ(probe.Version, "Audition 1.5");
    EXPECT_FALSE(std::filesystem::exists(dir / "a.sesx"));

    WriteFile(dir / "none.ses", SesBuilder().Chunk("hdr ", Bytes().Zeros(40)).Build());
    const ImportResult noVersion = ProbeSesFile(dir / "none.ses");
    EXPECT_EQ(noVersion.Status, ImportStatus::Probed);
    EXPECT_FALSE(noVersion.VersionRead);

    WriteFile(dir / "text.ses", std::string("just some text, not a session"));
    EXPECT_EQ(ProbeSesFile(dir / "text.ses").Result, -1);

    // A version behind the head is found in the whole file; a file cut
    // short fails as the whole walk fails it.
    auto late = SesBuilder().Chunk("junk", Bytes().Zeros(100000)).Version("Audition 2.0").Build();
    WriteFile(dir / "late.ses", late);
    EXPECT_EQ(ProbeSesFile(dir / "late.ses").Version, "Audition 2.0");
    late.resize(90000);
    WriteFile(dir / "late.ses", late);
    const ImportResult cut = ProbeSesFile(dir / "late.ses");
    EXPECT_EQ(cut.Status, ImportStatus::Failed);
    EXPECT_EQ(cut.Message, "chunk \"junk\" at offset 12 ends at offset 100020, past the end of the file (90000 bytes)");
}

TEST(Container, ProbeOfAFileOnDiskStepsOverChunksAsTheirReadersDo) {
    // An empty "LIST" moves the walk 28 bytes on, not by its length of 0:
    // what stands in those bytes looks like a version chunk but is none.
    TempDir dir;
    const auto bytes = SesBuilder()
                           .Chunk("hdr ", Bytes().Zeros(36))
                           .ChunkWithLength("LIST", 0, Bytes().Text("vers").Int32(20).Text("Cool Edit Pro 1.0").Zeros(3))
                           .Version("Audition 3.0")
                           .Build();
    WriteFile(dir / "a.ses", bytes);
    const ImportResult probe = ProbeSesFile(dir / "a.ses");
    EXPECT_EQ(probe.Status, ImportStatus::Probed);
    EXPECT_EQ(probe.Version, "Audition 3.0");
    EXPECT_EQ(Read(bytes, true).Version, "Audition 3.0");
}

// A broken container fails the file at the offset that is wrong; how a
// failure is described to the user is pinned by ConversionRunTest.
TEST(Container, BrokenContainersFailWithTheirOffset) {
    auto truncated = SesBuilder().Version("Audition 3.0").Build();  // 12 + 8 + 12 = 32
    truncated.resize(36, 0);
    truncated[8] = 60;  // DeclaredLength 60: no chunk header of 8 bytes fits at 32
    ExpectFailure(truncated, "", 32,
                  "the chunk header of 8 bytes at offset 32 runs past the end of the file (36 bytes; the header declares 60)");
    ExpectFailure(
        SesBuilder().Version("Audition 3.0").ChunkWithLength("TRKM", 4000, Bytes().Int32(3)).DeclaredLength(10000).Build(),
        "TRKM", 32, "chunk \"TRKM\" at offset 32 ends at offset 4040, past the end of the file (44 bytes)");
    ExpectFailure(SesBuilder().Version("Audition 3.0").ChunkWithLength("junk", -8, Bytes()).Build(), "junk", 32,
                  "chunk \"junk\" at offset 32 has length -8, which does not move the walk forward");
    ExpectFailure({'C', 'O', 'O', 'L', 'N', 'E', 'S', 'S', 1, 2}, "", 8,
                  "a 32-bit integer of 4 bytes at offset 8 runs past the end of the file (2 bytes left)");
}

}  // namespace
}  // namespace morvanta::testing

// The document frame of a session without tracks, clips or media.
#include <gtest/gtest.h>

#include "ExampleSessions.h"
#include "SesBuilder.h"
#include "TestSupport.h"

namespace morvanta::testing {
namespace {

TEST(DocumentFrame, AnEmptySessionHasTheWholeFrame) {
    const ImportResult result = Convert(SesBuilder().Version("Audition 3.0", 32).Build(), {}, "empty-session");
    ASSERT_EQ(result.Status, ImportStatus::Converted) << result.Message;
    ExpectGolden("empty-session.sesx", result.Document);
}

// The name is the escaped document file name; the comments behind the root
// element keep the session's path as it stands, made safe for recoding when
// the document is recoded. The frame's other lines are pinned by the golden
// documents.
TEST(DocumentFrame, TheNameAndTheClosingComments) {
    const ImportResult result =
        ConvertSesBytes(SesBuilder().Version("Cool Edit Pro 2.1D").Build(), {}, "  /x/<a&b>.ses ", "/out/a&b.sesx");
    const auto lines = Lines(result.Document);
    ASSERT_GE(lines.size(), 6u);
    EXPECT_EQ(lines[5], "<name>a&amp;b.sesx</name>");
    EXPECT_EQ(lines[lines.size() - 2], "<!-- Converted /x/<a&b>.ses (Cool Edit Pro 2.1D) --> ");
    ConvertOptions recoded;
    recoded.NonEnglish = true;
    EXPECT_EQ(
        Lines(ConvertSesBytes(SesBuilder().Version("Audition 1.0").Build(), recoded, "C:\\M\xFCsik\\a b.ses", "a.sesx")
                  .Document)
            .rbegin()[1],
        "<!-- Converted C:\\M%FCsik\\a%20b.ses (Audition 1.0) --> ");
}

TEST(DocumentFrame, CommittedExamplesAreWhatTheBuilderMakes) {
    for (const NamedFile& example : ExampleSessions()) {
        const auto path = kSourceDir / "examples" / example.Name;
        ASSERT_TRUE(std::filesystem::exists(path)) << path << " is missing: run `make examples`";
        const std::string committed = ReadFile(path);
        EXPECT_EQ(std::vector<std::uint8_t>(committed.begin(), committed.end()), example.Bytes)
            << path << " is out of date: run `make examples`";
        EXPECT_EQ(Convert(example.Bytes).Status, ImportStatus::Converted) << example.Name;
    }
}

}  // namespace
}  // namespace morvanta::testing

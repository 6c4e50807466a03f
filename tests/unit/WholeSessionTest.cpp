// Whole sessions converted and compared with their golden documents: the
// band session as each of the nine writer versions saved it, and a session
// of every kind of track.
#include <gtest/gtest.h>

#include <cctype>

#include "TestSupport.h"
#include "TrackPayloads.h"
#include "WholeSessions.h"
#include "reader/Assembly.h"
#include "writer/ExportSesx.h"

namespace morvanta::testing {

// Names the version in test listings instead of dumping its bytes.
void PrintTo(const WriterVersion& version, std::ostream* out) { *out << version.Text; }

namespace {

class WholeSessions : public ::testing::TestWithParam<WriterVersion> {};

TEST_P(WholeSessions, ConvertsToItsGoldenDocument) {
    const WriterVersion& version = GetParam();
    const ImportResult result = Convert(WholeSession(version.Text), {}, version.Stem);
    ASSERT_EQ(result.Status, ImportStatus::Converted) << result.Message;
    for (const Diagnostic& warning : result.Warnings) ADD_FAILURE() << "warning: " << warning.Message;
    ExpectGolden(version.Stem + ".sesx", result.Document);
}

// The model the writer walks: the raw lists of each version's chunks and
// what the assembly made of them.
TEST_P(WholeSessions, ReadsAndAssemblesToItsGoldenModel) {
    Session session = ReadOk(WholeSession(GetParam().Text));
    std::vector<Diagnostic> warnings;
    AssembleSession(session, {}, warnings);
    EXPECT_TRUE(warnings.empty());
    ExpectModelGolden(GetParam().Stem, session);
}

INSTANTIATE_TEST_SUITE_P(EveryWriterVersion, WholeSessions, ::testing::ValuesIn(WriterVersions()),
                         [](const ::testing::TestParamInfo<WriterVersion>& param) {
                             std::string name;
                             for (char c : param.param.Stem) name += std::isalnum(static_cast<unsigned char>(c)) ? c : '_';
                             return name;
                         });

// An Audition 3.0 session with a video track, three audio tracks, a bus and
// the master, automation on volume, mute, pan and a send. The session has no
// header chunk, so its sample rate is 0 and the EQ frequencies are fractions
// of -20 Hz; the track writer's tests pin them at a real rate.
TEST(WholeSessions, ASessionWithEveryKindOfTrack) {
    const ImportResult result = Convert(TracksExampleSession(), {}, "tracks");
    ASSERT_EQ(result.Status, ImportStatus::Converted) << result.Message;
    ExpectGolden("tracks.sesx", result.Document);
}

// The writer only reads the session: a second document of the same session
// is the same, escaped names, master order and group numbers included.
TEST(WholeSessions, WritingASessionTwiceGivesTheSameBytes) {
    for (const auto& [bytes, stem] : {std::pair{TracksExampleSession(), "tracks"},
                                      std::pair{WholeSession("Audition 3.0"), "audition-3.0"}}) {
        Session session;
        ASSERT_EQ(ReadSesBytes(bytes, session, {}).Status, ImportStatus::Converted);
        session.SourcePath = "C:\\Sessions\\" + std::string(stem) + ".ses";
        std::vector<Diagnostic> warnings;
        AssembleSession(session, {}, warnings);
        const Session before = session;
        const std::string first = ExportSesxFile(session, {}, std::string(stem) + ".sesx", warnings);
        EXPECT_EQ(ExportSesxFile(session, {}, std::string(stem) + ".sesx", warnings), first) << stem;
        EXPECT_TRUE(session == before) << stem;
        ExpectGolden(std::string(stem) + ".sesx", first);
    }
}

// With a language, Audition 1.5 and later take their media names from the
// 16-bit list, whose entries keep no media kind: the video file is listed
// as an audio file, in the order of the list, and every audio clip finds its
// file all the same (a clip without its file is left out with a warning).
TEST(WholeSessions, WithALanguageTheNamesComeFromTheWideList) {
    ConvertOptions language;
    language.NonEnglish = true;
    language.Charset = "ISO-8859-1";
    const ImportResult wide = Convert(WholeSession("Audition 3.0"), language, "audition-3.0");
    ASSERT_EQ(wide.Status, ImportStatus::Converted) << wide.Message;
    EXPECT_TRUE(wide.Warnings.empty());
    ExpectGolden("wide-list-files.txt", Section(wide.Document, "<files>", "</files>"));
}

// A document may reach the size limit but not pass it; past it the file
// fails alone and nothing of its document is kept.
TEST(WholeSessions, ADocumentPastTheSizeLimitFailsItsFile) {
    const ImportResult whole = Convert(WholeSession("Audition 2.0"), {}, "audition-2.0");
    ASSERT_EQ(whole.Status, ImportStatus::Converted) << whole.Message;
    ConvertOptions limited;
    limited.MaxDocumentBytes = whole.Document.size();
    EXPECT_EQ(Convert(WholeSession("Audition 2.0"), limited, "audition-2.0").Document, whole.Document);

    limited.MaxDocumentBytes = whole.Document.size() - 1;
    const ImportResult over = Convert(WholeSession("Audition 2.0"), limited, "audition-2.0");
    EXPECT_EQ(over.Status, ImportStatus::Failed);
    EXPECT_EQ(over.Message, "the document would be larger than " + std::to_string(whole.Document.size() - 1) +
                                " bytes, the most Morvanta writes for one session");
    EXPECT_EQ(over.Document, "");

    limited.MaxDocumentBytes = std::size_t{1} << 20;
    EXPECT_EQ(Convert(WholeSession("Audition 2.0"), limited, "audition-2.0").Document, whole.Document);
}

}  // namespace
}  // namespace morvanta::testing

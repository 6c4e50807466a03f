// The run over rows: where documents go, the overwrite answers, counting.
#include <gtest/gtest.h>

#include <algorithm>

#include "SesBuilder.h"
#include "TestSupport.h"
#include "run/ConversionRun.h"
#include "run/Discovery.h"

namespace morvanta::testing {
namespace {

std::vector<std::uint8_t> GoodSession() { return SesBuilder().Version("Audition 3.0", 32).Build(); }

// One letter per outcome: C converted, N not a session, R refused, F failed, S skipped.
std::string Statuses(const RunSummary& summary) {
    std::string statuses;
    for (const FileOutcome& outcome : summary.Outcomes) statuses += "CNRFS"[static_cast<int>(outcome.Status)];
    return statuses;
}

TEST(ConversionRun, OutputPaths) {
    RunSettings beside;
    EXPECT_EQ(TargetPathFor({"/s/", "a.b.ses", true}, beside), "/s/a.b.sesx");
    EXPECT_EQ(TargetPathFor({"/s/", "take.SES", true}, beside), "/s/take.sesx");
    RunSettings target{TargetOption::SpecificFolder, "/out", {}};
    EXPECT_EQ(TargetPathFor({"/s/", "a.ses", true}, target), "/out/a.sesx");
    // A file with a sub-folder in front lands in that sub-folder of the target.
    EXPECT_EQ(TargetPathFor({"/s/", "sub/a.ses", true}, target), "/out/sub/a.sesx");
    target.TargetFolder = "/out/";
    EXPECT_EQ(TargetPathFor({"/s/", "x", true}, target), "/out/x.sesx");
}

// The confirmation for the source folders and the summary are compared in
// full, as the window shows them, by MainWindowTest.
TEST(ConversionRun, MessagesOfTheRun) {
    const RunSettings settings{TargetOption::SpecificFolder, "/out", {}};
    EXPECT_TRUE(ConfirmationText(1, settings).starts_with("1 file(s) will be converted to /out.\r\n"));
    // A path of 60 characters gets one line break, of 59 two. Characters are
    // counted, not the bytes of their UTF-8 form: "é" takes two bytes, "♪" three.
    for (const auto& [path, breaks] :
         std::vector<std::pair<std::string, std::string>>{{std::string(60, 'p'), "\r\n"},
                                                          {std::string(59, 'p'), "\r\n\r\n"},
                                                          {std::string(57, 'p') + "/é♪", "\r\n"},
                                                          {std::string(56, 'p') + "/é♪", "\r\n\r\n"}})
        EXPECT_EQ(OverwriteMessage(path), "File '" + path + "' Already Exists." + breaks + "Overwrite Existing File?");
}

// Four sessions whose documents exist. One answer is given for the document
// of `at` ("&Yes" for the others), or no answer at all: how often the run
// asks, what it converts, which documents stay old and which rows keep their
// tick, one file after the other or three at once. The next run asks again
// after "Yes to &All" (MainWindowTest).
TEST(ConversionRun, TheOverwriteAnswers) {
    struct Row {
        const char* Name;
        int Answer;  // -1: nobody to ask
        std::string At;
        int Asked;
        std::string Statuses;
        bool Cancelled;
        std::string Old, Ticked;
    };
    const std::vector<Row> table{
        {"yes asks again", kOverwrite, "a", 4, "CCCC", false, "", ""},
        {"yes to all asks once", kOverwriteAll, "a", 1, "CCCC", false, "", ""},
        {"no keeps the document and the tick", kSkipFile, "b", 4, "CSCC", false, "b", "b"},
        {"cancel leaves the run at once", kCancelRun, "c", 3, "CC", true, "cd", "cd"},
        {"without an answer every document is kept", -1, "", 0, "SSSS", false, "abcd", "abcd"},
    };
    for (const int jobs : {1, 3}) {
        for (const Row& r : table) {
        SCOPED_TRACE(std::string(r.Name) + ", jobs " + std::to_string(jobs));
        TempDir dir;
        std::vector<RunRow> rows;
        for (const std::string name : {"a", "b", "c", "d"}) {
            WriteFile(dir / (name + ".ses"), GoodSession());
            WriteFile(dir / (name + ".sesx"), std::string("old"));
            rows.push_back({dir.Path().string() + "/", name + ".ses", true});
        }
        int asked = 0;
        RunCallbacks callbacks;
        if (r.Answer >= 0)
            callbacks.AskOverwrite = [&](const std::string&, const std::string& target) {
                ++asked;
                return target.ends_with("/" + r.At + ".sesx") ? r.Answer : kOverwrite;
            };
        RunSettings settings;
        settings.Jobs = jobs;
        const RunSummary summary = RunConversion(rows, settings, callbacks);
        EXPECT_EQ(asked, r.Asked);
        EXPECT_EQ(summary.CheckedCount, 4);
        EXPECT_EQ(summary.ConvertedCount, static_cast<int>(std::count(r.Statuses.begin(), r.Statuses.end(), 'C')));
        EXPECT_EQ(summary.Cancelled, r.Cancelled);
        std::string old, ticked;
        for (std::size_t i = 0; i < rows.size(); ++i) {
            const char name = static_cast<char>('a' + i);
            if (ReadFile(dir / (std::string(1, name) + ".sesx")) == "old") old += name;
            if (rows[i].Checked) ticked += name;
        }
        EXPECT_EQ(Statuses(summary), r.Statuses);
        EXPECT_EQ(old, r.Old);
        EXPECT_EQ(ticked, r.Ticked);
        }
    }
}

// Two sources whose documents have one name: the second is asked about and
// replaces the first, as one file after the other, whatever the jobs.
TEST(ConversionRun, TwoFilesOfOneDocumentFollowEachOther) {
    TempDir dir;
    WriteFile(dir / "x" / "a.ses", GoodSession());
    WriteFile(dir / "y" / "a.ses", SesBuilder().Version("Audition 2.0", 32).Build());
    std::filesystem::create_directories(dir / "out");
    for (const int jobs : {1, 4}) {
        std::filesystem::remove(dir / "out" / "a.sesx");
        std::vector<RunRow> rows{{(dir / "x").string() + "/", "a.ses", true}, {(dir / "y").string() + "/", "a.ses", true}};
        int asked = 0;
        RunCallbacks callbacks;
        callbacks.AskOverwrite = [&](const std::string&, const std::string&) { return ++asked, kOverwrite; };
        RunSettings settings{TargetOption::SpecificFolder, (dir / "out").string(), {}};
        settings.Jobs = jobs;
        RunConversion(rows, settings, callbacks);
        EXPECT_EQ(asked, 1) << jobs;
        EXPECT_NE(ReadFile(dir / "out" / "a.sesx").find("y/a.ses"), std::string::npos) << jobs;
    }
}

TEST(ConversionRun, RefusedAndBrokenFilesAreCountedAndFailAlone) {
    TempDir dir;
    WriteFile(dir / "good.ses", GoodSession());
    WriteFile(dir / "old.ses", SesBuilder().Version("Cool Edit Pro 2.01").Build());
    WriteFile(dir / "cut.ses",
              SesBuilder().Version("Audition 3.0").ChunkWithLength("TRKM", 500, Bytes()).DeclaredLength(900).Build());
    WriteFile(dir / "text.ses", std::string("hello"));
    WriteFile(dir / "cut.sesx", std::string("old"));
    const std::string folder = dir.Path().string() + "/";
    std::vector<RunRow> rows{{folder, "good.ses", true},
                             {folder, "old.ses", true},
                             {folder, "cut.ses", true},
                             {folder, "text.ses", true},
                             {folder, "missing.ses", true},
                             {folder, "unticked.ses", false}};
    RunCallbacks callbacks;
    callbacks.AskOverwrite = [](const std::string&, const std::string&) { return kOverwrite; };
    std::vector<RunProgress> progress;
    callbacks.Progress = [&](const RunProgress& p) { progress.push_back(p); };
    const RunSummary summary = RunConversion(rows, {}, callbacks);

    EXPECT_EQ(summary.CheckedCount, 5);
    EXPECT_EQ(summary.ConvertedCount, 5);
    ASSERT_EQ(Statuses(summary), "CRFNF");
    EXPECT_EQ(summary.Outcomes[1].Message, "Cool Edit Pro 2.01 is not currently supported");
    EXPECT_EQ(summary.Outcomes[2].Message,
              folder +
                  "cut.ses: offset 32 (chunk \"TRKM\"): chunk \"TRKM\" at offset 32 ends at offset 540, past "
                  "the end of the file (40 bytes)");
    ASSERT_EQ(progress.size(), 5u);
    EXPECT_EQ(progress[4].Value, 5);
    EXPECT_EQ(progress[4].Maximum, 5);

    EXPECT_TRUE(std::filesystem::exists(dir / "good.sesx"));
    EXPECT_FALSE(std::filesystem::exists(dir / "old.sesx"));
    EXPECT_EQ(ReadFile(dir / "cut.sesx"), "old");  // a failed file never touches an existing document
    for (const auto& entry : std::filesystem::directory_iterator(dir.Path()))
        EXPECT_FALSE(entry.path().filename().string().starts_with(".")) << "left behind: " << entry.path();
}

TEST(ConversionRun, AFileTooLargeForASessionFailsAloneWithoutBeingLoaded) {
    // Positions in a session file are 32-bit: no session is longer than
    // 2147483647 bytes. A larger file (here a sparse one) is not read into
    // memory, which for a file of terabytes would end the whole run.
    TempDir dir;
    WriteFile(dir / "huge.ses", std::string("COOLNESS"));
    std::error_code ec;
    std::filesystem::resize_file(dir / "huge.ses", 2147483648ull, ec);
    if (ec) GTEST_SKIP() << "this file system has no sparse file of 2 GiB: " << ec.message();
    WriteFile(dir / "good.ses", GoodSession());
    const std::string folder = dir.Path().string() + "/";
    std::vector<RunRow> rows{{folder, "huge.ses", true}, {folder, "good.ses", true}};
    const RunSummary summary = RunConversion(rows, {});
    EXPECT_EQ(summary.ConvertedCount, 2);
    ASSERT_EQ(Statuses(summary), "FC");
    EXPECT_EQ(summary.Outcomes[0].Message,
              folder + "huge.ses: the file has 2147483648 bytes, more than the 2147483647 of the longest session file");
    EXPECT_FALSE(std::filesystem::exists(dir / "huge.sesx"));
}

TEST(ConversionRun, AnUnwritableTargetFailsWithThePath) {
    TempDir dir;
    WriteFile(dir / "a.ses", GoodSession());
    std::vector<RunRow> rows{{dir.Path().string() + "/", "a.ses", true}};
    const RunSettings settings{TargetOption::SpecificFolder, (dir / "no-such-folder").string(), {}};
    const RunSummary summary = RunConversion(rows, settings);
    ASSERT_EQ(Statuses(summary), "F");
    EXPECT_NE(summary.Outcomes[0].Message.find("Error Writing to File '" +
                                               WithClosingSeparator((dir / "no-such-folder").string()) + "a.sesx"),
              std::string::npos);
    EXPECT_EQ(summary.ConvertedCount, 1);
}

}  // namespace
}  // namespace morvanta::testing

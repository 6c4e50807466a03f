// The command-line tool as a script sees it: exit codes and lines.
#include <gtest/gtest.h>

#include <sys/wait.h>

#include <cstdio>

#include "EffectPayloads.h"
#include "SesBuilder.h"
#include "SessionPayloads.h"
#include "WholeSessions.h"
#include "services/TextHelpers.h"
#include "TestSupport.h"
#include "TrackPayloads.h"

namespace morvanta::testing {
namespace {

struct CliRun {
    int Exit = -1;
    std::string Out;
};

// A shell command line, and what it printed on its standard output.
CliRun RunCommand(const std::string& command) {
    CliRun run;
    FILE* pipe = ::popen(command.c_str(), "r");
    if (!pipe) return run;
    char buffer[4096];
    for (std::size_t n; (n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0;) run.Out.append(buffer, n);
    const int status = ::pclose(pipe);
    run.Exit = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return run;
}

CliRun RunCli(const std::string& arguments) {
    return RunCommand(std::string(MORVANTA_CLI_PATH) + " " + arguments + " 2>&1 </dev/null");
}

std::string Quote(const std::filesystem::path& path) { return "'" + path.string() + "'"; }

// Every outcome in one batch, converted once file after file and once on
// four threads: the same lines in the same order, the same documents. A
// file that does not end in ".ses" is not listed.
TEST(Cli, AMixedBatchIsReportedInFileOrderWhateverTheJobs) {
    TempDir dir;
    std::vector<std::string> names;
    for (const WriterVersion& version : WriterVersions()) {
        WriteFile(dir / "in" / (version.Stem + ".ses"), WholeSession(version.Text));
        names.push_back(version.Stem);
    }
    WriteFile(dir / "in" / "old.ses", SesBuilder().Version("Cool Edit Pro 1.0").Build());
    std::vector<std::uint8_t> cut = WholeSession("Audition 3.0");
    cut.resize(cut.size() / 2);
    WriteFile(dir / "in" / "cut.ses", cut);
    WriteFile(dir / "in" / "text.ses", std::string("not a session"));
    WriteFile(dir / "in" / "kept.ses", SesBuilder().Version("Audition 2.0").Build());
    WriteFile(dir / "in" / "notes.txt", std::string("not listed"));

    std::string documents[2];
    std::string lines[2];
    for (const int jobs : {1, 4}) {
        const std::filesystem::path out = dir / ("out" + std::to_string(jobs));
        WriteFile(out / "kept.sesx", std::string("old"));
        const CliRun run = RunCli("convert --jobs " + std::to_string(jobs) + " --out " + Quote(out) + " " +
                                  Quote(dir / "in"));
        EXPECT_EQ(run.Exit, 1) << run.Out;
        lines[jobs == 4] = ReplaceAll(ReplaceAll(run.Out, out.string(), "OUT"), (dir / "in").string(), "IN");
        for (const std::string& name : names) documents[jobs == 4] += ReadFile(out / (name + ".sesx"));
        EXPECT_EQ(ReadFile(out / "kept.sesx"), "old");
        EXPECT_FALSE(std::filesystem::exists(out / "cut.sesx"));
    }
    EXPECT_EQ(lines[1], lines[0]);
    EXPECT_TRUE(documents[1] == documents[0]);
    ExpectGolden("cli-mixed-batch.txt", lines[1]);

    // The JSON counts the same.
    const CliRun json = RunCli("convert --json --out " + Quote(dir / "out4") + " " + Quote(dir / "in" / "old.ses") +
                               " " + Quote(dir / "in" / "kept.ses"));
    EXPECT_EQ(json.Exit, 1) << json.Out;
    EXPECT_TRUE(json.Out.starts_with("{\"checked\":2,\"processed\":1,\"written\":0,\"refused\":1,\"failed\":0,"
                                     "\"skipped\":1,\"notSessions\":0,\"cancelled\":false,\"summary\":\"Converted 0 of "
                                     "2 files: 1 refused, 0 failed, 1 skipped, 0 not sessions.\","))
        << json.Out;
}

// Names outside every 8-bit code page, in the file and its folder, in the
// lines, the JSON and the document, with and without a language.
TEST(Cli, UnicodeFileNamesComeThroughWhole) {
    TempDir dir;
    const std::string folder = dir.Path().string() + "/\xC3\x84rger";                   // Ärger
    const std::string name = "\xD0\x9F\xD1\x80\xD0\xB8\xD0\xB2\xD0\xB5\xD1\x82";  // Привет
    WriteFile(folder + "/" + name + ".ses", WholeSession("Audition 3.0"));
    const std::string lines = "converted  " + folder + "/" + name + ".ses -> " + folder + "/" + name +
                              ".sesx\nConverted 1 of 1 files: 0 refused, 0 failed, 0 skipped, 0 not sessions.\n";
    for (const std::string options : {"", "--language Western "}) {
        const CliRun run = RunCli("convert --overwrite=all -r " + options + Quote(dir.Path()));
        EXPECT_EQ(run.Exit, 0);
        EXPECT_EQ(run.Out, lines) << options;
        const std::vector<std::string> document = Lines(ReadFile(folder + "/" + name + ".sesx"));
        ASSERT_GE(document.size(), 6u);
        EXPECT_EQ(document[5], "<name>" + name + ".sesx</name>") << options;
    }
    const CliRun json = RunCli("convert --overwrite=all --json " + Quote(folder + "/" + name + ".ses"));
    EXPECT_NE(json.Out.find("\"source\":\"" + folder + "/" + name + ".ses\",\"target\":\"" + folder + "/" + name +
                            ".sesx\",\"status\":\"converted\""),
              std::string::npos)
        << json.Out;
}

// A program copied away from its catalogues still converts, and says that
// every effect is left out, and why.
TEST(Cli, AProgramWithoutItsCataloguesSaysSo) {
    TempDir dir;
    std::filesystem::copy_file(MORVANTA_CLI_PATH, dir / "morvanta");
    WriteFile(dir / "fx.ses", EffectsSession("Audition 3.0"));
    // The error stream alone.
    const CliRun run =
        RunCommand(Quote(dir / "morvanta") + " convert " + Quote(dir / "fx.ses") + " 2>&1 >/dev/null </dev/null");
    EXPECT_EQ(run.Exit, 0);
    EXPECT_EQ(run.Out, "morvanta: no effect catalogues were found beside the program (a folder \"catalogues\", or "
                   "\"../share/morvanta/catalogues\"): every effect is left out; name a folder with --catalogues DIR\n");
}

TEST(Cli, ExistingDocumentsAreSkippedWithoutATerminalUnlessAllIsGiven) {
    TempDir dir;
    WriteFile(dir / "a.ses", SesBuilder().Version("Audition 3.0").Build());
    WriteFile(dir / "a.sesx", std::string("old"));
    CliRun run = RunCli("convert " + Quote(dir / "a.ses"));
    EXPECT_EQ(run.Exit, 0) << run.Out;
    EXPECT_EQ(ReadFile(dir / "a.sesx"), "old");
    run = RunCli("convert --overwrite=all --json " + Quote(dir / "a.ses"));
    EXPECT_EQ(run.Exit, 0) << run.Out;
    EXPECT_NE(ReadFile(dir / "a.sesx"), "old");
    EXPECT_TRUE(run.Out.starts_with("{\"checked\":1,\"processed\":1,\"written\":1,\"refused\":0,")) << run.Out;
}

TEST(Cli, UsageErrorsExitTwo) {
    for (const char* arguments : {"", "convert", "convert --bogus x.ses", "convert --overwrite=maybe x.ses",
                                  "convert --out /no/such/folder x.ses", "scan /no/such/folder"})
        EXPECT_EQ(RunCli(arguments).Exit, 2) << arguments;
    EXPECT_EQ(RunCli("convert --help").Exit, 0);
}

TEST(Cli, LanguageRecodesEachDocumentAndAnUnknownNameIsAUsageError) {
    TempDir dir;
    WriteFile(dir / "a.ses", SesBuilder().Version("Audition 3.0").Build());
    CliRun run = RunCli("convert --language Cyrillic " + Quote(dir / "a.ses"));
    EXPECT_EQ(run.Exit, 0) << run.Out;
    EXPECT_TRUE(ReadFile(dir / "a.sesx").starts_with("\xEF\xBB\xBF<?xml version=")) << ReadFile(dir / "a.sesx");
    EXPECT_EQ(RunCli("convert --overwrite=all --language windows-1252 " + Quote(dir / "a.ses")).Exit, 0);

    std::filesystem::remove(dir / "a.sesx");
    run = RunCli("convert --language Klingon " + Quote(dir / "a.ses"));
    EXPECT_EQ(run.Exit, 2);
    ExpectGolden("cli-unknown-language.txt", run.Out);
    EXPECT_FALSE(std::filesystem::exists(dir / "a.sesx"));
}

// A name with "<" and a source file with "--" in its name: warned about by
// default, repaired with --well-formed (which the repair's own tests show
// in the documents).
TEST(Cli, WellFormedRepairsWhatTheWarningsName) {
    TempDir dir;
    const auto source = dir / "mix--final.ses";
    WriteFile(source, SesBuilder()
                          .Chunk("hdr ", HeaderBytes(44100))
                          .Version("Cool Edit Pro 2.1", 32)
                          .Chunk("trks", TrksPayload(104, false, {{.Name = "Verse <1>", .TrackId = 1}}))
                          .Build());
    const std::string target = (dir / "mix--final.sesx").string();
    CliRun run = RunCli("convert " + Quote(source));
    EXPECT_EQ(run.Exit, 0) << run.Out;
    const std::string warning = "warning    " + source.string() + ": document line ";
    EXPECT_EQ(run.Out,
              "converted  " + source.string() + " -> " + target + "\n" + warning +
                  "10 is not well-formed XML: unescaped \"<\" in the text of <name> (--well-formed escapes it)\n" +
                  warning +
                  "263 is not well-formed XML: \"--\" inside a comment (--well-formed separates it)\n"
                  "Converted 1 of 1 files: 0 refused, 0 failed, 0 skipped, 0 not sessions.\n");

    run = RunCli("convert --overwrite=all --well-formed " + Quote(source));
    EXPECT_EQ(run.Exit, 0) << run.Out;
    EXPECT_EQ(run.Out, "converted  " + source.string() + " -> " + target + "\n" +
                           "Converted 1 of 1 files: 0 refused, 0 failed, 0 skipped, 0 not sessions.\n");

    // The JSON names the same places; the help names the option.
    run = RunCli("convert --overwrite=all --json " + Quote(source));
    EXPECT_NE(run.Out.find(",\"warnings\":[\"document line 10 is not well-formed XML: unescaped \\\"<\\\" in the "
                           "text of <name> (--well-formed escapes it)\",\"document line 263 is"),
              std::string::npos)
        << run.Out;
    EXPECT_NE(RunCli("convert --help").Out.find(
                  "--well-formed               Repair the places that would make a document no XML parser reads"),
              std::string::npos);
}

TEST(Cli, ScanListsSessionsWithTheirVersions) {
    TempDir dir;
    std::filesystem::create_directories(dir / "sub");
    WriteFile(dir / "a.ses", SesBuilder().Version("Audition 3.0 [build 1]", 32).Build());
    WriteFile(dir / "sub" / "b.ses", SesBuilder().Version("Cool Edit Pro 2.1D").Build());
    WriteFile(dir / "sub" / "UPPER.SES", SesBuilder().Version("Audition 1.5").Build());
    WriteFile(dir / "c.ses", std::string("not a session"));
    const CliRun run = RunCli("scan --recursive --json " + Quote(dir.Path()));
    EXPECT_EQ(run.Exit, 0) << run.Out;
    EXPECT_NE(run.Out.find("\"file\":\"a.ses\",\"version\":\"Audition 3.0\""), std::string::npos) << run.Out;
    EXPECT_NE(run.Out.find("\"file\":\"b.ses\",\"version\":\"Cool Edit Pro 2.1D\""), std::string::npos) << run.Out;
    EXPECT_EQ(run.Out.find("UPPER"), std::string::npos);
    EXPECT_NE(run.Out.find("\"totalFiles\":2,"), std::string::npos);
}

TEST(Cli, InfoListsTheChunks) {
    TempDir dir;
    WriteFile(dir / "a.ses", SesBuilder().Chunk("hdr ", Bytes().Zeros(40)).Version("Audition 2.0").Build());
    const CliRun run = RunCli("info " + Quote(dir / "a.ses"));
    EXPECT_EQ(run.Exit, 0) << run.Out;
    ExpectGolden("cli-info.txt", ReplaceAll(run.Out, dir.Path().string(), "DIR"));
    const CliRun model = RunCli("info --model " + Quote(dir / "a.ses"));
    EXPECT_EQ(model.Out.substr(0, 56), "SesVersion: \"Audition 2.0\"\nVersionRead: true\nSampleRate:");
}

TEST(Cli, InfoNamesTheRouteOfEachEffectThroughTheCataloguesGiven) {
    TempDir dir;
    WriteFile(dir / "fx.ses", EffectsSession("Audition 3.0"));
    const std::string catalogues = Quote(kSourceDir / "tests" / "catalogues");
    const CliRun run = RunCli("info --catalogues " + catalogues + " " + Quote(dir / "fx.ses"));
    EXPECT_EQ(run.Exit, 0) << run.Out;
    ExpectGolden("cli-info-effects.txt", run.Out.substr(run.Out.find("Effects:\n")));
    const CliRun json = RunCli("info --json --catalogues=" + catalogues + " " + Quote(dir / "fx.ses"));
    EXPECT_NE(json.Out.find("\"effects\":[{\"owner\":\"track 1 \\\"Vocal\\\"\",\"effect\":\"Parametric "
                            "Equalizer\",\"route\":\"catalogue Parametric Equalizer30.Kelfx\"},"),
              std::string::npos)
        << json.Out;

    // A folder that is not there is a mistake in the command, not a run
    // without catalogues.
    for (const std::string command : {"info --catalogues ", "convert --catalogues="}) {
        const CliRun missing = RunCli(command + Quote(dir / "nowhere") + " " + Quote(dir / "fx.ses"));
        EXPECT_EQ(missing.Exit, 2) << command;
        EXPECT_NE(missing.Out.find((dir / "nowhere").string()), std::string::npos) << missing.Out;
    }
    EXPECT_FALSE(std::filesystem::exists(dir / "fx.sesx"));
}

}  // namespace
}  // namespace morvanta::testing

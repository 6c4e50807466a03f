// Recoding finished documents to UTF-8: the language table, the charset
// names iconv gets, the text routines and the pass of the run.
#include <gtest/gtest.h>

#include "SesBuilder.h"
#include "TestSupport.h"
#include "run/ConversionRun.h"
#include "services/Recoding.h"

namespace morvanta::testing {
namespace {

const std::string kBom = "\xEF\xBB\xBF";

std::string Recoded(const std::string& bytes, std::string_view charset) { return RecodeToUtf8(bytes, charset); }

std::string CharsetOf(std::string_view language) {
    for (const LanguageRow& row : LanguageTable)
        if (row.Language == language) return std::string(row.Charset);
    return {};
}

// A name in each language's own code page and its UTF-8, the same in every
// build: Vietnamese tone marks written as combining bytes come out joined
// to their letter, as one precomposed character.
TEST(Recoding, ANameInEachLanguageGetsItsMeaning) {
    const std::vector<std::pair<std::string_view, std::string>> table{
        {"Central European", "\xA3\xF3" "d\xBC"},         // Łódź
        {"Cyrillic", "\xCF\xF0\xE8\xE2\xE5\xF2"},        // Привет
        {"Greek", "\xC3\xE5\xE9\xDC"},                  // Γειά
        {"Japanese 1", "\x93\xFA\x96\x7B\xB1 C:\\"},   // 日本ｱ, the backslash kept
        {"Japanese 2", "\xC6\xFC\xCB\xDC"},             // 日本
        {"Korean", "\xC7\xD1\xB1\xB9"},                 // 한국
        {"Russian", "\xED\xC9\xD2"},                    // Мир
        {"Simple Chinese", "\xD6\xD0\xCE\xC4"},         // 中文
        {"Thai", "\xE4\xB7\xC2"},                       // ไทย
        {"Traditional Chinese", "\xA4\xA4\xA4\xE5"},    // 中文
        {"Vietnamese", "Vi\xEA\xF2t Nam"},               // Việt Nam
        {"Western", "\xC4rger caf\xE9"},                 // Ärger café
    };
    const std::vector<std::string> expected{
        "\xC5\x81\xC3\xB3" "d\xC5\xBA",
        "\xD0\x9F\xD1\x80\xD0\xB8\xD0\xB2\xD0\xB5\xD1\x82",
        "\xCE\x93\xCE\xB5\xCE\xB9\xCE\xAC",
        "\xE6\x97\xA5\xE6\x9C\xAC\xEF\xBD\xB1 C:\\",
        "\xE6\x97\xA5\xE6\x9C\xAC",
        "\xED\x95\x9C\xEA\xB5\xAD",
        "\xD0\x9C\xD0\xB8\xD1\x80",
        "\xE4\xB8\xAD\xE6\x96\x87",
        "\xE0\xB9\x84\xE0\xB8\x97\xE0\xB8\xA2",
        "\xE4\xB8\xAD\xE6\x96\x87",
        "Vi\xE1\xBB\x87t Nam",
        "\xC3\x84rger caf\xC3\xA9",
    };
    ASSERT_EQ(table.size(), LanguageTable.size());
    for (std::size_t i = 0; i < table.size(); ++i)
        EXPECT_EQ(Recoded(table[i].second, CharsetOf(table[i].first)), kBom + expected[i]) << table[i].first;
    // A byte the code page does not define becomes U+FFFD; the rest goes on.
    EXPECT_EQ(Recoded("a\x98z", CharsetOf("Cyrillic")), kBom + "a\xEF\xBF\xBDz");
}

TEST(Recoding, PlainAsciiIsTheSameUnderEveryLanguageApartFromTheByteOrderMark) {
    // Paths hold backslashes (and the odd tilde), which every code page has to keep.
    const std::string document = "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"no\" ?>\r\n"
                                 "<file absolutePath=\"C:\\Takes\\TAKE~1.WAV\" id=\"0\"/>\r\n";
    for (const LanguageRow& row : LanguageTable)
        EXPECT_EQ(Recoded(document, row.Charset), kBom + document) << row.Language;
}

// The names iconv gets for the table's charsets are pinned by the recoding
// of each language above.
TEST(Recoding, LanguageAndCharsetNames) {
    for (const LanguageRow& row : LanguageTable) EXPECT_TRUE(IsKnownCharset(row.Charset)) << row.Charset;
    EXPECT_EQ(CharsetForLanguage("western"), "ISO-8859-1");
    EXPECT_EQ(CharsetForLanguage("Japanese 2"), "X-EUC");
    EXPECT_EQ(CharsetForLanguage("KOI8-R"), "koi8-r");
    EXPECT_EQ(CharsetForLanguage("CP1252"), "CP1252");
    EXPECT_EQ(CharsetForLanguage("Klingon"), std::nullopt);
    EXPECT_FALSE(IsKnownCharset(""));
}

TEST(Recoding, WritingInAnEightBitCharsetAndUnknownCharsets) {
    EXPECT_EQ(EncodeText("caf\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x8E\xB5", "ISO-8859-1"), "caf\xE9 ? ?");
    EXPECT_EQ(DecodeText("caf\xE9 ?", "ISO-8859-1"), "caf\xC3\xA9 ?");
    EXPECT_THROW(RecodeToUtf8("caf\xE9", "NO-SUCH-CHARSET"), std::runtime_error);
    EXPECT_THROW(EncodeText("caf", "NO-SUCH-CHARSET"), std::runtime_error);
}

// The document's <name> is the target's file name, which the file system
// gives as Unicode: it stays as it is while the session's texts are recoded.
TEST(Recoding, TheRunRecodesWhatItWroteAndNothingElse) {
    TempDir dir;
    const std::string folder = dir.Path().string() + "/\xC3\x84rger/";
    const std::string name = "\xD0\x9F\xD1\x80\xD0\xB8\xD0\xB2\xD0\xB5\xD1\x82 caf\xC3\xA9";  // Привет café
    std::filesystem::create_directory(PathFromText(folder));
    WriteFile(PathFromText(folder + name + ".ses"), SesBuilder().Version("Audition 3.0", 32).Build());
    WriteFile(PathFromText(folder + "old.ses"), SesBuilder().Version("Cool Edit Pro 1.0").Build());
    WriteFile(PathFromText(folder + "old.sesx"), std::string("older document \xE9"));
    std::vector<RunRow> rows{{folder, name + ".ses", true}, {folder, "old.ses", true}};
    RunSettings settings;
    settings.Convert.NonEnglish = true;
    settings.Convert.Charset = "ISO-8859-1";
    RunCallbacks callbacks;
    callbacks.AskOverwrite = [](const std::string&, const std::string&) { return kOverwrite; };
    const RunSummary summary = RunConversion(rows, settings, callbacks);

    EXPECT_EQ(summary.ConvertedCount, 2);
    ASSERT_EQ(summary.Outcomes.size(), 2u);
    EXPECT_EQ(summary.Outcomes[0].Status, FileStatus::Converted);
    EXPECT_EQ(summary.Outcomes[1].Status, FileStatus::Refused);
    const std::filesystem::path target = PathFromText(folder + name + ".sesx");
    const std::vector<std::string> head = Lines(ReadFile(target));
    ASSERT_GE(head.size(), 6u);
    EXPECT_EQ(head[0], kBom + R"(<?xml version="1.0" encoding="UTF-8" standalone="no" ?>)");
    EXPECT_EQ(head[5], "<name>" + name + ".sesx</name>");
    EXPECT_EQ(ReadFile(PathFromText(folder + "old.sesx")), "older document \xE9");
    EXPECT_EQ(ProblemLines(summary),
              std::vector<std::string>{folder + "old.ses: Cool Edit Pro 1.0 is not currently supported"});

    // A recoding that fails fails its file and keeps the previous document
    // whole: the document is recoded before anything is written.
    const std::string before = ReadFile(target);
    rows = {{folder, name + ".ses", true}};
    settings.Convert.Charset = "NO-SUCH-CHARSET";
    const RunSummary failed = RunConversion(rows, settings, callbacks);
    EXPECT_EQ(ProblemLines(failed), std::vector<std::string>{folder + name + ".ses: the document could not be "
                                                             "recoded from NO-SUCH-CHARSET: unknown charset "
                                                             "\"NO-SUCH-CHARSET\""});
    EXPECT_EQ(ReadFile(target), before);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(PathFromText(folder)), {}), 4);
}

// A file name in the session's code page (which only a POSIX file system
// can hold) is recoded with the document.
TEST(Recoding, AFileNameInTheCodePageIsRecodedWithTheDocument) {
    TempDir dir;
    WriteFile(dir / "caf\xE9.ses", SesBuilder().Version("Audition 3.0", 32).Build());
    std::vector<RunRow> rows{{dir.Path().string() + "/", "caf\xE9.ses", true}};
    RunSettings settings;
    settings.Convert.NonEnglish = true;
    settings.Convert.Charset = "ISO-8859-1";
    EXPECT_EQ(RunConversion(rows, settings, {}).ConvertedCount, 1);
    const std::vector<std::string> head = Lines(ReadFile(dir / "caf\xE9.sesx"));
    ASSERT_GE(head.size(), 6u);
    EXPECT_EQ(head[5], "<name>caf\xC3\xA9.sesx</name>");
}

}  // namespace
}  // namespace morvanta::testing

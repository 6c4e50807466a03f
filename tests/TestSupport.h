// Helpers shared by the tests: building and converting sessions, tables of
// files that must fail, golden files, sections of documents, temporary folders.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "SesBuilder.h"
#include "SessionPayloads.h"
#include "services/SessionDump.h"
#include "run/ConvertFile.h"

namespace morvanta::testing {

inline const std::filesystem::path kSourceDir = MORVANTA_SOURCE_DIR;

using Strings = std::vector<std::string>;

// Converts a built session as if it were "C:\Sessions\<name>.ses" written to
// "<name>.sesx", so documents do not depend on where the tests run.
inline ImportResult Convert(const std::vector<std::uint8_t>& bytes, const ConvertOptions& options = {},
                            const std::string& name = "test") {
    return ConvertSesBytes(bytes, options, "C:\\Sessions\\" + name + ".ses", name + ".sesx");
}

// A file that must fail: in chunk `Tag`, at `Offset`, with exactly `Message`.
struct Failing {
    std::vector<std::uint8_t> File;
    std::string Tag;
    std::int64_t Offset;
    std::string Message;
    ConvertOptions Options{};
};

inline void ExpectFailures(const std::vector<Failing>& table) {
    for (const Failing& c : table) {
        const ImportResult result = Convert(c.File, c.Options);
        EXPECT_EQ(result.Status, ImportStatus::Failed) << c.Message;
        EXPECT_EQ(result.ErrorChunk, c.Tag) << c.Message;
        EXPECT_EQ(result.ErrorOffset, c.Offset) << c.Message;
        EXPECT_EQ(result.Message, c.Message);
        EXPECT_TRUE(result.Document.empty()) << c.Message;
    }
}

// The document of a built session that must convert.
inline std::string DocumentOf(const std::vector<std::uint8_t>& bytes, const ConvertOptions& options = {}) {
    const ImportResult result = Convert(bytes, options);
    EXPECT_EQ(result.Status, ImportStatus::Converted) << result.Message;
    return result.Document;
}

// A session of `version` behind a header chunk, the version text padded to
// 32 bytes: the header's payload offsets 300 and 352 are file offsets 320
// and 372, and the first chunk behind the two has its payload at
// kFirstPayload (12 + 408 + 40 + 8).
inline constexpr std::int64_t kFirstPayload = 468;
inline SesBuilder SessionOf(const std::string& version, const Bytes& header = HeaderBytes(44100)) {
    SesBuilder builder;
    builder.Chunk("hdr ", header).Version(version, 32);
    return builder;
}

inline std::string ReadFile(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

// Writes a file, making its folder first.
inline void WriteFile(const std::filesystem::path& path, const std::string& content) {
    std::filesystem::create_directories(path.parent_path());
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << content;
}

inline void WriteFile(const std::filesystem::path& path, const std::vector<std::uint8_t>& content) {
    WriteFile(path, std::string(content.begin(), content.end()));
}

// Compares with tests/golden/<name>; MORVANTA_UPDATE_GOLDEN=1 rewrites the file.
inline void ExpectGolden(const std::string& name, const std::string& actual) {
    const auto path = kSourceDir / "tests" / "golden" / name;
    if (const char* update = std::getenv("MORVANTA_UPDATE_GOLDEN"); update && std::string(update) == "1") {
        WriteFile(path, actual);
        return;
    }
    ASSERT_TRUE(std::filesystem::exists(path)) << "missing golden file " << path;
    EXPECT_EQ(ReadFile(path), actual) << "differs from " << path << " (MORVANTA_UPDATE_GOLDEN=1 rewrites it)";
}

// Compares the dump of a session with tests/golden/<name>.model.txt.
inline void ExpectModelGolden(const std::string& name, const Session& session) {
    ExpectGolden(name + ".model.txt", DumpSession(session));
}

// Reads a built file that must convert, without assembly.
inline Session ReadOk(const std::vector<std::uint8_t>& bytes, const ConvertOptions& options = {}) {
    Session session;
    const ImportResult result = ReadSesBytes(bytes, session, options);
    EXPECT_EQ(result.Status, ImportStatus::Converted) << result.Message;
    return session;
}


// A fresh folder for one test, removed afterwards.
class TempDir {
public:
    // A new folder under the system's temporary folder, on every system.
    TempDir() {
        std::random_device random;
        do {
            path_ = std::filesystem::temp_directory_path() / ("morvanta-test-" + std::to_string(random()));
        } while (!std::filesystem::create_directory(path_));
    }
    ~TempDir() {
        std::error_code ec;
        std::filesystem::remove_all(path_, ec);
    }
    const std::filesystem::path& Path() const { return path_; }
    std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

private:
    std::filesystem::path path_;
};

// Lines of a document, for tests that look at a part of it.
inline std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

// The lines of a document that start with `start`, in order.
inline std::vector<std::string> LinesStartingWith(const std::string& text, const std::string& start) {
    std::vector<std::string> found;
    for (const std::string& line : Lines(text))
        if (line.starts_with(start)) found.push_back(line);
    return found;
}

// From the line that starts with `first` through the line that starts with
// `last`, line feeds included, so that tests compare a whole section of a
// document letter by letter; empty when either is missing.
inline std::string Section(const std::string& document, const std::string& first, const std::string& last) {
    const auto begin = document.find("\n" + first);
    if (begin == std::string::npos) return {};
    const auto lastLine = document.find("\n" + last, begin + 1);
    if (lastLine == std::string::npos) return {};
    const auto end = document.find('\n', lastLine + 1);
    return document.substr(begin + 1, end == std::string::npos ? std::string::npos : end - begin);
}

// One session of a table in a golden of several: a title line, then the
// lines of its dump that a fresh session's dump does not have. Each line
// names its field or record, so a value back at its default shows as a line
// gone, and the text still tells every two sessions apart.
inline std::string TitledDump(const std::string& title, const Session& session) {
    const std::vector<std::string> fresh = Lines(DumpSession(Session{}));
    std::string text = "## " + title + "\n";
    for (const std::string& line : Lines(DumpSession(session)))
        if (std::find(fresh.begin(), fresh.end(), line) == fresh.end()) text += line + "\n";
    return text;
}

}  // namespace morvanta::testing

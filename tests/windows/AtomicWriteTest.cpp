// The atomic write on Windows: an existing document is replaced whole, and
// one that another program holds open stays as it was, with the reason.
#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>
#include <stdexcept>

#include "TestSupport.h"
#include "services/Platform.h"

namespace morvanta::testing {
namespace {

std::size_t FilesIn(const std::filesystem::path& folder) {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder), {}));
}

TEST(AtomicWrite, ReplacesAnExistingDocument) {
    TempDir dir;
    const std::filesystem::path target = dir.Path() / L"\u00C4rger.sesx";
    WriteFile(target, std::string("old document"));
    WriteFileAtomically(target, "new document");
    EXPECT_EQ(ReadFile(target), "new document");
    EXPECT_EQ(FilesIn(dir.Path()), 1u);
}

// A program that has the document open without letting others delete it
// (as an editor or a player does) keeps the system from replacing it.
TEST(AtomicWrite, ADocumentHeldOpenStaysWholeAndTheMessageSaysWhy) {
    TempDir dir;
    const std::filesystem::path target = dir / "held.sesx";
    WriteFile(target, std::string("old document"));
    HANDLE held = ::CreateFileW(target.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(held, INVALID_HANDLE_VALUE);
    std::string message;
    try {
        WriteFileAtomically(target, "new document");
    } catch (const std::runtime_error& error) {
        message = error.what();
    }
    ::CloseHandle(held);
    const std::string start = "Error Writing to File '" + target.string() + "'.  ";
    EXPECT_EQ(message.substr(0, start.size()), start);
    EXPECT_TRUE(message.ends_with("\n\nFile may be in use")) << message;
    EXPECT_EQ(ReadFile(target), "old document");
    EXPECT_EQ(FilesIn(dir.Path()), 1u);
}

}  // namespace
}  // namespace morvanta::testing

// The band session as each of the nine writer versions saved it, converted
// whole and compared with its golden document.
#include <gtest/gtest.h>

#include <cctype>

#include "TestSupport.h"
#include "WholeSessions.h"

namespace morvanta::testing {
namespace {

}  // namespace

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

INSTANTIATE_TEST_SUITE_P(EveryWriterVersion, WholeSessions, ::testing::ValuesIn(WriterVersions()),
                         [](const ::testing::TestParamInfo<WriterVersion>& param) {
                             std::string name;
                             for (char c : param.param.Stem) name += std::isalnum(static_cast<unsigned char>(c)) ? c : '_';
                             return name;
                         });

}  // namespace
}  // namespace morvanta::testing

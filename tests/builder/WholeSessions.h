// Whole sessions as each of the nine writer versions saved them: one small
// band session (three audio tracks, a video where the version has one,
// clips that touch and overlap, envelopes, a group, cues) written in each
// version's chunks and layouts. The golden documents and examples/ are
// made from these.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace morvanta::testing {

struct WriterVersion {
    std::string Text;  // the text of the "vers" chunk
    std::string Stem;  // the name of its example and golden document, without extension
};

// The nine accepted versions, oldest first.
const std::vector<WriterVersion>& WriterVersions();

// The band session as `version` (one of WriterVersions()) wrote it.
std::vector<std::uint8_t> WholeSession(const std::string& version);

}  // namespace morvanta::testing

// The example sessions shipped in examples/ and the seeds of the fuzz
// corpus, made by the builder. `make examples` writes them; a test checks
// that the committed files are what the builder makes.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "SessionPayloads.h"  // HeaderPayload

namespace morvanta::testing {

struct NamedFile {
    std::string Name;
    std::vector<std::uint8_t> Bytes;
};

// One session per writer version.
std::vector<NamedFile> ExampleSessions();

// Broken and hostile inputs: truncated, absurd lengths, refused versions.
std::vector<NamedFile> FuzzSeeds();

}  // namespace morvanta::testing

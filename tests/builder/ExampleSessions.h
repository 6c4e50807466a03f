// The example sessions shipped in examples/ and the seeds of the fuzz
// corpus, made by the builder. `make examples` writes them; a test checks
// that the committed files are what the builder makes.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace morvanta::testing {

struct NamedFile {
    std::string Name;
    std::vector<std::uint8_t> Bytes;
};

// One session per writer version.
std::vector<NamedFile> ExampleSessions();

// Broken and hostile inputs: truncated, absurd lengths, refused versions.
std::vector<NamedFile> FuzzSeeds();

// A header chunk payload of the size real files have, with the sample rate,
// master volume, SMPTE start, time format and envelope gain scale in place.
std::vector<std::uint8_t> HeaderPayload(std::int32_t sampleRate, double masterVolume = 1.0,
                                        std::int32_t smpteStart = 0, std::int16_t timeFormat = 0,
                                        double envelopeScale = 1.0);

}  // namespace morvanta::testing

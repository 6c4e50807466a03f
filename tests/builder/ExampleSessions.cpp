#include "ExampleSessions.h"

#include "BlockPayloads.h"
#include "SesBuilder.h"

namespace morvanta::testing {
namespace {

Bytes HeaderBytes(std::int32_t sampleRate, double masterVolume, std::int32_t smpteStart, std::int16_t timeFormat,
                  double envelopeScale) {
    // With "hdr " first, the file offsets 320 and 372 are payload offsets 300 and 352.
    Bytes b;
    b.Int32(sampleRate).Zeros(12).Double(masterVolume).Zeros(8).Int32(smpteStart);
    b.PadTo(300).Int16(timeFormat).PadTo(352).Double(envelopeScale).PadTo(400);
    return b;
}

std::vector<std::uint8_t> Session(const std::string& version, std::int32_t sampleRate) {
    return SesBuilder()
        .Chunk("hdr ", HeaderBytes(sampleRate, 1.0, 0, 0, 1.0))
        .Version(version, 32)
        .Build();
}

}  // namespace

std::vector<std::uint8_t> HeaderPayload(std::int32_t sampleRate, double masterVolume, std::int32_t smpteStart,
                                        std::int16_t timeFormat, double envelopeScale) {
    return HeaderBytes(sampleRate, masterVolume, smpteStart, timeFormat, envelopeScale).Data();
}

std::vector<NamedFile> ExampleSessions() {
    return {
        {"cool-edit-2000.ses", Session("Cool Edit 2000 1.0", 44100)},
        {"cool-edit-pro-1.2.ses", Session("Cool Edit Pro 1.2", 44100)},
        {"cool-edit-pro-1.2a.ses", Session("Cool Edit Pro 1.2a", 44100)},
        {"cool-edit-pro-2.00.ses", Session("Cool Edit Pro 2.00", 44100)},
        {"cool-edit-pro-2.1.ses", Session("Cool Edit Pro 2.1", 48000)},
        {"audition-1.0.ses", Session("Audition 1.0", 44100)},
        {"audition-1.5.ses", Session("Audition 1.5", 48000)},
        {"audition-2.0.ses", Session("Audition 2.0", 48000)},
        {"audition-3.0.ses", Session("Audition 3.0", 48000)},
    };
}

std::vector<NamedFile> FuzzSeeds() {
    std::vector<NamedFile> seeds = ExampleSessions();
    seeds.push_back({"refused-version.ses", Session("Cool Edit Pro 2.01", 44100)});
    seeds.push_back({"only-header.ses", SesBuilder().Build()});
    seeds.push_back({"truncated-chunk.ses",
                     SesBuilder().Version("Audition 3.0").ChunkWithLength("TRKS", 4000, Bytes().Int32(3)).Build()});
    seeds.push_back({"backward-length.ses",
                     SesBuilder().Version("Audition 3.0").ChunkWithLength("junk", -16, Bytes()).Build()});
    seeds.push_back({"declared-beyond-file.ses", SesBuilder().Version("Audition 2.0").DeclaredLength(9999).Build()});
    AppendBlockFuzzSeeds(seeds);
    return seeds;
}

}  // namespace morvanta::testing

#include "ExampleSessions.h"

#include "BlockPayloads.h"
#include "SesBuilder.h"
#include "SessionPayloads.h"
#include "TrackPayloads.h"

namespace morvanta::testing {
namespace {

std::vector<std::uint8_t> Session(const std::string& version, std::int32_t sampleRate) {
    SesBuilder builder;
    builder.Chunk("hdr ", HeaderBytes(sampleRate, 1.0, 0, 0, 1.0)).Version(version, 32);
    AddSessionStateChunks(builder, version);
    return builder.Build();
}

}  // namespace

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
    seeds.push_back({"absurd-cue-count.ses", SesBuilder()
                                                 .Version("Audition 3.0")
                                                 .Chunk("cues", Bytes().Int32(32000).Int32(0).Int32(0).Int32(0))
                                                 .Build()});
    seeds.push_back({"wave-list-beyond-file.ses",
                     SesBuilder()
                         .Version("Audition 1.5")
                         .Chunk("LIST", WaveListBytes({{"wav ", 1, "C:\\a.wav", 100}}, WaveLayout::Padded, Bytes(),
                                                      1 << 30))
                         .Build()});
    seeds.push_back({"wide-list-small-entry.ses",
                     SesBuilder().Version("Audition 2.0").Chunk("WLST", Bytes().Text("wav ").Int32(2).Zeros(8)).Build()});
    for (NamedFile& seed : TrackFuzzSeeds()) seeds.push_back(std::move(seed));
    AppendBlockFuzzSeeds(seeds);
    return seeds;
}

}  // namespace morvanta::testing

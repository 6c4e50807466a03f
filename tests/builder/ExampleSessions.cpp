#include "ExampleSessions.h"

#include "BlockPayloads.h"
#include "EffectPayloads.h"
#include "SesBuilder.h"
#include "SessionPayloads.h"
#include "TrackPayloads.h"
#include "WholeSessions.h"

namespace morvanta::testing {

std::vector<NamedFile> ExampleSessions() {
    std::vector<NamedFile> examples;
    for (const WriterVersion& version : WriterVersions())
        examples.push_back({version.Stem + ".ses", WholeSession(version.Text)});
    examples.push_back({"effects-audition-3.0.ses", EffectsSession("Audition 3.0")});
    examples.push_back({"effects-cool-edit-pro-2.1.ses", OlderEffectsSession()});
    return examples;
}

std::vector<NamedFile> FuzzSeeds() {
    std::vector<NamedFile> seeds = ExampleSessions();
    seeds.push_back({"refused-version.ses",
                     SesBuilder().Chunk("hdr ", HeaderBytes(44100)).Version("Cool Edit Pro 2.01", 32).Build()});
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

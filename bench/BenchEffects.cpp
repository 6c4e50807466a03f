// What effects cost: a session of 100 tracks with 8 effects each, converted
// through the shipped catalogues, against the same tracks without effects.
// The catalogues are read once per run (a shared store, as a batch does) or
// anew for every file.
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>

#include "EffectPayloads.h"
#include "SessionPayloads.h"
#include "reader/effects/Catalogues.h"
#include "run/ConvertFile.h"

namespace {

using morvanta::testing::EffectListBytes;
using morvanta::testing::EffectListEntry;

std::vector<std::uint8_t> TracksSession(bool withEffects) {
    using namespace morvanta::testing;
    std::vector<Bytes> entries;
    for (std::int32_t id = 1; id <= 100; ++id) {
        TrackEntry track = NamedEntry(id, u"Track");
        if (withEffects) {
            track.EffectList = EffectListBytes({
                {.Name = u"Parametric Equalizer", .Parameters = {{"Low Shelf Cutoff", {}, 0.3}, {"Band 1 Width", {}, 40}}},
                {.Name = u"Graphic Equalizer", .Parameters = {{"Number of Bands", {}, 0.4}, {"Band 1", {}, 0.6}}},
                {.Name = u"Dynamics Processing", .Parameters = {{"Low Cutoff", {{0, 0.1}, {100, 0.2}}, 0.1}}},
                {.Name = u"Channel Mixer", .Parameters = {{"Gain Left to Left", {}, 0.3}}},
                {.Name = u"Chorus", .Parameters = {{"Voices", {}, 4}}},
                {.Name = u"Echo", .Parameters = {{"Feedback", {}, 0.2}}},
                {.Name = u"Amplify", .Parameters = {{"Link Sliders", {}, 1}}},
                {.Name = u"Flanger", .Parameters = {{"Modulation Rate", {}, 0.5}}},
            });
        }
        entries.push_back(TrackEntryBytes(track));
    }
    return SesBuilder()
        .Chunk("hdr ", HeaderBytes(44100))
        .Version("Audition 3.0", 32)
        .Chunk("TRKS", UpperTrksPayload(true, 100, entries))
        .Build();
}

morvanta::ConvertOptions Options(bool shared) {
    morvanta::ConvertOptions options;
    options.CatalogueFolder = std::filesystem::path(MORVANTA_SOURCE_DIR) / "catalogues";
    if (shared) options.Catalogues = std::make_shared<morvanta::CatalogueStore>(options.CatalogueFolder);
    return options;
}

// A conversion that must succeed: a ratio of failures would mean nothing.
morvanta::ImportResult Converted(const std::vector<std::uint8_t>& bytes, const morvanta::ConvertOptions& options) {
    morvanta::ImportResult result = morvanta::ConvertSesBytes(bytes, options, "bench.ses", "bench.sesx");
    if (result.Status != morvanta::ImportStatus::Converted) {
        std::fprintf(stderr, "morvanta_bench: the effects session did not convert: %s\n",
                     morvanta::DescribeFailure("bench.ses", result).c_str());
        std::abort();
    }
    return result;
}

double SecondsPerConversion(const std::vector<std::uint8_t>& bytes, const morvanta::ConvertOptions& options) {
    const auto start = std::chrono::steady_clock::now();
    int runs = 0;
    do {
        auto result = Converted(bytes, options);
        benchmark::DoNotOptimize(result.Document);
        ++runs;
    } while (std::chrono::steady_clock::now() - start < std::chrono::milliseconds(700));
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count() / runs;
}

void ConvertTracksWithEffects(benchmark::State& state) {
    const auto bytes = TracksSession(state.range(0) != 0);
    const auto options = Options(true);
    for (auto _ : state) {
        auto result = Converted(bytes, options);
        benchmark::DoNotOptimize(result.Document);
    }
}
BENCHMARK(ConvertTracksWithEffects)->Arg(0)->Arg(1)->ArgName("effects");

}  // namespace

// Printed after the benchmarks: effects against none, in the same run.
void PrintEffectsRatio() {
    const double plain = SecondsPerConversion(TracksSession(false), Options(true));
    const auto effects = TracksSession(true);
    const double shared = SecondsPerConversion(effects, Options(true));
    const double anew = SecondsPerConversion(effects, Options(false));
    std::printf("\n100 tracks x 8 effects: %.2f times the conversion without effects with the catalogues read "
                "once per run, %.2f times when each file reads them anew\n",
                shared / plain, anew / plain);
}

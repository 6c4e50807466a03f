// How the conversion time grows with hostile inputs: each benchmark converts
// sessions of a few sizes whose tracks, points, sends or clips grow in step,
// and fits the growth. It should stay about linear in the input.
#include <benchmark/benchmark.h>

#include "HostileSessions.h"
#include "run/ConvertFile.h"

namespace {

using Builder = std::vector<std::uint8_t> (*)(int);

void ConvertHostile(benchmark::State& state, Builder build) {
    const auto n = static_cast<int>(state.range(0));
    const auto bytes = build(n);
    for (auto _ : state) {
        auto result = morvanta::ConvertSesBytes(bytes, {}, "bench.ses", "bench.sesx");
        if (result.Status != morvanta::ImportStatus::Converted) {
            state.SkipWithError("the session did not convert");
            break;
        }
        benchmark::DoNotOptimize(result.Document);
    }
    state.SetComplexityN(n);
    state.counters["input_kB"] = static_cast<double>(bytes.size()) / 1024;
}

void Sizes(benchmark::internal::Benchmark* b, int from, int to) {
    b->RangeMultiplier(2)->Range(from, to)->Complexity()->Unit(benchmark::kMillisecond);
}

BENCHMARK_CAPTURE(ConvertHostile, TrackAutomation, morvanta::bench::TrackAutomationSession)
    ->Apply([](auto* b) { Sizes(b, 256, 4096); });
BENCHMARK_CAPTURE(ConvertHostile, SendAutomation, morvanta::bench::SendAutomationSession)
    ->Apply([](auto* b) { Sizes(b, 64, 1024); });
BENCHMARK_CAPTURE(ConvertHostile, SharedClipId, morvanta::bench::SharedClipIdSession)
    ->Apply([](auto* b) { Sizes(b, 256, 4096); });
BENCHMARK_CAPTURE(ConvertHostile, SharedFileId, morvanta::bench::SharedFileIdSession)
    ->Apply([](auto* b) { Sizes(b, 1024, 16384); });
BENCHMARK_CAPTURE(ConvertHostile, ClipsOverTracks, morvanta::bench::ClipsOverTracksSession)
    ->Apply([](auto* b) { Sizes(b, 128, 2048); });
BENCHMARK_CAPTURE(ConvertHostile, MetronomePattern, morvanta::bench::MetronomePatternSession)
    ->Apply([](auto* b) { Sizes(b, 4096, 65536); });

}  // namespace

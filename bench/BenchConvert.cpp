// Throughput of the conversion of one session held in memory, and of the
// probe that a folder scan runs for every file.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>

#include "WholeSessions.h"
#include "run/ConvertFile.h"

namespace {

void ConvertExample(benchmark::State& state) {
    const auto bytes = morvanta::testing::WholeSession("Audition 3.0");
    for (auto _ : state) {
        auto result = morvanta::ConvertSesBytes(bytes, {}, "bench.ses", "bench.sesx");
        benchmark::DoNotOptimize(result.Document);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * bytes.size()));
}
BENCHMARK(ConvertExample);

void ProbeFile(benchmark::State& state) {
    const auto path = std::filesystem::temp_directory_path() / "morvanta-bench-probe.ses";
    {
        const auto bytes = morvanta::testing::WholeSession("Audition 3.0");
        std::ofstream out(path, std::ios::binary);
        out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    }
    for (auto _ : state) {
        auto result = morvanta::ProbeSesFile(path);
        benchmark::DoNotOptimize(result.Version);
    }
    std::filesystem::remove(path);
}
BENCHMARK(ProbeFile);

}  // namespace

void PrintEffectsRatio();
void PrintArchiveRatios(const std::filesystem::path& folder);

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    PrintEffectsRatio();
    // Beside the program, on the disk a user's archive would be on.
    PrintArchiveRatios(std::filesystem::absolute(argv[0]).parent_path() / "bench-archive");
    return 0;
}

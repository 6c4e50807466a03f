// What a batch costs against the disk: an archive of a few thousand mixed
// sessions (every example, broken and refused files among them) converted
// with one job and with one per core, against the floor of the same run:
// reading the same files and atomically writing the same number of bytes
// per file (write, sync, rename), with no parsing at all.
#include <atomic>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

#include "ExampleSessions.h"
#include "run/ConversionRun.h"
#include "services/Platform.h"

namespace {

namespace fs = std::filesystem;

constexpr int kArchiveFiles = 3000;

struct Archive {
    std::vector<morvanta::RunRow> Rows;
    std::uintmax_t InputBytes = 0;
};

// 100 files per folder, cycling through the examples and the fuzz seeds
// (truncated, refused and hostile files), so that some files fail.
Archive MakeArchive(const fs::path& folder) {
    std::vector<morvanta::testing::NamedFile> kinds = morvanta::testing::ExampleSessions();
    for (auto& seed : morvanta::testing::FuzzSeeds()) kinds.push_back(std::move(seed));
    Archive archive;
    for (int i = 0; i < kArchiveFiles; ++i) {
        const auto& kind = kinds[static_cast<std::size_t>(i) % kinds.size()];
        const fs::path sub = folder / ("folder-" + std::to_string(i / 100));
        fs::create_directories(sub);
        const std::string name = "session-" + std::to_string(i) + ".ses";
        std::ofstream(sub / name, std::ios::binary)
            .write(reinterpret_cast<const char*>(kind.Bytes.data()), static_cast<std::streamsize>(kind.Bytes.size()));
        archive.Rows.push_back({sub.string() + "/", name, true});
        archive.InputBytes += kind.Bytes.size();
    }
    return archive;
}

double Seconds(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

std::string ReadAll(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

// The floor: each file read whole, then as many bytes as its document
// written atomically beside it, on `threads` threads.
double FloorSeconds(const Archive& archive, const std::vector<std::uintmax_t>& documentBytes, unsigned threads) {
    return Seconds([&] {
        std::atomic<std::size_t> next = 0;
        std::vector<std::thread> pool;
        for (unsigned t = 0; t < threads; ++t)
            pool.emplace_back([&] {
                for (std::size_t i; (i = next++) < archive.Rows.size();) {
                    const auto& row = archive.Rows[i];
                    const std::string input = ReadAll(row.Folder + row.File);
                    const std::string output(documentBytes[i], input.empty() ? ' ' : input[0]);
                    morvanta::WriteFileAtomically(row.Folder + row.File + ".floor", output);
                }
            });
        for (std::thread& thread : pool) thread.join();
    });
}

double ConvertSeconds(const Archive& archive, int jobs, int& written) {
    std::vector<morvanta::RunRow> rows = archive.Rows;
    morvanta::RunSettings settings;
    settings.Existing = morvanta::ExistingDocuments::ReplaceAll;
    settings.Convert.CatalogueFolder = fs::path(MORVANTA_SOURCE_DIR) / "catalogues";
    settings.Jobs = jobs;
    morvanta::RunSummary summary;
    const double seconds = Seconds([&] { summary = morvanta::RunConversion(rows, settings); });
    written = morvanta::CountOutcomes(summary).Converted;
    return seconds;
}

}  // namespace

// Printed after the benchmarks, with the figures of the same run.
void PrintArchiveRatios(const fs::path& folder) {
    fs::remove_all(folder);
    const Archive archive = MakeArchive(folder);
    const unsigned cores = std::max(1u, std::thread::hardware_concurrency());

    // A first run fills the page cache and gives each document's size.
    int written = 0;
    ConvertSeconds(archive, 1, written);
    std::vector<std::uintmax_t> documentBytes;
    std::uintmax_t outputBytes = 0;
    for (const auto& row : archive.Rows) {
        std::error_code ec;
        const fs::path document = fs::path(row.Folder) / fs::path(row.File).replace_extension(".sesx");
        const std::uintmax_t size = fs::exists(document, ec) ? fs::file_size(document, ec) : 0;
        documentBytes.push_back(size);
        outputBytes += size;
    }

    const double floorOne = FloorSeconds(archive, documentBytes, 1);
    const double floorAll = FloorSeconds(archive, documentBytes, cores);
    const double floor = std::min(floorOne, floorAll);
    const double one = ConvertSeconds(archive, 1, written);
    const double all = ConvertSeconds(archive, static_cast<int>(cores), written);
    std::printf("\nAn archive of %d sessions (%.1f MB in, %d documents, %.1f MB out) on %u cores:\n",
                kArchiveFiles, static_cast<double>(archive.InputBytes) / 1e6, written,
                static_cast<double>(outputBytes) / 1e6, cores);
    std::printf("  floor (read, then write, sync and rename as many bytes): %.2f s on 1 thread, %.2f s on %u\n",
                floorOne, floorAll, cores);
    std::printf("  convert, 1 job:   %.2f s, %.2f times the floor\n", one, one / floor);
    std::printf("  convert, %u jobs: %.2f s, %.2f times the floor\n", cores, all, all / floor);
    fs::remove_all(folder);
}

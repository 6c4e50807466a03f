// Writes the example sessions and the fuzz seeds: make-examples EXAMPLES_DIR CORPUS_DIR
#include <filesystem>
#include <fstream>
#include <iostream>

#include "ExampleSessions.h"

namespace {

bool WriteAll(const std::filesystem::path& folder, const std::vector<morvanta::testing::NamedFile>& files) {
    std::filesystem::create_directories(folder);
    for (const auto& file : files) {
        std::ofstream out(folder / file.Name, std::ios::binary | std::ios::trunc);
        out.write(reinterpret_cast<const char*>(file.Bytes.data()), static_cast<std::streamsize>(file.Bytes.size()));
        if (!out) {
            std::cerr << "make-examples: cannot write " << (folder / file.Name) << "\n";
            return false;
        }
    }
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "usage: make-examples EXAMPLES_DIR CORPUS_DIR\n";
        return 2;
    }
    const bool ok = WriteAll(argv[1], morvanta::testing::ExampleSessions()) &&
                    WriteAll(argv[2], morvanta::testing::FuzzSeeds());
    return ok ? 0 : 1;
}

// Runs a fuzz target over files and folders of inputs, for compilers and
// test runs without libFuzzer:
//   REPLAY [--lead-bytes N] FILE_OR_FOLDER...
// Each input runs whole and cut short at 64 points. With --lead-bytes N
// each also runs behind every one-byte lead 0 .. N-1, for a target whose
// first byte chooses a setting (fuzz_language: the language).
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int argc, char** argv) {
    int count = 0;
    int leadBytes = 0;
    auto one = [](const std::vector<std::uint8_t>& bytes, std::size_t size) {
        LLVMFuzzerTestOneInput(bytes.data(), size);
    };
    auto run = [&](const std::filesystem::path& path) {
        std::ifstream in(path, std::ios::binary);
        const std::vector<std::uint8_t> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
        one(bytes, bytes.size());
        // Every prefix too: truncation is the commonest fault of old files.
        for (std::size_t n = 0; n < bytes.size(); n += 1 + bytes.size() / 64) one(bytes, n);
        for (int lead = 0; lead < leadBytes; ++lead) {
            std::vector<std::uint8_t> led{static_cast<std::uint8_t>(lead)};
            led.insert(led.end(), bytes.begin(), bytes.end());
            one(led, led.size());
        }
        ++count;
    };
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if (arg == "--lead-bytes" && i + 1 < argc) {
            leadBytes = std::stoi(argv[++i]);
            if (leadBytes < 0 || leadBytes > 256) {
                std::cerr << "--lead-bytes takes 0 to 256\n";
                return 2;
            }
            continue;
        }
        const std::filesystem::path path = arg;
        if (std::filesystem::is_directory(path)) {
            for (const auto& entry : std::filesystem::recursive_directory_iterator(path))
                if (entry.is_regular_file()) run(entry.path());
        } else if (std::filesystem::is_regular_file(path)) {
            run(path);
        } else {
            std::cerr << "no such input: " << path << "\n";
            return 2;
        }
    }
    std::cout << "replayed " << count << " inputs\n";
    return count > 0 ? 0 : 1;
}

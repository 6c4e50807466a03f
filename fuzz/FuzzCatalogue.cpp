// Fuzz target: any text as a catalogue of either generation and as the
// fallback file. It parses or fails with the file and line; it must never
// crash or hang.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "reader/effects/Catalogues.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    for (const auto generation : {morvanta::CatalogueGeneration::Named, morvanta::CatalogueGeneration::Positional}) {
        try {
            (void)morvanta::ParseCatalogue(text, generation, "fuzz.Kelfx");
        } catch (const morvanta::CatalogueError&) {
        }
    }
    const auto lines = morvanta::ParseFallbackLines(text);
    for (const std::string_view key : {"Amplify", "", "key"}) {
        try {
            (void)morvanta::FindFallbackEntry(lines, key, "EverythingElse30.Kelfx");
        } catch (const morvanta::CatalogueError&) {
        }
    }
    return 0;
}

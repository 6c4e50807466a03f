// Fuzz target: any bytes through the whole conversion. It must not crash,
// hang or trip a sanitizer; a bad file only fails.
#include <cstddef>
#include <cstdint>
#include <span>

#include "run/ConvertFile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::span<const std::uint8_t> bytes(data, size);
    morvanta::ConvertOptions options;
    (void)morvanta::ConvertSesBytes(bytes, options, "fuzz.ses", "fuzz.sesx");
    options.NonEnglish = true;
    (void)morvanta::ConvertSesBytes(bytes, options, "fuzz.ses", "fuzz.sesx");
    return 0;
}

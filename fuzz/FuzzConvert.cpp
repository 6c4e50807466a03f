// Fuzz target: any bytes through the whole conversion, once as an English
// session and once with the names of the 16-bit wave list. It must not
// crash, hang or trip a sanitizer; a bad file only fails.
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include "reader/effects/Catalogues.h"
#include "run/ConvertFile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::span<const std::uint8_t> bytes(data, size);
    // The shipped catalogues, read once as a run reads them, so that effects
    // go through catalogues, expressions and the built-in steps.
    static const auto catalogues = std::make_shared<morvanta::CatalogueStore>(MORVANTA_CATALOGUES);
    morvanta::ConvertOptions options;
    options.CatalogueFolder = MORVANTA_CATALOGUES;
    options.Catalogues = catalogues;
    (void)morvanta::ConvertSesBytes(bytes, options, "fuzz.ses", "fuzz.sesx");
    options.NonEnglish = true;
    (void)morvanta::ConvertSesBytes(bytes, options, "fuzz.ses", "fuzz.sesx");
    return 0;
}

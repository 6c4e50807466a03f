// Fuzz target: any bytes through the whole conversion, once as an English
// session, once with the names of the 16-bit wave list, and once written
// well-formed. It must not crash, hang or trip a sanitizer; a bad file only
// fails. A well-formed document may keep a stray "&", 8-bit bytes and
// control characters, which no repair touches, but nothing else the check
// could name.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <span>

#include "reader/effects/Catalogues.h"
#include "run/ConvertFile.h"
#include "services/MarkupCheck.h"

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
    options.NonEnglish = false;
    options.WellFormed = true;
    const morvanta::ImportResult repaired = morvanta::ConvertSesBytes(bytes, options, "fuzz--x.ses", "fuzz<1>.sesx");
    for (const morvanta::MarkupFault& fault : morvanta::CheckMarkup(repaired.Document, 1000).Faults) {
        using Kind = morvanta::MarkupFaultKind;
        if (fault.Kind != Kind::Ampersand && fault.Kind != Kind::NotUtf8 && fault.Kind != Kind::Character)
            std::abort();
    }
    return 0;
}

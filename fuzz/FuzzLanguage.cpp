// Fuzz target: the conversion of a session made in one of the languages a
// user can pick, so the names and the document go through iconv. The first
// byte picks the language; the rest is the file.
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "reader/effects/Catalogues.h"
#include "run/ConvertFile.h"
#include "services/Recoding.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    static const auto catalogues = std::make_shared<morvanta::CatalogueStore>(MORVANTA_CATALOGUES);
    morvanta::ConvertOptions options;
    options.CatalogueFolder = MORVANTA_CATALOGUES;
    options.Catalogues = catalogues;
    options.NonEnglish = true;
    options.Charset = std::string(morvanta::LanguageTable[data[0] % morvanta::LanguageTable.size()].Charset);
    (void)morvanta::ConvertSesBytes(std::span<const std::uint8_t>(data + 1, size - 1), options, "fuzz.ses",
                                    "fuzz.sesx");
    return 0;
}

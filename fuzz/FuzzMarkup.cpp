// Fuzz target: any bytes as a finished document through the check that
// names the places an XML parser would stop at, and the warnings made of
// them. It must not crash, hang or trip a sanitizer, and every fault it
// names lies on a line of the document.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "services/MarkupCheck.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view document(reinterpret_cast<const char*>(data), size);
    const morvanta::MarkupCheck check = morvanta::CheckMarkup(document, 20);
    std::size_t lines = 1;
    for (const char c : document) lines += c == '\n';
    for (const morvanta::MarkupFault& fault : check.Faults)
        if (fault.Line < 1 || fault.Line > lines) std::abort();
    if (check.Total < check.Faults.size()) std::abort();
    (void)morvanta::MarkupWarnings(check, false);
    return 0;
}

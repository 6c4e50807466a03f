// Fuzz target: the probe's walk, which reads chunks only until it has the
// version text (the walk ProbeSesFile runs over the head of a file).
#include <cstddef>
#include <cstdint>
#include <span>

#include "model/Session.h"
#include "reader/ImportSes.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    morvanta::Session session;
    (void)morvanta::ReadSesBytes(std::span<const std::uint8_t>(data, size), session, {}, true);
    return 0;
}

// Something a conversion has to tell beyond success or failure: a clip left
// out, a value that could not be kept. Collected per file, never global.
#pragma once

#include <cstdint>
#include <string>

namespace morvanta {

struct Diagnostic {
    std::string Message;
    std::int64_t Offset = -1;  // byte offset in the session file, -1 when none applies
    std::string ChunkTag;      // empty when none applies
};

}  // namespace morvanta

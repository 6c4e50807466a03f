// Assembly of cue markers and session files. Built with their chunk readers.
#include "reader/Assembly.h"

namespace morvanta {

void BuildCueMarkers(Session&) {}
void BuildSessionFiles(Session&, const ConvertOptions&) {}

}  // namespace morvanta

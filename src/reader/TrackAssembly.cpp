// Assembly of Tracks from the track records. Built with the track chunks.
#include "reader/Assembly.h"

namespace morvanta {

void AssembleTracks(Session&) {}

}  // namespace morvanta

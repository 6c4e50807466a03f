// Assembly of clips, fades and clip points. Built with the block chunks.
#include "reader/Assembly.h"

namespace morvanta {

void BuildClips(Session&, std::vector<Diagnostic>&) {}
void BuildClipPoints(Session&) {}
void RepairVideoClips(Session&) {}
void SortClips(Session&) {}

}  // namespace morvanta

// The clips of a track: <audioClip> and <videoClip>. Written once the block
// chunks are read; until then no track has clips.
#include "writer/DocumentWriter.h"

namespace morvanta {

void WriteAudioClips(DocumentWriter&, const Track&) {}
void WriteVideoClips(DocumentWriter&, const Track&) {}

}  // namespace morvanta

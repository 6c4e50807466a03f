// The <effectsRack> of a track that owns rack slots. Effect racks are not
// read yet, so no track owns a slot.
#include "writer/DocumentWriter.h"

namespace morvanta {

void WriteEffectsRack(DocumentWriter&, const Track&) {}

}  // namespace morvanta

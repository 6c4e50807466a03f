// The version lists that the track chunks and the track assembly share
// (docs/format/tracks.md). Each is a set of the prefix classes.
#pragma once

#include <string_view>

#include "model/VersionClasses.h"

namespace morvanta {

// The seven classes of the older track layout. Their track chunks have no
// second header field, and their raw track ids take 10000 in the assembly.
// Every other version text, an empty one included, has the newer layout.
inline bool OlderTrackLayout(std::string_view v) {
    return Ce2000(v) || Pro12(v) || Pro12a(v) || Pro200(v) || Pro21(v) || Aud10(v) || Aud15(v);
}

// The classes whose track ordinals always count the video track: the older
// layout without Ce2000 and Aud15.
inline bool TrackNumberList(std::string_view v) {
    return Pro12(v) || Pro12a(v) || Pro200(v) || Pro21(v) || Aud10(v);
}

}  // namespace morvanta

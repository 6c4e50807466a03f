// A stable text form of a whole session value, for `morvanta info --model`
// and for the tests' model goldens.
#pragma once

#include <string>

#include "model/Session.h"

namespace morvanta {

// Every scalar on a line of its own ("SampleRate: 44100"), then every list in
// the order of Session: one line per record, "Tracks[0]: {TrackId: 1, ...}",
// or "Tracks: []" for an empty list. Doubles are the shortest text that reads
// back as the same value; texts are quoted, with '"', '\' and bytes outside
// printable ASCII escaped ("\x41"). The send slots of a TrackSend that are
// all zero are left out; the others carry their slot number.
std::string DumpSession(const Session& session);

}  // namespace morvanta

// Sessions built to make a conversion's work grow: many tracks, points,
// sends and clips, and ids that many records share. Each grows in step
// with `n`, and its file size with it, so a benchmark over a few sizes
// shows how the work grows with the input.
#pragma once

#include <cstdint>
#include <vector>

namespace morvanta::bench {

// n tracks, the first n / 8 of them buses. Every other track has 4 volume,
// 4 mute and 4 pan points and an EQ, and feeds one of the buses; every
// track has an EQ record and a send record of its own.
std::vector<std::uint8_t> TrackAutomationSession(int n);

// n tracks, the first n / 8 of them buses. Every other track sends to one
// of the buses, with 2 points each for the send's power, level and pan.
std::vector<std::uint8_t> SendAutomationSession(int n);

// n blocks that share one block id, each with its fade record: the first
// on one track, the others on a second; and n envelope points of that id.
std::vector<std::uint8_t> SharedClipIdSession(int n);

// n wave list entries that share one wave id, a video first, and n blocks
// of that wave.
std::vector<std::uint8_t> SharedFileIdSession(int n);

// n tracks with 8 clips each, every clip with 2 envelope points. The
// envelope chunk holds at most 32767 groups, so n stays below 4096.
std::vector<std::uint8_t> ClipsOverTracksSession(int n);

// A metronome pattern of n beats.
std::vector<std::uint8_t> MetronomePatternSession(int n);

}  // namespace morvanta::bench

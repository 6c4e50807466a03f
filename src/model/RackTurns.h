// Which rows of RackSlots the effects rack of a track takes, and as which
// slot: the rule the writer follows and the reader's report of each
// effect's route (docs/format/tracks.md, "Effects rack").
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "model/Session.h"

namespace morvanta {

// A row's turn in the rack: the slot counter when its turn comes, and
// whether the row is written as that slot.
struct RackTurn {
    std::size_t Row{};          // position in RackSlots
    std::int32_t SlotIndex{};   // the slot counter at the row's turn
    bool Written{};
    bool operator==(const RackTurn&) const = default;
};

// The turns of the rows of `track`'s rack, in row order; none when the
// track has no rack. `own` and `ofBus` are the positions, in row order, of
// the rows whose OwnerId is the track's TrackId and its BusId. A row of the
// TrackId is written whatever its SlotNumber; a row of the BusId only when
// its SlotNumber equals the counter, so a bus's slots stop at a gap. Only a
// bus track's rack exists by the rows of its BusId alone.
std::vector<RackTurn> RackTurns(const Track& track, const std::vector<std::size_t>& own,
                                const std::vector<std::size_t>& ofBus, const std::vector<RackSlot>& slots);

}  // namespace morvanta

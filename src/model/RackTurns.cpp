#include "model/RackTurns.h"

namespace morvanta {

std::vector<RackTurn> RackTurns(const Track& track, const std::vector<std::size_t>& own,
                                const std::vector<std::size_t>& ofBus, const std::vector<RackSlot>& slots) {
    std::vector<RackTurn> turns;
    if (own.empty() && (track.BusId <= kBusIdLimit || ofBus.empty())) return turns;
    // The rows of both owners in row order; a bus whose TrackId is its
    // BusId has one list of rows, not two.
    std::int32_t s = 0;
    std::size_t a = 0;
    std::size_t b = track.BusId == track.TrackId ? ofBus.size() : 0;
    while (a < own.size() || b < ofBus.size()) {
        const bool takeOwn = b == ofBus.size() || (a < own.size() && own[a] < ofBus[b]);
        const std::size_t row = takeOwn ? own[a++] : ofBus[b++];
        const bool written = takeOwn || slots[row].SlotNumber == s;
        turns.push_back({row, s, written});
        if (written) ++s;
    }
    return turns;
}

}  // namespace morvanta

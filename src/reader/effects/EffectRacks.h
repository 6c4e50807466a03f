// What the readers of effect lists, older racks and buses share: the three
// routes of an effect (its catalogue, the fallback line, or left out), the
// preset text of a plug-in, and the report of each effect's route.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "reader/ImportSes.h"
#include "reader/effects/Catalogues.h"
#include "reader/effects/EffectTranslation.h"

namespace morvanta {

// The most effect parameter rows one session may ask for. Each effect of a
// file of a few bytes can load a catalogue of hundreds of rows, so a
// damaged file could otherwise ask for gigabytes.
inline constexpr std::size_t kMostRackParameters = 250000;

// The preset text of a plug-in state field: its non-zero bytes read as a
// base-16 text, turned into base64; empty when nothing is left. At most
// 4096 characters.
std::string PresetTextOf(std::string_view field);

// The effect that is being read, for the routes and their report.
struct EffectSource {
    std::string Owner;         // "track 3 \"Vocals\"", "bus 20001 \"Reverb bus\""
    std::string Name;          // the effect's name as the session gives it
    std::int64_t Position{};   // where the effect stands in the file
};

// The catalogue of `name` in `generation`, or nothing. Catalogue faults
// fail the file at the effect's position.
const EffectCatalogue* FindCatalogue(ReadContext& ctx, const EffectSource& source, std::string_view name,
                                     CatalogueGeneration generation);

// The catalogue route: appends `slot` (its name and component id replaced
// by the catalogue's when it has parameters) and the catalogue's rows with
// `parameterSlotNumber`, and reports the route.
EffectRows AppendCatalogueEffect(ReadContext& ctx, const EffectSource& source, const EffectCatalogue& catalogue,
                                 std::string_view fileName, RackSlot slot, std::int32_t parameterSlotNumber);

// The fallback route when the fallback file has a line for `key`, else the
// effect is left out; either way the route is reported.
void AppendFallbackEffect(ReadContext& ctx, const EffectSource& source, std::string_view key, RackSlot slot);

// A fault of an expression, a step or a catalogue as the file's failure at `position`.
[[noreturn]] void FailEffect(const EffectSource& source, std::int64_t position, const std::exception& error);

// Settles the route and the warning of each reported effect against the
// racks that `tracks` will write. A slot that no rack writes (a bus's slot
// behind a gap, a slot whose id no track has) leaves its effect out after
// all; a slot written with parameter rows other than its own (a track's
// effect behind one left out keeps its place number in the file, which no
// longer matches its slot) is written without them. Every effect that does
// not reach the document whole by its catalogue gets a warning.
void SettleEffectReports(const Session& session, const std::vector<Track>& tracks,
                         std::vector<EffectReport>& reports);

// The warnings of settled reports, in their order.
void AppendEffectWarnings(const std::vector<EffectReport>& reports, std::vector<Diagnostic>& warnings);

}  // namespace morvanta

// The routes of an effect into the rack tables, shared by every reader of effects.
#include "reader/effects/EffectRacks.h"

#include "model/Session.h"
#include "reader/ReadError.h"
#include "services/Conversions.h"
#include "services/TextHelpers.h"

namespace morvanta {
namespace {

constexpr std::size_t kPresetWidth = 4096;

void Report(ReadContext& ctx, const EffectSource& source, std::string route) {
    ctx.effects.push_back({source.Owner, source.Name, std::move(route)});
}

}  // namespace

std::string PresetTextOf(std::string_view field) {
    std::string source;
    for (const char c : field)
        if (c != '\0') source += c;
    // The conversion writes into a buffer of a zero and Len + 1 blanks; what
    // it leaves of the blanks stays, and zero characters are taken out.
    std::string target = std::string(1, '\0') + std::string(source.size() + 1, ' ');
    kelb16_to_base64(source, target);
    std::string text = ReplaceAll(std::move(target), std::string_view("\0", 1), "");
    if (TrimBlanks(text).empty()) return {};
    return FixedText(std::move(text), kPresetWidth);
}

const EffectCatalogue* FindCatalogue(ReadContext& ctx, const EffectSource& source, std::string_view name,
                                     CatalogueGeneration generation) {
    if (!ctx.catalogues) return nullptr;
    try {
        return ctx.catalogues->Find(name, generation);
    } catch (const CatalogueError& error) {
        FailEffect(source, source.Position, error);
    }
}

EffectRows AppendCatalogueEffect(ReadContext& ctx, const EffectSource& source, const EffectCatalogue& catalogue,
                                 std::string_view fileName, RackSlot slot, std::int32_t parameterSlotNumber) {
    Session& s = ctx.session;
    if (s.RackParameters.size() + catalogue.Rows.size() > kMostRackParameters) {
        throw ReadError(source.Position, "the effects of the session ask for more than " +
                                             std::to_string(kMostRackParameters) +
                                             " parameter rows; effect \"" + source.Name + "\" on " + source.Owner +
                                             " would pass that");
    }
    EffectRows rows;
    rows.Slot = s.RackSlots.size();
    rows.First = s.RackParameters.size();
    if (!catalogue.Empty) {
        if (!catalogue.Rows.empty()) {
            slot.EffectName = catalogue.Name;
            slot.ComponentId = catalogue.ComponentId;
        }
        slot.EditorHeight = catalogue.Editor.Height;
        slot.EditorLeft = catalogue.Editor.Left;
        slot.EditorTop = catalogue.Editor.Top;
        slot.EditorWidth = catalogue.Editor.Width;
        for (std::size_t i = 0; i < catalogue.Rows.size(); ++i) {
            const CatalogueRow& row = catalogue.Rows[i];
            s.RackParameters.push_back({.OwnerId = slot.OwnerId,
                                        .EffectName = catalogue.Name,
                                        .ParameterIndex = row.ParameterIndex,
                                        .ParameterName = row.ParameterName,
                                        .SesParameterName = row.SesParameterName,
                                        .ValueExpression = row.ValueExpression,
                                        .Value = catalogue.Defaults[i],
                                        .ValueFormat = row.ValueFormat,
                                        .SlotNumber = parameterSlotNumber});
        }
    }
    rows.End = s.RackParameters.size();
    s.RackSlots.push_back(std::move(slot));
    Report(ctx, source, "catalogue " + std::string(fileName));
    return rows;
}

void AppendFallbackEffect(ReadContext& ctx, const EffectSource& source, std::string_view key, RackSlot slot) {
    std::optional<FallbackEntry> entry;
    if (ctx.catalogues) {
        try {
            entry = ctx.catalogues->FindFallback(key);
        } catch (const CatalogueError& error) {
            FailEffect(source, source.Position, error);
        }
    }
    if (!entry) {
        Report(ctx, source, "left out");
        ctx.warnings.push_back({"effect \"" + source.Name + "\" on " + source.Owner +
                                    " is left out: no catalogue and no line in " + std::string(kFallbackFileName) +
                                    " name it",
                                source.Position, ""});
        return;
    }
    slot.ComponentId = entry->ComponentId;
    slot.EditorHeight = entry->Editor.Height;
    slot.EditorLeft = entry->Editor.Left;
    slot.EditorTop = entry->Editor.Top;
    slot.EditorWidth = entry->Editor.Width;
    ctx.session.RackSlots.push_back(std::move(slot));
    const std::string line = "line " + std::to_string(entry->LineNumber) + " of " + std::string(kFallbackFileName);
    Report(ctx, source, "fallback " + line);
    ctx.warnings.push_back({"effect \"" + source.Name + "\" on " + source.Owner +
                                " is written without its parameters, by " + line,
                            source.Position, ""});
}

void FailEffect(const EffectSource& source, std::int64_t position, const std::exception& error) {
    throw ReadError(position, "effect \"" + source.Name + "\" on " + source.Owner + ": " + error.what());
}

}  // namespace morvanta

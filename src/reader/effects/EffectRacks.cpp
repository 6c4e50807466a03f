// The routes of an effect into the rack tables, shared by every reader of effects.
#include "reader/effects/EffectRacks.h"

#include <map>
#include <optional>
#include <utility>

#include "model/RackTurns.h"
#include "model/Session.h"
#include "reader/Assembly.h"
#include "reader/ReadError.h"
#include "services/Conversions.h"
#include "services/TextHelpers.h"

namespace morvanta {
namespace {

constexpr std::size_t kPresetWidth = 4096;

// The route as the reader took it, before any rack is looked at.
std::string RouteAsRead(const EffectReport& report) {
    switch (report.Taken) {
        case EffectRoute::Catalogue: return "catalogue " + report.Source;
        case EffectRoute::Fallback: return "fallback " + report.Source;
        case EffectRoute::LeftOut: break;
    }
    return "left out";
}

void Report(ReadContext& ctx, const EffectSource& source, EffectRoute taken, std::string from = {},
            std::size_t firstParameter = 0) {
    EffectReport report{.Owner = source.Owner,
                        .Effect = source.Name,
                        .Taken = taken,
                        .Source = std::move(from),
                        .Position = source.Position,
                        .SlotRow = ctx.session.RackSlots.size() - (taken == EffectRoute::LeftOut ? 0 : 1),
                        .FirstParameter = firstParameter};
    report.Route = RouteAsRead(report);
    ctx.effects.push_back(std::move(report));
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
    Report(ctx, source, EffectRoute::Catalogue, std::string(fileName), rows.First);
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
        Report(ctx, source, EffectRoute::LeftOut);
        return;
    }
    slot.ComponentId = entry->ComponentId;
    slot.EditorHeight = entry->Editor.Height;
    slot.EditorLeft = entry->Editor.Left;
    slot.EditorTop = entry->Editor.Top;
    slot.EditorWidth = entry->Editor.Width;
    ctx.session.RackSlots.push_back(std::move(slot));
    Report(ctx, source, EffectRoute::Fallback,
           "line " + std::to_string(entry->LineNumber) + " of " + std::string(kFallbackFileName));
}

void FailEffect(const EffectSource& source, std::int64_t position, const std::exception& error) {
    throw ReadError(position, "effect \"" + source.Name + "\" on " + source.Owner + ": " + error.what());
}

namespace {

// The tracks as the assembly will make them of the track and bus records.
std::vector<Track> PlannedTracks(const Session& session) {
    Session planned;
    planned.SesVersion = session.SesVersion;
    planned.SesTracks = session.SesTracks;
    planned.SesBuses = session.SesBuses;
    AssembleTracks(planned);
    return std::move(planned.Tracks);
}

// A text without its blanks at both ends, as the writer compares names.
std::string_view Trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

// The turn that decides each slot row: its first written one, else its
// first one; none when no rack of the document looks at the row. The
// writer writes every track but the video track, and the first master
// track only.
std::vector<std::optional<RackTurn>> DecidingTurns(const Session& s, const std::vector<Track>& tracks) {
    std::map<std::int32_t, std::vector<std::size_t>> rowsOf;
    for (std::size_t r = 0; r < s.RackSlots.size(); ++r) rowsOf[s.RackSlots[r].OwnerId].push_back(r);
    const std::vector<std::size_t> none;
    auto rowsOfOwner = [&](std::int32_t id) -> const std::vector<std::size_t>& {
        const auto it = rowsOf.find(id);
        return it == rowsOf.end() ? none : it->second;
    };
    std::vector<std::optional<RackTurn>> deciding(s.RackSlots.size());
    bool masterSeen = false;
    for (const Track& track : tracks) {
        if (track.TrackId == kVideoTrackId) continue;
        if (track.TrackId == kMasterTrackId) {
            if (masterSeen) continue;
            masterSeen = true;
        }
        for (const RackTurn& turn :
             RackTurns(track, rowsOfOwner(track.TrackId), rowsOfOwner(track.BusId), s.RackSlots)) {
            std::optional<RackTurn>& d = deciding[turn.Row];
            if (!d || (turn.Written && !d->Written)) d = turn;
        }
    }
    return deciding;
}

// Why a slot row is written by no rack.
std::string NotWrittenReason(const RackSlot& slot, const std::optional<RackTurn>& turn) {
    if (!turn && slot.OwnerId == kVideoTrackId) return "the video track has no effects rack";
    if (!turn) return "no track of the document has the id " + std::to_string(slot.OwnerId) + " that its slot carries";
    const std::string effect = "effect " + std::to_string(slot.SlotNumber + 1) + " of the bus's rack";
    if (slot.SlotNumber > turn->SlotIndex) {
        return "a bus's slots stop at a gap, and this is " + effect + ", behind the gap at effect " +
               std::to_string(turn->SlotIndex + 1);
    }
    return "it is " + effect + ", a place the bus's slots have passed already";
}

}  // namespace

void SettleEffectReports(const Session& session, const std::vector<Track>& tracks, std::vector<EffectReport>& reports) {
    const std::vector<std::optional<RackTurn>> deciding = DecidingTurns(session, tracks);
    // The parameter rows of each effect: from its first row up to the first
    // row of the next effect read by its catalogue. All rows of an effect
    // carry its owner and one slot number, so the effects are indexed by
    // those two.
    std::vector<std::size_t> ends(reports.size());
    for (std::size_t i = reports.size(), end = session.RackParameters.size(); i-- > 0;) {
        ends[i] = end;
        if (reports[i].Taken == EffectRoute::Catalogue) end = reports[i].FirstParameter;
    }
    std::map<std::pair<std::int32_t, std::int32_t>, std::vector<std::size_t>> effectsOf;
    for (std::size_t i = 0; i < reports.size(); ++i) {
        if (reports[i].Taken != EffectRoute::Catalogue || reports[i].FirstParameter == ends[i]) continue;
        const RackParameter& first = session.RackParameters[reports[i].FirstParameter];
        effectsOf[{first.OwnerId, first.SlotNumber}].push_back(i);
    }
    // The rows of effect i that a slot of the trimmed `name` takes: those
    // of that effect name, with a parameter name.
    const auto rowsOf = [&](std::size_t i, std::string_view name, std::vector<std::size_t>& rows) {
        for (std::size_t r = reports[i].FirstParameter; r < ends[i]; ++r) {
            const RackParameter& p = session.RackParameters[r];
            if (Trimmed(p.EffectName) == name && !Trimmed(p.ParameterName).empty()) rows.push_back(r);
        }
    };

    for (std::size_t i = 0; i < reports.size(); ++i) {
        EffectReport& report = reports[i];
        const std::string effect = "effect \"" + report.Effect + "\" on " + report.Owner;
        report.Route = RouteAsRead(report);
        if (report.Taken == EffectRoute::LeftOut) {
            report.Warning = effect + " is left out: no catalogue and no line in " + std::string(kFallbackFileName) +
                             " name it";
            continue;
        }
        const RackSlot& slot = session.RackSlots[report.SlotRow];
        const std::optional<RackTurn>& turn = deciding[report.SlotRow];
        if (!turn || !turn->Written) {
            const std::string reason = NotWrittenReason(slot, turn);
            report.Route = "left out (" + report.Route + "): " + reason;
            report.Warning = effect + " is left out: " + reason;
            continue;
        }
        // What the slot is written with, against what the effect brought.
        const std::string_view name = Trimmed(slot.EffectName);
        std::vector<std::size_t> own;
        if (report.Taken == EffectRoute::Catalogue)
            for (std::size_t r = report.FirstParameter; r < ends[i]; ++r)
                if (!Trimmed(session.RackParameters[r].ParameterName).empty()) own.push_back(r);
        std::vector<std::size_t> written;
        if (const auto found = effectsOf.find({slot.OwnerId, turn->SlotIndex}); found != effectsOf.end())
            for (const std::size_t other : found->second) rowsOf(other, name, written);
        const std::string slotIndex = std::to_string(turn->SlotIndex);
        if (written == own) {
            report.Warning = report.Taken == EffectRoute::Fallback
                                 ? effect + " is written without its parameters, by " + report.Source
                                 : std::string();
        } else if (written.empty()) {
            report.Warning = effect + " is written without its parameters: they keep its place in the file's rack, "
                                      "slot number " +
                             std::to_string(session.RackParameters[own.front()].SlotNumber) +
                             ", and its slot is written as slotIndex " + slotIndex;
        } else {
            report.Warning = effect + " is written with the parameters of another effect of its name: its slot is "
                                      "slotIndex " +
                             slotIndex + ", the slot number those parameters keep from the file";
        }
    }
}

void SettlePlannedEffectRoutes(const Session& session, std::vector<EffectReport>& reports) {
    SettleEffectReports(session, PlannedTracks(session), reports);
}

void AppendEffectWarnings(const std::vector<EffectReport>& reports, std::vector<Diagnostic>& warnings) {
    for (const EffectReport& report : reports)
        if (!report.Warning.empty()) warnings.push_back({report.Warning, report.Position, ""});
}

}  // namespace morvanta

// The older writers' effect racks: the chunk "tkfx" of the tracks, and the
// chunks "BUSS" and "buss" of the buses with their racks
// (docs/format/effects.md, "Older racks" and "Buses").
#include "model/VersionClasses.h"
#include "reader/ChunkReaders.h"
#include "reader/ReadError.h"
#include "reader/ReadLimits.h"
#include "reader/effects/EffectRacks.h"
#include "reader/effects/ValueExpression.h"
#include "services/Conversions.h"
#include "services/NumberText.h"
#include "services/TextHelpers.h"

namespace morvanta {
namespace {

constexpr std::int64_t kRackHeadBeforeTexts = 12;   // TrackNumber, 4 bytes, BodyLength
constexpr std::int64_t kRackBodyStart = 24;         // BodyLength counts from here
constexpr std::int64_t kRackFieldsBehindText = 40;  // 4 int32, 2 float64, 2 int32
constexpr std::int64_t kMinimumRackSize = 52;
constexpr std::int64_t kMinimumRackEffectSize = 8;  // two empty texts
constexpr std::int64_t kMinimumBusSize = 56;

// Reading within one chunk, with a budget: in a sound chunk nothing is read
// twice, so everything costs less than twice its size. Lengths that turn the
// walk back over the same bytes fail the file instead of taking for ever.
class ChunkWalk {
public:
    ChunkWalk(ReadContext& ctx, const ChunkHeader& chunk)
        : ctx_(ctx), file_(ctx.file), chunk_(chunk), work_(2 * std::int64_t{chunk.PayloadLength} + 64) {}

    void Spend(std::int64_t units, std::int64_t position) {
        work_ -= units;
        if (work_ >= 0) return;
        throw ReadError(position, "chunk \"" + chunk_.Tag + "\" at offset " + std::to_string(chunk_.Position) +
                                      " reads more than twice its own " + std::to_string(chunk_.PayloadLength) +
                                      " bytes at offset " + std::to_string(position) +
                                      ": its lengths lead over the same bytes again and again");
    }

    // An int32 n and n bytes; `bytes` gets them. Returns the position behind.
    std::int64_t CountedBytes(std::int64_t position, std::string* bytes = nullptr) {
        const std::int64_t n = ReadLength(file_, position, "text");
        file_.Require(position + 4, n, "a counted text");
        Spend(n + 1, position);
        if (bytes) {
            const auto span = file_.Bytes(position + 4, n);
            bytes->assign(span.begin(), span.end());
        }
        return position + 4 + n;
    }

    // An int32 n and n 16-bit units.
    std::int64_t CountedText(std::int64_t position, std::string* bytes = nullptr) {
        const std::int32_t n = file_.Int32(position);
        if (n < 0) {
            throw ReadError(position, "the text length " + std::to_string(n) + " at offset " +
                                          std::to_string(position) + " is negative");
        }
        file_.Require(position + 4, 2 * std::int64_t{n}, "a counted text");
        Spend(2 * std::int64_t{n} + 1, position);
        if (bytes) {
            const auto span = file_.Bytes(position + 4, 2 * std::int64_t{n});
            bytes->assign(span.begin(), span.end());
        }
        return position + 4 + 2 * std::int64_t{n};
    }

    // The catalogue route with the positional walk of the values, or the
    // fallback route.
    void Effect(const EffectSource& source, std::int32_t ownerId, std::int32_t slotNumber,
                std::int32_t parameterSlotNumber, const std::string& parameterText, RackForm form) {
        const EffectCatalogue* catalogue = FindCatalogue(ctx_, source, source.Name, CatalogueGeneration::Positional);
        RackSlot slot;
        slot.OwnerId = ownerId;
        slot.EffectName = FixedText(source.Name, 256);
        slot.SlotNumber = slotNumber;
        if (!catalogue) {
            if (form == RackForm::Track) slot.PresetText = PresetTextOf(parameterText);
            AppendFallbackEffect(ctx_, source, source.Name, std::move(slot));
            return;
        }
        EffectRows rows =
            AppendCatalogueEffect(ctx_, source, *catalogue, source.Name + "15.Kelfx", std::move(slot), parameterSlotNumber);
        try {
            TranslatePositionalParameters(ctx_.session, source.Name, catalogue->Name, rows, parameterText, form);
        } catch (const ExpressionError& error) {
            FailEffect(source, source.Position, error);
        } catch (const EffectStepError& error) {
            FailEffect(source, source.Position, error);
        }
    }

    ReadContext& ctx_;
    const ByteReader& file_;

private:
    const ChunkHeader& chunk_;
    std::int64_t work_;
};

std::string UpToZero(const std::string& bytes) { return bytes.substr(0, bytes.find('\0')); }

std::string WithoutZeros(const std::string& bytes) {
    std::string text;
    for (const char c : bytes)
        if (c != '\0') text += c;
    return text;
}

std::string AfterFirstBackslash(const std::string& path) {
    const auto slash = path.find('\\');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

}  // namespace

std::int64_t ReadTrackRackChunk(ReadContext& ctx, const ChunkHeader& chunk) {
    ChunkWalk walk(ctx, chunk);
    const ByteReader& file = ctx.file;
    const std::int32_t count = file.Int32(chunk.PayloadPosition);
    RequireRoomBefore(chunk.End(), "chunk", chunk.PayloadPosition, count, kMinimumRackSize,
                      chunk.PayloadPosition + 4, "rack");
    std::int64_t b = chunk.PayloadPosition + 4;
    for (std::int32_t rack = 1; rack <= count; ++rack) {
        walk.Spend(1, b);
        const std::int32_t trackNumber = file.Int32(b);
        const std::int64_t bodyLength = ReadLength(file, b + 8, "rack body");
        std::int64_t p = walk.CountedBytes(b + kRackHeadBeforeTexts) + kRackFieldsBehindText;
        const std::int32_t effects = file.Int32(p);
        RequireRoomFor(file, p, effects, kMinimumRackEffectSize, p + 4, "rack effect");
        p = walk.CountedBytes(p + 4);
        for (std::int32_t e = 1; e <= effects; ++e) {
            const std::int64_t at = p;
            std::string path;
            std::string parameters;
            p = walk.CountedBytes(walk.CountedBytes(p, &path), &parameters);
            // The owner is the track of the row the rack names: the track
            // chunk stands in front of this one.
            if (trackNumber < 1 || static_cast<std::size_t>(trackNumber) > ctx.session.SesTracks.size()) {
                throw ReadError(b, "the rack at offset " + std::to_string(b) + " belongs to track row " +
                                       std::to_string(trackNumber) + ", but the track chunk read before it has " +
                                       std::to_string(ctx.session.SesTracks.size()) + " tracks");
            }
            const SesTrack& track = ctx.session.SesTracks[static_cast<std::size_t>(trackNumber) - 1];
            const std::int32_t ownerId = track.TrackId + kMasterTrackId;
            const EffectSource source{"track " + std::to_string(ownerId) + " \"" + track.Name + "\"",
                                      AfterFirstBackslash(UpToZero(path)), at};
            walk.Effect(source, ownerId, 0, e - 1, parameters, RackForm::Track);
        }
        b = b + kRackBodyStart + bodyLength;
    }
    return chunk.End();
}

std::int64_t ReadBusChunk(ReadContext& ctx, const ChunkHeader& chunk) {
    ChunkWalk walk(ctx, chunk);
    const ByteReader& file = ctx.file;
    Session& s = ctx.session;
    const bool wide = chunk.Tag == "BUSS";
    const std::int32_t count = file.Int32(chunk.PayloadPosition);
    RequireRoomBefore(chunk.End(), "chunk", chunk.PayloadPosition, count, kMinimumBusSize,
                      chunk.PayloadPosition + 4, "bus");
    std::int64_t p = chunk.PayloadPosition + 4;
    for (std::int32_t b = 1; b <= count; ++b) {
        walk.Spend(1, p);
        const std::int64_t recordLength = ReadLength(file, p, "bus record");
        const std::int64_t r = p + 4;
        std::string nameBytes;
        std::int64_t q = wide ? walk.CountedText(r, &nameBytes) : walk.CountedBytes(r, &nameBytes);
        const std::string name = FixedText(TrimBlanks(WithoutZeros(nameBytes)));
        const double gainHigh = file.Double(q + 16);
        const double gainLow = file.Double(q + 24);
        q += 32;
        double pan = 0;
        double volume = 0;  // dropped
        LeftRightToPanVolA_Old(0.0, 0.0, pan, volume);
        const std::int32_t busId = kBusIdLimit + b;
        const auto index = static_cast<std::size_t>(b) - 1;

        std::int32_t effects = 0;
        std::int64_t rackEnd = 0;
        if (wide) {
            // A new record; the gains and pan go into the record of this place.
            s.SesBuses.push_back({.Name = name, .BusId = busId});
            s.SesBuses[index].GainHigh = gainHigh;
            s.SesBuses[index].GainLow = gainLow;
            s.SesBuses[index].Pan = pan;
            effects = file.Int32(q);
            const std::int64_t k = q + 8;
            rackEnd = k + file.Int32(q + 4);
            q = walk.CountedText(k + 4);
        } else {
            // Updates the record of this place, or makes it; a name stays.
            const std::int64_t countPosition = q + 8;
            effects = file.Int32(countPosition);
            q = walk.CountedBytes(q + 12);
            if (s.SesBuses.size() <= index) s.SesBuses.push_back({.Name = name, .Pan = pan, .BusId = busId});
            s.SesBuses[index].GainHigh = gainHigh;
            s.SesBuses[index].GainLow = gainLow;
            if (!Pro21(s.SesVersion)) effects = 0;
            RequireRoomFor(file, countPosition, effects, kMinimumRackEffectSize, q, "bus effect");
        }
        const std::string busName = s.SesBuses[index].Name;
        for (std::int32_t e = 1; e <= effects; ++e) {
            const std::int64_t at = q;
            std::string path;
            std::string parameters;
            if (wide) {
                // The rack ends where its length says, after the first 8
                // bytes of an effect that does not fit.
                if (q + 8 >= rackEnd) break;
                q = walk.CountedText(walk.CountedText(q + 16, &path), &parameters);
                path = WithoutZeros(path);
            } else {
                q = walk.CountedBytes(walk.CountedBytes(q, &path), &parameters);
                path = WithoutZeros(path);
            }
            // A path with a backslash keeps half of what follows it.
            if (const auto slash = path.find('\\'); slash != std::string::npos) {
                const std::size_t kept = static_cast<std::size_t>(
                    RoundHalfEven(static_cast<double>(path.size() - slash - 1) / 2));
                path.resize(slash + 1 + kept);
            }
            const EffectSource source{"bus " + std::to_string(busId) + " \"" + busName + "\"",
                                      AfterFirstBackslash(path), at};
            walk.Effect(source, busId, e - 1, e - 1, parameters, RackForm::Bus);
        }
        p = r + recordLength;
    }
    return chunk.End();
}

}  // namespace morvanta

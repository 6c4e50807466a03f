// The container walk, the dispatcher and the version gate
// (docs/format/container.md).
#include "reader/ImportSes.h"

#include <array>
#include <cstring>
#include <optional>

#include "model/VersionClasses.h"
#include "reader/ChunkReaders.h"
#include "reader/ReadError.h"
#include "reader/effects/Catalogues.h"
#include "services/TextHelpers.h"

namespace morvanta {
namespace {

// Thrown by the gate to end the walk of a refused file.
struct VersionRefused {};
// Thrown by the gate in probe mode: chunks behind "vers" are not looked at.
struct ProbeDone {};

std::int64_t ReadVersionChunk(ReadContext& ctx, const ChunkHeader& chunk) {
    // Zero bytes are dropped, not taken as the end of the text.
    ctx.session.SesVersion = ctx.file.NonZeroBytes(chunk.PayloadPosition, chunk.PayloadLength);
    ctx.session.VersionRead = true;
    if (ctx.VersionOnly) throw ProbeDone{};
    if (!IsAcceptedVersion(ctx.session.SesVersion)) throw VersionRefused{};
    return chunk.End();
}

bool Always(const ReadContext&) { return true; }
bool NonEnglishOn(const ReadContext& ctx) { return ctx.options.NonEnglish; }
bool Bk20Layout(const ReadContext& ctx) {
    const auto& v = ctx.session.SesVersion;
    return Pro20(v) || Pro21(v) || Aud10(v);
}
bool IsCe2000(const ReadContext& ctx) { return Ce2000(ctx.session.SesVersion); }
bool NotPro200(const ReadContext& ctx) { return !Pro200(ctx.session.SesVersion); }
bool NoEnvelopePointsYet(const ReadContext& ctx) { return ctx.session.EnvelopePoints.empty(); }

struct Route {
    std::string_view Tag;
    bool (*Applies)(const ReadContext&);
    ChunkReader Read;
};

// Tried from the top; the first row whose tag matches and whose condition
// holds takes the chunk. A tag without a row is stepped over.
constexpr std::array kRoutes{
    Route{"hdr ", Always, ReadHeaderChunk},
    Route{"vers", Always, ReadVersionChunk},
    Route{"stat", Always, ReadStatChunk},
    Route{"tmpo", Always, ReadTempoChunk},
    Route{"BUSS", Always, ReadBusChunk},
    Route{"buss", Always, ReadBusChunk},
    Route{"TRKM", Always, SkipChunk},
    Route{"trks", Always, ReadTrackChunk},
    Route{"TRKS", Always, ReadTrackChunk},
    Route{"WLST", NonEnglishOn, ReadWideWaveList},
    Route{"LIST", Always, ReadWaveList},
    Route{"grps", Always, ReadGroupChunk},
    Route{"grp2", Always, ReadGroupChunk},
    Route{"bk25", Always, ReadBk25Chunk},
    Route{"bk20", Bk20Layout, ReadBk20Chunk},
    Route{"bk20", Always, ReadBk25Chunk},
    Route{"blk2", IsCe2000, ReadBlk2Chunk},
    Route{"blk ", NotPro200, ReadBlkChunk},
    Route{"tkeq", Always, ReadTkeqChunk},
    Route{"tkfx", Always, ReadTrackRackChunk},
    Route{"TKFX", Always, SkipChunk},
    Route{"ep20", Always, ReadEp20Chunk},
    Route{"envp", NoEnvelopePointsYet, ReadEnvpChunk},
    Route{"loop", Always, ReadLoopChunk},
    Route{"cues", Always, ReadCueChunk},
    Route{"mtro", Always, ReadMetronomeChunk},
    Route{"MTRO", Always, SkipChunk},
};

ChunkReader RouteFor(const ReadContext& ctx, const std::string& tag) {
    for (const Route& route : kRoutes)
        if (route.Tag == tag && route.Applies(ctx)) return route.Read;
    return SkipChunk;
}

std::string Quoted(const std::string& tag) {
    std::string text = "\"";
    for (char c : tag) {
        const auto u = static_cast<unsigned char>(c);
        if (u >= 32 && u < 127) text += c;
        else text += "\\x" + HexByte(u);
    }
    return text + "\"";
}

// The walk itself. Throws ReadError, VersionRefused or ProbeDone.
void WalkChunks(ReadContext& ctx) {
    const ByteReader& file = ctx.file;
    std::int64_t position = kFirstChunkOffset;
    // The test is on the offset of the next chunk plus one: the walk ends one
    // byte before a test of the position alone would.
    while (position + 1 < ctx.DeclaredLength) {
        if (!file.Contains(position, 8)) {
            throw ReadError(position, "the chunk header of 8 bytes at offset " +
                                          std::to_string(position) +
                                          " runs past the end of the file (" +
                                          std::to_string(file.Size()) + " bytes; the header declares " +
                                          std::to_string(ctx.DeclaredLength) + ")");
        }
        ChunkHeader chunk;
        chunk.Tag = file.Tag(position);
        chunk.Position = position;
        chunk.PayloadPosition = position + 8;
        chunk.PayloadLength = file.Int32(position + 4);
        if (ctx.visited) ctx.visited->push_back(chunk);

        std::int64_t next = 0;
        try {
            next = RouteFor(ctx, chunk.Tag)(ctx, chunk);
        } catch (ReadError& error) {
            if (error.ChunkTag.empty()) error.ChunkTag = chunk.Tag;
            throw;
        }
        if (next <= position) {
            ReadError error(position, "chunk " + Quoted(chunk.Tag) + " at offset " +
                                          std::to_string(position) + " has length " +
                                          std::to_string(chunk.PayloadLength) +
                                          ", which does not move the walk forward");
            error.ChunkTag = chunk.Tag;
            throw error;
        }
        if (next > file.Size() && next + 1 < ctx.DeclaredLength) {
            ReadError error(position, "chunk " + Quoted(chunk.Tag) + " at offset " +
                                          std::to_string(position) + " ends at offset " +
                                          std::to_string(next) + ", past the end of the file (" +
                                          std::to_string(file.Size()) + " bytes)");
            error.ChunkTag = chunk.Tag;
            throw error;
        }
        position = next;
    }
}

void Fail(ImportResult& result, const ReadError& error) {
    result.Status = ImportStatus::Failed;
    result.Message = error.what();
    result.ErrorOffset = error.Offset;
    result.ErrorChunk = error.ChunkTag;
}

}  // namespace

std::int64_t SkipChunk(ReadContext&, const ChunkHeader& chunk) { return chunk.End(); }

ImportResult ReadSesBytes(std::span<const std::uint8_t> bytes, Session& session,
                          const ConvertOptions& options, bool VersionOnly,
                          std::vector<ChunkHeader>* visited) {
    session = Session{};
    ImportResult result;
    const ByteReader file(bytes);

    if (file.Size() < static_cast<std::int64_t>(kSesMagic.size()) ||
        std::memcmp(bytes.data(), kSesMagic.data(), kSesMagic.size()) != 0) {
        result.Result = -1;
        result.Status = ImportStatus::NotSession;
        result.Message = "not a session file: it does not start with \"COOLNESS\"";
        return result;
    }

    try {
        ReadContext ctx{session, file, options, VersionOnly, 0, result.Warnings, visited};
        // A run shares one store between its files; a single file reads its own.
        std::optional<CatalogueStore> ownStore;
        ctx.catalogues = options.Catalogues.get();
        if (!ctx.catalogues && !options.CatalogueFolder.empty())
            ctx.catalogues = &ownStore.emplace(options.CatalogueFolder);
        ctx.DeclaredLength = file.Int32(8);
        struct KeepEffects {
            ReadContext& ctx;
            ImportResult& result;
            ~KeepEffects() { result.Effects = std::move(ctx.effects); }
        } keep{ctx, result};
        WalkChunks(ctx);
        result.Status = VersionOnly ? ImportStatus::Probed : ImportStatus::Converted;
    } catch (const ProbeDone&) {
        result.Status = ImportStatus::Probed;
    } catch (const VersionRefused&) {
        result.Status = ImportStatus::Refused;
        result.Message = session.SesVersion + " is not currently supported";
    } catch (const ReadError& error) {
        Fail(result, error);
    }
    result.VersionRead = session.VersionRead;
    result.Version = session.SesVersion;
    return result;
}

std::string DescribeFailure(const std::string& path, const ImportResult& result) {
    std::string text = path + ": ";
    if (result.ErrorOffset >= 0) text += "offset " + std::to_string(result.ErrorOffset) + " ";
    if (!result.ErrorChunk.empty()) text += "(chunk " + Quoted(result.ErrorChunk) + ") ";
    if (result.ErrorOffset >= 0 || !result.ErrorChunk.empty()) text.back() = ':', text += ' ';
    return text + result.Message;
}

}  // namespace morvanta

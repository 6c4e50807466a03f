// The container walk, the dispatcher and the version gate
// (docs/format/container.md), and the conversion of one whole file.
#include "reader/ImportSes.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <new>
#include <optional>

#include "model/VersionClasses.h"
#include "reader/Assembly.h"
#include "reader/ChunkReaders.h"
#include "reader/ReadError.h"
#include "services/AtomicFile.h"
#include "writer/ExportSesx.h"

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
        if (u >= 32 && u < 127) {
            text += c;
        } else {
            static constexpr char kHex[] = "0123456789ABCDEF";
            text += "\\x";
            text += kHex[u >> 4];
            text += kHex[u & 15];
        }
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
        ctx.DeclaredLength = file.Int32(8);
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

ImportResult ConvertSesBytes(std::span<const std::uint8_t> bytes, const ConvertOptions& options,
                             const std::string& SourcePath, const std::string& OutputPath) {
    Session session;
    ImportResult result = ReadSesBytes(bytes, session, options);
    if (result.Status != ImportStatus::Converted) return result;
    try {
        session.SourcePath = SourcePath;
        AssembleSession(session, options, result.Warnings);
        result.Document = ExportSesxFile(session, options, OutputPath, result.Warnings);
    } catch (const ReadError& error) {
        Fail(result, error);
    } catch (const DocumentTooLarge& error) {
        result.Status = ImportStatus::Failed;
        result.Message = error.what();
    }
    return result;
}

namespace {

// Whether the walk of a probe steps over a chunk of this tag by its
// PayloadLength, whatever the chunk holds: "hdr " stores nothing in a probe,
// and a tag without a reader of its own is skipped. Any other reader may move
// on by a length of its own ("LIST", "TRKS", an empty "WLST").
bool ProbeStepsOver(const std::string& tag) {
    if (tag == "hdr ") return true;
    for (const Route& route : kRoutes)
        if (route.Tag == tag && route.Read != SkipChunk) return false;
    return true;
}

// The probe reads chunk headers only, by seeking, so a scan of a large archive
// never loads whole files. It stops at "vers". Nothing is returned when a
// chunk ahead of "vers" needs its reader: then the whole file is walked.
std::optional<ImportResult> ProbeSesFile(std::ifstream& in) {
    ImportResult result;
    std::array<char, 12> head{};
    in.read(head.data(), head.size());
    const auto got = in.gcount();
    if (got < static_cast<std::streamsize>(kSesMagic.size()) ||
        std::memcmp(head.data(), kSesMagic.data(), kSesMagic.size()) != 0) {
        result.Result = -1;
        result.Status = ImportStatus::NotSession;
        result.Message = "not a session file: it does not start with \"COOLNESS\"";
        return result;
    }
    auto int32At = [](const char* p) {
        std::uint32_t u = 0;
        for (int i = 3; i >= 0; --i) u = (u << 8) | static_cast<unsigned char>(p[i]);
        return static_cast<std::int32_t>(u);
    };
    if (got < 12) {
        result.Status = ImportStatus::Failed;
        result.ErrorOffset = 8;
        result.Message = "a 32-bit integer of 4 bytes at offset 8 runs past the end of the file (" +
                         std::to_string(got - 8) + " bytes left)";
        return result;
    }
    const std::int32_t declaredLength = int32At(head.data() + 8);
    std::int64_t position = kFirstChunkOffset;
    while (position + 1 < declaredLength) {
        std::array<char, 8> header{};
        in.seekg(position);
        in.read(header.data(), header.size());
        if (in.gcount() < 8) {
            result.Status = ImportStatus::Failed;
            result.ErrorOffset = position;
            result.Message = "the chunk header of 8 bytes at offset " + std::to_string(position) +
                             " runs past the end of the file";
            return result;
        }
        const std::string tag(header.data(), 4);
        const std::int32_t length = int32At(header.data() + 4);
        if (tag != "vers" && !ProbeStepsOver(tag)) return std::nullopt;
        if (tag == "vers") {
            if (length < 0 || length > (1 << 20)) {
                result.Status = ImportStatus::Failed;
                result.ErrorOffset = position;
                result.ErrorChunk = tag;
                result.Message = "the version chunk at offset " + std::to_string(position) +
                                 " declares an absurd length of " + std::to_string(length);
                return result;
            }
            std::string payload(static_cast<std::size_t>(length), '\0');
            in.read(payload.data(), length);
            if (in.gcount() < length) {
                result.Status = ImportStatus::Failed;
                result.ErrorOffset = position + 8;
                result.ErrorChunk = tag;
                result.Message = "the version text of " + std::to_string(length) + " bytes at offset " +
                                 std::to_string(position + 8) + " runs past the end of the file";
                return result;
            }
            for (char c : payload)
                if (c != '\0') result.Version += c;
            result.VersionRead = true;
            result.Status = ImportStatus::Probed;
            return result;
        }
        const std::int64_t next = position + 8 + length;
        if (next <= position) {
            result.Status = ImportStatus::Failed;
            result.ErrorOffset = position;
            result.ErrorChunk = tag;
            result.Message = "chunk at offset " + std::to_string(position) + " has length " +
                             std::to_string(length) + ", which does not move the walk forward";
            return result;
        }
        position = next;
    }
    result.Status = ImportStatus::Probed;  // no "vers": the version stays unknown
    return result;
}

}  // namespace

namespace {

ImportResult ImportOneFile(const std::filesystem::path& SesPath, const std::filesystem::path& OutputPath,
                           bool VersionOnly, const ConvertOptions& options) {
    std::ifstream in(SesPath, std::ios::binary);
    if (!in) {
        ImportResult result;
        result.Status = ImportStatus::Failed;
        result.Message = std::string("cannot open the file: ") + std::strerror(errno);
        return result;
    }
    if (VersionOnly) {
        if (std::optional<ImportResult> probe = ProbeSesFile(in)) return *probe;
        in.clear();
        in.seekg(0);
    }

    std::error_code ec;
    const auto size = std::filesystem::file_size(SesPath, ec);
    // Positions in a session file are 32-bit, so no session is longer than
    // this. A larger file is refused before it is read into memory.
    constexpr std::uintmax_t kLongestSessionFile = 2147483647;
    if (!ec && size > kLongestSessionFile) {
        ImportResult result;
        result.Status = ImportStatus::Failed;
        result.Message = "the file has " + std::to_string(size) + " bytes, more than the " +
                         std::to_string(kLongestSessionFile) + " of the longest session file";
        return result;
    }
    std::vector<std::uint8_t> bytes;
    if (!ec) {
        bytes.resize(static_cast<std::size_t>(size));
        in.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
        bytes.resize(static_cast<std::size_t>(in.gcount()));
    }
    if (ec || in.bad()) {
        ImportResult result;
        result.Status = ImportStatus::Failed;
        result.Message = "cannot read the file" + (ec ? ": " + ec.message() : std::string());
        return result;
    }
    in.close();

    if (VersionOnly) {
        Session session;
        return ReadSesBytes(bytes, session, options, true);
    }
    ImportResult result = ConvertSesBytes(bytes, options, SesPath.string(), OutputPath.string());
    if (result.Status != ImportStatus::Converted) return result;
    try {
        WriteFileAtomically(OutputPath, result.Document);
    } catch (const std::exception& error) {
        result.Status = ImportStatus::Failed;
        result.Message = error.what();
    }
    return result;
}

}  // namespace

ImportResult ImportSesFile(const std::filesystem::path& SesPath,
                           const std::filesystem::path& OutputPath, bool VersionOnly,
                           const ConvertOptions& options) {
    // The readers fail a bad file with its offset. Anything else that goes
    // wrong on the way, such as memory running out for a very large file,
    // still fails this file alone, so that a batch goes on.
    try {
        return ImportOneFile(SesPath, OutputPath, VersionOnly, options);
    } catch (const std::bad_alloc&) {
        ImportResult result;
        result.Status = ImportStatus::Failed;
        result.Message = "there is not enough memory to convert the file";
        return result;
    } catch (const std::exception& error) {
        ImportResult result;
        result.Status = ImportStatus::Failed;
        result.Message = std::string("the file could not be converted: ") + error.what();
        return result;
    }
}

std::string DescribeFailure(const std::string& path, const ImportResult& result) {
    std::string text = path + ": ";
    if (result.ErrorOffset >= 0) text += "offset " + std::to_string(result.ErrorOffset) + " ";
    if (!result.ErrorChunk.empty()) text += "(chunk " + Quoted(result.ErrorChunk) + ") ";
    if (result.ErrorOffset >= 0 || !result.ErrorChunk.empty()) text.back() = ':', text += ' ';
    return text + result.Message;
}

}  // namespace morvanta

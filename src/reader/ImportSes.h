// The entry to the reader: the container walk, the dispatch of each chunk to
// its reader and the version gate. run/ConvertFile.h takes a file through
// the whole conversion.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "model/ConvertOptions.h"
#include "model/Diagnostic.h"
#include "model/Session.h"
#include "reader/ByteReader.h"

namespace morvanta {

inline constexpr std::string_view kSesMagic = "COOLNESS";
inline constexpr std::int64_t kFirstChunkOffset = 12;
inline constexpr std::string_view kRefusalCaption = "Importing Audition Session file";

struct ChunkHeader {
    std::string Tag;
    std::int64_t Position{};         // offset of the tag
    std::int64_t PayloadPosition{};  // Position + 8
    std::int32_t PayloadLength{};
    std::int64_t End() const { return PayloadPosition + PayloadLength; }
};

class CatalogueStore;

// How the reader took an effect into the rack tables.
enum class EffectRoute { LeftOut, Catalogue, Fallback };

// The route one effect of the session took: its catalogue, a fallback line,
// or none (the effect is left out). A slot that no rack of the document
// writes leaves its effect out all the same; the route says so once it is
// settled against the tracks (reader/effects/EffectRacks.h).
struct EffectReport {
    std::string Owner;   // "track 3 \"Vocals\"", "bus 20001 \"Reverb bus\""
    std::string Effect;  // the name the session gives it
    // "catalogue Reverb30.Kelfx", "fallback line 4 of EverythingElse30.Kelfx",
    // "left out", or "left out (catalogue Amplify15.Kelfx): <why no rack writes it>"
    std::string Route{};
    // What the conversion warns about it; empty when it reaches the
    // document whole, by its catalogue.
    std::string Warning{};

    // Where the reader put it.
    EffectRoute Taken = EffectRoute::LeftOut;
    std::string Source;              // "Reverb30.Kelfx", "line 4 of EverythingElse30.Kelfx"
    std::int64_t Position = -1;      // where the effect stands in the file
    std::size_t SlotRow = 0;         // its RackSlots row, unless it is left out
    std::size_t FirstParameter = 0;  // its first RackParameters row, by its catalogue
};

// What a chunk reader works with. Readers take positions from the chunk and
// return the position of the next chunk.
struct ReadContext {
    Session& session;
    const ByteReader& file;
    const ConvertOptions& options;
    bool VersionOnly = false;
    std::int32_t DeclaredLength = 0;
    std::vector<Diagnostic>& warnings;
    std::vector<ChunkHeader>* visited = nullptr;  // filled when asked for (morvanta info)
    // Bytes of name buffers the wave lists have read so far in this file.
    std::int64_t WaveNameBytes = 0;
    // The effect catalogues; none when no folder is set.
    CatalogueStore* catalogues = nullptr;
    std::vector<EffectReport> effects{};
};

using ChunkReader = std::int64_t (*)(ReadContext&, const ChunkHeader&);

enum class ImportStatus {
    Converted,   // a document was made
    Probed,      // probe mode: the walk ended at "vers" or at the end
    NotSession,  // the file does not start with "COOLNESS"
    Refused,     // the version gate said no
    Failed,      // the file could not be read or written
};

struct ImportResult {
    int Result = 0;  // -1 when the magic does not match, 0 in every other case
    ImportStatus Status = ImportStatus::Failed;
    bool VersionRead = false;
    std::string Version;   // the "vers" text, when one was read
    std::string Message;   // refusal or failure, ready to show
    std::int64_t ErrorOffset = -1;
    std::string ErrorChunk;
    std::vector<Diagnostic> Warnings;
    std::vector<EffectReport> Effects;  // in reading order
    std::string Document;  // the finished document
};

// Walks the chunks of a file held in memory and fills `session` (reset first).
// No assembly, no writer. Faults are reported in the result, never thrown.
// The effects' routes are those the reader took; the conversion settles
// them against its racks and warns (run/ConvertFile.h), and a read that is
// not converted settles them with SettlePlannedEffectRoutes.
// With VersionOnly the walk is the probe: it ends at the version chunk, and
// the result is Probed (with or without a version), NotSession or Failed.
ImportResult ReadSesBytes(std::span<const std::uint8_t> bytes, Session& session,
                          const ConvertOptions& options, bool VersionOnly = false,
                          std::vector<ChunkHeader>* visited = nullptr);

// Settles the routes of a read's effects against the racks of the tracks
// the assembly would make of `session`, for a read that is not assembled
// (`morvanta info`): the routes a conversion of the file reports.
void SettlePlannedEffectRoutes(const Session& session, std::vector<EffectReport>& reports);

// "<file>: offset N (chunk "TAG"): message" for a failed result.
std::string DescribeFailure(const std::string& path, const ImportResult& result);

}  // namespace morvanta

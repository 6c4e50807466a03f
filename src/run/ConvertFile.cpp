// The pipeline of one file, from the bytes of a session to the document on disk.
#include "run/ConvertFile.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <new>
#include <vector>

#include "reader/Assembly.h"
#include "reader/ReadError.h"
#include "reader/effects/EffectRacks.h"
#include "services/MarkupCheck.h"
#include "services/Platform.h"
#include "services/Recoding.h"
#include "services/TextHelpers.h"
#include "writer/ExportSesx.h"

namespace morvanta {
namespace {

// Positions in a session file are 32-bit, so no session is longer than
// this. A larger file is refused before it is read into memory.
constexpr std::uintmax_t kLongestSessionFile = 2147483647;

// What the probe reads first. The version chunk stands near the start of
// every session file, so the head almost always holds it.
constexpr std::size_t kProbeHeadBytes = 64 * 1024;

ImportResult Failure(std::string message) {
    ImportResult result;
    result.Status = ImportStatus::Failed;
    result.Message = std::move(message);
    return result;
}

// Up to `limit` bytes from the start of the file; the file's size in `size`.
// Throws ImportResult for a file that cannot be opened or read.
std::vector<std::uint8_t> ReadBytes(const std::filesystem::path& path, std::uintmax_t limit, std::uintmax_t& size) {
    std::ifstream in(path, std::ios::binary);
    if (!in) throw Failure(std::string("cannot open the file: ") + std::strerror(errno));
    std::error_code ec;
    size = std::filesystem::file_size(path, ec);
    if (ec) throw Failure("cannot read the file: " + ec.message());
    if (size > kLongestSessionFile) {
        throw Failure("the file has " + std::to_string(size) + " bytes, more than the " +
                      std::to_string(kLongestSessionFile) + " of the longest session file");
    }
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(std::min(size, limit)));
    in.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    if (in.bad()) throw Failure("cannot read the file");
    bytes.resize(static_cast<std::size_t>(in.gcount()));
    return bytes;
}

// The document read in `charset` and given back as UTF-8. Its <name> is
// the target's file name, not a text of the session: a name that is UTF-8
// already (every name on Windows, and most elsewhere) stays as it is; one
// that is not is taken to be in the charset, as the rest of the document.
std::string RecodeDocument(std::string_view document, TextSpan name, std::string_view charset) {
    const std::string_view nameText = document.substr(name.Begin, name.Size);
    if (!IsUtf8(nameText)) return RecodeToUtf8(document, charset);
    // The name lies between the markup's ASCII, where no character of
    // these charsets is cut in two.
    return RecodeToUtf8(document.substr(0, name.Begin), charset) + std::string(nameText) +
           DecodeText(document.substr(name.Begin + name.Size), charset);
}

ImportResult ConvertInMemory(std::span<const std::uint8_t> bytes, const ConvertOptions& options,
                             const std::string& SourcePath, const std::string& OutputPath) {
    Session session;
    ImportResult result = ReadSesBytes(bytes, session, options);
    if (result.Status != ImportStatus::Converted) return result;
    TextSpan name;
    try {
        session.SourcePath = SourcePath;
        AssembleSession(session, options, result.Warnings);
        SettleEffectReports(session, session.Tracks, result.Effects);
        AppendEffectWarnings(result.Effects, result.Warnings);
        result.Document = ExportSesxFile(session, options, OutputPath, result.Warnings, &name);
    } catch (const ReadError& error) {
        result.Status = ImportStatus::Failed;
        result.Message = error.what();
        result.ErrorOffset = error.Offset;
        result.ErrorChunk = error.ChunkTag;
        return result;
    } catch (const DocumentTooLarge& error) {
        result.Status = ImportStatus::Failed;
        result.Message = error.what();
        return result;
    }
    if (!options.Charset.empty()) {
        try {
            result.Document = RecodeDocument(result.Document, name, options.Charset);
        } catch (const std::runtime_error& error) {
            result.Status = ImportStatus::Failed;
            result.Message = "the document could not be recoded from " + options.Charset + ": " + error.what();
            result.Document.clear();
            return result;
        }
    }
    // The document as it will be written, so that a user learns of any
    // place where an XML parser would stop, and of what repairs it.
    const std::vector<Diagnostic> markup = MarkupWarnings(CheckMarkup(result.Document), !options.Charset.empty());
    result.Warnings.insert(result.Warnings.end(), markup.begin(), markup.end());
    return result;
}

ImportResult ProbeFile(const std::filesystem::path& SesPath) {
    std::uintmax_t size = 0;
    std::vector<std::uint8_t> bytes = ReadBytes(SesPath, kProbeHeadBytes, size);
    Session session;
    ImportResult result = ReadSesBytes(bytes, session, {}, true);
    // A walk that ran out of the head needs the rest of the file.
    if (result.Status == ImportStatus::Failed && bytes.size() < size) {
        bytes = ReadBytes(SesPath, kLongestSessionFile, size);
        result = ReadSesBytes(bytes, session, {}, true);
    }
    return result;
}

ImportResult ImportOneFile(const std::filesystem::path& SesPath, const std::filesystem::path& OutputPath,
                           bool VersionOnly, const ConvertOptions& options) {
    if (VersionOnly) return ProbeFile(SesPath);
    std::uintmax_t size = 0;
    const std::vector<std::uint8_t> bytes = ReadBytes(SesPath, kLongestSessionFile, size);
    ImportResult result = ConvertInMemory(bytes, options, SesPath.string(), OutputPath.string());
    if (result.Status != ImportStatus::Converted) return result;
    try {
        WriteFileAtomically(OutputPath, result.Document);
    } catch (const std::exception& error) {
        result.Status = ImportStatus::Failed;
        result.Message = error.what();
    }
    return result;
}

// Anything that goes wrong beyond what the readers report, such as memory
// running out for a very large file, still fails this file alone, so that
// a batch goes on.
template <class Work>
ImportResult Guarded(Work&& work) {
    try {
        return work();
    } catch (const ImportResult& failure) {
        return failure;
    } catch (const std::bad_alloc&) {
        return Failure("there is not enough memory to convert the file");
    } catch (const std::exception& error) {
        return Failure(std::string("the file could not be converted: ") + error.what());
    }
}

}  // namespace

ImportResult ConvertSesBytes(std::span<const std::uint8_t> bytes, const ConvertOptions& options,
                             const std::string& SourcePath, const std::string& OutputPath) {
    return Guarded([&] { return ConvertInMemory(bytes, options, SourcePath, OutputPath); });
}

ImportResult ImportSesFile(const std::filesystem::path& SesPath, const std::filesystem::path& OutputPath,
                           bool VersionOnly, const ConvertOptions& options) {
    return Guarded([&] { return ImportOneFile(SesPath, OutputPath, VersionOnly, options); });
}

ImportResult ProbeSesFile(const std::filesystem::path& SesPath) {
    return Guarded([&] { return ProbeFile(SesPath); });
}

}  // namespace morvanta

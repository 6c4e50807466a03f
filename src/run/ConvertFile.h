// The pipeline of one file: read, assemble, write, recode, and the atomic
// write of the document; and the probe that asks a file for its version.
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>

#include "model/ConvertOptions.h"
#include "reader/ImportSes.h"

namespace morvanta {

// Reads, assembles and writes one session held in memory, and recodes the
// document to UTF-8 when the options name a charset. Each place of the
// finished document that an XML parser would not read is a warning.
// `SourcePath` goes into the closing comment, `OutputPath` names the
// document. Nothing is thrown: every fault fails the result.
ImportResult ConvertSesBytes(std::span<const std::uint8_t> bytes, const ConvertOptions& options,
                             const std::string& SourcePath, const std::string& OutputPath);

// The whole job for one file: read it, and write the document to OutputPath
// atomically, once: a failure at any step leaves an existing document as it
// was. With VersionOnly only the version text is fetched, as ProbeSesFile
// does, and nothing is written.
ImportResult ImportSesFile(const std::filesystem::path& SesPath, const std::filesystem::path& OutputPath,
                           bool VersionOnly, const ConvertOptions& options);

// The version of a session file, from the reader's own walk over the head
// of the file; the whole file is read only when the head does not hold the
// answer. Status is Probed, NotSession or Failed.
ImportResult ProbeSesFile(const std::filesystem::path& SesPath);

}  // namespace morvanta

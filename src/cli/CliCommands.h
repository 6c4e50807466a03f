// The commands of `morvanta`. Each fills an options record from the command
// line (main.cpp) and makes one library call; these functions only present.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace morvanta::cli {

inline constexpr int kExitOk = 0;
inline constexpr int kExitSomeFailed = 1;
inline constexpr int kExitUsage = 2;

enum class OverwriteMode { Ask, All, Skip };

struct ConvertCommand {
    std::vector<std::string> Paths;
    std::string OutFolder;  // empty: beside the sources
    OverwriteMode Overwrite = OverwriteMode::Ask;
    bool NoPathNames = false;
    bool WellFormed = false;
    bool Recursive = false;
    bool Json = false;
    std::string Language;  // a language name or a charset; empty: no recoding
    std::string Catalogues;  // a folder of effect catalogues; empty: the shipped ones
    int Jobs = 0;            // files converted at once; 0: one per core
};

struct ScanCommand {
    std::string Folder;
    bool Recursive = false;
    bool Json = false;
};

struct InfoCommand {
    std::string File;
    bool Json = false;
    bool Model = false;      // print the session value as read instead
    std::string Catalogues;  // as for convert
};

// The language names of the recoding with their charsets, for messages.
std::string LanguageNames();

int RunConvert(const ConvertCommand& command, std::ostream& out, std::ostream& err);
int RunScan(const ScanCommand& command, std::ostream& out, std::ostream& err);
int RunInfo(const InfoCommand& command, std::ostream& out, std::ostream& err);

// JSON string literal of a byte string: valid UTF-8 passes through, other
// bytes are taken as Latin-1.
std::string JsonString(const std::string& text);

}  // namespace morvanta::cli

// Finding session files below a folder and probing their writer versions,
// for the file list of the window and for `morvanta scan`.
#pragma once

#include <array>
#include <cstdint>
#include <ctime>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace morvanta {

// The nine writer versions a list can be narrowed to, in list order.
inline constexpr std::array<std::string_view, 9> kSesFileTypes{
    "Cool Edit 2000 1.0", "Cool Edit Pro 1.2", "Cool Edit Pro 1.2a", "Cool Edit Pro 2.00",
    "Cool Edit Pro 2.1",  "Audition 1.0",      "Audition 1.5",       "Audition 2.0",
    "Audition 3.0",
};
// Every row ticked: bits 1 to 9.
inline constexpr int kAllFileTypesMask = 1022;

// The version text as the list shows it: cut in front of " [", then
// "Audition x.y" or the first 18 characters of a "Cool Edit" text, trimmed.
std::string NormaliseVersion(std::string_view version);

// The 1-based row of kSesFileTypes that governs a normalised version: the
// row equal to it, else the longest row it starts with ("Cool Edit Pro 2.1D"
// is governed by "Cool Edit Pro 2.1"); 0 for none.
int FileTypeRowFor(std::string_view normalisedVersion);

struct FoundSession {
    std::string Folder;  // with a closing separator
    std::string File;
    std::string Version;  // normalised
    std::int64_t Bytes = 0;
    std::time_t Created = 0;  // birth time where the file system keeps one, else last change
    int FileTypeRow = 0;
};

struct ScanProblem {
    std::string Path;
    std::string Message;
    // The file was read, but its head is not sound (cut short, an absurd
    // length): the window passes over it without a word, as over any file
    // the reader rejects; a folder or file that cannot be opened is told.
    bool Rejected = false;
};

struct ScanResult {
    std::vector<FoundSession> Sessions;  // in enumeration order, folder by folder
    std::vector<ScanProblem> Problems;   // folders that could not be read, files that failed the probe
    int FoldersScanned = 0;
};

struct ScanOptions {
    bool Recurse = false;
    int FileTypeMask = kAllFileTypesMask;  // bit i: row i of kSesFileTypes is listed
    // Also list "*.ses" files that are no session, fail the probe or carry a
    // version without a row (FileTypeRow 0), for a run that reports on them.
    bool IncludeUnlisted = false;
    // Called at the start of each folder; returning false stops the scan.
    std::function<bool(const std::string& folder)> OnFolder;
    // Called for each session as it is added, so a list can fill while the
    // scan goes on.
    std::function<void(const FoundSession&)> OnSession;
};

// Lists the "*.ses" files (case-sensitive) of a folder, and of all folders
// below it when asked, that start with "COOLNESS" and carry a version whose
// row is ticked. Hidden and dot entries are passed over; names are taken in
// alphabetical order, a folder's files before its sub-folders.
ScanResult FullDirFileList(const std::string& folder, const ScanOptions& options);

// A folder's text as rows and lines show it, ended by a separator: the
// last one the text holds, else the system's own. On Windows, where both
// "/" and a backslash separate, "D:\Sessions" ends in a backslash and
// "D:/Sessions" in "/"; elsewhere only "/" separates.
std::string WithClosingSeparator(std::string folder);

// "dd/mm/yyyy hh:mm:ss" in local time, and "###,###,###,##0".
std::string FormatCreated(std::time_t time);
std::string FormatBytes(double bytes);

}  // namespace morvanta

// Everything the core and the command line ask of the operating system, in
// one place: PlatformPosix.cpp answers it on Linux and macOS,
// PlatformWindows.cpp on Windows, and no other file includes a system header.
#pragma once

#include <ctime>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace morvanta {

// The path a text of the program names. A text is the bytes of the path on
// POSIX systems; on Windows it is UTF-8, as path::string() gives it there
// (a std::string turned into a path directly would be read byte by byte).
std::filesystem::path PathFromText(const std::string& text);

// The program's arguments as texts (on Windows in UTF-8, from the wide
// command line, so that any file name comes through).
std::vector<std::string> ProgramArguments(int argc, char** argv);

// For as long as it lives, what the program prints reaches a console as
// UTF-8, and the escape sequences of the progress line are obeyed: on
// Windows the console's output code page and its mode are set until the
// object goes, then given back; elsewhere terminals do both already and
// nothing changes.
class Utf8Console {
public:
    Utf8Console();
    ~Utf8Console();
    Utf8Console(const Utf8Console&) = delete;
    Utf8Console& operator=(const Utf8Console&) = delete;

private:
    // What Windows had before; unused elsewhere.
    [[maybe_unused]] unsigned previous_ = 0;
    [[maybe_unused]] unsigned long previousMode_ = 0;
    [[maybe_unused]] bool modeSet_ = false;
};

// When a file was made: its birth time where the file system keeps one,
// else its last change; 0 when the file cannot be asked.
std::time_t FileCreatedTime(const std::filesystem::path& path);

// `time` broken down in the user's time zone.
std::tm LocalTime(std::time_t time);

// Writes a whole file so that readers see either the old file or the new
// one, never a part: a temporary file in the target folder, flushed to the
// disk, then put in the target's place. Throws std::runtime_error with the
// message "Error Writing to File '<target>'.  <reason>" (and the line
// "File may be in use" when the system refused access) on failure; the
// target is then untouched and no temporary file is left behind.
void WriteFileAtomically(const std::filesystem::path& target, std::string_view content);

enum class StandardStream { Input, Output, Error };

// Whether the stream is a terminal (a console window on Windows) that a
// person reads or types at, rather than a file or a pipe.
bool IsTerminal(StandardStream stream);

// The program file of the running process; empty when the system does not say.
std::filesystem::path ProgramFile();

// Two folders as a user of this system writes them, for the examples of
// the program's help: "~/Sessions" and "~/Converted", or on Windows
// "D:\Sessions" and "D:\Converted".
struct ExampleFolders {
    std::string_view Sessions;
    std::string_view Converted;
};
ExampleFolders HelpExampleFolders();

// A short text that tells the user running the program apart from the
// other users of the machine (for names that must not cross between users).
std::string CurrentUserKey();

// One conversion from one charset to another, set up once and used for as
// many texts as the caller has (a whole chunk's names, a whole document).
// The names are those of LanguageTable (services/Recoding.h) and the usual
// forms "windows-1252", "CP1252", "ISO-8859-15", "UTF-8", "UTF-16LE".
class TextConverter {
public:
    TextConverter(std::string_view to, std::string_view from);
    ~TextConverter();
    TextConverter(const TextConverter&) = delete;
    TextConverter& operator=(const TextConverter&) = delete;

    // False when the system does not know one of the two charsets.
    bool Valid() const;

    // Converts all of `in`. A sequence that cannot be converted is stepped
    // over (one byte, or one whole UTF-8 character when `inputIsUtf8`) and
    // `bad` is put out in its place. Throws std::runtime_error on any other fault.
    std::string Convert(std::string_view in, std::string_view bad, bool inputIsUtf8);

    // Appends the conversion of one whole character to `out`; false, with
    // `out` untouched, when the target charset cannot show it.
    bool AppendCharacter(std::string_view in, std::string& out);

private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace morvanta

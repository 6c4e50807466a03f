// The operating system's side of services/Platform.h on Windows: the wide
// (UTF-16) file functions, so that no path passes through the 8-bit code
// page, and the system's code page conversions for the charsets of the
// language table.
#include "services/Platform.h"

#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <io.h>
#include <windows.h>
// After windows.h, which it needs.
#include <shellapi.h>

#include <algorithm>
#include <atomic>
#include <climits>
#include <cstdint>
#include <random>
#include <stdexcept>

#include "services/TextHelpers.h"

namespace morvanta {
namespace {

std::string Utf8(std::wstring_view wide) {
    if (wide.empty()) return {};
    const int size = static_cast<int>(wide.size());
    const int length = ::WideCharToMultiByte(CP_UTF8, 0, wide.data(), size, nullptr, 0, nullptr, nullptr);
    if (length <= 0) return {};
    std::string out(static_cast<std::size_t>(length), '\0');
    ::WideCharToMultiByte(CP_UTF8, 0, wide.data(), size, out.data(), length, nullptr, nullptr);
    return out;
}

// The system's text for an error code, without the line break it ends with.
std::string SystemMessage(DWORD error) {
    wchar_t* buffer = nullptr;
    const DWORD length = ::FormatMessageW(
        FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error, 0,
        reinterpret_cast<wchar_t*>(&buffer), 0, nullptr);
    std::wstring text = length > 0 && buffer != nullptr ? std::wstring(buffer, length) : std::wstring();
    if (buffer != nullptr) ::LocalFree(buffer);
    while (!text.empty() && (text.back() == L'\r' || text.back() == L'\n' || text.back() == L' ')) text.pop_back();
    return text.empty() ? "error " + std::to_string(error) : Utf8(text);
}

std::wstring Wide(const std::string& text) {
    if (text.empty()) return {};
    const int size = static_cast<int>(text.size());
    const int length = ::MultiByteToWideChar(CP_UTF8, 0, text.data(), size, nullptr, 0);
    if (length <= 0) return {};
    std::wstring out(static_cast<std::size_t>(length), L'\0');
    ::MultiByteToWideChar(CP_UTF8, 0, text.data(), size, out.data(), length);
    return out;
}

// 100-nanosecond ticks from 1601 to 1970.
constexpr std::uint64_t kUnixEpochTicks = 116444736000000000ULL;

}  // namespace

std::filesystem::path PathFromText(const std::string& text) { return std::filesystem::path(Wide(text)); }

std::vector<std::string> ProgramArguments(int argc, char** argv) {
    int count = 0;
    wchar_t** wide = ::CommandLineToArgvW(::GetCommandLineW(), &count);
    if (wide == nullptr) return std::vector<std::string>(argv, argv + argc);
    std::vector<std::string> arguments;
    for (int i = 0; i < count; ++i) arguments.push_back(Utf8(wide[i]));
    ::LocalFree(wide);
    return arguments;
}

Utf8Console::Utf8Console() : previous_(::GetConsoleOutputCP()) {
    if (previous_ != 0) ::SetConsoleOutputCP(CP_UTF8);
    DWORD mode = 0;
    const HANDLE error = ::GetStdHandle(STD_ERROR_HANDLE);
    if (::GetConsoleMode(error, &mode)) {
        previousMode_ = mode;
        modeSet_ = ::SetConsoleMode(error, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
    }
}

Utf8Console::~Utf8Console() {
    if (previous_ != 0) ::SetConsoleOutputCP(previous_);
    if (modeSet_) ::SetConsoleMode(::GetStdHandle(STD_ERROR_HANDLE), previousMode_);
}

std::time_t FileCreatedTime(const std::filesystem::path& path) {
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (!::GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data)) return 0;
    FILETIME time = data.ftCreationTime;
    if (time.dwHighDateTime == 0 && time.dwLowDateTime == 0) time = data.ftLastWriteTime;
    const std::uint64_t ticks = (static_cast<std::uint64_t>(time.dwHighDateTime) << 32) | time.dwLowDateTime;
    if (ticks < kUnixEpochTicks) return 0;
    return static_cast<std::time_t>((ticks - kUnixEpochTicks) / 10000000ULL);
}

std::tm LocalTime(std::time_t time) {
    std::tm local{};
    ::localtime_s(&local, &time);
    return local;
}

namespace {

[[noreturn]] void ThrowWriteError(const std::filesystem::path& target, DWORD error) {
    std::string text = "Error Writing to File '" + Utf8(target.native()) + "'.  " + SystemMessage(error);
    if (error == ERROR_ACCESS_DENIED || error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION)
        text += "\n\nFile may be in use";
    throw std::runtime_error(text);
}

// Creates a new file beside the target with a name nobody else uses.
HANDLE CreateTemporary(const std::filesystem::path& target, std::filesystem::path& path) {
    static std::atomic<unsigned> counter{0};
    std::random_device random;
    const auto folder = target.has_parent_path() ? target.parent_path() : std::filesystem::path(L".");
    for (int attempt = 0; attempt < 100; ++attempt) {
        const unsigned tag = random() ^ (counter.fetch_add(1) * 2654435761u);
        const std::string suffix = "." + HexWord(tag);
        path = folder / (L"." + target.filename().native() + std::wstring(suffix.begin(), suffix.end()));
        HANDLE file =
            ::CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
        if (file != INVALID_HANDLE_VALUE || ::GetLastError() != ERROR_FILE_EXISTS) return file;
    }
    ::SetLastError(ERROR_FILE_EXISTS);
    return INVALID_HANDLE_VALUE;
}

}  // namespace

void WriteFileAtomically(const std::filesystem::path& target, std::string_view content) {
    std::filesystem::path temporary;
    HANDLE file = CreateTemporary(target, temporary);
    if (file == INVALID_HANDLE_VALUE) ThrowWriteError(target, ::GetLastError());

    const char* data = content.data();
    std::size_t left = content.size();
    while (left > 0) {
        const DWORD chunk = static_cast<DWORD>(std::min<std::size_t>(left, 1u << 30));
        DWORD written = 0;
        if (!::WriteFile(file, data, chunk, &written, nullptr)) {
            const DWORD error = ::GetLastError();
            ::CloseHandle(file);
            ::DeleteFileW(temporary.c_str());
            ThrowWriteError(target, error);
        }
        data += written;
        left -= written;
    }
    const DWORD flushed = ::FlushFileBuffers(file) ? 0 : ::GetLastError();
    const DWORD closed = ::CloseHandle(file) ? 0 : ::GetLastError();
    if (flushed != 0 || closed != 0) {
        ::DeleteFileW(temporary.c_str());
        ThrowWriteError(target, flushed != 0 ? flushed : closed);
    }
    if (!::MoveFileExW(temporary.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) {
        const DWORD error = ::GetLastError();
        ::DeleteFileW(temporary.c_str());
        ThrowWriteError(target, error);
    }
}

bool IsTerminal(StandardStream stream) {
    const int fd = stream == StandardStream::Input ? 0 : stream == StandardStream::Output ? 1 : 2;
    const DWORD which = stream == StandardStream::Input    ? STD_INPUT_HANDLE
                        : stream == StandardStream::Output ? STD_OUTPUT_HANDLE
                                                           : STD_ERROR_HANDLE;
    // _isatty also holds for the NUL device; only a console has a console mode.
    DWORD mode = 0;
    return ::_isatty(fd) != 0 && ::GetConsoleMode(::GetStdHandle(which), &mode) != 0;
}

ExampleFolders HelpExampleFolders() { return {"D:\\Sessions", "D:\\Converted"}; }

std::filesystem::path ProgramFile() {
    std::wstring buffer(32768, L'\0');
    const DWORD length = ::GetModuleFileNameW(nullptr, buffer.data(), static_cast<DWORD>(buffer.size()));
    if (length == 0 || length >= buffer.size()) return {};
    buffer.resize(length);
    return std::filesystem::path(buffer);
}

std::string CurrentUserKey() {
    wchar_t name[257];
    DWORD size = 257;
    if (!::GetUserNameW(name, &size) || size == 0) return {};
    return Utf8(std::wstring_view(name, size - 1));
}

// ---- Recoding through the system's code pages ----

namespace {

constexpr UINT kUtf16 = 1200;

// The number after `prefix` in `text`, or 0.
UINT NumberAfter(std::string_view text, std::string_view prefix) {
    if (!text.starts_with(prefix) || text.size() == prefix.size() || text.size() > prefix.size() + 5) return 0;
    UINT number = 0;
    for (const char c : text.substr(prefix.size())) {
        if (c < '0' || c > '9') return 0;
        number = number * 10 + static_cast<UINT>(c - '0');
    }
    return number;
}

// The code page of a charset name: those of the language table, and the
// forms windows-NNNN, CPNNNN, ISO-8859-N, UTF-8; 0 for any other name.
UINT CodePageFor(std::string_view charset) {
    const std::string upper = AsciiUpper(charset);
    if (upper == "SHIFT-JIS" || upper == "SHIFT_JIS") return 932;
    if (upper == "X-EUC" || upper == "EUC-JP") return 20932;
    if (upper == "EUC-KR") return 949;
    if (upper == "KOI8-R") return 20866;
    if (upper == "GB2312") return 936;
    if (upper == "BIG5") return 950;
    if (upper == "UTF-8" || upper == "UTF8") return CP_UTF8;
    if (upper == "UTF-16LE") return kUtf16;
    if (const UINT page = NumberAfter(upper, "WINDOWS-"); page != 0) return page;
    if (const UINT page = NumberAfter(upper, "CP"); page != 0) return page;
    if (const UINT part = NumberAfter(upper, "ISO-8859-"); part != 0) {
        if (part <= 9) return 28590 + part;
        if (part == 13 || part == 15) return 28590 + part;
    }
    return 0;
}

// Code pages that keep a state between characters (ISO-2022, UTF-7...):
// the character-by-character reading below cannot take them.
bool IsStateful(UINT page) { return page == 42 || (page >= 50220 && page <= 57011) || page == 65000; }

bool IsUsable(UINT page) { return page == kUtf16 || (page != 0 && !IsStateful(page) && ::IsValidCodePage(page)); }

int Length(std::size_t size) {
    if (size > static_cast<std::size_t>(INT_MAX)) throw std::runtime_error("text too long to recode");
    return static_cast<int>(size);
}

bool IsHighSurrogate(wchar_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool IsLowSurrogate(wchar_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }
bool IsC1(wchar_t unit) { return unit >= 0x80 && unit <= 0x9F; }
bool IsPrivateUse(wchar_t unit) { return unit >= 0xE000 && unit <= 0xF8FF; }

bool IsOneCharacter(std::wstring_view wide) {
    if (wide.size() == 1) return !IsHighSurrogate(wide[0]) && !IsLowSurrogate(wide[0]);
    return wide.size() == 2 && IsHighSurrogate(wide[0]) && IsLowSurrogate(wide[1]);
}

// Appends the UTF-16 of `bytes` in code page `page`; false, with `out`
// untouched, when they hold a sequence the code page does not define or
// one that is cut short.
bool Decode(UINT page, std::string_view bytes, std::wstring& out) {
    if (bytes.empty()) return true;
    if (page == kUtf16) {
        if (bytes.size() % 2 != 0) return false;
        std::wstring units;
        for (std::size_t i = 0; i < bytes.size(); i += 2)
            units.push_back(static_cast<wchar_t>(static_cast<unsigned char>(bytes[i]) |
                                                 (static_cast<unsigned char>(bytes[i + 1]) << 8)));
        for (std::size_t i = 0; i < units.size(); ++i) {
            if (IsLowSurrogate(units[i])) return false;
            if (IsHighSurrogate(units[i]) && (i + 1 == units.size() || !IsLowSurrogate(units[++i]))) return false;
        }
        out += units;
        return true;
    }
    const int size = Length(bytes.size());
    const int length = ::MultiByteToWideChar(page, MB_ERR_INVALID_CHARS, bytes.data(), size, nullptr, 0);
    if (length <= 0) return false;
    const std::size_t at = out.size();
    out.resize(at + static_cast<std::size_t>(length));
    ::MultiByteToWideChar(page, MB_ERR_INVALID_CHARS, bytes.data(), size, out.data() + at, length);
    return true;
}

// Appends `wide` in code page `page`; false, with `out` untouched, when
// the code page cannot show one of its characters.
bool Encode(UINT page, std::wstring_view wide, std::string& out) {
    if (wide.empty()) return true;
    if (page == kUtf16) {
        for (const wchar_t unit : wide) {
            out.push_back(static_cast<char>(unit & 0xFF));
            out.push_back(static_cast<char>((unit >> 8) & 0xFF));
        }
        return true;
    }
    const bool utf8 = page == CP_UTF8;
    const DWORD flags = utf8 ? WC_ERR_INVALID_CHARS : WC_NO_BEST_FIT_CHARS;
    BOOL usedDefault = FALSE;
    const int size = Length(wide.size());
    const int length =
        ::WideCharToMultiByte(page, flags, wide.data(), size, nullptr, 0, nullptr, utf8 ? nullptr : &usedDefault);
    if (length <= 0 || usedDefault) return false;
    const std::size_t at = out.size();
    out.resize(at + static_cast<std::size_t>(length));
    ::WideCharToMultiByte(page, flags, wide.data(), size, out.data() + at, length, nullptr, nullptr);
    return true;
}

// The code pages stand for the charsets of the language table, as the
// Linux build reads them with iconv: the rules and tables below take back
// what a code page has beyond its charset, or reads otherwise, so that a
// session gives the same document on either system. EUC-KR and EUC-CN are
// read through their supersets 949 and 936, whose extra pairs have a byte
// below A1.
bool IsEucPair(UINT page) { return page == 949 || page == 936; }

// The EUC charsets of Korean and Japanese keep the single bytes 80-9F as
// the control characters U+0080-U+009F (but for EUC-JP's shifts 8E and
// 8F), Big5 the byte 80.
bool KeepsControlByte(UINT page, unsigned byte) {
    if (page == 949) return byte >= 0x80 && byte <= 0x9F;
    if (page == 20932) return byte >= 0x80 && byte <= 0x9F && byte != 0x8E && byte != 0x8F;
    return page == 950 && byte == 0x80;
}

// Bytes that the charset reads as another character than the code page
// does; the character is written back as these bytes.
struct Reading {
    UINT page;
    std::string_view bytes;
    wchar_t character;
};
constexpr Reading kReadings[] = {
    // ISO-8859-7 as revised in 2003; the code page keeps the 1987 form.
    {28597, "\xA1", 0x2018},
    {28597, "\xA2", 0x2019},
    {28597, "\xA4", 0x20AC},
    {28597, "\xA5", 0x20AF},
    {28597, "\xAA", 0x037A},
    // GB 2312's middle dot and dash.
    {936, "\xA1\xA4", 0x30FB},
    {936, "\xA1\xAA", 0x2015},
    // KS X 1001's postal code mark (2002).
    {949, "\xA2\xE8", 0x327E},
    // JIS X 0212's tilde, which the code page reads as the ASCII one.
    {20932, "\x8F\xA2\xB7", 0xFF5E},
    // Vietnamese: a letter with acute or diaeresis and a tilde, which iconv
    // reads as the letter with tilde and acute or diaeresis.
    {1258, "\xD3\xDE", 0x1E4C},
    {1258, "\xD6\xDE", 0x1E4E},
    {1258, "\xDA\xDE", 0x1E78},
    {1258, "\xF3\xDE", 0x1E4D},
    {1258, "\xF6\xDE", 0x1E4F},
    {1258, "\xFA\xDE", 0x1E79},
};

// Characters the charset writes as bytes that read back as another
// character (or as the same one by another way).
struct Writing {
    UINT page;
    wchar_t character;
    std::string_view bytes;
};
constexpr Writing kWritings[] = {
    // Shift JIS: the older JIS forms of these characters.
    {932, 0x00A2, "\x81\x91"},
    {932, 0x00A3, "\x81\x92"},
    {932, 0x00A5, "\x5C"},
    {932, 0x00AC, "\x81\xCA"},
    {932, 0x2014, "\x81\x5C"},
    {932, 0x2016, "\x81\x61"},
    {932, 0x203E, "\x7E"},
    {932, 0x2212, "\x81\x7C"},
    {932, 0x301C, "\x81\x60"},
    // Big5: the box drawings of row A2 rather than their copies in row F9.
    {950, 0x2550, "\xA2\xA4"},
    {950, 0x255E, "\xA2\xA5"},
    {950, 0x2561, "\xA2\xA7"},
    {950, 0x256A, "\xA2\xA6"},
    // EUC-KR: the won sign as its full-width form.
    {949, 0x20A9, "\xA3\xDC"},
    // EUC-JP: yen sign and overline as the bytes of JIS X 0201.
    {20932, 0x00A5, "\x5C"},
    {20932, 0x203E, "\x7E"},
};

// Whether the pair is one of GB 2312's characters (936 holds all of GBK).
bool InGb2312(unsigned lead, unsigned trail) {
    struct Row {
        unsigned lead, from, to;
    };
    static constexpr Row kRows[] = {
        {0xA1, 0xA1, 0xFE}, {0xA2, 0xB1, 0xE2}, {0xA2, 0xE5, 0xEE}, {0xA2, 0xF1, 0xFC}, {0xA3, 0xA1, 0xFE},
        {0xA4, 0xA1, 0xF3}, {0xA5, 0xA1, 0xF6}, {0xA6, 0xA1, 0xB8}, {0xA6, 0xC1, 0xD8}, {0xA7, 0xA1, 0xC1},
        {0xA7, 0xD1, 0xF1}, {0xA8, 0xA1, 0xBA}, {0xA8, 0xC5, 0xE9}, {0xA9, 0xA4, 0xEF}, {0xD7, 0xA1, 0xF9},
    };
    if ((lead >= 0xB0 && lead <= 0xD6) || (lead >= 0xD8 && lead <= 0xF7)) return trail >= 0xA1 && trail <= 0xFE;
    for (const Row& row : kRows)
        if (row.lead == lead && trail >= row.from && trail <= row.to) return true;
    return false;
}

// Whether `bytes`, read by the code page as the one character `wide`, is
// a character of the charset the code page stands for.
bool InCharset(UINT page, std::string_view bytes, std::wstring_view wide) {
    if (page == CP_UTF8 || page == kUtf16) return true;
    const auto first = static_cast<unsigned char>(bytes[0]);
    if (bytes.size() == 1 && first >= 0x80) {
        if (KeepsControlByte(page, first)) return true;
        if (IsEucPair(page) || page == 20932) return false;
    }
    if (bytes.size() == 2) {
        const auto second = static_cast<unsigned char>(bytes[1]);
        if (page == 936 && !InGb2312(first, second)) return false;
        if ((page == 949 || (page == 20932 && first != 0x8E)) && (first < 0xA1 || second < 0xA1)) return false;
    }
    // The user-defined areas: Big5's before A1 and from FA on; all of the EUC ones.
    if (IsPrivateUse(wide[0])) {
        if (page == 950) return first >= 0xA1 && first < 0xFA;
        if (IsEucPair(page) || page == 20932) return false;
    }
    // The ISO-8859 parts and KOI8-R have the control characters 80-9F;
    // the Windows and multi-byte charsets have none.
    const bool hasControls = page == 20866 || (page >= 28591 && page <= 28605);
    return hasControls || !IsC1(wide[0]);
}

// The longest sequence of one character in the charsets we meet (EUC-JP
// has three bytes, UTF-8 four).
constexpr std::size_t kLongestCharacter = 4;

// Reads the one character at the start of `in` into `wide`: the number of
// bytes it takes, or 0 when no character of the charset starts there.
std::size_t ReadCharacter(UINT page, std::string_view in, std::wstring& wide) {
    for (const Reading& reading : kReadings) {
        if (reading.page == page && in.starts_with(reading.bytes)) {
            wide.assign(1, reading.character);
            return reading.bytes.size();
        }
    }
    // EUC-JP's JIS X 0212 characters, 8F and two bytes from A1: the code
    // page 20932 has them as the pair with the second byte's top bit clear.
    if (page == 20932 && in.size() >= 3 && static_cast<unsigned char>(in[0]) == 0x8F &&
        static_cast<unsigned char>(in[1]) >= 0xA1 && static_cast<unsigned char>(in[2]) >= 0xA1 &&
        static_cast<unsigned char>(in[1]) != 0xFF && static_cast<unsigned char>(in[2]) != 0xFF) {
        const char pair[2] = {in[1], static_cast<char>(in[2] & 0x7F)};
        wide.clear();
        if (Decode(page, std::string_view(pair, 2), wide) && IsOneCharacter(wide) && !IsPrivateUse(wide[0]))
            return 3;
    }
    for (std::size_t length = 1; length <= std::min(kLongestCharacter, in.size()); ++length) {
        wide.clear();
        const std::string_view bytes = in.substr(0, length);
        if (Decode(page, bytes, wide) && IsOneCharacter(wide) && InCharset(page, bytes, wide)) return length;
    }
    const auto first = static_cast<unsigned char>(in[0]);
    if (KeepsControlByte(page, first)) {
        wide.assign(1, static_cast<wchar_t>(first));
        return 1;
    }
    wide.clear();
    return 0;
}

// Appends the one character `wide` in code page `page`; false, with `out`
// untouched, when the charset lacks it.
bool WriteCharacter(UINT page, std::wstring_view wide, std::string& out) {
    if (wide.size() == 1) {
        if (KeepsControlByte(page, wide[0])) {
            out.push_back(static_cast<char>(wide[0]));
            return true;
        }
        for (const Writing& writing : kWritings) {
            if (writing.page == page && writing.character == wide[0]) {
                out += writing.bytes;
                return true;
            }
        }
        for (const Reading& reading : kReadings) {
            if (reading.page == page && reading.character == wide[0]) {
                out += reading.bytes;
                return true;
            }
        }
    }
    std::string bytes;
    if (!Encode(page, wide, bytes)) return false;
    if (page == 20932 && bytes.size() == 2 && static_cast<unsigned char>(bytes[1]) < 0x80)
        bytes = std::string{'\x8F', bytes[0], static_cast<char>(bytes[1] | 0x80)};
    // A code page writes some characters its charset lacks: the bytes must
    // read back as the same character.
    std::wstring back;
    if (ReadCharacter(page, bytes, back) != bytes.size() || back != wide) return false;
    out += bytes;
    return true;
}

// Vietnamese (1258) writes most of its letters as a base letter and a
// combining tone mark; iconv reads such a pair as the one letter it
// makes, and writes a letter the charset lacks as such a pair.
constexpr UINT kVietnamese = 1258;

bool IsCombiningMark(wchar_t unit) { return unit >= 0x0300 && unit <= 0x036F; }

std::wstring Normalized(NORM_FORM form, std::wstring_view text) {
    wchar_t buffer[8];
    const int length = ::NormalizeString(form, text.data(), static_cast<int>(text.size()), buffer, 8);
    return length > 0 ? std::wstring(buffer, static_cast<std::size_t>(length)) : std::wstring();
}

// Writes a character as WriteCharacter does, and in Vietnamese a letter
// the charset lacks as its letter and tone mark.
bool WriteDecomposed(UINT page, std::wstring_view wide, std::string& out) {
    if (WriteCharacter(page, wide, out)) return true;
    if (page != kVietnamese) return false;
    const std::wstring parts = Normalized(NormalizationD, wide);
    // A mark that is another form of a tone mark of the charset.
    if (parts.size() == 1) return IsCombiningMark(wide[0]) && parts != wide && WriteCharacter(page, parts, out);
    // The letter with all marks but one, and that mark: the last one first.
    for (std::size_t detached = parts.size(); detached-- > 1;) {
        if (!IsCombiningMark(parts[detached])) return false;
        std::wstring rest = parts;
        rest.erase(detached, 1);
        const std::wstring letter = Normalized(NormalizationC, rest);
        std::string bytes;
        if (IsOneCharacter(letter) && WriteCharacter(page, letter, bytes) &&
            WriteCharacter(page, std::wstring_view(parts).substr(detached, 1), bytes)) {
            out += bytes;
            return true;
        }
    }
    return false;
}

// A letter iconv holds back in Vietnamese for a tone mark that may follow.
bool MayTakeToneMark(wchar_t unit) { return unit >= 0x41 && unit < 0x1B1; }

std::size_t Utf8Length(unsigned char lead) { return lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1; }

}  // namespace

struct TextConverter::State {
    UINT to;
    UINT from;
};

TextConverter::TextConverter(std::string_view to, std::string_view from)
    : state_(std::make_unique<State>(State{CodePageFor(to), CodePageFor(from)})) {}

TextConverter::~TextConverter() = default;

bool TextConverter::Valid() const { return IsUsable(state_->to) && IsUsable(state_->from); }

std::string TextConverter::Convert(std::string_view in, std::string_view bad, bool inputIsUtf8) {
    const UINT from = state_->from;
    const UINT to = state_->to;
    // ASCII is itself in every charset that can be asked for, but UTF-16;
    // Vietnamese holds letters back.
    const bool asciiStays = from != kUtf16 && to != kUtf16 && from != kVietnamese;
    std::string out;
    out.reserve(in.size() + in.size() / 8);
    std::wstring character;
    // A Vietnamese letter read and not yet written: a tone mark behind it
    // makes one letter of the two. A sequence that is no character leaves
    // it held, so that its replacement comes first, as with iconv.
    std::wstring held;
    const auto writeHeld = [&] {
        if (held.empty()) return;
        if (!WriteDecomposed(to, held, out)) out += bad;
        held.clear();
    };
    std::size_t at = 0;
    while (at < in.size()) {
        const auto byte = static_cast<unsigned char>(in[at]);
        if (byte < 0x80 && asciiStays) {
            out.push_back(in[at++]);
            continue;
        }
        const std::size_t length = ReadCharacter(from, in.substr(at), character);
        if (length == 0) {
            // Not a character of the charset: step over it.
            out += bad;
            at += std::min(inputIsUtf8 ? Utf8Length(byte) : 1, in.size() - at);
            continue;
        }
        at += length;
        if (from == kVietnamese) {
            if (!held.empty() && IsCombiningMark(character[0])) {
                const std::wstring letter = Normalized(NormalizationC, held + character);
                if (IsOneCharacter(letter)) {
                    held.clear();
                    character = letter;
                }
            }
            writeHeld();
            if (character.size() == 1 && MayTakeToneMark(character[0])) {
                held = character;
                continue;
            }
        }
        if (!WriteDecomposed(to, character, out)) out += bad;
    }
    writeHeld();
    return out;
}

bool TextConverter::AppendCharacter(std::string_view in, std::string& out) {
    std::wstring character;
    return !in.empty() && ReadCharacter(state_->from, in, character) == in.size() &&
           WriteDecomposed(state_->to, character, out);
}

}  // namespace morvanta

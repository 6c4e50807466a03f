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

#include <algorithm>
#include <atomic>
#include <climits>
#include <cstdint>
#include <random>
#include <stdexcept>

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

// 100-nanosecond ticks from 1601 to 1970.
constexpr std::uint64_t kUnixEpochTicks = 116444736000000000ULL;

}  // namespace

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

std::wstring HexTag(unsigned tag) {
    std::wstring text = L".";
    for (int shift = 28; shift >= 0; shift -= 4) text += L"0123456789abcdef"[(tag >> shift) & 0xFu];
    return text;
}

// Creates a new file beside the target with a name nobody else uses.
HANDLE CreateTemporary(const std::filesystem::path& target, std::filesystem::path& path) {
    static std::atomic<unsigned> counter{0};
    std::random_device random;
    const auto folder = target.has_parent_path() ? target.parent_path() : std::filesystem::path(L".");
    for (int attempt = 0; attempt < 100; ++attempt) {
        const unsigned tag = random() ^ (counter.fetch_add(1) * 2654435761u);
        path = folder / (L"." + target.filename().native() + HexTag(tag));
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

std::string Upper(std::string_view text) {
    std::string out(text);
    std::transform(out.begin(), out.end(), out.begin(),
                   [](unsigned char c) { return static_cast<char>(c >= 'a' && c <= 'z' ? c - 32 : c); });
    return out;
}

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
    const std::string upper = Upper(charset);
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

bool IsUsable(UINT page) { return page == kUtf16 || (page != 0 && ::IsValidCodePage(page)); }

// Code pages whose conversions take no flags at all.
bool TakesNoFlags(UINT page) { return page == 42 || (page >= 50220 && page <= 57011) || page == 65000; }

int Length(std::size_t size) {
    if (size > static_cast<std::size_t>(INT_MAX)) throw std::runtime_error("text too long to recode");
    return static_cast<int>(size);
}

bool IsHighSurrogate(wchar_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool IsLowSurrogate(wchar_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

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
    const DWORD flags = TakesNoFlags(page) ? 0 : MB_ERR_INVALID_CHARS;
    const int size = Length(bytes.size());
    const int length = ::MultiByteToWideChar(page, flags, bytes.data(), size, nullptr, 0);
    if (length <= 0) return false;
    const std::size_t at = out.size();
    out.resize(at + static_cast<std::size_t>(length));
    ::MultiByteToWideChar(page, flags, bytes.data(), size, out.data() + at, length);
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
    const DWORD flags = utf8 ? WC_ERR_INVALID_CHARS : TakesNoFlags(page) ? 0 : WC_NO_BEST_FIT_CHARS;
    BOOL usedDefault = FALSE;
    BOOL* askDefault = utf8 || TakesNoFlags(page) ? nullptr : &usedDefault;
    const int size = Length(wide.size());
    const int length = ::WideCharToMultiByte(page, flags, wide.data(), size, nullptr, 0, nullptr, askDefault);
    if (length <= 0 || usedDefault) return false;
    const std::size_t at = out.size();
    out.resize(at + static_cast<std::size_t>(length));
    ::WideCharToMultiByte(page, flags, wide.data(), size, out.data() + at, length, nullptr, nullptr);
    return true;
}

std::size_t Utf8Length(unsigned char lead) { return lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1; }

// The longest sequence of one character in the code pages we meet (EUC-JP
// has three bytes, UTF-8 four).
constexpr std::size_t kLongestCharacter = 4;

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
    std::string out;
    out.reserve(in.size() + in.size() / 8);
    // Most texts convert whole; the others go character by character.
    if (std::wstring wide; Decode(state_->from, in, wide)) {
        if (Encode(state_->to, wide, out)) return out;
        out.clear();
        for (std::size_t i = 0; i < wide.size();) {
            const std::size_t units = IsHighSurrogate(wide[i]) && i + 1 < wide.size() ? 2 : 1;
            if (!Encode(state_->to, std::wstring_view(wide).substr(i, units), out)) out += bad;
            i += units;
        }
        return out;
    }
    std::size_t at = 0;
    while (at < in.size()) {
        std::wstring character;
        std::size_t length = 1;
        while (length <= std::min(kLongestCharacter, in.size() - at) &&
               !Decode(state_->from, in.substr(at, length), character))
            ++length;
        if (character.empty()) {
            // Nothing from here on is a character of the code page: step over it.
            out += bad;
            at += std::min(inputIsUtf8 ? Utf8Length(static_cast<unsigned char>(in[at])) : 1, in.size() - at);
            continue;
        }
        if (!Encode(state_->to, character, out)) out += bad;
        at += length;
    }
    return out;
}

bool TextConverter::AppendCharacter(std::string_view in, std::string& out) {
    std::wstring wide;
    return Decode(state_->from, in, wide) && Encode(state_->to, wide, out);
}

}  // namespace morvanta

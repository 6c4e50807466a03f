// The operating system's side of services/Platform.h on Linux and macOS:
// statx, open/write/fsync/rename, isatty, and iconv (part of the C library).
#include "services/Platform.h"

#include <fcntl.h>
#include <iconv.h>
#include <sys/stat.h>
#include <unistd.h>

#if defined(__APPLE__)
#include <mach-o/dyld.h>
#endif

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <random>
#include <stdexcept>
#include <vector>

#include "services/TextHelpers.h"

namespace morvanta {

std::filesystem::path PathFromText(const std::string& text) { return std::filesystem::path(text); }

std::vector<std::string> ProgramArguments(int argc, char** argv) { return std::vector<std::string>(argv, argv + argc); }

Utf8Console::Utf8Console() = default;
Utf8Console::~Utf8Console() = default;

std::time_t FileCreatedTime(const std::filesystem::path& path) {
#if defined(__linux__)
    struct statx info {};
    if (::statx(AT_FDCWD, path.c_str(), 0, STATX_BTIME | STATX_MTIME, &info) == 0) {
        if (info.stx_mask & STATX_BTIME) return static_cast<std::time_t>(info.stx_btime.tv_sec);
        return static_cast<std::time_t>(info.stx_mtime.tv_sec);
    }
#elif defined(__APPLE__)
    struct stat info {};
    if (::stat(path.c_str(), &info) == 0) return static_cast<std::time_t>(info.st_birthtimespec.tv_sec);
#else
    struct stat info {};
    if (::stat(path.c_str(), &info) == 0) return static_cast<std::time_t>(info.st_mtime);
#endif
    return 0;
}

std::tm LocalTime(std::time_t time) {
    std::tm local{};
    localtime_r(&time, &local);
    return local;
}

namespace {

[[noreturn]] void ThrowWriteError(const std::filesystem::path& target, int error) {
    std::string text = "Error Writing to File '" + target.string() + "'.  " + std::strerror(error);
    if (error == EACCES || error == EPERM || error == ETXTBSY) text += "\n\nFile may be in use";
    throw std::runtime_error(text);
}

// Creates a new file beside the target with a name nobody else uses. The
// mode 0666 lets the user's umask decide the permissions, as for any file.
int CreateTemporary(const std::filesystem::path& target, std::string& path) {
    static std::atomic<unsigned> counter{0};
    std::random_device random;
    const auto folder = target.has_parent_path() ? target.parent_path() : std::filesystem::path(".");
    for (int attempt = 0; attempt < 100; ++attempt) {
        const unsigned tag = random() ^ (counter.fetch_add(1) * 2654435761u);
        const std::string suffix = "." + HexWord(tag);
        path = (folder / ("." + target.filename().string() + suffix)).string();
        const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (fd >= 0 || errno != EEXIST) return fd;
    }
    errno = EEXIST;
    return -1;
}

}  // namespace

void WriteFileAtomically(const std::filesystem::path& target, std::string_view content) {
    std::string pattern;
    const int fd = CreateTemporary(target, pattern);
    if (fd < 0) ThrowWriteError(target, errno);

    const char* data = content.data();
    std::size_t left = content.size();
    while (left > 0) {
        const ssize_t n = ::write(fd, data, left);
        if (n < 0) {
            if (errno == EINTR) continue;
            const int error = errno;
            ::close(fd);
            ::unlink(pattern.c_str());
            ThrowWriteError(target, error);
        }
        data += n;
        left -= static_cast<std::size_t>(n);
    }
    const int synced = ::fsync(fd) == 0 ? 0 : errno;
    const int closed = ::close(fd) == 0 ? 0 : errno;
    if (synced != 0 || closed != 0) {
        const int error = synced != 0 ? synced : closed;
        ::unlink(pattern.c_str());
        ThrowWriteError(target, error);
    }
    if (::rename(pattern.c_str(), target.c_str()) != 0) {
        const int error = errno;
        ::unlink(pattern.c_str());
        ThrowWriteError(target, error);
    }
}

bool IsTerminal(StandardStream stream) {
    const int fd = stream == StandardStream::Input    ? STDIN_FILENO
                   : stream == StandardStream::Output ? STDOUT_FILENO
                                                      : STDERR_FILENO;
    return ::isatty(fd) == 1;
}

ExampleFolders HelpExampleFolders() { return {"~/Sessions", "~/Converted"}; }

std::filesystem::path ProgramFile() {
#if defined(__APPLE__)
    std::uint32_t size = 0;
    _NSGetExecutablePath(nullptr, &size);
    std::vector<char> buffer(size + 1, '\0');
    if (_NSGetExecutablePath(buffer.data(), &size) != 0) return {};
    std::error_code ec;
    const auto path = std::filesystem::canonical(buffer.data(), ec);
    return ec ? std::filesystem::path(buffer.data()) : path;
#else
    std::error_code ec;
    const auto path = std::filesystem::read_symlink("/proc/self/exe", ec);
    return ec ? std::filesystem::path() : path;
#endif
}

std::string CurrentUserKey() { return std::to_string(::getuid()); }

namespace {

// The name iconv knows a charset of the language table by ("X-EUC" is
// EUC-JP, "GB2312" the EUC form of GB 2312, ...); any other name is passed
// on as it is.
std::string IconvCharsetName(std::string_view charset) {
    const std::string upper = AsciiUpper(charset);
    if (upper == "X-EUC") return "EUC-JP";
    // The Windows form of Shift JIS: iconv's plain SHIFT_JIS reads the bytes
    // of the backslash and the tilde as a yen sign and an overline, which
    // would break every path of the document.
    if (upper == "SHIFT-JIS") return "CP932";
    if (upper == "GB2312") return "EUC-CN";
    if (upper == "WINDOWS-1251") return "CP1251";
    if (upper == "WINDOWS-874") return "CP874";
    if (upper == "WINDOWS-1258") return "CP1258";
    if (upper == "KOI8-R" || upper == "BIG5" || upper == "EUC-KR" || upper.starts_with("ISO-8859-")) return upper;
    return std::string(charset);
}

const iconv_t kNoDescriptor = reinterpret_cast<iconv_t>(static_cast<std::intptr_t>(-1));

std::size_t Utf8Length(unsigned char lead) { return lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1; }

// Converts as much as iconv can take; 0 or the errno that stopped it.
int Drain(iconv_t cd, char** source, std::size_t* sourceLeft, std::string& out) {
    for (;;) {
        char buffer[4096];
        char* target = buffer;
        std::size_t targetLeft = sizeof buffer;
        const std::size_t done = ::iconv(cd, source, sourceLeft, &target, &targetLeft);
        const int error = done == static_cast<std::size_t>(-1) ? errno : 0;
        out.append(buffer, static_cast<std::size_t>(target - buffer));
        if (error != E2BIG) return error;
    }
}

}  // namespace

struct TextConverter::State {
    iconv_t cd;
};

TextConverter::TextConverter(std::string_view to, std::string_view from)
    : state_(std::make_unique<State>(State{::iconv_open(IconvCharsetName(to).c_str(), IconvCharsetName(from).c_str())})) {}

TextConverter::~TextConverter() {
    if (Valid()) ::iconv_close(state_->cd);
}

bool TextConverter::Valid() const { return state_->cd != kNoDescriptor; }

std::string TextConverter::Convert(std::string_view in, std::string_view bad, bool inputIsUtf8) {
    std::string out;
    out.reserve(in.size() + in.size() / 8);
    auto* source = const_cast<char*>(in.data());
    std::size_t sourceLeft = in.size();
    while (sourceLeft > 0) {
        const int error = Drain(state_->cd, &source, &sourceLeft, out);
        if (error == 0) break;
        // EINVAL: an incomplete sequence at the very end.
        if (error != EILSEQ && error != EINVAL) throw std::runtime_error(std::strerror(error));
        out += bad;
        const std::size_t step =
            std::min(inputIsUtf8 ? Utf8Length(static_cast<unsigned char>(*source)) : 1, sourceLeft);
        source += step;
        sourceLeft -= step;
    }
    // A null source flushes the state of a stateful decoder (CP1258 holds
    // back a base letter for a combining mark) and makes it ready for the next text.
    if (const int error = Drain(state_->cd, nullptr, nullptr, out); error != 0)
        throw std::runtime_error(std::strerror(error));
    return out;
}

bool TextConverter::AppendCharacter(std::string_view in, std::string& out) {
    char buffer[16];
    auto* source = const_cast<char*>(in.data());
    std::size_t sourceLeft = in.size();
    char* target = buffer;
    std::size_t targetLeft = sizeof buffer;
    if (::iconv(state_->cd, &source, &sourceLeft, &target, &targetLeft) == static_cast<std::size_t>(-1)) {
        ::iconv(state_->cd, nullptr, nullptr, nullptr, nullptr);  // back to the initial state
        return false;
    }
    out.append(buffer, static_cast<std::size_t>(target - buffer));
    return true;
}

}  // namespace morvanta

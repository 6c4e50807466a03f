#include "services/AtomicFile.h"

#include <fcntl.h>
#include <stdio.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstring>
#include <random>
#include <stdexcept>
#include <string>

namespace morvanta {
namespace {

[[noreturn]] void Throw(const std::filesystem::path& target, int error) {
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
        char suffix[16];
        std::snprintf(suffix, sizeof suffix, ".%08x", tag);
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
    if (fd < 0) Throw(target, errno);

    const char* data = content.data();
    std::size_t left = content.size();
    while (left > 0) {
        const ssize_t n = ::write(fd, data, left);
        if (n < 0) {
            if (errno == EINTR) continue;
            const int error = errno;
            ::close(fd);
            ::unlink(pattern.c_str());
            Throw(target, error);
        }
        data += n;
        left -= static_cast<std::size_t>(n);
    }
    const int synced = ::fsync(fd) == 0 ? 0 : errno;
    const int closed = ::close(fd) == 0 ? 0 : errno;
    if (synced != 0 || closed != 0) {
        const int error = synced != 0 ? synced : closed;
        ::unlink(pattern.c_str());
        Throw(target, error);
    }
    if (::rename(pattern.c_str(), target.c_str()) != 0) {
        const int error = errno;
        ::unlink(pattern.c_str());
        Throw(target, error);
    }
}

}  // namespace morvanta

#include "platform/file_sync.h"

#if defined(__unix__) || defined(__APPLE__)
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>
#else
#include <fstream>
#include <random>
#endif

namespace zorvane::platform {

#if defined(__unix__) || defined(__APPLE__)

namespace {

std::error_code lastError() {
    return {errno, std::generic_category()};
}

} // namespace

std::error_code WriteNewFileDurably(const std::filesystem::path& path, std::string_view bytes) {
    const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (fd < 0) return lastError();
    std::error_code error;
    size_t done = 0;
    while (!error && done < bytes.size()) {
        const ssize_t written = ::write(fd, bytes.data() + done, bytes.size() - done);
        if (written > 0)
            done += static_cast<size_t>(written);
        else if (written == 0)
            error = std::make_error_code(std::errc::io_error);
        else if (errno != EINTR)
            error = lastError();
    }
    // The rename that follows must not reach the disk before the text does.
    if (!error && ::fsync(fd) != 0) error = lastError();
    if (::close(fd) != 0 && !error && errno != EINTR) error = lastError();
    if (error) ::unlink(path.c_str());
    return error;
}

void SyncFolder(const std::filesystem::path& folder) {
    const int fd = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0) return;
    ::fsync(fd);
    ::close(fd);
}

int CurrentProcessId() {
    return static_cast<int>(::getpid());
}

bool ProcessIsAlive(int pid) {
    if (pid <= 0) return true;
    // EPERM: it runs, under another user.
    return ::kill(static_cast<pid_t>(pid), 0) == 0 || errno != ESRCH;
}

std::string HostName() {
    char name[256] = {};
    if (::gethostname(name, sizeof name - 1) != 0) return std::string();
    return name;
}

#else

// Elsewhere only the standard library for now: no forcing to disk, a random
// number for the process, and every process counts as alive, so that no
// temporary file is ever taken for a dead one's.

std::error_code WriteNewFileDurably(const std::filesystem::path& path, std::string_view bytes) {
    std::error_code error;
    if (std::filesystem::exists(path, error)) return std::make_error_code(std::errc::file_exists);
    {
        std::ofstream out(path, std::ios::binary);
        if (!out) return std::make_error_code(std::errc::permission_denied);
        out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        out.close();
        if (!out) error = std::make_error_code(std::errc::io_error);
    }
    std::error_code ignored;
    if (error) std::filesystem::remove(path, ignored);
    return error;
}

void SyncFolder(const std::filesystem::path&) {}

int CurrentProcessId() {
    static const int id = static_cast<int>(std::random_device()() & 0x3FFFFFFF);
    return id;
}

bool ProcessIsAlive(int) {
    return true;
}

std::string HostName() {
    return std::string();
}

#endif

} // namespace zorvane::platform

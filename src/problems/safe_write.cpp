#include "problems/safe_write.h"

#include "core/chess_exception.h"
#include "platform/file_sync.h"

#include <atomic>
#include <climits>
#include <system_error>

namespace zorvane {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view TEMPORARY_MARK = ".zorvane-tmp.";
// As many links as Linux follows before it gives up (ELOOP).
constexpr int MAX_LINKS = 40;
// Names taken by files of an earlier process of the same id are skipped.
constexpr int MAX_NAME_ATTEMPTS = 100;
constexpr size_t MAX_HOST_LENGTH = 64;

std::atomic<unsigned> nextCounter{0};

bool isDigits(std::string_view text) {
    if (text.empty() || text.size() > 10) return false;
    for (const char c : text)
        if (c < '0' || c > '9') return false;
    return true;
}

fs::path folderOf(const fs::path& file) {
    return file.has_parent_path() ? file.parent_path() : fs::path(".");
}

// ".<name>.zorvane-tmp.<host>.": what the process id and the counter follow.
std::string temporaryPrefix(const fs::path& real, const std::string& host) {
    std::string prefix = ".";
    prefix += real.filename().string();
    prefix += TEMPORARY_MARK;
    prefix += host;
    prefix += '.';
    return prefix;
}

// The file a path names, links followed one by one. A link to a missing file
// names that file, so that the save creates it and the link keeps working.
fs::path resolveLinks(const fs::path& target, std::error_code& error) {
    fs::path path = target;
    for (int links = 0;; ++links) {
        std::error_code ignored;
        if (!fs::is_symlink(fs::symlink_status(path, ignored))) return path;
        if (links == MAX_LINKS) {
            error = std::make_error_code(std::errc::too_many_symbolic_link_levels);
            return path;
        }
        const fs::path next = fs::read_symlink(path, error);
        if (error) return path;
        path = next.is_absolute() ? next : path.parent_path() / next;
    }
}

// Removes the temporary files of `real` whose writer on this machine is dead:
// a save killed after it created its file and before the rename leaves one.
// Anything that cannot be listed or removed is left alone; the save goes on.
void removeStaleTemporaryFiles(const fs::path& real, const std::string& host) {
    const std::string prefix = temporaryPrefix(real, host);
    std::error_code error;
    for (fs::directory_iterator it(folderOf(real), error), end; !error && it != end; it.increment(error)) {
        const std::string name = it->path().filename().string();
        if (name.compare(0, prefix.size(), prefix) != 0) continue;
        const std::string_view rest = std::string_view(name).substr(prefix.size());
        const size_t dot = rest.find('.');
        if (dot == std::string_view::npos || !isDigits(rest.substr(0, dot)) ||
            !isDigits(rest.substr(dot + 1)))
            continue;
        const long long pid = std::stoll(std::string(rest.substr(0, dot)));
        if (pid > INT_MAX || platform::ProcessIsAlive(static_cast<int>(pid))) continue;
        std::error_code ignored;
        if (!fs::is_regular_file(it->symlink_status(ignored))) continue;
        fs::remove(it->path(), ignored);
    }
}

} // namespace

std::string SafeWriteHostName() {
    std::string host = platform::HostName();
    if (host.size() > MAX_HOST_LENGTH) host.resize(MAX_HOST_LENGTH);
    for (char& c : host) {
        const bool kept =
            (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-';
        if (!kept) c = '_';
    }
    return host.empty() ? "localhost" : host;
}

fs::path SafeWriteTemporaryPath(const fs::path& realTarget, const std::string& host, int pid,
                                unsigned counter) {
    return folderOf(realTarget) /
           (temporaryPrefix(realTarget, host) + std::to_string(pid) + "." + std::to_string(counter));
}

void WriteFileSafely(const fs::path& target, const std::string& bytes) {
    const auto fail = [&target](const std::error_code& reason) {
        throw ChessException("Error opening file: " + target.string() + " (" + reason.message() + ")");
    };
    // 1. The real file behind any links; the temporary file goes beside it,
    //    as a rename only stays atomic within one folder.
    std::error_code error;
    const fs::path real = resolveLinks(target, error);
    if (error) fail(error);
    std::error_code ignored;
    if (fs::is_directory(fs::status(real, ignored))) fail(std::make_error_code(std::errc::is_a_directory));

    // 2. What killed saves of this file left behind.
    const std::string host = SafeWriteHostName();
    removeStaleTemporaryFiles(real, host);

    // 3. The new text, complete on disk under a name of its own.
    const int pid = platform::CurrentProcessId();
    fs::path temporary;
    for (int attempt = 1;; ++attempt) {
        temporary = SafeWriteTemporaryPath(real, host, pid, nextCounter++);
        error = platform::WriteNewFileDurably(temporary, bytes);
        if (error != std::errc::file_exists || attempt == MAX_NAME_ATTEMPTS) break;
    }
    if (error) fail(error);

    // 4. The new file keeps the permissions of the one it replaces.
    const fs::file_status old = fs::status(real, ignored);
    if (fs::is_regular_file(old)) fs::permissions(temporary, old.permissions(), ignored);

    // 5. The switch, then the folder's entry on disk too.
    fs::rename(temporary, real, error);
    if (error) {
        fs::remove(temporary, ignored);
        fail(error);
    }
    platform::SyncFolder(folderOf(real));
}

} // namespace zorvane

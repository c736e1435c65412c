#pragma once
// The operating system's part of a safe save: a new file written and forced
// to disk, a folder's entries forced to disk, and the facts that name a
// save's temporary file (machine and process) and tell whether its writer
// still runs.
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

namespace zorvane::platform {

// Creates `path`, which must not exist yet (std::errc::file_exists then),
// writes `bytes` and forces them to disk before it returns. A file it created
// and could not complete is removed again.
std::error_code WriteNewFileDurably(const std::filesystem::path& path, std::string_view bytes);

// Forces a folder's entries, such as a file just renamed into it, to disk.
// Best effort: where a folder cannot be synced, nothing happens.
void SyncFolder(const std::filesystem::path& folder);

int CurrentProcessId();

// Whether a process of this id runs on this machine; true when that cannot be told.
bool ProcessIsAlive(int pid);

// This machine's name; empty when it cannot be read.
std::string HostName();

} // namespace zorvane::platform

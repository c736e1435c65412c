#pragma once
// The safe save of a file. The new text goes to a temporary file beside the
// file it replaces, is forced to disk and renamed over it, so that a reader,
// a failure, a crash or a kill meets the old text or the new, never a part.
//
// The temporary file is ".<name>.zorvane-tmp.<host>.<pid>.<counter>" in the
// folder of the real file ("problems.cp" gives
// ".problems.cp.zorvane-tmp.box.4711.0"): hidden, and telling which save of
// which process on which machine made it. Before it writes, a save removes
// the temporary files of the same file that a process of this machine left
// when it died mid-write; the file of a live process, of another machine and
// any file not named so stay.
#include <filesystem>
#include <string>

namespace zorvane {

// Writes `bytes` as the file `target`. A symbolic link is followed: the file
// it points to is written, and the link stays. Any failure throws
// ChessException "Error opening file: <target> (<reason>)", the reason being
// the system's text ("Permission denied"), and leaves the old file as it was.
void WriteFileSafely(const std::filesystem::path& target, const std::string& bytes);

// The temporary file of a save of `realTarget` (the file itself, no link) by
// process `pid` of the machine `host` (as SafeWriteHostName gives it).
std::filesystem::path SafeWriteTemporaryPath(const std::filesystem::path& realTarget, const std::string& host,
                                             int pid, unsigned counter);

// This machine's name as temporary file names carry it: letters, digits and
// '-' kept, any other byte '_', at most 64 of them; "localhost" when unknown.
std::string SafeWriteHostName();

} // namespace zorvane

#pragma once
// Reading and rewriting a whole profile file on disk.
#include "options/profile_text.h"

#include <filesystem>
#include <optional>

namespace zorvane {

// The file's text; a missing file gives an empty text, whose keys all take
// their defaults. Nothing when the file is there but cannot be read: a writer
// must then leave it alone rather than replace it by its own few keys.
std::optional<ProfileText> ReadProfileFile(const std::filesystem::path& path);

// Writes `text` to a new file beside `path` and renames it over `path`, so
// that a failure leaves the old file whole. False when anything failed; the
// temporary file is then removed.
bool WriteProfileFile(const std::filesystem::path& path, const ProfileText& text);

} // namespace zorvane

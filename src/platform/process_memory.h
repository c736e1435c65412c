#pragma once
// How much memory the process really holds. The temporary register keeps to
// its quota by counting entries, never by asking the system; this is for the
// tests and diagnostics that check the count against the real thing.
#include <cstdint>

namespace zorvane::platform {

// Resident set size of this process in bytes, from /proc/self/statm; 0 where
// that cannot be read.
uint64_t ResidentSetBytes();

} // namespace zorvane::platform

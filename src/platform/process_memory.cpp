#include "platform/process_memory.h"

#if defined(__linux__)
#include <cstdio>
#include <unistd.h>
#endif

namespace zorvane::platform {

#if defined(__linux__)

uint64_t ResidentSetBytes() {
    // statm: total program size, then the resident pages, then more counts.
    std::FILE* file = std::fopen("/proc/self/statm", "r");
    if (!file) return 0;
    unsigned long long size = 0, resident = 0;
    const int read = std::fscanf(file, "%llu %llu", &size, &resident);
    std::fclose(file);
    const long pageBytes = ::sysconf(_SC_PAGESIZE);
    if (read != 2 || pageBytes <= 0) return 0;
    return static_cast<uint64_t>(resident) * static_cast<uint64_t>(pageBytes);
}

#else

uint64_t ResidentSetBytes() {
    return 0;
}

#endif

} // namespace zorvane::platform

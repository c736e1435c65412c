#include "shell/process_control.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <utility>

#include <sched.h>
#include <sys/resource.h>
#include <unistd.h>

namespace zorvane {

namespace {

// Linux gives every thread its own nice value and affinity, so a process-wide
// setting means one call per thread.
template <typename Apply> bool forEachThread(Apply apply) {
    std::error_code error;
    bool ok = true;
    bool any = false;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/task", error)) {
        const std::string name = entry.path().filename().string();
        if (name.empty() || name.find_first_not_of("0123456789") != std::string::npos) continue;
        any = true;
        ok = apply(static_cast<pid_t>(std::stol(name))) && ok;
    }
    return any ? ok : apply(0);
}

int readNumber(const std::filesystem::path& path) {
    std::ifstream in(path);
    int value = -1;
    in >> value;
    return in ? value : -1;
}

} // namespace

int NiceOfPriorityClass(int priorityClass) {
    switch (priorityClass) {
    case PRIORITY_HIGH:
        return -10;
    case PRIORITY_ABOVE_NORMAL:
        return -5;
    case PRIORITY_BELOW_NORMAL:
        return 5;
    case PRIORITY_LOW:
        return 19;
    default:
        return 0;
    }
}

int PriorityClassOfNice(int nice) {
    if (nice <= -10) return PRIORITY_HIGH;
    if (nice < 0) return PRIORITY_ABOVE_NORMAL;
    if (nice == 0) return PRIORITY_NORMAL;
    if (nice < 19) return PRIORITY_BELOW_NORMAL;
    return PRIORITY_LOW;
}

bool SetProcessPriorityClass(int priorityClass) {
    const int nice = NiceOfPriorityClass(priorityClass);
    return forEachThread(
        [nice](pid_t thread) { return setpriority(PRIO_PROCESS, static_cast<id_t>(thread), nice) == 0; });
}

int ProcessPriorityClass() {
    errno = 0;
    const int nice = getpriority(PRIO_PROCESS, 0);
    return errno != 0 ? PRIORITY_NORMAL : PriorityClassOfNice(nice);
}

uint64_t ProcessAffinityMask() {
    cpu_set_t set;
    CPU_ZERO(&set);
    if (sched_getaffinity(0, sizeof set, &set) != 0) return 0;
    uint64_t mask = 0;
    for (int cpu = 0; cpu < 64; ++cpu)
        if (CPU_ISSET(cpu, &set)) mask |= uint64_t{1} << cpu;
    return mask;
}

bool SetProcessAffinityMask(uint64_t mask) {
    if (mask == 0) return false;
    cpu_set_t set;
    CPU_ZERO(&set);
    for (int cpu = 0; cpu < 64; ++cpu)
        if (mask & (uint64_t{1} << cpu)) CPU_SET(cpu, &set);
    return forEachThread([&set](pid_t thread) { return sched_setaffinity(thread, sizeof set, &set) == 0; });
}

int LogicalProcessors() {
    const long count = sysconf(_SC_NPROCESSORS_ONLN);
    return count > 0 ? static_cast<int>(count) : 1;
}

uint64_t PhysicalMemoryBytes() {
    const long pages = sysconf(_SC_PHYS_PAGES);
    const long pageSize = sysconf(_SC_PAGESIZE);
    return pages > 0 && pageSize > 0 ? static_cast<uint64_t>(pages) * static_cast<uint64_t>(pageSize) : 0;
}

int PhysicalCores() {
    std::set<std::pair<int, int>> cores;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator("/sys/devices/system/cpu", error)) {
        const std::string name = entry.path().filename().string();
        if (name.rfind("cpu", 0) != 0 || name.size() == 3 ||
            name.find_first_not_of("0123456789", 3) != std::string::npos)
            continue;
        const int package = readNumber(entry.path() / "topology/physical_package_id");
        const int core = readNumber(entry.path() / "topology/core_id");
        if (package >= 0 && core >= 0) cores.emplace(package, core);
    }
    return static_cast<int>(cores.size());
}

ThreadDefaults ComputeThreadDefaults(int cpus, int secondCount, int optionLevels) {
    if (cpus >= 8 || (cpus >= 6 && secondCount >= 12))
        return {std::max(static_cast<int>(std::floor(std::sqrt(static_cast<double>(cpus)))), 4), 2};
    return {cpus, optionLevels};
}

} // namespace zorvane

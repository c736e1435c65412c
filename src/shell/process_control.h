#pragma once
// Priority, processor affinity and processor counts of this process. Plain
// C++ over the Linux calls; all of it is best effort and never fails the
// program: a refused change simply leaves the old setting, and the menu shows
// what is really in force.
#include <cstdint>

namespace zorvane {

// Priority classes by their traditional numbers.
constexpr int PRIORITY_HIGH = 128;
constexpr int PRIORITY_ABOVE_NORMAL = 32768;
constexpr int PRIORITY_NORMAL = 32;
constexpr int PRIORITY_BELOW_NORMAL = 16384;
constexpr int PRIORITY_LOW = 64;

// Nice value that stands for a class, and the class a nice value falls in.
int NiceOfPriorityClass(int priorityClass);
int PriorityClassOfNice(int nice);

// Applies the class to every thread of the process; false when the system refused.
bool SetProcessPriorityClass(int priorityClass);
int ProcessPriorityClass();

// Bit i stands for processor i (the first 64 processors).
uint64_t ProcessAffinityMask();
// Every thread of the process gets the mask; false when the system refused (or the mask is empty).
bool SetProcessAffinityMask(uint64_t mask);

int LogicalProcessors();
uint64_t PhysicalMemoryBytes();
// Distinct cores as the system reports its topology; 0 when it does not tell.
int PhysicalCores();

struct ThreadDefaults {
    int threads;
    int multithreadingLevels;
};
// The start-up defaults of threads and levels. `cpus` is the processor count
// the engine goes by, `secondCount` the other count the system reports.
// Big machines get fewer threads of the first level and two levels instead.
ThreadDefaults ComputeThreadDefaults(int cpus, int secondCount, int optionLevels);

} // namespace zorvane

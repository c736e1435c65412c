#pragma once
// The memory limits that the ratio options give, as the Options dialog shows
// them beside their fields.
#include <cstdint>
#include <string>

namespace zorvane {

// A problem's temporary register: whole megabytes of physical memory times
// the ratio, over 100.
std::uint64_t TempRegLimitMb(std::uint64_t physicalBytes, int ratio);
// Loaded precalculated data: the ratio of physical memory in bytes.
std::uint64_t PrecalculatedDataLimitBytes(std::uint64_t physicalBytes, int ratio);

// "512 MB" below a gigabyte, else gigabytes with one decimal: "3.2 GB".
std::wstring MemorySizeText(std::uint64_t bytes);

} // namespace zorvane

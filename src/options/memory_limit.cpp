#include "options/memory_limit.h"

namespace zorvane {

namespace {
constexpr std::uint64_t MB = 1ull << 20;
constexpr std::uint64_t GB = 1ull << 30;
} // namespace

std::uint64_t TempRegLimitMb(std::uint64_t physicalBytes, int ratio) {
    return (physicalBytes / MB) * static_cast<std::uint64_t>(ratio) / 100;
}

std::uint64_t PrecalculatedDataLimitBytes(std::uint64_t physicalBytes, int ratio) {
    // Hundredths first, so that bytes times the ratio cannot overflow.
    const auto r = static_cast<std::uint64_t>(ratio);
    return physicalBytes / 100 * r + physicalBytes % 100 * r / 100;
}

std::wstring MemorySizeText(std::uint64_t bytes) {
    if (bytes < GB) return std::to_wstring(bytes / MB) + L" MB";
    const std::uint64_t tenths = (bytes * 10 + GB / 2) / GB;
    return std::to_wstring(tenths / 10) + L"." + std::to_wstring(tenths % 10) + L" GB";
}

} // namespace zorvane

#include "options/profile_int.h"

#include <cstdint>

namespace zorvane {

int ReadProfileInt(std::string_view value, int defaultValue) {
    if (value.empty()) return defaultValue;
    std::size_t i = 0;
    while (i < value.size() && (value[i] == ' ' || value[i] == '\t')) ++i;
    bool negative = false;
    if (i < value.size() && (value[i] == '+' || value[i] == '-')) negative = value[i++] == '-';
    std::uint32_t result = 0;
    for (; i < value.size() && value[i] >= '0' && value[i] <= '9'; ++i)
        result = result * 10u + static_cast<std::uint32_t>(value[i] - '0');
    if (negative) result = 0u - result;
    return static_cast<int>(result);
}

} // namespace zorvane

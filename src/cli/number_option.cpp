#include "cli/number_option.h"

#include <cerrno>
#include <cstdlib>

namespace zorvane::cli {

namespace {

constexpr double MAX_SECONDS = 86400;

std::string rangeText(int min, int max) {
    return "a whole number from " + std::to_string(min) + " to " + std::to_string(max);
}

} // namespace

CLI::Option* AddWholeNumber(CLI::App* app, const std::string& name, int& target, int min, int max,
                            const std::string& description) {
    const std::string range = rangeText(min, max);
    CLI::Validator check(
        [min, max, range](std::string& text) -> std::string {
            errno = 0;
            char* end = nullptr;
            const long long value = text.empty() ? 0 : std::strtoll(text.c_str(), &end, 10);
            const bool whole = !text.empty() && end && *end == '\0' && errno != ERANGE;
            if (whole && value >= min && value <= max) return {};
            return "takes " + range + ", not \"" + text + "\"";
        },
        range);
    return app->add_option(name, target, description + " (" + range + ")")->check(check);
}

CLI::Option* AddSeconds(CLI::App* app, const std::string& name, double& target,
                        const std::string& description) {
    const std::string range =
        "a number of seconds from 0 to " + std::to_string(static_cast<int>(MAX_SECONDS));
    CLI::Validator check(
        [range](std::string& text) -> std::string {
            errno = 0;
            char* end = nullptr;
            const double value = text.empty() ? -1 : std::strtod(text.c_str(), &end);
            const bool number = !text.empty() && end && *end == '\0' && errno != ERANGE && value == value;
            if (number && value >= 0 && value <= MAX_SECONDS) return {};
            return "takes " + range + ", not \"" + text + "\"";
        },
        range);
    return app->add_option(name, target, description + " (" + range + ")")->check(check);
}

} // namespace zorvane::cli

#pragma once
// Options that take a number. The text is checked before the parser converts
// it, so that "abc" or a number beyond the range is refused with the option's
// name and its range (and exit code 2), never with the parser's own code.
#include <CLI/CLI.hpp>

#include <string>

namespace zorvane::cli {

// A whole number from `min` to `max`.
CLI::Option* AddWholeNumber(CLI::App* app, const std::string& name, int& target, int min, int max,
                            const std::string& description);

// A number of seconds, 0 or more, fractions allowed, at most a day.
CLI::Option* AddSeconds(CLI::App* app, const std::string& name, double& target,
                        const std::string& description);

} // namespace zorvane::cli

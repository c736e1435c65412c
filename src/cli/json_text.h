#pragma once
// The few pieces of JSON the command line writes: strings and lists of them.
#include <string>
#include <vector>

namespace zorvane::cli {

// A JSON string: quotes, backslashes and control bytes escaped.
std::string JsonText(const std::string& text);
// A JSON list of strings.
std::string JsonList(const std::vector<std::string>& items);

} // namespace zorvane::cli

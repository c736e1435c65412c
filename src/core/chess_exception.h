#pragma once
#include <stdexcept>
#include <string>

namespace zorvane {

// The error of the text readers and of the strict position set-up; carries the
// user-visible message as it is shown.
class ChessException : public std::runtime_error {
  public:
    explicit ChessException(const std::string& message) : std::runtime_error(message) {}
};

} // namespace zorvane

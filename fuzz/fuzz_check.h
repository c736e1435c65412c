#pragma once
// The one way a fuzz target reports a broken promise: the reason on stderr,
// then abort, which libFuzzer keeps as a crash input.
#include <cstdio>
#include <cstdlib>

namespace zorvane::fuzz {

inline void check(bool condition, const char* what = "a property of the target") {
    if (condition) return;
    std::fprintf(stderr, "check failed: %s\n", what);
    std::abort();
}

} // namespace zorvane::fuzz

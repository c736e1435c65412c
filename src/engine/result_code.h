#pragma once
// Results of the search steps: a signed byte, no scores.
#include <cstdint>

namespace zorvane {

enum ResultCode : int8_t {
    RESULT_MATE = 1,
    RESULT_NO_MATE = 0,
    RESULT_DOUBTFUL = -1,      // a heuristic cut something below: no proof either way
    RESULT_REFUTED_EARLY = -2, // an early test of Black's replies refuted; 0 on return
    RESULT_REPETITION = -3,    // a repetition below makes the result depend on the line
    RESULT_FFM_DEPTH_END = -4, // the depth of a forcing-moves run ran out
};

} // namespace zorvane

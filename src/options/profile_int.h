#pragma once
// Integers of a profile file read the way the platform's profile calls read
// them, so that an options.ini written by hand or by another build means the
// same here.
#include <string_view>

namespace zorvane {

// `value` is the text after "key=", already trimmed. An empty text gives
// `defaultValue` (an absent key is handled by the caller the same way).
// Otherwise: leading blanks are skipped, one '+' or '-' may follow, then the
// leading decimal digits are read and the rest is ignored; no digit at all
// gives 0. Digits accumulate in 32 bits and wrap, and '-' negates the result,
// so "-1" is -1 and "4294967295" is -1 as well.
int ReadProfileInt(std::string_view value, int defaultValue);

} // namespace zorvane

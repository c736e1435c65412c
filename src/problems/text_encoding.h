#pragma once
// Text encodings of problem files: UTF-8 for files with the "UTF-8" mark, and
// Windows-1250 (the code page of the program's home users) for the others.
// In memory every free text is a wide string of code points.
#include <string>
#include <string_view>

namespace zorvane {

constexpr wchar_t REPLACEMENT_CHARACTER = 0xFFFD;

// Decodes UTF-8. Every byte that does not belong to a well-formed sequence
// (stray continuation, overlong form, surrogate, beyond U+10FFFF, cut short)
// becomes one U+FFFD, so no input can fail.
std::wstring Utf8ToWide(std::string_view text);

// Encodes code points as UTF-8; a value that is no scalar value is written as U+FFFD.
std::string WideToUtf8(std::wstring_view text);

// Decodes Windows-1250; the five bytes the code page leaves undefined become U+FFFD.
std::wstring Windows1250ToWide(std::string_view text);

} // namespace zorvane

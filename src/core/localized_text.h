#pragma once
// A text of the program in its three languages. Every user-visible message is
// written in all three, side by side, and picked by the language in force.
// The texts are literals: a LocalizedText only looks at them, so that tables
// of texts stay constant data.
#include <string_view>

namespace zorvane {

enum LanguageId : int { LANGUAGE_POLISH = 0, LANGUAGE_ENGLISH = 1, LANGUAGE_UKRAINIAN = 2 };

struct LocalizedText {
    std::wstring_view polish;
    std::wstring_view english;
    std::wstring_view ukrainian;

    // Polish, Ukrainian, and English for any other number.
    constexpr std::wstring_view In(int languageId) const {
        switch (languageId) {
        case LANGUAGE_POLISH:
            return polish;
        case LANGUAGE_UKRAINIAN:
            return ukrainian;
        default:
            return english;
        }
    }
};

} // namespace zorvane

#pragma once
// The three languages of the program's texts. Every user-visible message is
// written in all three, side by side, and picked by the language in force.

namespace zorvane {

enum LanguageId : int { LANGUAGE_POLISH = 0, LANGUAGE_ENGLISH = 1, LANGUAGE_UKRAINIAN = 2 };

inline const wchar_t* Tr(int languageId, const wchar_t* polish, const wchar_t* english, const wchar_t* ukrainian) {
    switch (languageId) {
    case LANGUAGE_POLISH: return polish;
    case LANGUAGE_UKRAINIAN: return ukrainian;
    default: return english;
    }
}

} // namespace zorvane

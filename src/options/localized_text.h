#pragma once
// A text of the program in its three languages, and a message box made of
// one. The texts are literals: a LocalizedText only looks at them, so that
// tables of texts stay constant data. The window picks the form with
// In(languageId); this library stays free of the language in force.
#include <string_view>

namespace zorvane {

struct LocalizedText {
    std::wstring_view polish;
    std::wstring_view english;
    std::wstring_view ukrainian;

    // 0 Polish, 2 Ukrainian, anything else English.
    constexpr std::wstring_view In(int languageId) const {
        switch (languageId) {
        case 0:
            return polish;
        case 2:
            return ukrainian;
        default:
            return english;
        }
    }
};

// The four standard titles of message boxes.
enum class MessageTitle { Question, Warning, Error, Information };

struct DialogMessage {
    MessageTitle title;
    LocalizedText text;
};

} // namespace zorvane

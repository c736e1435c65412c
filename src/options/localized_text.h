#pragma once
// A text of the program in its three languages, and a message box made of
// one. The window picks the form with Tr(LanguageId, polish, english,
// ukrainian); this library stays free of the language in force.
#include <string>

namespace zorvane {

struct LocalizedText {
    std::wstring polish;
    std::wstring english;
    std::wstring ukrainian;
};

// The four standard titles of message boxes.
enum class MessageTitle { Question, Warning, Error, Information };

struct DialogMessage {
    MessageTitle title;
    LocalizedText text;
};

} // namespace zorvane

#pragma once
// A message box made of a text in the three languages. The window picks the
// form with In(languageId); this library stays free of the language in force.
#include "core/localized_text.h"

namespace zorvane {

// The four standard titles of message boxes.
enum class MessageTitle { Question, Warning, Error, Information };

struct DialogMessage {
    MessageTitle title;
    LocalizedText text;
};

} // namespace zorvane

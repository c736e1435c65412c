#pragma once
// Texts of the window in the language in force.
#include "options/localized_text.h"
#include "shell/command_table.h"

#include <QString>

namespace zorvane {

// The form of `text` for the language: 0 Polish, 2 Ukrainian, anything else English.
QString Translate(int languageId, const Text3& text);
QString Translate(int languageId, const wchar_t* polish, const wchar_t* english, const wchar_t* ukrainian);
QString Translate(int languageId, const LocalizedText& text);

// The four standard titles of the boxes.
QString TitleText(int languageId, MessageTitle title);
// A title that the core gives in English becomes the window's language when it is a standard one.
QString TranslateTitle(int languageId, const std::wstring& englishTitle);

} // namespace zorvane

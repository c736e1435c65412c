#pragma once
// Texts of the window in the language in force.
#include "options/localized_text.h"

#include <QString>

#include <string>
#include <string_view>

namespace zorvane {

// The form of `text` for the language: 0 Polish, 2 Ukrainian, anything else English.
QString Translate(int languageId, const LocalizedText& text);
QString ToQString(std::wstring_view text);

// Said both when a file is opened and at start-up.
inline constexpr LocalizedText FILE_CANNOT_BE_EMPTY{L"Plik nie może być pusty.", L"File cannot be empty.",
                                                    L"Файл не може бути порожнім."};

// The four standard titles of the boxes.
QString TitleText(int languageId, MessageTitle title);
// A title that the core gives in English becomes the window's language when it is a standard one.
QString TranslateTitle(int languageId, const std::wstring& englishTitle);

} // namespace zorvane

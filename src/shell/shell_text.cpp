#include "shell/shell_text.h"

namespace zorvane {

namespace {

constexpr LocalizedText TITLES[] = {
    {L"Pytanie", L"Question", L"Питання"},
    {L"Ostrzeżenie", L"Warning", L"Увага"},
    {L"Błąd", L"Error", L"Помилка"},
    {L"Informacja", L"Information", L"Інформація"},
};

} // namespace

QString ToQString(std::wstring_view text) {
    return QString::fromWCharArray(text.data(), static_cast<qsizetype>(text.size()));
}

QString Translate(int languageId, const LocalizedText& text) {
    return ToQString(text.In(languageId));
}

QString TitleText(int languageId, MessageTitle title) {
    return Translate(languageId, TITLES[static_cast<int>(title)]);
}

QString TranslateTitle(int languageId, const std::wstring& englishTitle) {
    for (const LocalizedText& title : TITLES)
        if (englishTitle == title.english) return Translate(languageId, title);
    return QString::fromStdWString(englishTitle);
}

} // namespace zorvane

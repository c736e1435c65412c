#include "shell/shell_text.h"

#include "problems/language.h"

namespace zorvane {

namespace {

constexpr Text3 TITLES[] = {
    {L"Pytanie", L"Question", L"Питання"},
    {L"Ostrzeżenie", L"Warning", L"Увага"},
    {L"Błąd", L"Error", L"Помилка"},
    {L"Informacja", L"Information", L"Інформація"},
};

} // namespace

QString Translate(int languageId, const wchar_t* polish, const wchar_t* english, const wchar_t* ukrainian) {
    return QString::fromWCharArray(Tr(languageId, polish, english, ukrainian));
}

QString Translate(int languageId, const Text3& text) {
    return Translate(languageId, text.polish, text.english, text.ukrainian);
}

QString Translate(int languageId, const LocalizedText& text) {
    return QString::fromStdWString(
        Tr(languageId, text.polish.c_str(), text.english.c_str(), text.ukrainian.c_str()));
}

QString TitleText(int languageId, MessageTitle title) {
    return Translate(languageId, TITLES[static_cast<int>(title)]);
}

QString TranslateTitle(int languageId, const std::wstring& englishTitle) {
    for (const Text3& title : TITLES)
        if (englishTitle == title.english) return Translate(languageId, title);
    return QString::fromStdWString(englishTitle);
}

} // namespace zorvane

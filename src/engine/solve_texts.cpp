#include "engine/solve_texts.h"

#include "core/localized_text.h"

#include <cstdio>

namespace zorvane {

const char* const BLACK_KING_CHECKED_TEXT =
    "Black king cannot be checked in the mate task starting postition.";
const char* const WHITE_KING_CHECKED_TEXT =
    "White king cannot be checked in the mate-defence task starting postition.";

std::wstring SecondsText(double milliseconds) {
    wchar_t text[64];
    std::swprintf(text, 64, L" (%0.1f sec.)", milliseconds / 1000.0);
    return text;
}

std::wstring NoSolutionText(int moves, double milliseconds, const NoSolutionNotes& notes, int languageId) {
    std::wstring text =
        std::wstring(LocalizedText{L"Nie znaleziono żadnych rozwiązań dla #",
                                   L"Not found any solutions for #", L"Не знайдено жодного розв'язку для #"}
                         .In(languageId));
    text += std::to_wstring(moves) + SecondsText(milliseconds);
    if (!notes.relaxationOff && !notes.passWithoutHeuristicsOff && !notes.quickMode) return text;
    text += std::wstring(LocalizedText{L"\n\nUwaga:\n", L"\n\nNote:\n", L"\n\nПримітка:\n"}.In(languageId));
    if (notes.relaxationOff)
        text += std::wstring(LocalizedText{
            L"\t* było tylko jedno przejście z heurystykami (łagodzenie heurystyk wyłączono na życzenie "
            L"użytkownika)\n",
            L"\t* there was only one pass with heuristcs (relaxation of heuristics was switched off by "
            L"user's "
            L"request)\n",
            L"\t* був лише один прохід з евристиками (послаблення евристик вимкнено на прохання "
            L"користувача)\n"}
                                 .In(languageId));
    if (notes.passWithoutHeuristicsOff)
        text +=
            std::wstring(LocalizedText{L"\t* przejście bez heurystyk pominięto (na życzenie użytkownika)\n",
                                       L"\t* pass without heuristics has been skipped (on user's request)\n",
                                       L"\t* прохід без евристик пропущено (на прохання користувача)\n"}
                             .In(languageId));
    if (notes.quickMode)
        text += std::wstring(LocalizedText{
            L"\t* w trybie szybkim (zob. menu Zaawansowane->Opcje) istnieje małe prawdopodobieństwo (~0.3%) "
            L"fałszywie negatywnych wyników\n",
            L"\t* in Quick Mode (see menu Advanced->Options) there exists a small probability (~0.3%) of "
            L"false "
            L"negatives\n",
            L"\t* у швидкому режимі (див. меню Додатково->Параметри) існує мала ймовірність (~0.3%) "
            L"хибнонегативних результатів\n"}
                                 .In(languageId));
    return text;
}

std::wstring DualStopText(int languageId) {
    return std::wstring(LocalizedText{L"Poszukiwanie rozwiązań zostało zatrzymane po wykryciu dualu.",
                                      L"Search for solutions has been stopped after detection of dual.",
                                      L"Пошук розв'язків зупинено після виявлення дуалі."}
                            .In(languageId));
}

std::wstring ThreeSolutionsStopText(int languageId) {
    return std::wstring(LocalizedText{L"Poszukiwanie rozwiązań zostało zatrzymane po znalezieniu 3 rozwiązań",
                                      L"Search for solutions has been stopped after finding 3 solutions",
                                      L"Пошук розв'язків зупинено після знаходження 3 розв'язків"}
                            .In(languageId));
}

std::wstring SeveralSolutionsText(int count, int languageId) {
    return std::wstring(LocalizedText{L"Znaleziono więcej niż jedno rozwiązanie: ",
                                      L"More than one solution found: ",
                                      L"Знайдено більше ніж один розв'язок: "}
                            .In(languageId)) +
           std::to_wstring(count);
}

std::wstring StoppedByUserSuffix(int languageId) {
    return std::wstring(
        LocalizedText{L" (zatrzymane przez użytkownika)", L" (stopped by user)", L" (зупинено користувачем)"}
            .In(languageId));
}

std::wstring AnalysisStoppedText(int languageId) {
    return std::wstring(LocalizedText{L"Analiza zatrzymana przez użytkownika", L"Analysis stopped by user",
                                      L"Аналіз зупинено користувачем"}
                            .In(languageId));
}

std::wstring FromRegisterSuffix(int languageId) {
    return std::wstring(LocalizedText{L" (z rejestru)", L" (from register)", L" (з реєстру)"}.In(languageId));
}

std::wstring NoSolutionFromPositionText(double milliseconds, bool passWithoutHeuristicsOff, int languageId) {
    std::wstring text = std::wstring(
        LocalizedText{L"Nie znaleziono rozwiązania (", L"No solution found (", L"Розв'язку не знайдено ("}.In(
            languageId));
    wchar_t seconds[32];
    std::swprintf(seconds, 32, L"%0.1f", milliseconds / 1000.0);
    text += seconds;
    text += L" sec.)";
    if (passWithoutHeuristicsOff)
        text += std::wstring(LocalizedText{
            L" UWAGA: Przejście bez heurystyk jest obecnie wyłączone (zob. okno wyboru heurystyk)",
            L" NOTE: Pass without heuristics is currently switched off (see heuristics selection dialog box)",
            L" ПРИМІТКА: Прохід без евристик зараз вимкнено (див. вікно вибору евристик)"}
                                 .In(languageId));
    return text;
}

std::wstring OrLessText(int moves, int languageId) {
    return L"(" + std::to_wstring(moves) +
           std::wstring(LocalizedText{L" lub mniej) ", L" or less) ", L" або менше) "}.In(languageId));
}

std::wstring ThreatLabel(int languageId) {
    return std::wstring(LocalizedText{L"groźba: ", L"threat: ", L"загроза: "}.In(languageId));
}

std::string PassName(int pass, int relaxations) {
    if (pass != 1 || relaxations <= 0) return std::to_string(pass);
    // Letters from 'b' on, one a relaxation; past 'z' the count itself.
    constexpr int LETTERS = 'z' - 'a';
    std::string name = "1";
    if (relaxations <= LETTERS)
        name += static_cast<char>('a' + relaxations);
    else
        name.append("(").append(std::to_string(relaxations + 1)).append(")");
    return name;
}

} // namespace zorvane

#include "engine/solve_texts.h"

#include "problems/language.h"

#include <cstdio>

namespace zorvane {

const char* const BLACK_KING_CHECKED_TEXT = "Black king cannot be checked in the mate task starting postition.";
const char* const WHITE_KING_CHECKED_TEXT = "White king cannot be checked in the mate-defence task starting postition.";

std::wstring SecondsText(double milliseconds) {
    wchar_t text[64];
    std::swprintf(text, 64, L" (%0.1f sec.)", milliseconds / 1000.0);
    return text;
}

std::wstring NoSolutionText(int moves, double milliseconds, const NoSolutionNotes& notes, int languageId) {
    std::wstring text = Tr(languageId, L"Nie znaleziono żadnych rozwiązań dla #", L"Not found any solutions for #",
                           L"Не знайдено жодного розв'язку для #");
    text += std::to_wstring(moves) + SecondsText(milliseconds);
    if (!notes.relaxationOff && !notes.passWithoutHeuristicsOff && !notes.quickMode) return text;
    text += Tr(languageId, L"\n\nUwaga:\n", L"\n\nNote:\n", L"\n\nПримітка:\n");
    if (notes.relaxationOff)
        text += Tr(languageId,
                   L"\t* było tylko jedno przejście z heurystykami (łagodzenie heurystyk wyłączono na życzenie "
                   L"użytkownika)\n",
                   L"\t* there was only one pass with heuristcs (relaxation of heuristics was switched off by user's "
                   L"request)\n",
                   L"\t* був лише один прохід з евристиками (послаблення евристик вимкнено на прохання "
                   L"користувача)\n");
    if (notes.passWithoutHeuristicsOff)
        text += Tr(languageId, L"\t* przejście bez heurystyk pominięto (na życzenie użytkownika)\n",
                   L"\t* pass without heuristics has been skipped (on user's request)\n",
                   L"\t* прохід без евристик пропущено (на прохання користувача)\n");
    if (notes.quickMode)
        text += Tr(languageId,
                   L"\t* w trybie szybkim (zob. menu Zaawansowane->Opcje) istnieje małe prawdopodobieństwo (~0.3%) "
                   L"fałszywie negatywnych wyników\n",
                   L"\t* in Quick Mode (see menu Advanced->Options) there exists a small probability (~0.3%) of false "
                   L"negatives\n",
                   L"\t* у швидкому режимі (див. меню Додатково->Параметри) існує мала ймовірність (~0.3%) "
                   L"хибнонегативних результатів\n");
    return text;
}

std::wstring DualStopText(int languageId) {
    return Tr(languageId, L"Poszukiwanie rozwiązań zostało zatrzymane po wykryciu dualu.",
              L"Search for solutions has been stopped after detection of dual.",
              L"Пошук розв'язків зупинено після виявлення дуалі.");
}

std::wstring ThreeSolutionsStopText(int languageId) {
    return Tr(languageId, L"Poszukiwanie rozwiązań zostało zatrzymane po znalezieniu 3 rozwiązań",
              L"Search for solutions has been stopped after finding 3 solutions",
              L"Пошук розв'язків зупинено після знаходження 3 розв'язків");
}

std::wstring SeveralSolutionsText(int count, int languageId) {
    return Tr(languageId, L"Znaleziono więcej niż jedno rozwiązanie: ", L"More than one solution found: ",
              L"Знайдено більше ніж один розв'язок: ") +
           std::to_wstring(count);
}

std::wstring StoppedByUserSuffix(int languageId) {
    return Tr(languageId, L" (zatrzymane przez użytkownika)", L" (stopped by user)", L" (зупинено користувачем)");
}

std::wstring AnalysisStoppedText(int languageId) {
    return Tr(languageId, L"Analiza zatrzymana przez użytkownika", L"Analysis stopped by user",
              L"Аналіз зупинено користувачем");
}

std::wstring FromRegisterSuffix(int languageId) {
    return Tr(languageId, L" (z rejestru)", L" (from register)", L" (з реєстру)");
}

std::wstring NoSolutionFromPositionText(double milliseconds, bool passWithoutHeuristicsOff, int languageId) {
    std::wstring text = Tr(languageId, L"Nie znaleziono rozwiązania (", L"No solution found (",
                           L"Розв'язку не знайдено (");
    wchar_t seconds[32];
    std::swprintf(seconds, 32, L"%0.1f", milliseconds / 1000.0);
    text += seconds;
    text += L" sec.)";
    if (passWithoutHeuristicsOff)
        text += Tr(languageId,
                   L" UWAGA: Przejście bez heurystyk jest obecnie wyłączone (zob. okno wyboru heurystyk)",
                   L" NOTE: Pass without heuristics is currently switched off (see heuristics selection dialog box)",
                   L" ПРИМІТКА: Прохід без евристик зараз вимкнено (див. вікно вибору евристик)");
    return text;
}

std::wstring OrLessText(int moves, int languageId) {
    return L"(" + std::to_wstring(moves) + Tr(languageId, L" lub mniej) ", L" or less) ", L" або менше) ");
}

std::wstring ThreatLabel(int languageId) { return Tr(languageId, L"groźba: ", L"threat: ", L"загроза: "); }

} // namespace zorvane

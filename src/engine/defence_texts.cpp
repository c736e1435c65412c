#include "engine/defence_texts.h"

#include "core/localized_text.h"

namespace zorvane {

namespace {

constexpr LocalizedText WORDS[] = {
    {L"Jedyna odpowiedź, która zapobiega szybkiemu matowi: ", L"The only reply that prevents fast mate: ",
     L"Єдина відповідь, що запобігає швидкому мату: "},
    {L"Jedyna odpowiedź: ", L"The only reply: ", L"Єдина відповідь: "},
    {L"Jedyna odpowiedź (nie jest obroną przed matem) : ", L"The only reply (not a defence against mate) : ",
     L"Єдина відповідь (не є захистом від мату) : "},
    {L"Jedyna odpowiedź, która zapobiega szybkiemu matowi (nie jest obroną przed matem) : ",
     L"The only reply that prevents fast mate (not a defence against mate) : ",
     L"Єдина відповідь, що запобігає швидкому мату (не є захистом від мату) : "},
    {L"Nie znaleziono żadnej obrony przed matem. Najlepiej wygląda: ",
     L"Not found any defence against mate. The best looks: ",
     L"Не знайдено жодного захисту від мату. Найкращим виглядає: "},
    {L"Mat w zadanej liczbie posunięć został obalony posunięciem: ",
     L"Mate in the requested stipulation was refuted with: ",
     L"Мат у заданій кількості ходів спростовано ходом: "},
};

std::wstring in(const LocalizedText& text, int languageId) {
    return std::wstring(text.In(languageId));
}

} // namespace

std::wstring DefenceWordText(DefenceWord word, int languageId) {
    return in(WORDS[static_cast<int>(word)], languageId);
}

std::wstring EquivalentMovesLabel(int languageId) {
    return in({L"\nRównoważne posunięcia: ", L"\nEquivalent moves: ", L"\nРівноцінні ходи: "}, languageId);
}

std::wstring PositionRepetitionWord(int languageId) {
    return in({L"Powtórzenie pozycji", L"Position repetition", L"Повторення позиції"}, languageId);
}

std::wstring ChosenMoveRepetitionBoxText(int languageId) {
    return in({L"Program wykrył powtórzenie pozycji.\nZe względów wydajnościowych każde powtórzenie pozycji "
               L"uznaje się za przeszkodę dla mata w wymaganej liczbie posunięć i w takim przypadku program "
               L"przerywa analizę.",
               L"Program detected position repetition.\nFor performance reasons every position repetition is "
               L"assumed to prevent possibility of mate within the required stipulation and program stops "
               L"analysis in such case.",
               L"Програма виявила повторення позиції.\nЗ міркувань продуктивності кожне повторення позиції "
               L"вважається таким, що унеможливлює мат у заданій кількості ходів, і в такому разі програма "
               L"припиняє аналіз."},
              languageId);
}

std::wstring LineRepetitionBoxText(int languageId) {
    return in(
        {L"Program wykrył powtórzenie pozycji\nZe względów optymalizacyjnych każde powtórzenie pozycji "
         L"jest traktowane jako zapobiegające matowi, dlatego w takim przypadku program kończy analizę.",
         L"Program detected position repetition\nFor optimization reasons every postion repetition is "
         L"treated as preventing mate and, thus, program terminates analysis in such case.",
         L"Програма виявила повторення позиції\nЗ міркувань оптимізації кожне повторення позиції "
         L"вважається таким, що запобігає мату, тож у такому разі програма завершує аналіз."},
        languageId);
}

std::wstring NoValidMoveText(int languageId) {
    return in(
        {L"Nie znaleziono prawidłowego posunięcia", L"No valid move found", L"Не знайдено допустимого ходу"},
        languageId);
}

std::wstring InformationTitle(int languageId) {
    return in({L"Informacja", L"Information", L"Інформація"}, languageId);
}

std::wstring NoRegisterDataBoxText(int languageId) {
    return in(
        {L"Brak danych w rejestrze tymczasowym.\n\nObrona czarnych, która zostanie przedstawiona, może być "
         L"nieprawidłowa.",
         L"No data in temporary register.\n\nDefence by black that will be presented may be incorrect.",
         L"Немає даних у тимчасовому реєстрі.\n\nЗахист чорних, який буде показано, може бути неправильним."},
        languageId);
}

} // namespace zorvane

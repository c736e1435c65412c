#include "shell/board_texts.h"

#include "options/localized_text.h"
#include "shell/shell_text.h"

namespace zorvane {

namespace {

LocalizedText textOf(BoardText text) {
    switch (text) {
    case BoardText::NoMoreMoves:
        return {L"Nie można wykonać kolejnych ruchów ze względu na warunek #%1",
                L"No more moves can be made because of stipulation #%1",
                L"Більше ходів зробити не можна через умову #%1"};
    case BoardText::CheckedAtStart:
        return {L"Niepoprawna pozycja: czarny król nie może być szachowany w pozycji wyjściowej.",
                L"Invalid position: Black king cannot be checked in starting position.",
                L"Неправильна позиція: чорний король не може бути під шахом у початковій позиції."};
    case BoardText::IllegalMove:
        return {L"Niedozwolony ruch", L"Illegal move", L"Неприпустимий хід"};
    case BoardText::PositionRepetition:
        return {
            L"Program wykrył powtórzenie pozycji\nZe względów optymalizacyjnych każde powtórzenie pozycji "
            L"jest traktowane jako zapobiegające matowi i dlatego program w takim przypadku kończy analizę.",
            L"Program detected position repetition\nFor optimization reasons every postion repetition is "
            L"treated "
            L"as preventing mate and, thus, program terminates analysis in such case.",
            L"Програма виявила повторення позиції\nЗ міркувань оптимізації кожне повторення позиції "
            L"вважається "
            L"таким, що запобігає мату, і тому програма в такому разі припиняє аналіз."};
    case BoardText::EngineRefusesMove:
        return {L"Program odmawia wykonania tego ruchu.\nUniemożliwia on zamatowanie czarnego króla...",
                L"Engine refuses to make this move.\nIt makes mating black king impossible...",
                L"Програма відмовляється робити цей хід.\nВін унеможливлює мат чорному королю..."};
    case BoardText::Stalemate:
        return {L"Pat", L"Stalemate", L"Пат"};
    case BoardText::MateInOne:
        return {L"#1 w bieżącej pozycji", L"#1 in current position", L"#1 у поточній позиції"};
    case BoardText::TemporaryRegisterMate:
        return {L"Rej.tymcz.: #%1 (lub mniej) w bieżącej pozycji",
                L"Temp.reg.: #%1 (or less) in current position",
                L"Тимч.реєстр: #%1 (або менше) у поточній позиції"};
    case BoardText::NoMate:
        return {L"Brak mata w tej pozycji", L"No mate in this position", L"У цій позиції мату немає"};
    case BoardText::ToolUnavailable:
        return {L"Narzędzie jest niedostępne, gdy program analizuje pozycję",
                L"The tool is unavailable when engine is analysing a position",
                L"Інструмент недоступний, поки програма аналізує позицію"};
    case BoardText::StartEditing:
        return {L"Czy na pewno chcesz rozpocząć edycję bieżącej pozycji?\n"
                L"(wszystkie dotychczas wykonane ruchy zostaną wówczas utracone)",
                L"Do you really want to start editting current position?\n"
                L"(all the moves made so far will be lost in such case)",
                L"Ви справді бажаєте почати редагування поточної позиції?\n"
                L"(у такому разі всі зроблені досі ходи буде втрачено)"};
    case BoardText::StipulationToolUnavailable:
        return {
            L"Narzędzie do zmiany warunku (długości analizy) jest obecnie niedostępne.\n\n"
            L"Przełącz się w tryb ustawiania pozycji (narzędzie 'ręka' w prawym dolnym rogu szachownicy ...",
            L"Tool to change stipulation (length of analysis) is currently unavailable.\n\n"
            L"Switch to position setting mode (tool 'hand' in right bottom of chessboard ...",
            L"Інструмент зміни умови (тривалості аналізу) зараз недоступний.\n\n"
            L"Перейдіть у режим розстановки позиції (інструмент 'рука' у правому нижньому куті шахівниці "
            L"..."};
    case BoardText::TooManyQueensAndPawns:
        return {L"Uwaga: Na szachownicy jest więcej niż 9 hetmanów i pionów tego samego koloru. Program "
                L"poprawnie "
                L"obsługuje tylko legalne pozycje (w których możliwych jest nie więcej niż 218 ruchów); w "
                L"przeciwnym "
                L"razie jego działanie może być nieprzewidywalne.",
                L"Note: There are more than 9 queens and pawns of the same color. Program is able to "
                L"properly handle "
                L"only legal positions (in which no more than 218 moves are possible); otherwise its "
                L"behaviour may be "
                L"unpredictable.",
                L"Увага: на шахівниці більше ніж 9 ферзів і пішаків одного кольору. Програма правильно "
                L"обробляє лише "
                L"легальні позиції (у яких можливо не більше ніж 218 ходів); інакше її поведінка може бути "
                L"непередбачуваною."};
    case BoardText::ContinueAnyway:
        return {L"\nCzy mimo to chcesz kontynuować?", L"\nDo you want to continue anyway?",
                L"\nВсе одно продовжити?"};
    case BoardText::BlackKingCheckedAtStart:
        return {L"Czarny król nie może być szachowany w pozycji wyjściowej zadania na mata.",
                L"Black king cannot be checked in the mate task starting postition.",
                L"Чорний король не може бути під шахом у початковій позиції задачі на мат."};
    case BoardText::WhiteKingCheckedAtStart:
        return {L"Biały król nie może być szachowany w pozycji wyjściowej zadania obrony przed matem.",
                L"White king cannot be checked in the mate-defence task starting postition.",
                L"Білий король не може бути під шахом у початковій позиції задачі на захист від мату."};
    case BoardText::Queen:
        return {L"Hetman", L"Queen", L"Ферзь"};
    case BoardText::Rook:
        return {L"Wieża", L"Rook", L"Тура"};
    case BoardText::Bishop:
        return {L"Goniec", L"Bishop", L"Слон"};
    case BoardText::Knight:
        return {L"Skoczek", L"Knight", L"Кінь"};
    }
    return {L"", L"", L""};
}

// The texts of the strict set-up of a position.
constexpr LocalizedText SETUP_FAULTS[] = {
    {L"Piony nie mogą stać na 1. ani 8. linii szachownicy.",
     L"Pawns cannot occupy 1st nor 8th line of the chessboard.",
     L"Пішаки не можуть стояти на 1-й чи 8-й горизонталі шахівниці."},
    {L"Niedozwolona liczba króli.", L"Illegal number of kings.", L"Неприпустима кількість королів."},
    {L"Oba króle są szachowane.", L"Both kings attacked.", L"Обидва королі під шахом."},
};

} // namespace

QString BoardMessage(int languageId, BoardText text) {
    return Translate(languageId, textOf(text));
}

QString SetupFaultMessage(int languageId, const std::string& englishText) {
    const QString english = QString::fromStdString(englishText);
    for (const LocalizedText& fault : SETUP_FAULTS)
        if (english == ToQString(fault.english)) return Translate(languageId, fault);
    return english;
}

} // namespace zorvane

#include "shell/command_table.h"

#include <algorithm>
#include <array>

namespace zorvane {

const LocalizedText BonusCommandText{L"&Bonus dla trzecioklasistów :)", L"&Bonus dla trzecioklasistów :)",
                                     L"&Bonus dla trzecioklasistów :)"};
const wchar_t* const ProcessorItemText = L"Procesor ";

namespace {

// The tables name their commands without the enum's prefix, for brevity.
using enum CommandId;

// clang-format off
constexpr CommandInfo COMMANDS[] = {
    // File
    {FileNew, {L"&Nowy plik", L"&New file", L"&Новий файл"}},
    {FileOpenDefault, {L"&Otwórz plik domyślny (myChessProblems.cp)",
        L"&Open defaulf file (myChessProblems.cp)", L"&Відкрити типовий файл (myChessProblems.cp)"}},
    {FileOpenSamples, {L"Otwórz &przykładowe kompozycje (&sample_problems.cp)",
        L"&Open sample compositions (&sample_problems.cp)",
        L"Відкрити &зразкові композиції (&sample_problems.cp)"}},
    {FileOpen, {L"Otwórz plik z problemami szachowymi (.cp) ...\tCtrl+O",
        L"Open file with chess problems (.cp) ...\tCtrl+O",
        L"Відкрити файл із шаховими задачами (.cp) ...\tCtrl+O"}},
    {FileSave, {L"&Zapisz zmiany\tCtrl + S", L"&Save changes\tCtrl + S", L"&Зберегти зміни\tCtrl + S"}},
    {FileSaveAs, {L"Zapisz &jako...", L"Save &as...", L"Зберегти &як..."}},
    {FileAppendProblems, {L"&Dołącz problemy z innego pliku .cp...",
        L"&Append problems from another .cp file...", L"&Додати задачі з іншого файлу .cp..."}},
    {FileRemoveProblems, {L"&Usuń problemy, które są w innym pliku .cp...",
        L"&Remove problems that are present in another .cp file...",
        L"&Вилучити задачі, які є в іншому файлі .cp..."}},
    {FileExit, {L"&Zakończ", L"E&xit", L"В&ихід"}},
    // Position
    {PositionCopy, {L"Kopiuj\tCtrl+C", L"Copy\tCtrl+C", L"Копіювати\tCtrl+C"}},
    {PositionCopyWithoutVariants, {L"Kopiuj bez wariantów", L"Copy without variants",
        L"Копіювати без варіантів"}},
    {PositionCopyWithoutVariantsOrTags, {L"Kopiuj bez wariantów i tagów", L"Copy without variants or tags",
        L"Копіювати без варіантів і тегів"}},
    {PositionCopyFen, {L"Kopiuj kod FEN pozycji\tCtrl+Shift+C", L"Copy FEN code of position\tCtrl+Shift+C",
        L"Копіювати код FEN позиції\tCtrl+Shift+C"}},
    {PositionCopyFullFen, {L"Kopiuj pełny kod FEN pozycji", L"Copy full FEN code of position",
        L"Копіювати повний код FEN позиції"}},
    {PositionPaste, {L"Wklej (pozycję/FEN/ruchy)\tCtrl+V", L"Paste (position/FEN/moves)\tCtrl+V",
        L"Вставити (позицію/FEN/ходи)\tCtrl+V"}},
    {PositionPasteMirrored, {L"Wklej jako lustrzane odbicie", L"Paste as mirror", L"Вставити дзеркально"}},
    {PositionRotate90, {L"Obróć pozycję o 90°", L"Rotate position 90°", L"Повернути позицію на 90°"}},
    {PositionSwapColours, {L"Zamień białe i czarne", L"Swap black and white",
        L"Поміняти місцями чорних і білих"}},
    {PositionShiftLeft, {L"Przesuń pozycję w lewo\tCtrl+L", L"Shift position left\tCtrl+L",
        L"Зсунути позицію ліворуч\tCtrl+L"}},
    {PositionShiftRight, {L"Przesuń pozycję w prawo\tCtrl+R", L"Shift position right\tCtrl+R",
        L"Зсунути позицію праворуч\tCtrl+R"}},
    {PositionShiftUp, {L"Przesuń pozycję w górę\tCtrl+U", L"Shift position up\tCtrl+U",
        L"Зсунути позицію вгору\tCtrl+U"}},
    {PositionShiftDown, {L"Przesuń pozycję w dół\tCtrl+D", L"Shift position down\tCtrl+D",
        L"Зсунути позицію вниз\tCtrl+D"}},
    {MovesCopyShort, {L"Kopiuj ruchy - notacja skrócona", L"Copy moves - short notation",
        L"Копіювати ходи - скорочена нотація"}},
    {MovesCopyFull, {L"Kopiuj ruchy - notacja pełna", L"Copy moves - full notation",
        L"Копіювати ходи - повна нотація"}},
    {VariantsCopyShort, {L"Kopiuj warianty - notacja skrócona", L"Copy variants - short notation",
        L"Копіювати варіанти - скорочена нотація"}},
    {VariantsCopyFull, {L"Kopiuj warianty - notacja pełna", L"Copy variants - full notation",
        L"Копіювати варіанти - повна нотація"}},
    {PositionSettingMode, {L"Włącz/wyłącz tryb ustawiania pozycji", L"Switch on/off position setting mode",
        L"Увімкнути/вимкнути режим розстановки позиції"}},
    {StipulationUp, {L"Zwiększ liczbę ruchów (#n)\tKliknij strzałkę w górę",
        L"Increase stipulation (#n)\tClick arrow up",
        L"Збільшити кількість ходів (#n)\tКлацніть стрілку вгору"}},
    {StipulationDown, {L"Zmniejsz liczbę ruchów (#n)\tKliknij strzałkę w dół",
        L"Decrease stipulation (#n)\tClick arrow down",
        L"Зменшити кількість ходів (#n)\tКлацніть стрілку вниз"}},
    {StipulationUpTen, {L"Zwiększ liczbę ruchów (#n) o 10\tKliknij prawym przyciskiem strzałkę w górę",
        L"Increase stipulation (#n) by 10\tRight click arrow up",
        L"Збільшити кількість ходів (#n) на 10\tКлацніть правою кнопкою стрілку вгору"}},
    {StipulationDownTen, {L"Zmniejsz liczbę ruchów (#n) o 10\tKliknij prawym przyciskiem strzałkę w dół",
        L"Decrease stipulation (#n) by 10\tRight click arrow down",
        L"Зменшити кількість ходів (#n) на 10\tКлацніть правою кнопкою стрілку вниз"}},
    {Undo, {L"Cofnij ostatnią zmianę\tCtrl+Z", L"Undo last change\tCtrl+Z",
        L"Скасувати останню зміну\tCtrl+Z"}},
    {Redo, {L"Ponów ostatnią zmianę\tCtrl+Y", L"Redo last change\tCtrl+Y",
        L"Повторити останню зміну\tCtrl+Y"}},
    // Problem
    {TypeDirectMate, {L"Dwu-,trzy-/wielochodówka", L"Two-,Three-/Moremover", L"Дво-,три-/багатоходівка"}},
    {TypeSelfmate, {L"Samomat", L"Selfmate", L"Зворотний мат"}},
    {TypeHelpmate, {L"Mat pomocniczy", L"Helpmate", L"Кооперативний мат"}},
    {SolveStart, {L"&Rozwiąż problem\tF5", L"&Solve problem\tF5", L"&Розв'язати задачу\tF5"}},
    {SolveAllSolutions, {L"Znajdź &wszystkie rozwiązania (prawy klik na przycisku Start)\tShift+F5",
        L"Find &all solutions(right click on Start button)\tShift+F5",
        L"Знайти &всі розв'язки (клацання правою кнопкою на кнопці Старт)\tShift+F5"}},
    {SolveBlackDefence, {L"Znajdź najlepszą obronę &czarnych\tF5", L"Find best defence for &black\tF5",
        L"Знайти найкращий захист &чорних\tF5"}},
    {SolveBlackDefenceThorough, {L"Znajdź najlepszą obronę czarnych - &dokładniejsze szukanie\tprawy klik myszą",
        L"Find best defence for black - more &thorough search\tright mouseclick",
        L"Знайти найкращий захист чорних - &ретельніший пошук\tклацання правою кнопкою"}},
    {SolveStop, {L"&Zatrzymaj rozwiązywanie", L"&Stop solving", L"&Зупинити розв'язування"}},
    {SolveShowMainVariant, {L"Rozwiąż i pokaż cały główny &wariant\tAlt+F5 lub środkowy przycisk",
        L"Solve and show whole main &variant\tAlt+F5 or middle-click",
        L"Розв'язати й показати весь головний &варіант\tAlt+F5 або середня кнопка"}},
    {SolvePause, {L"&Wstrzymaj (prawy klik)", L"&Pause (right click)", L"&Пауза (клацання правою кнопкою)"}},
    {SolvePauseOneThread, {L"Wstrzymaj &jeden wątek (prawy klik + Ctrl)",
        L"&Pause one thread (right click + ctrl)",
        L"Призупинити &один потік (клацання правою кнопкою + Ctrl)"}},
    {SolveResume, {L"W&znów rozwiązywanie", L"&Resume solving", L"&Відновити розв'язування"}},
    {MoveBack, {L"Ruch w&stecz", L"&Move back", L"Хід &назад"}},
    {MoveRedo, {L"&Ponów ruch", L"Re&do move", L"&Повторити хід"}},
    {CommentLastMove, {L"Dodaj/edytuj &komentarz do ostatniego ruchu\tprawy klik myszą",
        L"Add/edit &comment to last move\tright mouseclick",
        L"Додати/змінити &коментар до останнього ходу\tклацання правою кнопкою"}},
    {ProblemNext, {L"&Następny problem\tCtrl+Shift+Strzałka w prawo",
        L"&Next problem\tCtrl+Shift+Right arrow", L"&Наступна задача\tCtrl+Shift+Стрілка праворуч"}},
    {ProblemPrevious, {L"&Poprzedni problem\tStrzałka w lewo", L"&Previous problem\tLeft arrow",
        L"&Попередня задача\tСтрілка ліворуч"}},
    {ProblemNew, {L"No&wy problem\tCtrl+N", L"&New problem\tCtrl+N", L"Н&ова задача\tCtrl+N"}},
    {ProblemFirst, {L"Przejdź do &pierwszego problemu\tCtrl+Home", L"Go to &first problem\tCtrl+Home",
        L"Перейти до &першої задачі\tCtrl+Home"}},
    {ProblemLast, {L"Przejdź do &ostatniego problemu\tCtrl+End", L"Go to &last problem\tCtrl+End",
        L"Перейти до &останньої задачі\tCtrl+End"}},
    {ProblemHistoryBack, {L"Przejdź do poprzednio oglądanego problemu\tCtrl Minus",
        L"Go to previously viewed problem\tCtrl Minus",
        L"Перейти до попередньо переглянутої задачі\tCtrl Minus"}},
    {ProblemHistoryForward, {L"Powrót z Ctrl-Minus\tCtrl Plus", L"Return from Ctrl-Minus\tCtrl Plus",
        L"Повернутися після Ctrl-Minus\tCtrl Plus"}},
    {TagAdd, {L"Dodaj tag do problemu...\tCtrl+T", L"Add tag to the problem...\tCtrl+T",
        L"Додати тег до задачі...\tCtrl+T"}},
    {TagRemove, {L"Usuń tag z bieżącego problemu...\tCtrl+Shift+T",
        L"Remove tag from current problem...\tCtrl+Shift+T",
        L"Вилучити тег із поточної задачі...\tCtrl+Shift+T"}},
    {TagsAppendFromFile, {L"Dołącz zestaw tagów z innego pliku .cp...",
        L"Append set of tags from other .cp file...", L"Додати набір тегів з іншого файлу .cp..."}},
    {ProblemFind, {L"Znajdź problem...\tCtrl+F", L"Find problem...\tCtrl+F", L"Знайти задачу...\tCtrl+F"}},
    {ProblemFindNext, {L"Znajdź następny\tF3", L"Find next\tF3", L"Знайти наступну\tF3"}},
    {ProblemFindPrevious, {L"Znajdź poprzedni\tShift+F3", L"Find previous\tShift+F3",
        L"Знайти попередню\tShift+F3"}},
    {ProblemSelectByNumber, {L"Wybierz numer problemu...\tCtrl+G", L"Select problem number...\tCtrl+G",
        L"Вибрати номер задачі...\tCtrl+G"}},
    {ProblemSelectFromList, {L"Wybierz problem z listy...\tCtrl+Shift+G",
        L"Select problem from list...\tCtrl+Shift+G", L"Вибрати задачу зі списку...\tCtrl+Shift+G"}},
    {FindSimilarPositions, {L"Znajdź podobne pozycje", L"Find similar positions", L"Знайти схожі позиції"}},
    // View
    {ViewRotateBoard, {L"&Obróć widok szachownicy", L"&Rotate chessboard view",
        L"&Повернути вигляд шахівниці"}},
    {ViewResizeProgressArea, {L"&Powiększ/zmniejsz obszar informacji o postępie",
        L"&Enlarge/minimize progress information area",
        L"&Збільшити/зменшити область відомостей про перебіг"}},
    // Variant
    {VariantSaveAsMain, {L"Zapisz ruchy jako wariant główny", L"Save moves as main variant",
        L"Зберегти ходи як головний варіант"}},
    {VariantSaveAs, {L"Zapisz ruchy jako wariant...", L"Save moves as variant...",
        L"Зберегти ходи як варіант..."}},
    {VariantShowMain, {L"Pokaż wariant główny", L"Show main variant", L"Показати головний варіант"}},
    {VariantShow, {L"Pokaż wariant...", L"Show variant...", L"Показати варіант..."}},
    {VariantAnimateMain, {L"Animuj wariant główny", L"Animate main variant", L"Анімувати головний варіант"}},
    {VariantAnimate, {L"Animuj wariant...", L"Animate variant...", L"Анімувати варіант..."}},
    {VariantStopAnimation, {L"Zatrzymaj animację wariantu", L"Stop variant animation",
        L"Зупинити анімацію варіанта"}},
    {VariantRename, {L"Zmień nazwę tego wariantu...", L"Rename this variant...",
        L"Перейменувати цей варіант..."}},
    {VariantRemove, {L"Usuń wariant...", L"Remove variant...", L"Вилучити варіант..."}},
    // Advanced
    {SolveWithHeuristics, {L"Wybierz &heurystyki i znajdź rozwiązanie\tCtrl+F5",
        L"Select &heuristics and find solution\tCtrl+F5", L"Вибрати &евристики й знайти розв'язок\tCtrl+F5"}},
    {SolveAllWithHeuristics, {L"Wybierz &heurystyki i znajdź wszystkie rozwiązania\tShift+Ctrl+F5",
        L"Select &heuristics and find all solutions\tShift+Ctrl+F5",
        L"Вибрати &евристики й знайти всі розв'язки\tShift+Ctrl+F5"}},
    {EditSortIndications, {L"Wskazówki &sortowania...\tCtrl+W", L"Sort &indications...\tCtrl+W",
        L"Вказівки &сортування...\tCtrl+W"}},
    {Options, {L"&Opcje", L"&Options", L"&Параметри"}},
    {TempRegisterSave, {L"Zapisz rejestr tymczasowy bieżącego problemu",
        L"Save temporary register of current problem", L"Зберегти тимчасовий реєстр поточної задачі"}},
    {TempRegisterSaveAs, {L"Zapisz rejestr tymczasowy bieżącego problemu jako...",
        L"Save temporary register of current problem as...",
        L"Зберегти тимчасовий реєстр поточної задачі як..."}},
    {TempRegisterReadDefault, {L"Wczytaj rejestr tymczasowy bieżącego problemu z pliku domyślnego",
        L"Read temporary register of current problem from default file",
        L"Прочитати тимчасовий реєстр поточної задачі з типового файлу"}},
    {TempRegisterReadFile, {L"Wczytaj rejestr tymczasowy z pliku...", L"Read temporary register from file...",
        L"Прочитати тимчасовий реєстр із файлу..."}},
    {TempRegisterClear, {L"Wyczyść rejestr tymczasowy bieżącego problemu",
        L"Clear temporary register of current problem", L"Очистити тимчасовий реєстр поточної задачі"}},
    {SkipCurrentMove, {L"Zaniechaj analizy bieżącego ruchu i przejdź do &następnego",
        L"Skip analysis of current move and go to the &next one",
        L"Облишити аналіз поточного ходу й перейти до &наступного"}},
    {ShowPositionId, {L"Wyświetl &identyfikator bieżącej pozycji i skopiuj go do schowka",
        L"Display &id of current position and copy it to clipboard",
        L"Показати &ідентифікатор поточної позиції й скопіювати його до буфера обміну"}},
    {RegressionTest, {L"Uruchom test regresyjny (rozwiąż wszystkie problemy z bieżącego pliku)",
        L"Run regression test (solve all problems in the current file)",
        L"Запустити регресійний тест (розв'язати всі задачі поточного файлу)"}},
    {QuickRegressionTest, {L"Uruchom szybki test regresyjny (każdy problem rozwiązuj nie dłużej niż 64 s)",
        L"Run quick regression test (solve single problem for no longer than 64 sec.)",
        L"Запустити швидкий регресійний тест (розв'язувати кожну задачу не довше 64 с)"}},
    {ShowGlobalRegister, {L"Wyświetl bieżący stan rejestru globalnego (danych przeliczonych w pamięci)",
        L"Display current status of global register (precalculated data in memory)",
        L"Показати поточний стан глобального реєстру (попередньо обчислених даних у пам'яті)"}},
    {VerifyPrecalculatedFiles, {L"Sprawdź pliki danych przeliczonych (rejestru globalnego) na dysku",
        L"Verify files of precalulcated data (global register) on disk",
        L"Перевірити файли попередньо обчислених даних (глобального реєстру) на диску"}},
    {VerifyPrecalculatedFilesResume, {L"Sprawdź pliki danych przeliczonych na dysku - wznów od bieżącego typu pozycji",
        L"Verify files of precalulcated data on disk - resume from cur.pos.type",
        L"Перевірити файли попередньо обчислених даних на диску - продовжити з поточного типу позиції"}},
    {MaxMovesNextPosition, {L"Pokaż &maks. #n dla pozycji tego typu + następna pozycja\tCtrl+M",
        L"Show &max #n for positions of this type + next position\tCtrl+M",
        L"Показати &макс. #n для позицій цього типу + наступна позиція\tCtrl+M"}},
    {MaxMovesPreviousPosition, {L"Pokaż maks. #n dla pozycji tego typu - poprzednia pozycja\tCtrl+M",
        L"Show max #n for positions of this type - previous position\tCtrl+M",
        L"Показати макс. #n для позицій цього типу - попередня позиція\tCtrl+M"}},
    {PositionInformation, {L"&Informacje o pozycji\tCtrl+I", L"&Information about position\tCtrl+I",
        L"&Відомості про позицію\tCtrl+I"}},
    {PastePositionByIndex, {L"Wklej pozycję tego typu według indeksu",
        L"Paste position of this type by index", L"Вставити позицію цього типу за індексом"}},
    {PreviousPositionOfType, {L"Poprzednia pozycja tego typu\tShift+Ctrl+P",
        L"Previous position of this type\tShift+Ctrl+P", L"Попередня позиція цього типу\tShift+Ctrl+P"}},
    {NextPositionOfType, {L"Następna pozycja tego typu\tShift+Ctrl+N",
        L"Next position of this type\tShift+Ctrl+N", L"Наступна позиція цього типу\tShift+Ctrl+N"}},
    {VerifyPrecalculatedData, {L"Sprawdź poprawność wygenerowanych danych przeliczonych (Nalimov) dla tego typu pozycji",
        L"Verify correctness of generated precalculated data (Nalimov) for this position type",
        L"Перевірити правильність згенерованих попередньо обчислених даних (Налимов) для цього типу позиції"}},
    {VerifyPartlyPrecalculatedData, {L"Sprawdź poprawność częściowo wygenerowanych danych przeliczonych dla tego typu pozycji",
        L"Verify correctness of partially generated precalculated data for this position type",
        L"Перевірити правильність частково згенерованих попередньо обчислених даних для цього типу позиції"}},
    {PrecalculateData, {L"&Przelicz dane (tablice Nalimova) dla tego typu pozycji",
        L"&Precalculate data (Nalimov tablebases) for this position type",
        L"&Попередньо обчислити дані (таблиці Налимова) для цього типу позиції"}},
    {CheckFenCodesFromFile, {L"Sprawdź, czy kody FEN z wybranego pliku (dowolny format tekstowy) są w bieżącym pliku...",
        L"Check if FEN codes from selected file (any text format) exist in the current file...",
        L"Перевірити, чи коди FEN з вибраного файлу (будь-який текстовий формат) є в поточному файлі..."}},
    // Priority
    {PriorityHigh, {L"&Wysoki", L"&High", L"&Високий"}},
    {PriorityAboveNormal, {L"&Powyżej normalnego", L"&Above normal", L"В&ище звичайного"}},
    {PriorityNormal, {L"&Normalny", L"&Normal", L"&Звичайний"}},
    {PriorityBelowNormal, {L"P&oniżej normalnego (zalecany)", L"&Below normal (recommended)",
        L"&Нижче звичайного (рекомендовано)"}},
    {PriorityLow, {L"N&iski", L"&Low", L"Н&изький"}},
    // Help
    {HelpManual, {L"Otwórz &instrukcję (szybki start)", L"Open &manual (quick start)",
        L"Відкрити &посібник (швидкий старт)"}},
    {HelpReadme, {L"&Otwórz readme.txt", L"&Open readme.txt", L"&Відкрити readme.txt"}},
    {HelpAbout, {L"&O programie", L"&About", L"&Про програму"}},
    {Threads, {L"&Wątki...", L"&Threads...", L"&Потоки..."}},
    // Language: each language's own name, the same in every language.
    {LanguagePolish, {L"&Polski", L"&Polski", L"&Polski"}},
    {LanguageEnglish, {L"&English", L"&English", L"&English"}},
    {LanguageUkrainian, {L"Українськ&а", L"Українськ&а", L"Українськ&а"}},
    // Pop-ups
    {TrayShowProgram, {L"Pokaż program", L"Show program", L"Показати програму"}},
    {TrayCloseProgram, {L"Zamknij program", L"Close program", L"Закрити програму"}},
    {ProgressCopyPosition, {L"Kopiuj pozycję do schowka", L"Copy position to clipboard",
        L"Копіювати позицію до буфера обміну"}},
    {ProgressCopyFen, {L"Kopiuj FEN pozycji do schowka", L"Copy FEN of the position to clipboard",
        L"Копіювати FEN позиції до буфера обміну"}},
    {ProgressShowInNewInstance, {L"Wyświetl pozycję w nowej instancji programu",
        L"Display position in new instance of program", L"Показати позицію в новому екземплярі програми"}},
    {ProgressMoveToLast, {L"Przesuń bieżący ruch do analizy jako ostatni",
        L"Shift current move to be analyzed as the last one",
        L"Перенести поточний хід в аналізі на останнє місце"}},
    {ProgressSwapWithNext, {L"Zamień kolejność analizy z następnym ruchem",
        L"Swap order of analysis with the next move", L"Поміняти порядок аналізу з наступним ходом"}},
    {ProgressSkipToNext, {L"Przejdź do analizy następnego ruchu", L"Skip to analysis of next move",
        L"Перейти до аналізу наступного ходу"}},
    {CommentThisMove, {L"Dodaj/edytuj komentarz do tego ruchu", L"Add/edit comment to to this move",
        L"Додати/змінити коментар до цього ходу"}},
    {DescriptionOpenLink, {L"Otwórz stronę w domyślnej przeglądarce", L"Open page in default browser",
        L"Відкрити сторінку в типовому браузері"}},
    {DescriptionCopyAddress, {L"Kopiuj adres do schowka", L"Copy address to clipboard",
        L"Копіювати адресу до буфера обміну"}},
    {DescriptionEdit, {L"Edytuj opis problemu...", L"Edit problem description...",
        L"Змінити опис задачі..."}},
    // The problem list of the select button's right click: one entry, the list command.
    {ProblemListEntry, {L"Wybierz problem z listy...", L"Select problem from list...",
        L"Вибрати задачу зі списку..."}},
    // Keys with no menu item of their own.
    {KeyCtrlP, {L"Ctrl+P", L"Ctrl+P", L"Ctrl+P"}},
    {KeyCtrlShiftD, {L"Ctrl+Shift+D", L"Ctrl+Shift+D", L"Ctrl+Shift+D"}},
};

constexpr LocalizedText NONE{};

constexpr MenuLine FILE_MENU[] = {
    {FileNew}, {FileOpenDefault}, {FileOpenSamples}, {FileOpen}, {FileSave}, {FileSaveAs}, {MENU_SEPARATOR},
    {FileAppendProblems}, {FileRemoveProblems}, {MENU_SEPARATOR},
    {FileExit},
};
constexpr MenuLine POSITION_MENU[] = {
    {PositionCopy}, {PositionCopyWithoutVariants}, {PositionCopyWithoutVariantsOrTags}, {PositionCopyFen},
    {PositionCopyFullFen}, {PositionPaste}, {PositionPasteMirrored}, {MENU_SEPARATOR},
    {PositionRotate90}, {PositionSwapColours}, {PositionShiftLeft}, {PositionShiftRight}, {PositionShiftUp},
    {PositionShiftDown}, {MENU_SEPARATOR},
    {MovesCopyShort}, {MovesCopyFull}, {VariantsCopyShort}, {VariantsCopyFull}, {MENU_SEPARATOR},
    {PositionSettingMode}, {StipulationUp}, {StipulationDown}, {StipulationUpTen}, {StipulationDownTen}, {Undo},
    {Redo},
};
constexpr MenuLine PROBLEM_MENU[] = {
    {SUBMENU_BEGIN, {L"Typ problemu", L"Problem type", L"Тип задачі"}}, {TypeDirectMate}, {TypeSelfmate},
    {TypeHelpmate}, {SUBMENU_END},
    {MENU_SEPARATOR},
    {SolveStart}, {SolveAllSolutions}, {SolveBlackDefence}, {SolveBlackDefenceThorough}, {SolveStop},
    {SolveShowMainVariant}, {SolvePause}, {SolvePauseOneThread}, {SolveResume}, {MENU_SEPARATOR},
    {MoveBack}, {MoveRedo}, {CommentLastMove}, {MENU_SEPARATOR},
    {ProblemNext}, {ProblemPrevious}, {ProblemNew}, {ProblemFirst}, {ProblemLast}, {ProblemHistoryBack},
    {ProblemHistoryForward}, {MENU_SEPARATOR},
    {TagAdd}, {TagRemove}, {TagsAppendFromFile}, {MENU_SEPARATOR},
    {ProblemFind}, {ProblemFindNext}, {ProblemFindPrevious}, {ProblemSelectByNumber}, {ProblemSelectFromList},
    {FindSimilarPositions},
};
constexpr MenuLine VIEW_MENU[] = {{ViewRotateBoard}, {ViewResizeProgressArea}};
constexpr MenuLine VARIANT_MENU[] = {
    {VariantSaveAsMain}, {VariantSaveAs}, {VariantShowMain}, {VariantShow}, {VariantAnimateMain},
    {VariantAnimate}, {VariantStopAnimation}, {VariantRemove},
};
constexpr MenuLine ADVANCED_MENU[] = {
    {SolveWithHeuristics}, {SolveAllWithHeuristics}, {EditSortIndications}, {Options}, {MENU_SEPARATOR},
    {TempRegisterSave}, {TempRegisterSaveAs}, {TempRegisterReadDefault}, {TempRegisterReadFile},
    {TempRegisterClear}, {MENU_SEPARATOR},
    {SkipCurrentMove}, {ShowPositionId}, {RegressionTest}, {QuickRegressionTest}, {MENU_SEPARATOR},
    {ShowGlobalRegister}, {VerifyPrecalculatedFiles}, {VerifyPrecalculatedFilesResume}, {MaxMovesNextPosition},
    {MaxMovesPreviousPosition}, {PositionInformation}, {PastePositionByIndex}, {PreviousPositionOfType},
    {NextPositionOfType}, {VerifyPrecalculatedData}, {VerifyPartlyPrecalculatedData}, {PrecalculateData},
    {MENU_SEPARATOR},
    {CheckFenCodesFromFile},
};
constexpr MenuLine PRIORITY_MENU[] = {
    {PriorityHigh}, {PriorityAboveNormal}, {PriorityNormal}, {PriorityBelowNormal}, {PriorityLow},
    {MENU_SEPARATOR},
    {SUBMENU_BEGIN, {L"&Koligacja procesorów", L"Processor &affinity", L"&Прив'язка до процесорів"}},
    {AFFINITY_ITEMS}, {SUBMENU_END},
};
constexpr MenuLine HELP_MENU[] = {{HelpManual}, {HelpReadme}, {HelpAbout}, {Threads}};
constexpr MenuLine LANGUAGE_MENU[] = {{LanguagePolish}, {LanguageEnglish}, {LanguageUkrainian}};

constexpr MenuLine TRAY_MENU[] = {{TrayShowProgram}, {TrayCloseProgram}};
constexpr MenuLine PROGRESS_MENU[] = {
    {ProgressCopyPosition}, {ProgressCopyFen}, {ProgressShowInNewInstance}, {MENU_SEPARATOR},
    {ProgressMoveToLast}, {ProgressSwapWithNext}, {ProgressSkipToNext},
};
constexpr MenuLine VARIANT_POPUP[] = {
    {VariantSaveAsMain, {L"Zapisz jako wariant główny", L"Save as main variant", L"Зберегти як головний варіант"}},
    {VariantSaveAs, {L"Zapisz wariant jako...", L"Save variant as...", L"Зберегти варіант як..."}},
    {VariantShowMain}, {VariantShow},
    {VariantAnimateMain, {L"Animuj wariant główny (ruch po ruchu)", L"Animate main variant (move by move)",
        L"Анімувати головний варіант (хід за ходом)"}},
    {VariantAnimate},
    {VariantStopAnimation, {L"Zatrzymaj animowanie wariantu", L"Stop animating variant",
        L"Зупинити анімування варіанта"}},
    {VariantRename}, {VariantRemove},
};
constexpr MenuLine MOVE_MENU[] = {{CommentThisMove}};
constexpr MenuLine DESCRIPTION_MENU[] = {{DescriptionOpenLink}, {DescriptionCopyAddress}, {DescriptionEdit}};
constexpr MenuLine PROBLEMS_MENU[] = {{ProblemListEntry}};

constexpr MenuDefinition MAIN_MENUS[] = {
    {100, {L"&Plik", L"&File", L"&Файл"}, FILE_MENU},
    {100, {L"P&ozycja", L"&Position", L"&Позиція"}, POSITION_MENU},
    {100, {L"P&roblem", L"P&roblem", L"&Задача"}, PROBLEM_MENU},
    {100, {L"&Widok", L"&View", L"&Вигляд"}, VIEW_MENU},
    {100, {L"&Warianty", L"V&ariant", L"Ва&ріант"}, VARIANT_MENU},
    {100, {L"&Zaawansowane", L"A&dvanced", L"&Додатково"}, ADVANCED_MENU},
    {100, {L"Pr&iorytet", L"Pr&iority", L"Пр&іоритет"}, PRIORITY_MENU},
    {100, {L"Pomo&c", L"&Help", L"&Довідка"}, HELP_MENU},
    {100, {L"&Language/Język/Mова", L"&Language/Język/Mова", L"&Language/Język/Mова"}, LANGUAGE_MENU},
};

constexpr MenuDefinition POPUP_MENUS[] = {
    {MENU_TRAY, NONE, TRAY_MENU},
    {MENU_PROGRESS, NONE, PROGRESS_MENU},
    {MENU_VARIANT, NONE, VARIANT_POPUP},
    {MENU_MOVE, NONE, MOVE_MENU},
    {MENU_DESCRIPTION, NONE, DESCRIPTION_MENU},
    {MENU_PROBLEMS, NONE, PROBLEMS_MENU},
};

constexpr Accelerator ACCELERATORS[] = {
    {"Ctrl+C", PositionCopyKey, PositionCopy},
    {"Ctrl+Shift+C", PositionCopyFen},
    {"Ctrl+V", PositionPasteKey, PositionPaste},
    {"Ctrl+F", ProblemFindKey, ProblemFind},
    {"Ctrl+G", ProblemSelectByNumberKey, ProblemSelectByNumber},
    {"Ctrl+Shift+G", ProblemSelectFromListKey, ProblemSelectFromList},
    {"Ctrl+N", ProblemNewKey, ProblemNew},
    {"Ctrl+P", KeyCtrlP},
    {"Ctrl+O", FileOpenKey, FileOpen},
    {"Ctrl+S", FileSaveKey, FileSave},
    {"Ctrl+I", PositionInformation},
    {"Ctrl+Shift+P", PreviousPositionOfType},
    {"Ctrl+Shift+N", NextPositionOfType},
    {"Ctrl+M", MaxMovesNextPosition},
    {"Ctrl+Shift+M", MaxMovesPreviousPosition},
    {"Ctrl+W", EditSortIndications},
    {"Ctrl+L", PositionShiftLeft},
    {"Ctrl+R", PositionShiftRight},
    {"Ctrl+U", PositionShiftUp},
    {"Ctrl+D", PositionShiftDown},
    {"Ctrl+Z", Undo},
    {"Ctrl+Y", Redo},
    {"F3", ProblemFindNextKey, ProblemFindNext},
    {"Shift+F3", ProblemFindPreviousKey, ProblemFindPrevious},
    {"F5", SolveStartKey, SolveStart},
    {"Shift+F5", SolveAllSolutionsKey, SolveAllSolutions},
    {"Ctrl+F5", SolveWithHeuristics},
    {"Ctrl+Shift+F5", SolveAllWithHeuristics},
    {"Alt+F5", SolveShowMainVariantKey, SolveShowMainVariant},
    {"Ctrl+Home", ProblemFirstKey, ProblemFirst},
    {"Ctrl+End", ProblemLastKey, ProblemLast},
    {"Ctrl+Shift+D", KeyCtrlShiftD},
    {"Ctrl+Shift+Right", ProblemNext},
    {"Ctrl+Shift+Left", ProblemPrevious},
    {"Ctrl+T", TagAdd},
    {"Ctrl+Shift+T", TagRemove},
    {"Ctrl+-", ProblemHistoryBack},
    {"Ctrl++", ProblemHistoryForward},
};

constexpr ToolButton TOOL_BUTTONS[] = {
    {ProblemPreviousButton, ToolIcon::Previous, {L"Poprzedni problem", L"Previous problem", L"Попередня задача"}},
    {ProblemNextButton, ToolIcon::Next, {L"Następny problem", L"Next problem", L"Наступна задача"}},
    {ProblemSelectByNumber, ToolIcon::Select,
        {L"Kliknij, aby wybrać inny problem (prawy klik: lista z opisami problemów)",
         L"Click to select another problem (right click: list with problem descriptions)",
         L"Клацніть, щоб вибрати іншу задачу (клацання правою кнопкою: список з описами задач)"}},
    {MoveBack, ToolIcon::MoveBack, {L"Ruch wstecz (prawy klik: kilka ruchów wstecz)",
        L"Move back (right click: move back a few moves)", L"Хід назад (клацання правою кнопкою: кілька ходів назад)"}},
    {MoveRedo, ToolIcon::MoveRedo, {L"Ponów ruch (prawy klik: ponów kilka ruchów)",
        L"Redo move (right click: redo a few moves)", L"Повторити хід (клацання правою кнопкою: повторити кілька ходів)"}},
    {TagAdd, ToolIcon::Tag, {L"Kliknij, aby dodać tag do problemu", L"Click to add a tag to the problem",
        L"Клацніть, щоб додати тег до задачі"}},
    {FileSave, ToolIcon::Save, {L"Zapisz zmiany w pliku", L"Save changes to file", L"Зберегти зміни у файл"}},
    {PositionSettingMode, ToolIcon::Setting, {L"Rozpocznij/zakończ ustawianie pozycji", L"Start/stop position setting",
        L"Почати/завершити розстановку позиції"}},
    {ViewRotateBoard, ToolIcon::Rotate, {L"Obróć widok szachownicy", L"Rotate chessboard view",
        L"Повернути вигляд шахівниці"}},
    {ViewResizeProgressArea, ToolIcon::Progress, {L"Kliknij, aby zmienić rozmiar obszaru informacji o postępie",
        L"Click to change size of progress information area",
        L"Клацніть, щоб змінити розмір області відомостей про перебіг"}},
};

// Commands that are no menu item or key of their own: the save twin, the
// tool buttons' next and previous, the list pop-up's entry.
constexpr std::array<std::pair<CommandId, CommandId>, 4> OTHER_ALIASES{{
    {FileSaveTwin, FileSave},
    {ProblemNextButton, ProblemNext},
    {ProblemPreviousButton, ProblemPrevious},
    {ProblemListEntry, ProblemSelectFromList},
}};
// clang-format on

} // namespace

std::span<const CommandInfo> Commands() {
    return COMMANDS;
}

const CommandInfo* FindCommand(CommandId id) {
    const auto it = std::find_if(std::begin(COMMANDS), std::end(COMMANDS),
                                 [id](const CommandInfo& c) { return c.id == id; });
    return it == std::end(COMMANDS) ? nullptr : &*it;
}

std::span<const MenuDefinition> MainMenus() {
    return MAIN_MENUS;
}
std::span<const MenuDefinition> PopupMenus() {
    return POPUP_MENUS;
}
std::span<const Accelerator> Accelerators() {
    return ACCELERATORS;
}
const LocalizedText EngineThreadsToolTip{
    L"Kliknij u dołu/góry ikony, aby zmniejszyć/zwiększyć liczbę wątków silnika (dotyczy 1. ruchu)",
    L"Click at the bottom/top of icon to decrease/increase number of engine threads (applies to 1st move)",
    L"Клацніть унизу/вгорі значка, щоб зменшити/збільшити кількість потоків рушія (стосується 1-го ходу)"};
const LocalizedText EngineThreadsWaitTip{L"Niedostępne: czeka na wątki silnika",
                                         L"Not available yet: waits for the engine's threads",
                                         L"Ще недоступно: чекає на потоки рушія"};
const LocalizedText RegisterCountToolTip{
    L"Liczba pozycji w rejestrze tymczasowym (zarówno mat, jak i nie, mat wątpliwy lub nie)",
    L"Number of positions in temporary register (either checkmate or not, mate doubtful or not doubtful)",
    L"Кількість позицій у тимчасовому реєстрі (з матом чи без, мат сумнівний чи ні)"};

std::span<const ToolButton> ToolButtons() {
    return TOOL_BUTTONS;
}

CommandId CanonicalCommand(CommandId id) {
    for (const Accelerator& key : ACCELERATORS)
        if (key.id == id) return key.twin;
    for (const auto& [alias, twin] : OTHER_ALIASES)
        if (alias == id) return twin;
    return id;
}

} // namespace zorvane

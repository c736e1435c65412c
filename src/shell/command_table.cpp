#include "shell/command_table.h"

#include <algorithm>
#include <array>

namespace zorvane {

const Text3 BonusCommandText{L"&Bonus dla trzecioklasistów :)", L"&Bonus dla trzecioklasistów :)",
                             L"&Bonus dla trzecioklasistów :)"};
const wchar_t* const ProcessorItemText = L"Procesor ";

namespace {

// clang-format off
constexpr CommandInfo COMMANDS[] = {
    // File
    {125, {L"&Nowy plik", L"&New file", L"&Новий файл"}},
    {120, {L"&Otwórz plik domyślny (myChessProblems.cp)", L"&Open defaulf file (myChessProblems.cp)",
           L"&Відкрити типовий файл (myChessProblems.cp)"}},
    {121, {L"Otwórz &przykładowe kompozycje (&sample_problems.cp)", L"&Open sample compositions (&sample_problems.cp)",
           L"Відкрити &зразкові композиції (&sample_problems.cp)"}},
    {122, {L"Otwórz plik z problemami szachowymi (.cp) ...\tCtrl+O", L"Open file with chess problems (.cp) ...\tCtrl+O",
           L"Відкрити файл із шаховими задачами (.cp) ...\tCtrl+O"}},
    {123, {L"&Zapisz zmiany\tCtrl + S", L"&Save changes\tCtrl + S", L"&Зберегти зміни\tCtrl + S"}},
    {124, {L"Zapisz &jako...", L"Save &as...", L"Зберегти &як..."}},
    {126, {L"&Dołącz problemy z innego pliku .cp...", L"&Append problems from another .cp file...",
           L"&Додати задачі з іншого файлу .cp..."}},
    {128, {L"&Usuń problemy, które są w innym pliku .cp...", L"&Remove problems that are present in another .cp file...",
           L"&Вилучити задачі, які є в іншому файлі .cp..."}},
    {129, {L"&Zakończ", L"E&xit", L"В&ихід"}},
    // Position
    {132, {L"Kopiuj\tCtrl+C", L"Copy\tCtrl+C", L"Копіювати\tCtrl+C"}},
    {298, {L"Kopiuj bez wariantów", L"Copy without variants", L"Копіювати без варіантів"}},
    {299, {L"Kopiuj bez wariantów i tagów", L"Copy without variants or tags", L"Копіювати без варіантів і тегів"}},
    {612, {L"Kopiuj kod FEN pozycji\tCtrl+Shift+C", L"Copy FEN code of position\tCtrl+Shift+C",
           L"Копіювати код FEN позиції\tCtrl+Shift+C"}},
    {131, {L"Kopiuj pełny kod FEN pozycji", L"Copy full FEN code of position", L"Копіювати повний код FEN позиції"}},
    {133, {L"Wklej (pozycję/FEN/ruchy)\tCtrl+V", L"Paste (position/FEN/moves)\tCtrl+V",
           L"Вставити (позицію/FEN/ходи)\tCtrl+V"}},
    {134, {L"Wklej jako lustrzane odbicie", L"Paste as mirror", L"Вставити дзеркально"}},
    {139, {L"Obróć pozycję o 90°", L"Rotate position 90°", L"Повернути позицію на 90°"}},
    {138, {L"Zamień białe i czarne", L"Swap black and white", L"Поміняти місцями чорних і білих"}},
    {295, {L"Przesuń pozycję w lewo\tCtrl+L", L"Shift position left\tCtrl+L", L"Зсунути позицію ліворуч\tCtrl+L"}},
    {296, {L"Przesuń pozycję w prawo\tCtrl+R", L"Shift position right\tCtrl+R", L"Зсунути позицію праворуч\tCtrl+R"}},
    {297, {L"Przesuń pozycję w górę\tCtrl+U", L"Shift position up\tCtrl+U", L"Зсунути позицію вгору\tCtrl+U"}},
    {305, {L"Przesuń pozycję w dół\tCtrl+D", L"Shift position down\tCtrl+D", L"Зсунути позицію вниз\tCtrl+D"}},
    {136, {L"Kopiuj ruchy - notacja skrócona", L"Copy moves - short notation", L"Копіювати ходи - скорочена нотація"}},
    {135, {L"Kopiuj ruchy - notacja pełna", L"Copy moves - full notation", L"Копіювати ходи - повна нотація"}},
    {216, {L"Kopiuj warianty - notacja skrócona", L"Copy variants - short notation",
           L"Копіювати варіанти - скорочена нотація"}},
    {214, {L"Kopiuj warianty - notacja pełna", L"Copy variants - full notation", L"Копіювати варіанти - повна нотація"}},
    {137, {L"Włącz/wyłącz tryb ustawiania pozycji", L"Switch on/off position setting mode",
           L"Увімкнути/вимкнути режим розстановки позиції"}},
    {210, {L"Zwiększ liczbę ruchów (#n)\tKliknij strzałkę w górę", L"Increase stipulation (#n)\tClick arrow up",
           L"Збільшити кількість ходів (#n)\tКлацніть стрілку вгору"}},
    {211, {L"Zmniejsz liczbę ruchów (#n)\tKliknij strzałkę w dół", L"Decrease stipulation (#n)\tClick arrow down",
           L"Зменшити кількість ходів (#n)\tКлацніть стрілку вниз"}},
    {212, {L"Zwiększ liczbę ruchów (#n) o 10\tKliknij prawym przyciskiem strzałkę w górę",
           L"Increase stipulation (#n) by 10\tRight click arrow up",
           L"Збільшити кількість ходів (#n) на 10\tКлацніть правою кнопкою стрілку вгору"}},
    {213, {L"Zmniejsz liczbę ruchów (#n) o 10\tKliknij prawym przyciskiem strzałkę w dół",
           L"Decrease stipulation (#n) by 10\tRight click arrow down",
           L"Зменшити кількість ходів (#n) на 10\tКлацніть правою кнопкою стрілку вниз"}},
    {208, {L"Cofnij ostatnią zmianę\tCtrl+Z", L"Undo last change\tCtrl+Z", L"Скасувати останню зміну\tCtrl+Z"}},
    {209, {L"Ponów ostatnią zmianę\tCtrl+Y", L"Redo last change\tCtrl+Y", L"Повторити останню зміну\tCtrl+Y"}},
    // Problem
    {195, {L"Dwu-,trzy-/wielochodówka", L"Two-,Three-/Moremover", L"Дво-,три-/багатоходівка"}},
    {196, {L"Samomat", L"Selfmate", L"Зворотний мат"}},
    {197, {L"Mat pomocniczy", L"Helpmate", L"Кооперативний мат"}},
    {140, {L"&Rozwiąż problem\tF5", L"&Solve problem\tF5", L"&Розв'язати задачу\tF5"}},
    {141, {L"Znajdź &wszystkie rozwiązania (prawy klik na przycisku Start)\tShift+F5",
           L"Find &all solutions(right click on Start button)\tShift+F5",
           L"Знайти &всі розв'язки (клацання правою кнопкою на кнопці Старт)\tShift+F5"}},
    {152, {L"Znajdź najlepszą obronę &czarnych\tF5", L"Find best defence for &black\tF5",
           L"Знайти найкращий захист &чорних\tF5"}},
    {153, {L"Znajdź najlepszą obronę czarnych - &dokładniejsze szukanie\tprawy klik myszą",
           L"Find best defence for black - more &thorough search\tright mouseclick",
           L"Знайти найкращий захист чорних - &ретельніший пошук\tклацання правою кнопкою"}},
    {142, {L"&Zatrzymaj rozwiązywanie", L"&Stop solving", L"&Зупинити розв'язування"}},
    {164, {L"Rozwiąż i pokaż cały główny &wariant\tAlt+F5 lub środkowy przycisk",
           L"Solve and show whole main &variant\tAlt+F5 or middle-click",
           L"Розв'язати й показати весь головний &варіант\tAlt+F5 або середня кнопка"}},
    {143, {L"&Wstrzymaj (prawy klik)", L"&Pause (right click)", L"&Пауза (клацання правою кнопкою)"}},
    {169, {L"Wstrzymaj &jeden wątek (prawy klik + Ctrl)", L"&Pause one thread (right click + ctrl)",
           L"Призупинити &один потік (клацання правою кнопкою + Ctrl)"}},
    {144, {L"W&znów rozwiązywanie", L"&Resume solving", L"&Відновити розв'язування"}},
    {150, {L"Ruch w&stecz", L"&Move back", L"Хід &назад"}},
    {151, {L"&Ponów ruch", L"Re&do move", L"&Повторити хід"}},
    {176, {L"Dodaj/edytuj &komentarz do ostatniego ruchu\tprawy klik myszą",
           L"Add/edit &comment to last move\tright mouseclick",
           L"Додати/змінити &коментар до останнього ходу\tклацання правою кнопкою"}},
    {145, {L"&Następny problem\tCtrl+Shift+Strzałka w prawo", L"&Next problem\tCtrl+Shift+Right arrow",
           L"&Наступна задача\tCtrl+Shift+Стрілка праворуч"}},
    {146, {L"&Poprzedni problem\tStrzałka w lewo", L"&Previous problem\tLeft arrow",
           L"&Попередня задача\tСтрілка ліворуч"}},
    {147, {L"No&wy problem\tCtrl+N", L"&New problem\tCtrl+N", L"Н&ова задача\tCtrl+N"}},
    {159, {L"Przejdź do &pierwszego problemu\tCtrl+Home", L"Go to &first problem\tCtrl+Home",
           L"Перейти до &першої задачі\tCtrl+Home"}},
    {160, {L"Przejdź do &ostatniego problemu\tCtrl+End", L"Go to &last problem\tCtrl+End",
           L"Перейти до &останньої задачі\tCtrl+End"}},
    {167, {L"Przejdź do poprzednio oglądanego problemu\tCtrl Minus", L"Go to previously viewed problem\tCtrl Minus",
           L"Перейти до попередньо переглянутої задачі\tCtrl Minus"}},
    {168, {L"Powrót z Ctrl-Minus\tCtrl Plus", L"Return from Ctrl-Minus\tCtrl Plus",
           L"Повернутися після Ctrl-Minus\tCtrl Plus"}},
    {161, {L"Dodaj tag do problemu...\tCtrl+T", L"Add tag to the problem...\tCtrl+T", L"Додати тег до задачі...\tCtrl+T"}},
    {162, {L"Usuń tag z bieżącego problemu...\tCtrl+Shift+T", L"Remove tag from current problem...\tCtrl+Shift+T",
           L"Вилучити тег із поточної задачі...\tCtrl+Shift+T"}},
    {163, {L"Dołącz zestaw tagów z innego pliku .cp...", L"Append set of tags from other .cp file...",
           L"Додати набір тегів з іншого файлу .cp..."}},
    {156, {L"Znajdź problem...\tCtrl+F", L"Find problem...\tCtrl+F", L"Знайти задачу...\tCtrl+F"}},
    {158, {L"Znajdź następny\tF3", L"Find next\tF3", L"Знайти наступну\tF3"}},
    {157, {L"Znajdź poprzedni\tShift+F3", L"Find previous\tShift+F3", L"Знайти попередню\tShift+F3"}},
    {154, {L"Wybierz numer problemu...\tCtrl+G", L"Select problem number...\tCtrl+G", L"Вибрати номер задачі...\tCtrl+G"}},
    {155, {L"Wybierz problem z listy...\tCtrl+Shift+G", L"Select problem from list...\tCtrl+Shift+G",
           L"Вибрати задачу зі списку...\tCtrl+Shift+G"}},
    {207, {L"Znajdź podobne pozycje", L"Find similar positions", L"Знайти схожі позиції"}},
    // View
    {190, {L"&Obróć widok szachownicy", L"&Rotate chessboard view", L"&Повернути вигляд шахівниці"}},
    {192, {L"&Powiększ/zmniejsz obszar informacji o postępie", L"&Enlarge/minimize progress information area",
           L"&Збільшити/зменшити область відомостей про перебіг"}},
    // Variant
    {270, {L"Zapisz ruchy jako wariant główny", L"Save moves as main variant", L"Зберегти ходи як головний варіант"}},
    {271, {L"Zapisz ruchy jako wariant...", L"Save moves as variant...", L"Зберегти ходи як варіант..."}},
    {274, {L"Pokaż wariant główny", L"Show main variant", L"Показати головний варіант"}},
    {276, {L"Pokaż wariant...", L"Show variant...", L"Показати варіант..."}},
    {275, {L"Animuj wariant główny", L"Animate main variant", L"Анімувати головний варіант"}},
    {277, {L"Animuj wariant...", L"Animate variant...", L"Анімувати варіант..."}},
    {278, {L"Zatrzymaj animację wariantu", L"Stop variant animation", L"Зупинити анімацію варіанта"}},
    {279, {L"Zmień nazwę tego wariantu...", L"Rename this variant...", L"Перейменувати цей варіант..."}},
    {280, {L"Usuń wariant...", L"Remove variant...", L"Вилучити варіант..."}},
    // Advanced
    {677, {L"Wybierz &heurystyki i znajdź rozwiązanie\tCtrl+F5", L"Select &heuristics and find solution\tCtrl+F5",
           L"Вибрати &евристики й знайти розв'язок\tCtrl+F5"}},
    {679, {L"Wybierz &heurystyki i znajdź wszystkie rozwiązania\tShift+Ctrl+F5",
           L"Select &heuristics and find all solutions\tShift+Ctrl+F5",
           L"Вибрати &евристики й знайти всі розв'язки\tShift+Ctrl+F5"}},
    {171, {L"Wskazówki &sortowania...\tCtrl+W", L"Sort &indications...\tCtrl+W", L"Вказівки &сортування...\tCtrl+W"}},
    {170, {L"&Opcje", L"&Options", L"&Параметри"}},
    {178, {L"Zapisz rejestr tymczasowy bieżącego problemu", L"Save temporary register of current problem",
           L"Зберегти тимчасовий реєстр поточної задачі"}},
    {193, {L"Zapisz rejestr tymczasowy bieżącego problemu jako...", L"Save temporary register of current problem as...",
           L"Зберегти тимчасовий реєстр поточної задачі як..."}},
    {179, {L"Wczytaj rejestr tymczasowy bieżącego problemu z pliku domyślnego",
           L"Read temporary register of current problem from default file",
           L"Прочитати тимчасовий реєстр поточної задачі з типового файлу"}},
    {194, {L"Wczytaj rejestr tymczasowy z pliku...", L"Read temporary register from file...",
           L"Прочитати тимчасовий реєстр із файлу..."}},
    {177, {L"Wyczyść rejestr tymczasowy bieżącego problemu", L"Clear temporary register of current problem",
           L"Очистити тимчасовий реєстр поточної задачі"}},
    {149, {L"Zaniechaj analizy bieżącego ruchu i przejdź do &następnego",
           L"Skip analysis of current move and go to the &next one",
           L"Облишити аналіз поточного ходу й перейти до &наступного"}},
    {183, {L"Wyświetl &identyfikator bieżącej pozycji i skopiuj go do schowka",
           L"Display &id of current position and copy it to clipboard",
           L"Показати &ідентифікатор поточної позиції й скопіювати його до буфера обміну"}},
    {184, {L"Uruchom test regresyjny (rozwiąż wszystkie problemy z bieżącego pliku)",
           L"Run regression test (solve all problems in the current file)",
           L"Запустити регресійний тест (розв'язати всі задачі поточного файлу)"}},
    {215, {L"Uruchom szybki test regresyjny (każdy problem rozwiązuj nie dłużej niż 64 s)",
           L"Run quick regression test (solve single problem for no longer than 64 sec.)",
           L"Запустити швидкий регресійний тест (розв'язувати кожну задачу не довше 64 с)"}},
    {180, {L"Wyświetl bieżący stan rejestru globalnego (danych przeliczonych w pamięci)",
           L"Display current status of global register (precalculated data in memory)",
           L"Показати поточний стан глобального реєстру (попередньо обчислених даних у пам'яті)"}},
    {189, {L"Sprawdź pliki danych przeliczonych (rejestru globalnego) na dysku",
           L"Verify files of precalulcated data (global register) on disk",
           L"Перевірити файли попередньо обчислених даних (глобального реєстру) на диску"}},
    {199, {L"Sprawdź pliki danych przeliczonych na dysku - wznów od bieżącego typu pozycji",
           L"Verify files of precalulcated data on disk - resume from cur.pos.type",
           L"Перевірити файли попередньо обчислених даних на диску - продовжити з поточного типу позиції"}},
    {173, {L"Pokaż &maks. #n dla pozycji tego typu + następna pozycja\tCtrl+M",
           L"Show &max #n for positions of this type + next position\tCtrl+M",
           L"Показати &макс. #n для позицій цього типу + наступна позиція\tCtrl+M"}},
    {174, {L"Pokaż maks. #n dla pozycji tego typu - poprzednia pozycja\tCtrl+M",
           L"Show max #n for positions of this type - previous position\tCtrl+M",
           L"Показати макс. #n для позицій цього типу - попередня позиція\tCtrl+M"}},
    {175, {L"&Informacje o pozycji\tCtrl+I", L"&Information about position\tCtrl+I", L"&Відомості про позицію\tCtrl+I"}},
    {205, {L"Wklej pozycję tego typu według indeksu", L"Paste position of this type by index",
           L"Вставити позицію цього типу за індексом"}},
    {182, {L"Poprzednia pozycja tego typu\tShift+Ctrl+P", L"Previous position of this type\tShift+Ctrl+P",
           L"Попередня позиція цього типу\tShift+Ctrl+P"}},
    {181, {L"Następna pozycja tego typu\tShift+Ctrl+N", L"Next position of this type\tShift+Ctrl+N",
           L"Наступна позиція цього типу\tShift+Ctrl+N"}},
    {188, {L"Sprawdź poprawność wygenerowanych danych przeliczonych (Nalimov) dla tego typu pozycji",
           L"Verify correctness of generated precalculated data (Nalimov) for this position type",
           L"Перевірити правильність згенерованих попередньо обчислених даних (Налимов) для цього типу позиції"}},
    {206, {L"Sprawdź poprawność częściowo wygenerowanych danych przeliczonych dla tego typu pozycji",
           L"Verify correctness of partially generated precalculated data for this position type",
           L"Перевірити правильність частково згенерованих попередньо обчислених даних для цього типу позиції"}},
    {172, {L"&Przelicz dane (tablice Nalimova) dla tego typu pozycji",
           L"&Precalculate data (Nalimov tablebases) for this position type",
           L"&Попередньо обчислити дані (таблиці Налимова) для цього типу позиції"}},
    {218, {L"Sprawdź, czy kody FEN z wybranego pliku (dowolny format tekstowy) są w bieżącym pliku...",
           L"Check if FEN codes from selected file (any text format) exist in the current file...",
           L"Перевірити, чи коди FEN з вибраного файлу (будь-який текстовий формат) є в поточному файлі..."}},
    // Priority
    {200, {L"&Wysoki", L"&High", L"&Високий"}},
    {201, {L"&Powyżej normalnego", L"&Above normal", L"В&ище звичайного"}},
    {202, {L"&Normalny", L"&Normal", L"&Звичайний"}},
    {203, {L"P&oniżej normalnego (zalecany)", L"&Below normal (recommended)", L"&Нижче звичайного (рекомендовано)"}},
    {204, {L"N&iski", L"&Low", L"Н&изький"}},
    // Help
    {198, {L"Otwórz &instrukcję (szybki start)", L"Open &manual (quick start)", L"Відкрити &посібник (швидкий старт)"}},
    {187, {L"&Otwórz readme.txt", L"&Open readme.txt", L"&Відкрити readme.txt"}},
    {185, {L"&O programie", L"&About", L"&Про програму"}},
    {165, {L"&Wątki...", L"&Threads...", L"&Потоки..."}},
    // Language: each language's own name, the same in every language.
    {285, {L"&Polski", L"&Polski", L"&Polski"}},
    {286, {L"&English", L"&English", L"&English"}},
    {287, {L"Українськ&а", L"Українськ&а", L"Українськ&а"}},
    // Pop-ups
    {300, {L"Pokaż program", L"Show program", L"Показати програму"}},
    {310, {L"Zamknij program", L"Close program", L"Закрити програму"}},
    {250, {L"Kopiuj pozycję do schowka", L"Copy position to clipboard", L"Копіювати позицію до буфера обміну"}},
    {251, {L"Kopiuj FEN pozycji do schowka", L"Copy FEN of the position to clipboard",
           L"Копіювати FEN позиції до буфера обміну"}},
    {252, {L"Wyświetl pozycję w nowej instancji programu", L"Display position in new instance of program",
           L"Показати позицію в новому екземплярі програми"}},
    {257, {L"Przesuń bieżący ruch do analizy jako ostatni", L"Shift current move to be analyzed as the last one",
           L"Перенести поточний хід в аналізі на останнє місце"}},
    {256, {L"Zamień kolejność analizy z następnym ruchem", L"Swap order of analysis with the next move",
           L"Поміняти порядок аналізу з наступним ходом"}},
    {255, {L"Przejdź do analizy następnego ruchu", L"Skip to analysis of next move", L"Перейти до аналізу наступного ходу"}},
    {290, {L"Dodaj/edytuj komentarz do tego ruchu", L"Add/edit comment to to this move",
           L"Додати/змінити коментар до цього ходу"}},
    {320, {L"Otwórz stronę w domyślnej przeglądarce", L"Open page in default browser",
           L"Відкрити сторінку в типовому браузері"}},
    {321, {L"Kopiuj adres do schowka", L"Copy address to clipboard", L"Копіювати адресу до буфера обміну"}},
    {325, {L"Edytuj opis problemu...", L"Edit problem description...", L"Змінити опис задачі..."}},
    // The problem list of the select button's right click: one entry, the list command.
    {1900, {L"Wybierz problem z listy...", L"Select problem from list...", L"Вибрати задачу зі списку..."}},
    // Keys with no menu item of their own.
    {635, {L"Ctrl+P", L"Ctrl+P", L"Ctrl+P"}},
    {695, {L"Ctrl+Shift+D", L"Ctrl+Shift+D", L"Ctrl+Shift+D"}},
};

constexpr Text3 NONE{};

constexpr MenuLine FILE_MENU[] = {
    {125}, {120}, {121}, {122}, {123}, {124}, {MENU_SEPARATOR}, {126}, {128}, {MENU_SEPARATOR}, {129},
};
constexpr MenuLine POSITION_MENU[] = {
    {132}, {298}, {299}, {612}, {131}, {133}, {134}, {MENU_SEPARATOR},
    {139}, {138}, {295}, {296}, {297}, {305}, {MENU_SEPARATOR},
    {136}, {135}, {216}, {214}, {MENU_SEPARATOR},
    {137}, {210}, {211}, {212}, {213}, {208}, {209},
};
constexpr MenuLine PROBLEM_MENU[] = {
    {SUBMENU_BEGIN, {L"Typ problemu", L"Problem type", L"Тип задачі"}}, {195}, {196}, {197}, {SUBMENU_END},
    {MENU_SEPARATOR},
    {140}, {141}, {152}, {153}, {142}, {164}, {143}, {169}, {144}, {MENU_SEPARATOR},
    {150}, {151}, {176}, {MENU_SEPARATOR},
    {145}, {146}, {147}, {159}, {160}, {167}, {168}, {MENU_SEPARATOR},
    {161}, {162}, {163}, {MENU_SEPARATOR},
    {156}, {158}, {157}, {154}, {155}, {207},
};
constexpr MenuLine VIEW_MENU[] = {{190}, {192}};
constexpr MenuLine VARIANT_MENU[] = {{270}, {271}, {274}, {276}, {275}, {277}, {278}, {280}};
constexpr MenuLine ADVANCED_MENU[] = {
    {677}, {679}, {171}, {170}, {MENU_SEPARATOR},
    {178}, {193}, {179}, {194}, {177}, {MENU_SEPARATOR},
    {149}, {183}, {184}, {215}, {MENU_SEPARATOR},
    {180}, {189}, {199}, {173}, {174}, {175}, {205}, {182}, {181}, {188}, {206}, {172}, {MENU_SEPARATOR},
    {218},
};
constexpr MenuLine PRIORITY_MENU[] = {
    {200}, {201}, {202}, {203}, {204}, {MENU_SEPARATOR},
    {SUBMENU_BEGIN, {L"&Koligacja procesorów", L"Processor &affinity", L"&Прив'язка до процесорів"}},
    {AFFINITY_ITEMS}, {SUBMENU_END},
};
constexpr MenuLine HELP_MENU[] = {{198}, {187}, {185}, {165}};
constexpr MenuLine LANGUAGE_MENU[] = {{285}, {286}, {287}};

constexpr MenuLine TRAY_MENU[] = {{300}, {310}};
constexpr MenuLine PROGRESS_MENU[] = {{250}, {251}, {252}, {MENU_SEPARATOR}, {257}, {256}, {255}};
constexpr MenuLine VARIANT_POPUP[] = {
    {270, {L"Zapisz jako wariant główny", L"Save as main variant", L"Зберегти як головний варіант"}},
    {271, {L"Zapisz wariant jako...", L"Save variant as...", L"Зберегти варіант як..."}},
    {274}, {276},
    {275, {L"Animuj wariant główny (ruch po ruchu)", L"Animate main variant (move by move)",
           L"Анімувати головний варіант (хід за ходом)"}},
    {277},
    {278, {L"Zatrzymaj animowanie wariantu", L"Stop animating variant", L"Зупинити анімування варіанта"}},
    {279}, {280},
};
constexpr MenuLine MOVE_MENU[] = {{290}};
constexpr MenuLine DESCRIPTION_MENU[] = {{320}, {321}, {325}};
constexpr MenuLine PROBLEMS_MENU[] = {{1900}};

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
    {"Ctrl+C", 610, 132},        {"Ctrl+Shift+C", 612, 0},     {"Ctrl+V", 620, 133},
    {"Ctrl+F", 630, 156},        {"Ctrl+G", 634, 154},         {"Ctrl+Shift+G", 640, 155},
    {"Ctrl+N", 636, 147},        {"Ctrl+P", 635, 0},           {"Ctrl+O", 637, 122},
    {"Ctrl+S", 638, 123},        {"Ctrl+I", 175, 0},           {"Ctrl+Shift+P", 182, 0},
    {"Ctrl+Shift+N", 181, 0},    {"Ctrl+M", 173, 0},           {"Ctrl+Shift+M", 174, 0},
    {"Ctrl+W", 171, 0},          {"Ctrl+L", 295, 0},           {"Ctrl+R", 296, 0},
    {"Ctrl+U", 297, 0},          {"Ctrl+D", 305, 0},           {"Ctrl+Z", 208, 0},
    {"Ctrl+Y", 209, 0},          {"F3", 653, 158},             {"Shift+F3", 673, 157},
    {"F5", 655, 140},            {"Shift+F5", 675, 141},       {"Ctrl+F5", 677, 0},
    {"Ctrl+Shift+F5", 679, 0},   {"Alt+F5", 680, 164},         {"Ctrl+Home", 685, 159},
    {"Ctrl+End", 686, 160},      {"Ctrl+Shift+D", 695, 0},     {"Ctrl+Shift+Right", 145, 0},
    {"Ctrl+Shift+Left", 146, 0}, {"Ctrl+T", 161, 0},           {"Ctrl+Shift+T", 162, 0},
    {"Ctrl+-", 167, 0},          {"Ctrl++", 168, 0},
};

constexpr ToolButton TOOL_BUTTONS[] = {
    {689, ToolIcon::Previous, {L"Poprzedni problem", L"Previous problem", L"Попередня задача"}},
    {688, ToolIcon::Next, {L"Następny problem", L"Next problem", L"Наступна задача"}},
    {154, ToolIcon::Select, {L"Kliknij, aby wybrać inny problem (prawy klik: lista z opisami problemów)",
                             L"Click to select another problem (right click: list with problem descriptions)",
                             L"Клацніть, щоб вибрати іншу задачу (клацання правою кнопкою: список з описами задач)"}},
    {161, ToolIcon::Tag, {L"Kliknij, aby dodać tag do problemu", L"Click to add a tag to the problem",
                          L"Клацніть, щоб додати тег до задачі"}},
    {123, ToolIcon::Save, {L"Zapisz zmiany w pliku", L"Save changes to file", L"Зберегти зміни у файл"}},
    {137, ToolIcon::Setting, {L"Rozpocznij/zakończ ustawianie pozycji", L"Start/stop position setting",
                              L"Почати/завершити розстановку позиції"}},
    {190, ToolIcon::Rotate, {L"Obróć widok szachownicy", L"Rotate chessboard view", L"Повернути вигляд шахівниці"}},
    {192, ToolIcon::Progress, {L"Kliknij, aby zmienić rozmiar obszaru informacji o postępie",
                               L"Click to change size of progress information area",
                               L"Клацніть, щоб змінити розмір області відомостей про перебіг"}},
};

// Ids that are no menu item or key of their own: the save twin 148, the
// tool buttons' next and previous, the list pop-up's entry.
constexpr std::array<std::pair<int, int>, 4> OTHER_ALIASES{{{148, 123}, {688, 145}, {689, 146}, {1900, 155}}};
// clang-format on

} // namespace

std::span<const CommandInfo> Commands() {
    return COMMANDS;
}

const CommandInfo* FindCommand(int id) {
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
std::span<const ToolButton> ToolButtons() {
    return TOOL_BUTTONS;
}

int CanonicalCommand(int id) {
    for (const Accelerator& key : ACCELERATORS)
        if (key.id == id && key.twin != 0) return key.twin;
    for (const auto& [alias, twin] : OTHER_ALIASES)
        if (alias == id) return twin;
    return id;
}

} // namespace zorvane

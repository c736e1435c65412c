#include "options/options_dialog_texts.h"

#include <array>
#include <cstddef>

namespace zorvane {
namespace {

using Table = std::array<ControlTexts, static_cast<std::size_t>(OptionsControl::Count)>;

constexpr LocalizedText REPEATED_POSITIONS_TIP{
    L"Tak (tryb szybki): pozycja powtórzona w wariancie jest zapisywana w danych tymczasowych jako "
    L"wątpliwa, co zwykle skraca rozwiązywanie. Nie (tryb bezpieczny): powtórzenia nie są tak zapisywane.",
    L"Yes (quick mode): a position that repeats in a line is stored in the temporary data as doubtful, "
    L"which usually shortens solving. No (safe mode): repetitions are not stored that way.",
    L"Так (швидкий режим): позиція, що повторюється у варіанті, записується в тимчасові дані як сумнівна, "
    L"що зазвичай скорочує розв’язування. Ні (безпечний режим): повторення так не записуються."};

constexpr LocalizedText MAIN_VARIANT_SORT_TIP{
    L"Silnik sprawdza najpierw ruchy wariantu głównego zadania, tak jakby były jego wskazówkami "
    L"sortowania. Domyślna wartość przełącznika każdego zadania.",
    L"The engine tries the moves of the problem's main variant first, as if they were its sort "
    L"indications. The default of each problem's own switch.",
    L"Рушій спершу перевіряє ходи головного варіанта задачі, ніби це її вказівки сортування. Типове "
    L"значення власного перемикача кожної задачі."};

constexpr LocalizedText MINIMIZE_TIP{
    L"Dokąd trafia program po zminimalizowaniu: na pasek zadań, zawsze do obszaru powiadomień albo "
    L"tam tylko z wciśniętym Ctrl.",
    L"Where the program goes when minimised: to the task bar, always to the notification area, or there "
    L"only when Ctrl is held.",
    L"Куди потрапляє програма після згортання: на панель завдань, завжди в область сповіщень або туди "
    L"лише з натиснутою Ctrl."};

constexpr LocalizedText SECOND_INSTANCE_TIP{
    L"Co się dzieje, gdy program startuje, a działa już inna jego kopia: nic, okno z komunikatem albo "
    L"tylko tekst na pasku stanu.",
    L"What happens when the program starts while another copy of it runs: nothing, a message box, or "
    L"only a text in the status bar.",
    L"Що відбувається, коли програма запускається, а інша її копія вже працює: нічого, вікно з "
    L"повідомленням або лише текст у рядку стану."};

constexpr LocalizedText MANUAL_ENGINE_CONTROL_TIP{
    L"Udostępnia polecenia menu kontekstowego obszaru postępu, które zmieniają kolejność analizy "
    L"pierwszych ruchów przez silnik. Nieostrożne użycie może pominąć rozwiązania.",
    L"Offers the commands of the progress area's context menu that change the order in which the engine "
    L"analyses the first moves. Careless use can skip solutions.",
    L"Надає команди контекстного меню області перебігу, які змінюють порядок аналізу перших ходів "
    L"рушієм. Необережне використання може пропустити розв’язки."};

Table makeTable() {
    Table t;
    const auto set = [&t](OptionsControl control, LocalizedText label, LocalizedText tooltip = {}) {
        t[static_cast<std::size_t>(control)] = {std::move(label), std::move(tooltip)};
    };
    set(OptionsControl::Title, {L"Opcje", L"Options", L"Параметри"});
    set(OptionsControl::ThreadsAndLevels,
        {L"Liczba wątków ^ liczba poziomów wielowątkowości", L"Num.of threads ^ num.of multithreading levels",
         L"Кількість потоків ^ кількість рівнів багатопотоковості"},
        {L"Liczba wątków silnika dla pierwszego ruchu białych i liczba poziomów, na których każdy wątek "
         L"dzieli się ponownie: 4^2 oznacza 4 wątki dla pierwszego ruchu i po 4 kolejne pod każdym z nich "
         L"dla drugiego, czyli do 16 wątków naraz.",
         L"Number of engine threads for White's first move, and the number of levels at which each thread "
         L"splits again: 4^2 means 4 threads for the first move and 4 more under each of them for the "
         L"second, up to 16 threads at a time.",
         L"Кількість потоків рушія для першого ходу білих і кількість рівнів, на яких кожен потік знову "
         L"розгалужується: 4^2 означає 4 потоки для першого ходу і ще по 4 під кожним із них для другого, "
         L"тобто до 16 потоків одночасно."});
    set(OptionsControl::ThreadsNotSaved,
        {L"Uwaga: ustawienia wątków nie zostaną zapisane", L"Note that thread settings will not be saved",
         L"Зауважте, що налаштування потоків не буде збережено"},
        {L"Liczba wątków jest ustalana od nowa przy każdym uruchomieniu na podstawie procesorów "
         L"komputera; poziomy wielowątkowości wracają do 1.",
         L"The number of threads is set anew at every start from the processors of the computer; "
         L"multithreading levels come back as 1.",
         L"Кількість потоків визначається заново під час кожного запуску за процесорами комп’ютера; рівні "
         L"багатопотоковості повертаються до 1."});
    set(OptionsControl::RepeatedPositions,
        {L"Dodawaj powtórzone pozycje do danych tymczasowych", L"Add repeated positions to temporary data",
         L"Додавати повторені позиції до тимчасових даних"},
        REPEATED_POSITIONS_TIP);
    set(OptionsControl::QuickModeYes, {L"Tak (tryb szybki)", L"Yes (quick mode)", L"Так (швидкий режим)"},
        REPEATED_POSITIONS_TIP);
    set(OptionsControl::QuickModeNo, {L"Nie (tryb bezpieczny)", L"No (safe mode)", L"Ні (безпечний режим)"},
        REPEATED_POSITIONS_TIP);
    set(OptionsControl::TempRegRatio,
        {L"Maks. % pamięci RAM, jaki mogą zajmować dane tymczasowe zadania",
         L"Max. % of RAM that temporary data of a problem can occupy",
         L"Макс. % оперативної пам’яті, який можуть займати тимчасові дані задачі"},
        {L"Górny limit danych tymczasowych jednego zadania (pozycji już przeanalizowanych) jako procent "
         L"pamięci fizycznej. Po osiągnięciu limitu wpisy są usuwane. Obok widać wynikowy rozmiar.",
         L"Upper limit of the temporary data of one problem (positions already analysed), as a percentage "
         L"of physical memory. When the limit is reached, entries are dropped. The resulting size is shown "
         L"beside.",
         L"Верхня межа тимчасових даних однієї задачі (уже проаналізованих позицій) у відсотках фізичної "
         L"пам’яті. Після досягнення межі записи видаляються. Поруч показано отриманий розмір."});
    set(OptionsControl::SchedulerLevels,
        {L"Liczba poziomów planisty (domyślnie=6, wył.=0)", L"Num.of scheduler levels (default=6, off=0)",
         L"Кількість рівнів планувальника (типово=6, вимк.=0)"},
        {L"Poniżej poziomów wielowątkowości planista pozwala kilku ruchom białych z jednej pozycji "
         L"działać na zmianę w odcinkach czasu, aby wątek nie utknął na długo w jednym złym ruchu. Liczba "
         L"poziomów, na których działa; 0 go wyłącza.",
         L"Below the multithreading levels the scheduler lets several White moves of one position take "
         L"turns in slices of time, so that a thread does not sink into one bad move for long. Number of "
         L"levels at which it works; 0 switches it off.",
         L"Нижче рівнів багатопотоковості планувальник дає кільком ходам білих однієї позиції працювати по "
         L"черзі відрізками часу, щоб потік надовго не застряг в одному поганому ході. Кількість рівнів, "
         L"на яких він працює; 0 вимикає його."});
    set(OptionsControl::CustomScheduler, {L"Własny planista", L"Custom scheduler", L"Власний планувальник"},
        {L"Używaj planisty także w pozycjach poza poziomami planisty. Wyłączony, gdy liczba poziomów "
         L"planisty wynosi 0.",
         L"Use the scheduler in positions outside the scheduler levels too. Off when the scheduler levels "
         L"are 0.",
         L"Використовувати планувальник також у позиціях поза рівнями планувальника. Вимкнений, коли "
         L"кількість рівнів планувальника дорівнює 0."});
    set(OptionsControl::MainVariantAsSortIndications,
        {L"Używaj wariantu głównego jako wskazówek sortowania dla silnika",
         L"Use main variant as sort indications for engine",
         L"Використовувати головний варіант як вказівки сортування для рушія"},
        MAIN_VARIANT_SORT_TIP);
    set(OptionsControl::MainVariantSpeedsUp,
        {L" (może przyspieszyć rozwiązywanie)", L" (can speed up solving)",
         L" (може пришвидшити розв’язування)"},
        MAIN_VARIANT_SORT_TIP);
    set(OptionsControl::ObserverLevels,
        {L"Liczba poziomów obserwatora (domyślnie=0, wył.=0)", L"Num.of observer levels (default=0, off=0)",
         L"Кількість рівнів спостерігача (типово=0, вимк.=0)"},
        {L"Liczba poziomów obserwatora; 0 wyłącza obserwatora.",
         L"Number of observer levels; 0 switches the observer off.",
         L"Кількість рівнів спостерігача; 0 вимикає спостерігача."});
    set(OptionsControl::PrecalcRatio,
        {L"Maks. % pamięci, jaki mogą zajmować dane prekalkulowane/Nalimowa",
         L"Max. % of memory that precalculated/Nalimov data can occupy",
         L"Макс. % пам’яті, який можуть займати попередньо обчислені дані/дані Налімова"},
        {L"Górny limit prekalkulowanych danych końcówek wczytanych do pamięci jako procent pamięci "
         L"fizycznej. Obok widać wynikowy rozmiar.",
         L"Upper limit of the precalculated endgame data loaded into memory, as a percentage of physical "
         L"memory. The resulting size is shown beside.",
         L"Верхня межа попередньо обчислених даних ендшпілю, завантажених у пам’ять, у відсотках фізичної "
         L"пам’яті. Поруч показано отриманий розмір."});
    set(OptionsControl::LichessLevels,
        {L"Liczba poziomów ruchów z rozwiązaniami pobieranymi z ... (domyślnie=1, wył.=0, wył. także w "
         L"GUI=-1)",
         L"Num.of move levels with solutions taken from ... (default=1, off=0, even in GUI off=-1)",
         L"Кількість рівнів ходів із розв’язками, взятими з ... (типово=1, вимк.=0, вимк. навіть у GUI=-1)"},
        {L"Przez ile pierwszych poziomów analizy pytać internetową bazę końcówek o pozycje z małą liczbą "
         L"bierek. 0 wyłącza ją dla silnika; -1 wyłącza ją także w zapytaniach samego okna.",
         L"For how many first levels of analysis the online tablebase is asked about positions with few "
         L"men. 0 switches it off for the engine; -1 switches it off in the window's own look-ups too.",
         L"Для скількох перших рівнів аналізу запитувати онлайн-базу ендшпілів про позиції з малою "
         L"кількістю фігур. 0 вимикає її для рушія; -1 вимикає також у власних запитах вікна."});
    set(OptionsControl::ClearRegister,
        {L"Zawsze czyść dane tymczasowe przy rozpoczęciu rozwiązywania",
         L"Always clear temporary data when starting solving",
         L"Завжди очищати тимчасові дані на початку розв’язування"},
        {L"Opróżniaj dane tymczasowe zadania przy każdym rozpoczęciu rozwiązywania zadania głównego.",
         L"Empty the temporary data of the problem whenever solving of the main problem starts.",
         L"Очищати тимчасові дані задачі щоразу, коли починається розв’язування основної задачі."});
    set(OptionsControl::PromptHeuristics,
        {L"Zawsze pokazuj okno wyboru heurystyk", L"Always display heuristics selection dialog",
         L"Завжди показувати вікно вибору евристик"},
        {L"Pokazuj okno wyboru heurystyk przy każdym rozpoczęciu rozwiązywania; w przeciwnym razie "
         L"pojawia się ono tylko z wciśniętym Ctrl.",
         L"Show the heuristics selection dialog at every start of solving; otherwise it appears only when "
         L"Ctrl is held at the start.",
         L"Показувати вікно вибору евристик під час кожного запуску розв’язування; інакше воно з’являється "
         L"лише з натиснутою Ctrl."});
    set(OptionsControl::ShowMainVariant,
        {L"Zawsze pokazuj wariant główny po przejściu do zadania",
         L"Always display main variant when navigating to a problem",
         L"Завжди показувати головний варіант під час переходу до задачі"},
        {L"Pokazuj wariant główny zadania po przejściu do zadania.",
         L"Show the problem's main variant on arrival at a problem.",
         L"Показувати головний варіант задачі під час переходу до неї."});
    set(OptionsControl::MinimizeToTray,
        {L"Minimalizuj program do obszaru powiadomień (zasobnik systemowy)",
         L"Minimize program to notification area (sys.tray)",
         L"Згортати програму в область сповіщень (системний трей)"},
        MINIMIZE_TIP);
    set(OptionsControl::MinimizeNever, {L"Nigdy", L"Never", L"Ніколи"}, MINIMIZE_TIP);
    set(OptionsControl::MinimizeAlways, {L"Zawsze", L"Always", L"Завжди"}, MINIMIZE_TIP);
    set(OptionsControl::MinimizeWithCtrl,
        {L"Tylko z wciśniętym Ctrl", L"Only with Ctrl held", L"Лише з натиснутою Ctrl"}, MINIMIZE_TIP);
    set(OptionsControl::LogMoves,
        {L"Zapisuj pełny log analizy (niezalecane)", L"Write full log of analysis (unrecommended)",
         L"Записувати повний журнал аналізу (не рекомендовано)"},
        {L"Zapisuj pełny log analizy, osobny plik dla każdego wątku silnika. Rozwiązywanie staje się dużo "
         L"wolniejsze, a pliki bardzo duże.",
         L"Write a full log of the analysis, one file for each engine thread. Solving becomes much slower "
         L"and the files grow very large.",
         L"Записувати повний журнал аналізу, окремий файл для кожного потоку рушія. Розв’язування стає "
         L"значно повільнішим, а файли дуже великими."});
    set(OptionsControl::SecondInstance,
        {L"Ostrzegaj, jeśli to nie pierwsza instancja programu", L"Warn if not the first instance of program",
         L"Попереджати, якщо це не перший екземпляр програми"},
        SECOND_INSTANCE_TIP);
    set(OptionsControl::SecondInstanceSilent, {L"Nie", L"No", L"Ні"}, SECOND_INSTANCE_TIP);
    set(OptionsControl::SecondInstanceMessageBox, {L"Tak", L"Yes", L"Так"}, SECOND_INSTANCE_TIP);
    set(OptionsControl::SecondInstanceStatusBar,
        {L"Tylko informacja na pasku stanu", L"Only info in status bar", L"Лише інформація в рядку стану"},
        SECOND_INSTANCE_TIP);
    set(OptionsControl::ManualEngineControl,
        {L"Włącz ręczne sterowanie silnikiem", L"Enable manual engine control",
         L"Увімкнути ручне керування рушієм"},
        MANUAL_ENGINE_CONTROL_TIP);
    set(OptionsControl::ManualEngineControlYes,
        {L"Tak (niezalecane)", L"Yes (not recommended)", L"Так (не рекомендовано)"},
        MANUAL_ENGINE_CONTROL_TIP);
    set(OptionsControl::SaveSettings, {L"&Zapisz ustawienia", L"&Save settings", L"&Зберегти налаштування"},
        {L"Sprawdza wartości tak jak OK i zapisuje je w options.ini. Ustawienia wątków nie są zapisywane.",
         L"Checks the values as OK does and writes them to options.ini. Thread settings are not saved.",
         L"Перевіряє значення, як і OK, і записує їх до options.ini. Налаштування потоків не "
         L"зберігаються."});
    set(OptionsControl::Ok, {L"OK", L"OK", L"OK"});
    set(OptionsControl::Cancel, {L"Anuluj", L"Cancel", L"Скасувати"});
    return t;
}

} // namespace

const ControlTexts& OptionsControlTexts(OptionsControl control) {
    static const Table table = makeTable();
    return table[static_cast<std::size_t>(control)];
}

} // namespace zorvane

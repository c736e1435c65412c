#include "options/options_dialog_check.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <limits>
#include <optional>
#include <string_view>

namespace zorvane {
namespace {

// A whole field as a decimal number, blanks around it allowed.
std::optional<long long> fieldNumber(std::string_view text) {
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return std::nullopt;
    text = text.substr(first, text.find_last_not_of(' ') - first + 1);
    long long value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return value;
}

std::optional<int> fieldInRange(std::string_view text, long long low, long long high) {
    const std::optional<long long> value = fieldNumber(text);
    if (!value || *value < low || *value > high) return std::nullopt;
    return static_cast<int>(*value);
}

struct Clamped {
    int value;
    bool changed;
};

// A text that is no number counts as 0, and as changed.
Clamped clampedField(std::string_view text, long long low, long long high) {
    const std::optional<long long> value = fieldNumber(text);
    const long long clamped = std::clamp(value.value_or(0), low, high);
    return {static_cast<int>(clamped), !value || clamped != *value};
}

bool threadTreeFits(int threads, int levels) {
    long long product = 1;
    for (int i = 0; i < levels; ++i) {
        product *= threads;
        if (product >= THREAD_TREE_LIMIT) return false;
    }
    return true;
}

constexpr LocalizedText PRECALC_RATIO_IMPROPER{
    L"Niepoprawna wartość w polu z procentem pamięci dla danych prekalkulowanych.",
    L"Improper value in field with memory ratio for precalculated data.",
    L"Неправильне значення в полі частки пам’яті для попередньо обчислених даних."};
constexpr LocalizedText TEMP_RATIO_IMPROPER{
    L"Niepoprawna wartość w polu z procentem pamięci dla danych tymczasowych.",
    L"Improper value in field with memory ratio for temporary data.",
    L"Неправильне значення в полі частки пам’яті для тимчасових даних."};
constexpr LocalizedText SCHEDULER_LEVELS_INVALID{
    L"Niepoprawna liczba poziomów planisty (min=0, max=9)",
    L"Invalid number of scheduler levels (min=0, max=9)",
    L"Неправильна кількість рівнів планувальника (min=0, max=9)"};
constexpr LocalizedText LICHESS_LEVELS_INVALID{
    L"Niepoprawna liczba poziomów analizy z rozwiązaniami pobieranymi z ... (min=-1, max=255)",
    L"Invalid number of levels of analysis with solutions dowanloaded from ... (min=-1, max=255)",
    L"Неправильна кількість рівнів аналізу з розв’язками, завантаженими з ... (min=-1, max=255)"};

// Whether every form of `text` ends with "max=<maximum>)": the two range
// messages spell their limit, which must follow the constant.
constexpr bool namesMaximum(std::wstring_view text, int maximum) {
    if (!text.ends_with(L')')) return false;
    text.remove_suffix(1);
    do {
        if (text.empty() || text.back() != L'0' + maximum % 10) return false;
        text.remove_suffix(1);
        maximum /= 10;
    } while (maximum > 0);
    return text.ends_with(L"max=");
}
constexpr bool namesMaximum(const LocalizedText& text, int maximum) {
    return namesMaximum(text.polish, maximum) && namesMaximum(text.english, maximum) &&
           namesMaximum(text.ukrainian, maximum);
}
static_assert(namesMaximum(SCHEDULER_LEVELS_INVALID, MAX_SCHEDULER_LEVELS));
static_assert(namesMaximum(LICHESS_LEVELS_INVALID, MAX_LICHESS_LEVELS));
constexpr LocalizedText LEVELS_ADJUSTED{
    L"Niepoprawna wartość opcji poziomów wielowątkowości: wartość obcięta/dopasowana",
    L"Improper value in multithreading levels option: value truncated/adjusted",
    L"Неправильне значення параметра рівнів багатопотоковості: значення обрізано/скориговано"};
constexpr LocalizedText TOO_MANY_THREADS{L"Zbyt wiele wątków i/lub poziomów wielowątkowości.",
                                         L"Too many threads and/or multithreading levels.",
                                         L"Забагато потоків і/або рівнів багатопотоковості."};
constexpr LocalizedText MANUAL_ENGINE_CONTROL_CAUTION{
    L"Uwaga: ręcznego sterowania silnikiem (dostępnego z menu kontekstowego w obszarze informacji o "
    L"postępie) należy używać bardzo ostrożnie, w przeciwnym razie może ono prowadzić do pominięcia "
    L"rozwiązań lub fałszywych wyników.",
    L"Note that manual engine control (reachable from context menu in progress info area) should be used "
    L"very carefully, otherwise can result in skipping solutions or false positives.",
    L"Зауважте: ручним керуванням рушієм (доступним із контекстного меню в області інформації про "
    L"перебіг) слід користуватися дуже обережно, інакше можна пропустити розв’язки або отримати хибні "
    L"результати."};
constexpr LocalizedText LOG_WITH_SCHEDULER{
    L"Włączony jest pełny log analizy. Zdecydowanie zaleca się wyłączenie planisty dla "
    L"czytelności/liniowości zapisów w logu.",
    L"Full analysis logging is on. It is highly recommended to switch off scheduler for "
    L"readability/linearity of log records.",
    L"Увімкнено повний журнал аналізу. Наполегливо рекомендується вимкнути планувальник для "
    L"читабельності/лінійності записів журналу."};
constexpr LocalizedText CUSTOM_SCHEDULER_OFF{
    L"Uwaga: z powodu SchedulerLevels=0 własny planista zostanie wyłączony",
    L"Note: Due to SchedulerLevels=0, Custom scheduler will be off",
    L"Примітка: через SchedulerLevels=0 власний планувальник буде вимкнено"};

} // namespace

OptionsDialogOutcome CheckOptionsDialog(const Options& before, const OptionsDialogEntry& entry) {
    OptionsDialogOutcome outcome;
    const auto refuse = [&outcome](const LocalizedText& text) {
        outcome.messages.push_back({MessageTitle::Error, text});
        return outcome;
    };

    // 1-4. Fields that must hold a number in range; a bad one refuses OK.
    const std::optional<int> precalcRatio = fieldInRange(entry.precalcRatio, 0, MAX_MEMORY_RATIO);
    if (!precalcRatio) return refuse(PRECALC_RATIO_IMPROPER);
    const std::optional<int> tempRegRatio = fieldInRange(entry.tempRegRatio, 0, MAX_MEMORY_RATIO);
    if (!tempRegRatio) return refuse(TEMP_RATIO_IMPROPER);
    const std::optional<int> schedulerLevels = fieldInRange(entry.schedulerLevels, 0, MAX_SCHEDULER_LEVELS);
    if (!schedulerLevels) return refuse(SCHEDULER_LEVELS_INVALID);
    const std::optional<int> lichessLevels =
        fieldInRange(entry.lichessLevels, MIN_LICHESS_LEVELS, MAX_LICHESS_LEVELS);
    if (!lichessLevels) return refuse(LICHESS_LEVELS_INVALID);

    // 5. Threads and levels are adjusted rather than refused.
    const int threads = clampedField(entry.threads, 1, MAX_THREADS).value;
    int levels = 1;
    if (threads > 1) {
        const Clamped clamped = clampedField(entry.multithreadingLevels, 0, MAX_MULTITHREADING_LEVELS);
        levels = clamped.value;
        if (clamped.changed) outcome.messages.push_back({MessageTitle::Warning, LEVELS_ADJUSTED});
    }

    // 6. The tree of threads must stay countable.
    if (!threadTreeFits(threads, levels)) return refuse(TOO_MANY_THREADS);

    Options& o = outcome.options;
    o = entry.choices;
    o.MaxMemRatioForPrecalculatedData = *precalcRatio;
    o.MaxMemRatioForTempReg = *tempRegRatio;
    o.SchedulerLevels = *schedulerLevels;
    o.LichessLevels = static_cast<std::int16_t>(*lichessLevels);
    o.ObserverLevels = static_cast<std::uint16_t>(
        clampedField(entry.observerLevels, 0, std::numeric_limits<std::uint16_t>::max()).value);
    o.MultithreadingLevels = levels;
    outcome.threads = threads;
    outcome.accepted = true;

    // The choices taken over, and what the user should know about them.
    if (o.EnableManualEngineControl && !before.EnableManualEngineControl)
        outcome.messages.push_back({MessageTitle::Warning, MANUAL_ENGINE_CONTROL_CAUTION});
    if (o.LogMoves && o.SchedulerLevels != 0)
        outcome.messages.push_back({MessageTitle::Warning, LOG_WITH_SCHEDULER});
    if (o.SchedulerLevels == 0 && o.CustomScheduler) {
        outcome.messages.push_back({MessageTitle::Information, CUSTOM_SCHEDULER_OFF});
        o.CustomScheduler = false;
    }
    return outcome;
}

} // namespace zorvane

#include "options/options.h"

#include "options/profile_file.h"
#include "options/profile_int.h"
#include "options/profile_text.h"

#include <utility>

namespace zorvane {
namespace {

class KeyReader {
  public:
    explicit KeyReader(const ProfileText& text) : m_text(text) {}

    int Int(std::string_view key, int defaultValue) const {
        const std::optional<std::string> value = m_text.Get(OPTIONS_SECTION, key);
        return value ? ReadProfileInt(*value, defaultValue) : defaultValue;
    }
    bool Flag(std::string_view key, bool defaultValue) const { return Int(key, defaultValue ? 1 : 0) != 0; }
    std::string String(std::string_view key) const { return m_text.Get(OPTIONS_SECTION, key).value_or(""); }

  private:
    const ProfileText& m_text;
};

constexpr LocalizedText RECOMPRESSION_ABOVE_PACKED_DATA{
    L"Wartość parametru AskForGlobalRegisterRecompression nie powinna być większa niż "
    L"UseDataPackedForRandomAccess.",
    L"Value of parameter AskForGlobalRegisterRecompression should not be greater than "
    L"UseDataPackedForRandomAccess.",
    L"Значення параметра AskForGlobalRegisterRecompression не повинно бути більшим за "
    L"UseDataPackedForRandomAccess."};

constexpr LocalizedText FULL_LOG_AT_START{
    L"Program został otwarty z opcją zapisu pełnego loga analizy - opcja jest niezalecana (wydłuża czas "
    L"analizy i produkowane są b.duże pliki)",
    L"Program has been opened with the option to write log of full analysis - this option is not "
    L"recommended (it makes solving last much longer and produces large log files)",
    L"Програму відкрито з опцією запису журналу повного аналізу - ця опція не рекомендується (вона "
    L"значно подовжує розв’язування і створює великі файли журналу)"};

} // namespace

Options ReadOptions(const ProfileText& text, std::vector<LocalizedText>& warnings) {
    const KeyReader key(text);
    Options o;
    o.LanguageId = key.Int("LanguageId", 1);
    o.QuickMode = key.Flag("QuickMode", true);
    o.WarningOnLichessDataRepetition = key.Flag("WarningOnLichessDataRepetition", false);
    o.SchedulerLevels = key.Int("SchedulerLevels", 5) + 1;
    o.CheckTempRegCoherency = key.Flag("CheckTempRegCoherency", true);
    o.CustomScheduler = key.Flag("CustomScheduler", true);
    o.ObserverLevels = static_cast<std::uint16_t>(key.Int("ObserverLevels", 0));
    o.LichessLevels = static_cast<std::int16_t>(key.Int("LichessLevels", 1));
    o.WarnAboutSecondInstanceOfProgram = key.Int("WarnAboutSecondInstanceOfProgram", 2);
    o.PromptHeuristics = key.Flag("PromptHeuristics", false);
    o.MaxMemRatioForTempReg = key.Int("MaxMemRatioForTempReg", 20);
    o.ClearRegisterOnStartSolving = key.Flag("ClearRegisterOnStartSolving", true);
    o.MaxMemRatioForPrecalculatedData = key.Int("MaxMemRatioForPrecalculatedData", 20);
    o.LetAnalyzeTheSameMoveInTwoThreads = key.Flag("LetAnalyzeTheSameMoveInTwoThreads", true);
    o.CommentCompatibilityMode = key.Flag("CommentCompatibilityMode", false);
    o.ShowMainVariant = key.Flag("ShowMainVariant", true);
    o.UseMainVariantAsSortIndications = key.Flag("UseMainVariantAsSortIndications", false);
    o.LogMoves = key.Flag("LogMoves", false);
    o.RegisterInfoLog = key.Flag("RegisterInfoLog", false);
    o.TryRelaxSpecialHeuristicsLog = key.Flag("TryRelaxSpecialHeuristicsLog", false);
    o.MinimizeToTray = key.Int("MinimizeToTray", 2);
    o.AskForGlobalRegisterRecompression = key.Int("AskForGlobalRegisterRecompression", 0);
    o.UseDataPackedForRandomAccess = key.Int("UseDataPackedForRandomAccess", 2);
    o.GlobalRegisterForceDiskAccess = key.Flag("GlobalRegisterForceDiskAccess", true);
    o.PrecalcPath = key.String("PrecalcPath");
    o.AskIfSaveAfterDecompressAllToMem = key.Flag("AskIfSaveAfterDecompressAllToMem", false);
    // Levels other than one only last until the next start.
    o.MultithreadingLevels = key.Flag("MultithreadingLevels", true) ? 1 : 0;
    o.LogToFileTmpRegLoad = key.Flag("LogToFileTmpRegLoad", true);
    o.CustomizedVersion = key.Flag("CustomizedVersion", false);
    o.EnableManualEngineControl = key.Flag("EnableManualEngineControl", false);
    o.ScalingWarningDismissed = key.Flag("ScalingWarningDismissed", false);

    if (o.AskForGlobalRegisterRecompression > o.UseDataPackedForRandomAccess) {
        warnings.push_back(RECOMPRESSION_ABOVE_PACKED_DATA);
        o.AskForGlobalRegisterRecompression = o.UseDataPackedForRandomAccess;
    }
    if (o.LogMoves) warnings.push_back(FULL_LOG_AT_START);
    return o;
}

Options LoadOptions(const std::filesystem::path& path, std::vector<LocalizedText>& warnings) {
    return ReadOptions(ReadProfileFile(path).value_or(ProfileText()), warnings);
}

bool SaveOptions(const Options& o, const std::filesystem::path& path) {
    const auto flag = [](bool on) { return std::string(on ? "1" : "0"); };
    const auto number = [](int value) { return std::to_string(value); };
    const std::pair<std::string_view, std::string> keys[] = {
        {"QuickMode", flag(o.QuickMode)},
        {"SchedulerLevels", number(o.SchedulerLevels - 1)},
        {"CustomScheduler", flag(o.CustomScheduler)},
        {"ObserverLevels", number(o.ObserverLevels)},
        {"LichessLevels", number(o.LichessLevels)},
        {"WarnAboutSecondInstanceOfProgram", number(o.WarnAboutSecondInstanceOfProgram)},
        {"PromptHeuristics", flag(o.PromptHeuristics)},
        {"MaxMemRatioForTempReg", number(o.MaxMemRatioForTempReg)},
        {"ClearRegisterOnStartSolving", flag(o.ClearRegisterOnStartSolving)},
        {"MaxMemRatioForPrecalculatedData", number(o.MaxMemRatioForPrecalculatedData)},
        {"LetAnalyzeTheSameMoveInTwoThreads", flag(o.LetAnalyzeTheSameMoveInTwoThreads)},
        {"CommentCompatibilityMode", flag(o.CommentCompatibilityMode)},
        {"ShowMainVariant", flag(o.ShowMainVariant)},
        {"UseMainVariantAsSortIndications", flag(o.UseMainVariantAsSortIndications)},
        {"LogMoves", flag(o.LogMoves)},
        {"RegisterInfoLog", flag(o.RegisterInfoLog)},
        {"TryRelaxSpecialHeuristicsLog", flag(o.TryRelaxSpecialHeuristicsLog)},
        {"MinimizeToTray", number(o.MinimizeToTray)},
        {"GlobalRegisterForceDiskAccess", flag(o.GlobalRegisterForceDiskAccess)},
        {"MultithreadingLevels", number(o.MultithreadingLevels)},
        {"EnableManualEngineControl", flag(o.EnableManualEngineControl)},
    };
    std::optional<ProfileText> text = ReadProfileFile(path);
    if (!text) return false;
    for (const auto& [key, value] : keys) text->Set(OPTIONS_SECTION, key, value);
    return WriteProfileFile(path, *text);
}

bool WriteOptionKey(const std::filesystem::path& path, std::string_view key, int value) {
    std::optional<ProfileText> text = ReadProfileFile(path);
    if (!text) return false;
    text->Set(OPTIONS_SECTION, key, std::to_string(value));
    return WriteProfileFile(path, *text);
}

} // namespace zorvane

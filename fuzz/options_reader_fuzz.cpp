// Any bytes as options.ini. Reading must never crash; the text must come back
// byte for byte; the options read must be consistent; and setting one key
// must change that key alone, also after the text is read again.
#include "options/options.h"
#include "options/profile_text.h"
#include "fuzz_check.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr std::array<std::string_view, 31> KEYS = {"LanguageId",
                                                   "QuickMode",
                                                   "WarningOnLichessDataRepetition",
                                                   "SchedulerLevels",
                                                   "CheckTempRegCoherency",
                                                   "CustomScheduler",
                                                   "ObserverLevels",
                                                   "LichessLevels",
                                                   "WarnAboutSecondInstanceOfProgram",
                                                   "PromptHeuristics",
                                                   "MaxMemRatioForTempReg",
                                                   "ClearRegisterOnStartSolving",
                                                   "MaxMemRatioForPrecalculatedData",
                                                   "LetAnalyzeTheSameMoveInTwoThreads",
                                                   "CommentCompatibilityMode",
                                                   "ShowMainVariant",
                                                   "UseMainVariantAsSortIndications",
                                                   "LogMoves",
                                                   "RegisterInfoLog",
                                                   "TryRelaxSpecialHeuristicsLog",
                                                   "MinimizeToTray",
                                                   "AskForGlobalRegisterRecompression",
                                                   "UseDataPackedForRandomAccess",
                                                   "GlobalRegisterForceDiskAccess",
                                                   "PrecalcPath",
                                                   "AskIfSaveAfterDecompressAllToMem",
                                                   "MultithreadingLevels",
                                                   "LogToFileTmpRegLoad",
                                                   "CustomizedVersion",
                                                   "EnableManualEngineControl",
                                                   "ScalingWarningDismissed"};

using zorvane::fuzz::check;

std::vector<std::optional<std::string>> valuesOf(const zorvane::ProfileText& text) {
    std::vector<std::optional<std::string>> values;
    for (std::string_view key : KEYS) values.push_back(text.Get(zorvane::OPTIONS_SECTION, key));
    return values;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace zorvane;
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    ProfileText text(bytes);
    check(text.Text() == bytes);

    std::vector<LocalizedText> warnings;
    const Options options = ReadOptions(text, warnings);
    check(options.AskForGlobalRegisterRecompression <= options.UseDataPackedForRandomAccess);
    check(options.MultithreadingLevels == 0 || options.MultithreadingLevels == 1);
    check(warnings.size() <= 2);

    const std::size_t changed = size == 0 ? 0 : data[0] % KEYS.size();
    const std::string value = std::to_string(static_cast<int>(size) - 100);
    std::vector<std::optional<std::string>> expected = valuesOf(text);
    expected[changed] = value;
    text.Set(OPTIONS_SECTION, KEYS[changed], value);
    check(valuesOf(text) == expected);
    check(valuesOf(ProfileText(text.Text())) == expected);
    return 0;
}

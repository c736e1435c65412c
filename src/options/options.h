#pragma once
// The program's lasting settings: the "[chess]" section of options.ini.
//
//   Options options = LoadOptions(dataDir / "options.ini", warnings);
//       Reads every key (a missing or unreadable file, or a missing key,
//       gives the defaults). `warnings` gets the boxes to show at start-up,
//       each under the title "Warning", in the order they are to appear; the
//       texts come in all three languages, pick one with
//       warning.In(options.LanguageId).
//   SaveOptions(options, path);
//       What the Options dialog's "Save settings" writes: only the keys the
//       dialog owns; every other key and section of the file stays.
//   WriteOptionKey(path, "LanguageId", id);
//       One key at once, for the commands that save without the dialog (the
//       language command, the dismissed scaling warning).
//   The Options dialog is shell/options_dialog.h (OptionsDialog: setOptions,
//   setThreads, exec, options(), threads()); its rules, free of Qt, are
//   CheckOptionsDialog in options_dialog_check.h.
// Writes go to a temporary file beside the target and are renamed over it;
// they return false on failure, which the program does not report. A file
// that is there but cannot be read is never replaced.
//
// Members carry the key names of the file. `SchedulerLevels` holds the value
// in use, one more than the file's number.
#include "options/localized_text.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace zorvane {

class ProfileText;

// The single section of options.ini.
inline constexpr std::string_view OPTIONS_SECTION = "chess";

struct Options {
    int LanguageId = 1; // 0 Polish, 1 English, 2 Ukrainian, others act as English
    bool QuickMode = true;
    bool WarningOnLichessDataRepetition = false;
    int SchedulerLevels = 6; // in use: the file's value plus one; 0 is off
    bool CheckTempRegCoherency = true;
    bool CustomScheduler = true;
    std::uint16_t ObserverLevels = 0;
    std::int16_t LichessLevels = 1;           // 0 off, -1 off in the window's own look-ups too
    int WarnAboutSecondInstanceOfProgram = 2; // 0 no, 1 message box, 2 status bar only
    bool PromptHeuristics = false;
    int MaxMemRatioForTempReg = 20; // percent of physical memory
    bool ClearRegisterOnStartSolving = true;
    int MaxMemRatioForPrecalculatedData = 20; // percent of physical memory
    bool LetAnalyzeTheSameMoveInTwoThreads = true;
    bool CommentCompatibilityMode = false;
    bool ShowMainVariant = true;
    bool UseMainVariantAsSortIndications = false;
    bool LogMoves = false;
    bool RegisterInfoLog = false;
    bool TryRelaxSpecialHeuristicsLog = false;
    int MinimizeToTray = 2; // 0 never, 1 always, 2 only with Ctrl held; others are kept as read
    int AskForGlobalRegisterRecompression = 0; // never above UseDataPackedForRandomAccess after loading
    int UseDataPackedForRandomAccess = 2;
    bool GlobalRegisterForceDiskAccess = true;
    std::string PrecalcPath; // as written in the file; empty means the default folders
    bool AskIfSaveAfterDecompressAllToMem = false;
    int MultithreadingLevels = 1; // read as 0 or 1; the dialog sets up to 64
    bool LogToFileTmpRegLoad = true;
    bool CustomizedVersion = false;
    bool EnableManualEngineControl = false;
    bool ScalingWarningDismissed = false;

    bool operator==(const Options&) const = default;
};

Options LoadOptions(const std::filesystem::path& path, std::vector<LocalizedText>& warnings);
// The same from a file's text already in memory.
Options ReadOptions(const ProfileText& text, std::vector<LocalizedText>& warnings);

bool SaveOptions(const Options& options, const std::filesystem::path& path);
bool WriteOptionKey(const std::filesystem::path& path, std::string_view key, int value);

} // namespace zorvane

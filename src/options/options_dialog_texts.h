#pragma once
// The labels of the Options dialog and the tooltips that explain each option,
// in the three languages.
#include "options/localized_text.h"

namespace zorvane {

enum class OptionsControl {
    Title,
    ThreadsAndLevels,
    ThreadsNotSaved,
    RepeatedPositions,
    QuickModeYes,
    QuickModeNo,
    TempRegRatio,
    SchedulerLevels,
    CustomScheduler,
    MainVariantAsSortIndications,
    MainVariantSpeedsUp,
    ObserverLevels,
    PrecalcRatio,
    LichessLevels,
    ClearRegister,
    PromptHeuristics,
    ShowMainVariant,
    MinimizeToTray,
    MinimizeNever,
    MinimizeAlways,
    MinimizeWithCtrl,
    LogMoves,
    SecondInstance,
    SecondInstanceSilent,
    SecondInstanceMessageBox,
    SecondInstanceStatusBar,
    ManualEngineControl,
    ManualEngineControlYes,
    SaveSettings,
    Ok,
    Cancel,
    Count
};

struct ControlTexts {
    LocalizedText label;
    LocalizedText tooltip; // empty for the title, OK and Cancel
};

const ControlTexts& OptionsControlTexts(OptionsControl control);

} // namespace zorvane

#pragma once
// The commands of the window by name. The numbers are the ones the menus,
// keys and buttons have always carried; a key, button or entry that stands
// for a menu item has a number of its own (...Key, ...Button, FileSaveTwin,
// ProblemListEntry), which CanonicalCommand brings to its item's.

namespace zorvane {

enum class CommandId : int {
    // File
    FileNew = 125,
    FileOpenDefault = 120,
    FileOpenSamples = 121,
    FileOpen = 122,
    FileSave = 123,
    FileSaveAs = 124,
    FileAppendProblems = 126,
    FileRemoveProblems = 128,
    FileExit = 129,

    // Position
    PositionCopy = 132,
    PositionCopyWithoutVariants = 298,
    PositionCopyWithoutVariantsOrTags = 299,
    PositionCopyFen = 612,
    PositionCopyFullFen = 131,
    PositionPaste = 133,
    PositionPasteMirrored = 134,
    PositionRotate90 = 139,
    PositionSwapColours = 138,
    PositionShiftLeft = 295,
    PositionShiftRight = 296,
    PositionShiftUp = 297,
    PositionShiftDown = 305,
    MovesCopyShort = 136,
    MovesCopyFull = 135,
    VariantsCopyShort = 216,
    VariantsCopyFull = 214,
    PositionSettingMode = 137,
    StipulationUp = 210,
    StipulationDown = 211,
    StipulationUpTen = 212,
    StipulationDownTen = 213,
    Undo = 208,
    Redo = 209,

    // Problem
    TypeDirectMate = 195,
    TypeSelfmate = 196,
    TypeHelpmate = 197,
    SolveStart = 140,
    SolveAllSolutions = 141,
    SolveBlackDefence = 152,
    SolveBlackDefenceThorough = 153,
    SolveStop = 142,
    SolveShowMainVariant = 164,
    SolvePause = 143,
    SolvePauseOneThread = 169,
    SolveResume = 144,
    MoveBack = 150,
    MoveRedo = 151,
    CommentLastMove = 176,
    ProblemNext = 145,
    ProblemPrevious = 146,
    ProblemNew = 147,
    ProblemFirst = 159,
    ProblemLast = 160,
    ProblemHistoryBack = 167,
    ProblemHistoryForward = 168,
    TagAdd = 161,
    TagRemove = 162,
    TagsAppendFromFile = 163,
    ProblemFind = 156,
    ProblemFindNext = 158,
    ProblemFindPrevious = 157,
    ProblemSelectByNumber = 154,
    ProblemSelectFromList = 155,
    FindSimilarPositions = 207,

    // View
    ViewRotateBoard = 190,
    ViewResizeProgressArea = 192,

    // Variant
    VariantSaveAsMain = 270,
    VariantSaveAs = 271,
    VariantShowMain = 274,
    VariantShow = 276,
    VariantAnimateMain = 275,
    VariantAnimate = 277,
    VariantStopAnimation = 278,
    VariantRename = 279,
    VariantRemove = 280,

    // Advanced
    SolveWithHeuristics = 677,
    SolveAllWithHeuristics = 679,
    EditSortIndications = 171,
    Options = 170,
    TempRegisterSave = 178,
    TempRegisterSaveAs = 193,
    TempRegisterReadDefault = 179,
    TempRegisterReadFile = 194,
    TempRegisterClear = 177,
    SkipCurrentMove = 149,
    ShowPositionId = 183,
    RegressionTest = 184,
    QuickRegressionTest = 215,
    ShowGlobalRegister = 180,
    VerifyPrecalculatedFiles = 189,
    VerifyPrecalculatedFilesResume = 199,
    MaxMovesNextPosition = 173,
    MaxMovesPreviousPosition = 174,
    PositionInformation = 175,
    PastePositionByIndex = 205,
    PreviousPositionOfType = 182,
    NextPositionOfType = 181,
    VerifyPrecalculatedData = 188,
    VerifyPartlyPrecalculatedData = 206,
    PrecalculateData = 172,
    CheckFenCodesFromFile = 218,

    // Priority
    PriorityHigh = 200,
    PriorityAboveNormal = 201,
    PriorityNormal = 202,
    PriorityBelowNormal = 203,
    PriorityLow = 204,
    // Processor affinity: one item per processor, the processor's number above the first.
    ProcessorFirst = 2000,
    ProcessorLast = 2063,

    // Help
    HelpManual = 198,
    HelpReadme = 187,
    HelpAbout = 185,
    Threads = 165,
    // Added under Help when Ctrl and Shift are held at start: a new problem without stipulation.
    Bonus = 166,

    // Language
    LanguagePolish = 285,
    LanguageEnglish = 286,
    LanguageUkrainian = 287,

    // The tray's pop-up
    TrayShowProgram = 300,
    TrayCloseProgram = 310,
    // The progress area's pop-up
    ProgressCopyPosition = 250,
    ProgressCopyFen = 251,
    ProgressShowInNewInstance = 252,
    ProgressMoveToLast = 257,
    ProgressSwapWithNext = 256,
    ProgressSkipToNext = 255,
    // The move's pop-up
    CommentThisMove = 290,
    // The description's pop-up
    DescriptionOpenLink = 320,
    DescriptionCopyAddress = 321,
    DescriptionEdit = 325,

    // Keys and buttons that stand for a menu item.
    PositionCopyKey = 610,
    PositionPasteKey = 620,
    ProblemFindKey = 630,
    ProblemSelectByNumberKey = 634,
    ProblemSelectFromListKey = 640,
    ProblemNewKey = 636,
    FileOpenKey = 637,
    FileSaveKey = 638,
    ProblemFindNextKey = 653,
    ProblemFindPreviousKey = 673,
    SolveStartKey = 655,
    SolveAllSolutionsKey = 675,
    SolveShowMainVariantKey = 680,
    ProblemFirstKey = 685,
    ProblemLastKey = 686,
    FileSaveTwin = 148,
    ProblemNextButton = 688,
    ProblemPreviousButton = 689,
    // The one entry of the problem list that the select button's right click opens.
    ProblemListEntry = 1900,
    // Keys with no command of their own.
    KeyCtrlP = 635,
    KeyCtrlShiftD = 695,
};

// The two conversions between a command and its number, for what needs an
// int: the menu table's lines, arithmetic over a range of items, messages.
constexpr int CommandNumber(CommandId id) {
    return static_cast<int>(id);
}
constexpr CommandId CommandOfNumber(int number) {
    return static_cast<CommandId>(number);
}

constexpr bool IsProcessorCommand(CommandId id) {
    return id >= CommandId::ProcessorFirst && id <= CommandId::ProcessorLast;
}
constexpr CommandId ProcessorCommand(int cpu) {
    return CommandOfNumber(CommandNumber(CommandId::ProcessorFirst) + cpu);
}
constexpr int ProcessorOf(CommandId id) {
    return CommandNumber(id) - CommandNumber(CommandId::ProcessorFirst);
}

// The language an item of the Language menu chooses: 0 Polish, 1 English, 2 Ukrainian.
constexpr int LanguageOf(CommandId id) {
    return CommandNumber(id) - CommandNumber(CommandId::LanguagePolish);
}

} // namespace zorvane

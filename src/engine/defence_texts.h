#pragma once
// The texts of Black's best defence, in the three languages.
#include <string>

namespace zorvane {

// The word before the chosen move in the status line.
enum class DefenceWord {
    OnlyReplyFastMate,          // "The only reply that prevents fast mate: "
    OnlyReply,                  // "The only reply: "
    OnlyReplyMateBehind,        // "The only reply (not a defence against mate) : "
    OnlyReplyFastMateMateFound, // "The only reply that prevents fast mate (not a defence against mate) : "
    NoDefence,                  // "Not found any defence against mate. The best looks: "
    Refuted,                    // "Mate in the requested stipulation was refuted with: "
};
std::wstring DefenceWordText(DefenceWord word, int languageId);

std::wstring EquivalentMovesLabel(int languageId);   // "\nEquivalent moves: "
std::wstring PositionRepetitionWord(int languageId); // "Position repetition"
// The box of a chosen move that repeats a position.
std::wstring ChosenMoveRepetitionBoxText(int languageId);
// The box of a position that already repeats one of the line: nothing is searched.
std::wstring LineRepetitionBoxText(int languageId);
std::wstring NoValidMoveText(int languageId);       // "No valid move found"
std::wstring InformationTitle(int languageId);      // "Information"
std::wstring NoRegisterDataBoxText(int languageId); // the last resort had several moves left

} // namespace zorvane

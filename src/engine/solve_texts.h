#pragma once
// The texts a solve leaves for the user, in the three languages.
#include <string>
#include <vector>

namespace zorvane {

// Which notes follow a solve that found nothing.
struct NoSolutionNotes {
    bool relaxationOff = false; // only one pass with heuristics was run
    bool passWithoutHeuristicsOff = false;
    bool quickMode = false;
};

// " (12.3 sec.)": the time part of every result text.
std::wstring SecondsText(double milliseconds);
// "Not found any solutions for #n (t sec.)" and the notes that apply.
std::wstring NoSolutionText(int moves, double milliseconds, const NoSolutionNotes& notes, int languageId);
std::wstring DualStopText(int languageId);
std::wstring ThreeSolutionsStopText(int languageId);
// "More than one solution found: %d".
std::wstring SeveralSolutionsText(int count, int languageId);
std::wstring StoppedByUserSuffix(int languageId); // " (stopped by user)"
std::wstring AnalysisStoppedText(int languageId); // "Analysis stopped by user"
std::wstring FromRegisterSuffix(int languageId);  // " (from register)"
// "No solution found (t sec.)" of a solve from a later position, with the
// note when the pass without heuristics is off.
std::wstring NoSolutionFromPositionText(double milliseconds, bool passWithoutHeuristicsOff, int languageId);
// "(n or less) " of a move that the register knows to mate at a shorter depth.
std::wstring OrLessText(int moves, int languageId);
std::wstring ThreatLabel(int languageId); // "threat: "

// The name of a pass as the user sees it: "0" for the register's screen, "1"
// for the first pass with heuristics, "1b", "1c"... after each relaxation,
// "2" for the pass without them.
std::string PassName(int pass, int relaxations);

// The task check's texts, thrown as ChessException.
extern const char* const BLACK_KING_CHECKED_TEXT;
extern const char* const WHITE_KING_CHECKED_TEXT;

} // namespace zorvane

#pragma once
// The problem file (.cp): reader, writer and the new-file text.
//
// A file is an optional "UTF-8" mark, "//!default" clauses, then problem
// blocks one after another:
//
//   1 #2 NoMirror THREADS 4
//   //#TAGS
//   //#miniature
//   //!VARIANTS
//   //!{Main variant} d1-d7 e8-f8[only move]
//   //!ENDVARIANTS
//   //@SortIndications: 1.Qd7
//   {
//       Description: a short title
//       FEN: 4k3/8/8/8/8/8/8/3QK3
//       Answer: Qd1-d7
//   }
//
// The reader takes many more keywords than the writer emits; those are lost on
// a save by design (they belong to regression files kept by hand).
#include "problems/chess_problem.h"
#include "problems/lexem_reader.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <map>
#include <mutex>
#include <ostream>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace zorvane {

struct ProblemFileSettings {
    int languageId = LANGUAGE_ENGLISH;     // 0 Polish, 1 English, 2 Ukrainian
    bool commentCompatibilityMode = false; // also keep a ".cpx" double with the variant comments
    ProblemDefaults defaults;              // what a new record takes from the options
    std::ostream* console = nullptr;       // the two console messages of a load; none when null
    std::mutex* listLock = nullptr;        // held while a read problem is stored, when given
};

// The words of the "//!default #n word" clauses, by n.
using DefaultClauses = std::map<int, std::vector<std::string>>;

// The names of the single bits of the heuristics mask that a problem may set
// options for; the bit value is the key of `heuristicOptions`.
struct HeuristicName {
    uint32_t bit;
    const char* name;
};
extern const std::array<HeuristicName, 29> HeuristicNames;

// Skips the encoding mark (a UTF-8 byte-order mark, blanks and tabs, then
// "UTF-8"; either says UTF-8) and tells whether it was there.
bool ReadEncodingMark(TextCursor& cursor);
// Reads the default clauses ahead of the first problem; the cursor stops at
// the first lexem that is no clause.
DefaultClauses ReadDefaultClauses(TextCursor& cursor);

// Reads one problem block into `problem` and completes its starting position.
// Any error comes out as ChessException "Error parsing problem N: " + text.
// Returns the new position of the cursor's text.
size_t ParseProblem(TChessProblem& problem, std::string_view text, size_t pos, bool isUtf8,
                    const DefaultClauses& defaults, int languageId);

// What a load read of a file's problem blocks. A caller that keeps the
// problems read before an error learns from it how much of the file it lacks,
// so that it does not write the rest of the file away.
struct ProblemLoadReport {
    bool whole = false;      // every block was read
    int problemsRead = 0;    // blocks read, before the error when there was one
    int problemsInFile = 0;  // blocks of the whole text, by CountProblemBlocks
    int problemsNotRead = 0; // blocks of the file that the load did not give; 0 when whole
    std::string error;       // the reader's message when not whole
};

// The number of problem blocks in a file's text, counted by their bodies,
// whatever errors the text holds (the rule is at the definition).
int CountProblemBlocks(std::string_view text);

// Reads a whole file's text into `problems` (a later number replaces an earlier
// one). The first error stops the reading; the problems read before stay.
// With `report`, it is filled before the error comes out.
void ReadProblemText(std::string_view text, ProblemMap& problems, const ProblemFileSettings& settings,
                     std::set<std::wstring>& allTags, ProblemLoadReport* report = nullptr);

// Reads the whole file; false when it cannot be opened or read.
bool ReadWholeFile(const std::filesystem::path& path, std::string& bytes);

// Reads a file. With `commentCompatibilityMode` the ".cpx" double is read.
// A missing file is created first when `createIfMissing` is set. With
// `report`, it is filled before an error comes out (a file that cannot be
// opened reads no block and counts none).
void LoadProblemFile(const std::filesystem::path& path, ProblemMap& problems, bool createIfMissing,
                     const ProblemFileSettings& settings, std::set<std::wstring>& allTags,
                     ProblemLoadReport* report = nullptr);

// The text of a file with all problems, ascending by number, in UTF-8.
std::string WriteProblemFileText(const ProblemMap& problems, bool withComments);

// Writes the file (and with `commentCompatibilityMode` first the ".cpx" double
// with comments, then the plain file without). Each file is written beside
// the target and renamed over it, so a failure leaves the old file as it was.
void SaveProblemFile(const std::filesystem::path& path, const ProblemMap& problems,
                     const ProblemFileSettings& settings);

// The text of a new file in the language given: one problem, kings on e1 and e8.
std::string DefaultProblemFileText(int languageId);
// Writes the new-file text, the same way as a save.
void CreateDefaultProblemFile(const std::filesystem::path& path, const ProblemFileSettings& settings);

// The path with a final "x" ("a.cp" -> "a.cpx"), and the path without it.
std::filesystem::path CommentedFilePath(const std::filesystem::path& path);
std::filesystem::path PlainFilePath(const std::filesystem::path& path);

} // namespace zorvane

#pragma once
// ProblemList: the problems of the open file, the current one, its saved
// snapshot, and the history of viewed problems. Questions to the user and
// effects on the screen go through ProblemListHost, which the window and the
// command line implement (and tests answer).
#include "core/localized_text.h"
#include "problems/chess_problem.h"

#include <cstdint>
#include <filesystem>
#include <mutex>
#include <set>
#include <string>
#include <vector>

namespace zorvane {

// YesNoDefaultNo: the same two buttons, with No taken on Enter, for a question
// whose Yes loses data.
enum class Buttons { YesNoCancel, OkCancel, YesNo, YesNoDefaultNo };
enum class Answer { Yes, No, Cancel, Ok };

class ProblemListHost {
  public:
    virtual ~ProblemListHost() = default;
    virtual Answer Ask(const std::wstring& title, const std::wstring& text, Buttons buttons) = 0;
    virtual void ShowError(const std::wstring& title, const std::wstring& text) = 0;
    virtual void ShowStatus(const std::wstring& /*text*/) {}
    // Solves, presentations and registers belong to other parts of the program.
    virtual bool IsSolving(const TChessProblem& /*problem*/) { return false; }
    virtual void StopSolving(TChessProblem& /*problem*/) {}
    virtual void StopPresentation() {}
    virtual void ReleaseTemporaryData(TChessProblem& /*problem*/, bool /*otherSolvesRun*/) {}
    virtual void ClearPendingRegisterRequests(TChessProblem& /*problem*/) {}
    virtual bool DescriptionEditorOpen() { return false; }
    virtual void CloseDescriptionEditors() {}
    // Shows a problem after navigation: `position` is the one to show on the board.
    virtual void ShowProblem(const TChessProblem& /*problem*/, const TChessboard& /*position*/) {}
    virtual void ShowMainVariant(const TChessProblem& /*problem*/) {}
    // Writes the whole list to the file; throws on failure.
    virtual void WriteFile(const std::filesystem::path& path, const ProblemMap& problems) = 0;
    // Save-as for a list without a file; false when the user gave up.
    virtual bool SaveAs() { return false; }
};

// The last saved state of the current problem, to see and throw away changes.
struct ProblemSnapshot {
    int32_t savedId = -1;
    int savedMoves = 0;
    uint16_t savedType = 0;
    std::wstring savedDescription;
    std::set<std::wstring> savedTags;
    TVariantMap savedVariants;
    SortIndications savedSortIndications;
    uint8_t savedBoard[64] = {};
    uint8_t savedCurrentBoard[64] = {};
    bool isNewProblem = false;
};

// Where to navigate.
enum class Navigation { Next, Previous, First, Last, ById, HistoryBack, HistoryForward };

class ProblemList {
  public:
    ProblemList(ProblemListHost& host, int languageId, ProblemDefaults defaults = {});

    ProblemMap problems;
    // The current problem's entry, or problems.end().
    ProblemMap::iterator currentProblem;
    std::filesystem::path filePath;
    // The file's last-write time when it was last read or written here.
    std::filesystem::file_time_type fileTime{};
    std::set<std::wstring> allTags;
    // Problems of the file that the list lacks, because its load stopped at an
    // error after the ones it holds: writing the list over the file would lose
    // them. 0 after a whole load, and once the user agreed to lose them.
    int problemsNotLoaded = 0;
    std::vector<int32_t> history;
    int historyIndex = -1;
    // Guards the map against the loader; a second lock guards the set of running solves.
    std::mutex listLock;
    std::mutex runningLock;
    ProblemSnapshot snapshot;

    TChessProblem* Current() {
        return currentProblem == problems.end() ? nullptr : currentProblem->second.get();
    }
    std::wstring FileDirectory() const { return filePath.parent_path().wstring(); }
    std::wstring FileName() const { return filePath.filename().wstring(); }
    void SetLanguage(int languageId) { m_languageId = languageId; }

    // Takes over a freshly loaded map: the first problem becomes current, history starts with it.
    // `notLoaded` is the number of the file's problems that the load did not give.
    void Replace(ProblemMap loaded, const std::filesystem::path& path, int notLoaded = 0);
    bool LoadedInPart() const { return problemsNotLoaded > 0; }
    // Whatever writes the whole list to `path` asks this first. Over the file
    // that was loaded in part it asks whether the problems not loaded may be
    // lost (No, the default, keeps the file); true when the write may go on.
    bool MayWriteOver(const std::filesystem::path& path);

    void TakeSnapshot(bool asNew);
    // Gives back the saved state; a never saved new problem is erased instead (true).
    bool RevertToSnapshot();
    bool IsCurrentProblemChanged() const;
    // 0 go on, 1 cancelled or failed, -1 the problem was thrown away and the list changed.
    int AskSaveChanges(bool solveRuns);
    // Writes the file after the same-position question; false when not written.
    bool SaveCurrentFile();
    // The one road to another current problem; false when nothing changed.
    bool NavigateToProblem(Navigation where, int32_t id = 0);

    void PushHistory(int32_t id);
    bool HistoryBack();
    bool HistoryForward();
    // Another problem with the same 64 squares in its start position, or nullptr.
    const TChessProblem* FindSamePosition(int32_t id) const;

  private:
    std::wstring tr(const LocalizedText& text) const;
    void eraseNewProblem();
    void noteFileTime();
    bool addNewProblem();
    enum class SaveOutcome { Written, Declined, Failed };
    SaveOutcome saveCurrentFile();

    ProblemListHost& m_host;
    int m_languageId;
    ProblemDefaults m_defaults;
    std::mutex m_navigationLock;
};

} // namespace zorvane

#pragma once
// SolutionPanel: the outcome of the current problem's last solve, beside the
// board. Above, the result text; below, the solution as a tree of lines:
// each key with its threat and Black's defences down to the mate, the tries
// with their refutations, and the set play under its heading. A click on a
// line plays it on the board from the start position down to its last move.
//
// The panel keeps the outcome of every problem solved, and shows the current
// one's at each refresh of the window, in the window's language; a problem
// whose start position or stipulation changed since its solve shows nothing.
#include "core/move.h"
#include "engine/solution_tree.h"
#include "engine/solve_driver.h"
#include "problems/chess_problem.h"

#include <QDockWidget>
#include <QString>

#include <array>
#include <cstdint>
#include <map>
#include <vector>

class QPlainTextEdit;
class QTreeWidget;
class QTreeWidgetItem;

namespace zorvane {

class BoardController;
class MainWindow;
class WindowServices;

// The longest stipulation whose window solve builds the whole tree: a longer
// problem's tree costs many times its keys, and the panel lists the keys alone.
constexpr int PANEL_TREE_MAX_MOVES = 4;
// Whether the window's solve of `problem` from its start position asks for the tree.
inline bool WindowBuildsTree(const TChessProblem& problem) {
    return problem.stipulationMoves() <= PANEL_TREE_MAX_MOVES;
}

// One line of the panel: its text, the moves from the start position down to
// the line's last move (empty for a heading, and for set play, which begins
// with Black in a position where White moves), and the lines under it.
struct SolutionLine {
    QString text;
    std::vector<TMove> moves;
    std::vector<SolutionLine> children;
};

// The lines of `tree`, with the language's figure letters.
std::vector<SolutionLine> SolutionLines(const SolutionTree& tree, int languageId);

// The keys of a solve without its tree, each with its first threat (long
// notation, as the result gives it), played on `start`.
SolutionTree KeysOnlyTree(const TChessboard& start, int moves, const SolveResult& result);

class SolutionPanel : public QDockWidget {
    Q_OBJECT
  public:
    SolutionPanel(WindowServices& window, BoardController& board, QWidget* parent = nullptr);

    // Docks the panel at the window's right and follows its refreshes.
    void attachTo(MainWindow& window);

    // The end of a solve of `problem`: the result text, and the solution's
    // lines when the solve ran from the start position.
    void setResult(const TChessProblem& problem, const QString& text, const SolveResult& result,
                   bool fromStart);
    // A new solve of the problem begins: its old outcome goes.
    void clearResult(int32_t problemId);
    // Shows the current problem's outcome if the problem, the language or the outcome changed.
    void refresh();

    // Plays `moves` from the start position of the current problem; nothing
    // while it is solved or set up, or when a move does not fit the position.
    void playLine(const std::vector<TMove>& moves);

    QString resultText() const;
    QTreeWidget* lines() const { return m_lines; }

  private:
    struct Outcome {
        QString text;
        SolutionTree tree;
        // The position and stipulation the solve started from.
        std::array<uint8_t, 64> squares{};
        int plies = 0;
    };
    void display(const Outcome* outcome);
    void addLines(QTreeWidgetItem* parent, const std::vector<SolutionLine>& lines);
    void onItemClicked(QTreeWidgetItem* item);

    WindowServices& m_window;
    BoardController& m_board;
    QPlainTextEdit* m_text = nullptr;
    QTreeWidget* m_lines = nullptr;
    std::map<int32_t, Outcome> m_outcomes;
    // The moves of each line on screen, by the index each item carries.
    std::vector<std::vector<TMove>> m_shownMoves;
    // What is on screen: problem, language, and the count of outcomes set.
    int32_t m_shownId = -1;
    int m_shownLanguage = -1;
    uint64_t m_shownVersion = 0;
    uint64_t m_version = 1;
};

} // namespace zorvane

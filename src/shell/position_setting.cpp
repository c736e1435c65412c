#include "shell/position_setting.h"

#include "engine/mate_search.h"
#include "shell/board_rules.h"

#include <algorithm>
#include <cstring>

namespace zorvane {

namespace {

SettingSnapshot snapshotOf(const TChessProblem& problem) {
    SettingSnapshot snapshot;
    std::memcpy(snapshot.squares.data(), problem.startPosition.m_aSquares, 64);
    snapshot.plies = problem.plies;
    snapshot.stipulationPlies = problem.stipulationPlies;
    snapshot.tags = problem.tags;
    snapshot.variants = problem.variants;
    return snapshot;
}

void restore(TChessProblem& problem, const SettingSnapshot& snapshot) {
    std::memcpy(problem.startPosition.m_aSquares, snapshot.squares.data(), 64);
    problem.plies = snapshot.plies;
    problem.stipulationPlies = snapshot.stipulationPlies;
    problem.tags = snapshot.tags;
    problem.variants = snapshot.variants;
    RefreshStartPosition(problem);
}

} // namespace

int StatedStipulationMoves(const TChessProblem& problem) {
    switch (problem.type) {
    case PROBLEM_DIRECT_MATE:
        return (problem.stipulationPlies + 1) / 2;
    case PROBLEM_SELFMATE:
        return problem.stipulationPlies / 2;
    default:
        return 0;
    }
}

void RefreshStartPosition(TChessProblem& problem) {
    TChessboard& start = problem.startPosition;
    // The men may not form a position yet; the fields are then as far filled as the set-up got.
    TrySetupChessboard(start, false);
    start.m_pProblem = &problem;
    start.m_pParent = nullptr;
    start.m_shPliesLeft = start.m_shPliesTotal = problem.plies;
}

void PositionEditor::Begin(const TChessProblem& problem) {
    m_variantsAtBegin = problem.variants;
}

bool PositionEditor::PutOrRemove(TChessProblem& problem, int square, uint8_t piece) {
    if (square < 0 || square > 63) return false;
    const uint8_t present = problem.startPosition.m_aSquares[square];
    const uint8_t next = piece == 0 || present == piece ? 0 : piece;
    if (next == present) return false;
    pushUndo(problem);
    problem.startPosition.m_aSquares[square] = next;
    RefreshStartPosition(problem);
    // A stored line stays only while it can still be played from the new position.
    TChessboard check = problem.startPosition;
    problem.variants =
        TrySetupChessboard(check, false) ? VariantsPlayableFrom(m_variantsAtBegin, check) : TVariantMap{};
    return true;
}

bool PositionEditor::ChangeStipulation(TChessProblem& problem, int delta) {
    if (problem.type == PROBLEM_POSITION) return false;
    const int moves = StatedStipulationMoves(problem);
    const int wanted = std::clamp(moves + delta, 1, MAX_STIPULATION_MOVES);
    if (wanted == moves) return false;
    pushUndo(problem);
    SetStipulation(problem, wanted);
    RefreshStartPosition(problem);
    return true;
}

bool PositionEditor::Undo(TChessProblem& problem) {
    if (m_undo.empty()) return false;
    m_redo.push_back(snapshotOf(problem));
    restore(problem, m_undo.back());
    m_undo.pop_back();
    return true;
}

bool PositionEditor::Redo(TChessProblem& problem) {
    if (m_redo.empty()) return false;
    m_undo.push_back(snapshotOf(problem));
    restore(problem, m_redo.back());
    m_redo.pop_back();
    return true;
}

void PositionEditor::Clear() {
    m_undo.clear();
    m_redo.clear();
    m_variantsAtBegin.clear();
}

void PositionEditor::pushUndo(const TChessProblem& problem) {
    m_undo.push_back(snapshotOf(problem));
    m_redo.clear();
}

} // namespace zorvane

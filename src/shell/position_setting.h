#pragma once
// The changes of position-setting mode on a problem, with their undo and redo
// lists. Each change first keeps what it may touch: the men, the stipulation,
// the tags and the variants, so that undo gives all of it back at once.
#include "problems/chess_problem.h"

#include <array>
#include <cstdint>
#include <set>
#include <string>
#include <vector>

namespace zorvane {

struct SettingSnapshot {
    std::array<uint8_t, 64> squares{};
    uint16_t plies = 0;
    uint16_t stipulationPlies = 0;
    std::set<std::wstring> tags;
    TVariantMap variants;
};

// Moves of the stipulation as the problem states it (the header's, also while
// a played line stands in its place); 0 for a position without one.
int StatedStipulationMoves(const TChessProblem& problem);

class PositionEditor {
  public:
    // A session on `problem`: its variants now are the lines that later changes
    // of the men keep for as long as they can still be played.
    void Begin(const TChessProblem& problem);
    // Puts `piece` on `square`; takes the man away instead when he is that very
    // piece or `piece` is 0. False when nothing changed.
    bool PutOrRemove(TChessProblem& problem, int square, uint8_t piece);
    // Moves of the stipulation by `delta`, kept within 1 and the engine's limit.
    // False when nothing changed, as for a position without stipulation.
    bool ChangeStipulation(TChessProblem& problem, int delta);
    bool Undo(TChessProblem& problem);
    bool Redo(TChessProblem& problem);
    bool CanUndo() const { return !m_undo.empty(); }
    bool CanRedo() const { return !m_redo.empty(); }
    void Clear();

  private:
    void pushUndo(const TChessProblem& problem);

    std::vector<SettingSnapshot> m_undo;
    std::vector<SettingSnapshot> m_redo;
    TVariantMap m_variantsAtBegin;
};

// The start position's fields again after its men or plies changed; the men
// may not make a valid position yet while they are being set.
void RefreshStartPosition(TChessProblem& problem);

} // namespace zorvane

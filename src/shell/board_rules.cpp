#include "shell/board_rules.h"

#include "core/chess_exception.h"
#include "core/make_move.h"
#include "engine/solver.h"
#include "problems/notation.h"

#include <deque>

namespace zorvane {

namespace {

constexpr int MAX_QUEENS_AND_PAWNS = 9;

int countOn(const TChessboard& position, uint8_t piece) {
    int count = 0;
    for (uint8_t square : position.m_aSquares) count += square == piece;
    return count;
}

bool onlyBishopsOfOneColour(const TChessboard& position) {
    if (position.m_nWhiteQueens || position.m_nWhiteRooks || position.m_nWhiteKnights ||
        position.m_nWhitePawns)
        return false;
    int colours = 0;
    for (int square = 0; square < 64; ++square)
        if (position.m_aSquares[square] == WB) colours |= 1 << squareColour(square);
    return colours != 3;
}

bool playsFrom(const TVariant& variant, const TChessboard& start) {
    std::deque<TChessboard> line{start};
    // The stored line starts with White, whatever side the problem gives the move.
    line.back().m_shPliesLeft = static_cast<uint16_t>(line.back().m_shPliesLeft | 1);
    for (const TVariantMove& entry : variant.moves) {
        TMove move = entry.move;
        TChessboard child;
        if (!PlayMove(line.back(), child, move)) return false;
        line.push_back(child);
    }
    return true;
}

} // namespace

std::optional<TMove> LegalMoveOnBoard(const TChessboard& position, int from, int to, uint8_t promotion) {
    if (from < 0 || from > 63 || to < 0 || to > 63 || from == to) return std::nullopt;
    const uint8_t mover = position.m_aSquares[from];
    TMove move;
    move.from = static_cast<uint8_t>(from);
    move.to = static_cast<uint8_t>(to);
    move.promotion = promotion;
    const bool capture =
        position.m_aSquares[to] != 0 || ((mover & KIND_MASK) == KIND_PAWN && colOf(from) != colOf(to));
    try {
        const TMove legal = ParseMoveOnBoard(position, FormatLongMove(move, mover, capture));
        // A king's long step reads as castling: it must be the very squares asked for.
        if (legal.from != from || legal.to != to) return std::nullopt;
        return legal;
    } catch (const ChessException&) {
        return std::nullopt;
    }
}

bool MatingImpossible(const TChessboard& position) {
    if (position.whiteMenBesideKing() == 0) return true;
    return position.blackMenBesideKing() == 0 && onlyBishopsOfOneColour(position);
}

bool EngineRefusesMove(const TChessboard& parent, const TMove& move) {
    TChessboard child;
    CopyToChild(child, parent);
    TMove made = move;
    if (parent.whiteToMove()) {
        if (!MakeWhiteMove(child, made)) return true;
    } else if (MakeBlackMove(child, made, true) == BLACK_MOVE_BEATS_WHITE) {
        return true;
    }
    return MatingImpossible(child);
}

void PlayOnChain(TChessProblem& problem, size_t shownIndex, TMove move) {
    auto& chain = problem.playedPositions;
    if (shownIndex < chain.size())
        chain.erase(chain.begin() + static_cast<std::ptrdiff_t>(shownIndex), chain.end());
    const TChessboard& parent = shownIndex == 0 ? problem.startPosition : chain[shownIndex - 1];
    TChessboard rebuilt;
    if (!PlayMove(parent, rebuilt, move)) throw ChessException("Illegal move");
    TChessboard& child = chain.emplace_back();
    CopyToChild(child, parent);
    TMove made = move;
    const bool accepted = parent.whiteToMove() ? MakeWhiteMove(child, made)
                                               : MakeBlackMove(child, made, true) == BLACK_MOVE_MADE;
    if (!accepted) child = rebuilt;
}

PositionJudgement JudgePosition(TChessProblem& problem, const TChessboard& position) {
    const bool white = position.whiteToMove();
    if (!SideToMoveHasLegalMove(position)) {
        const bool inCheck = white ? position.whiteInCheck() : position.blackInCheck();
        return {inCheck ? PositionVerdict::Nothing : PositionVerdict::Stalemate, 0};
    }
    if (MatingImpossible(position)) return {PositionVerdict::NoMate, 0};
    if (!white) return {};
    const KnownMate known = Solver::KnownMateOf(problem, position);
    switch (known.source) {
    case KnownMate::AtOnce:
        return {PositionVerdict::MateInOne, 1};
    case KnownMate::Register:
        return {PositionVerdict::TemporaryRegisterMate, known.moves};
    case KnownMate::None:
        break;
    }
    return {};
}

std::string WhiteThreat(TChessProblem& problem, const TChessboard& position) {
    // In a selfmate White's own mate is no threat.
    if (position.whiteToMove() || problem.type == PROBLEM_SELFMATE) return {};
    return Solver::FirstThreatOf(problem, position);
}

bool TooManyQueensAndPawns(const TChessboard& position) {
    return countOn(position, WQ) + countOn(position, WP) > MAX_QUEENS_AND_PAWNS ||
           countOn(position, BQ) + countOn(position, BP) > MAX_QUEENS_AND_PAWNS;
}

SolveRoad SolveRoadOf(const TChessProblem& problem, const TChessboard* shown, int& plies,
                      const TChessboard*& position) {
    if (problem.type == PROBLEM_POSITION) return SolveRoad::Analyse;
    position = shown;
    if (!position || position == &problem.startPosition) {
        position = &problem.startPosition;
        plies = problem.plies;
        return SolveRoad::Main;
    }
    // Half-moves made from the start: the place of the shown board in the chain.
    int made = 0;
    for (const TChessboard& played : problem.playedPositions) {
        ++made;
        if (&played == position) break;
    }
    if (made == 0) return SolveRoad::None;
    plies = problem.plies - made;
    if (plies <= 0) return SolveRoad::None;
    return (plies & 1) ? SolveRoad::FromPosition : SolveRoad::BestDefence;
}

bool IsSolveRoadBuilt(SolveRoad road) {
    return road == SolveRoad::Main || road == SolveRoad::FromPosition || road == SolveRoad::BestDefence;
}

TVariantMap VariantsPlayableFrom(const TVariantMap& variants, const TChessboard& start) {
    TVariantMap kept;
    for (const auto& [name, variant] : variants)
        if (playsFrom(variant, start)) kept.emplace(name, variant);
    return kept;
}

} // namespace zorvane

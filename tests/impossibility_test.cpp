// The impossibility tail: the free squares of the black king, each code on a
// position where it fires and on a near miss, the tables of blockers recounted
// from every placement of the men, and each code held against the plain mate
// search on random positions of its material.
#include "core/fen.h"
#include "core/square_sets.h"
#include "core/thread_context.h"
#include "engine/find_mate.h"
#include "engine/impossibility.h"
#include "engine/solve_job.h"
#include "problems/chess_problem.h"
#include "test_positions.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace zorvane {
namespace {

// The plain search (no heuristics, no register, safe mode) on a position with
// White to move and `plies` left.
class PlainSearch {
  public:
    PlainSearch() {
        m_context->m_pJob = &m_job;
        m_job.m_bSafeMode = 1;
    }
    bool Mates(const TChessboard& position, int plies) {
        TChessboard b = position;
        b.m_pProblem = &m_problem;
        b.m_pThread = m_context.get();
        b.m_pParent = nullptr;
        b.m_shPliesLeft = b.m_shPliesTotal = static_cast<uint16_t>(plies);
        b.m_bPass = 2;
        b.m_uHeuristics = 0;
        m_job.m_shRepetitionLimit = static_cast<uint16_t>(plies);
        return FindMate(b, true) == RESULT_MATE;
    }

  private:
    TChessProblem m_problem;
    SolveJob m_job{m_problem};
    std::unique_ptr<TThreadContext> m_context = std::make_unique<TThreadContext>();
};

int codeOf(const std::string& fen, int plies) {
    return ImpossibilityCode(boardFromFen(fen, plies));
}

bool matesIn(const std::string& fen, int plies) {
    PlainSearch search;
    return search.Mates(boardFromFen(fen, plies), plies);
}

// The harness itself: without it finding mates, the comparisons below would prove nothing.
TEST(PlainSearch, FindsTheRookMatesAtTheirDepthAndNotBefore) {
    EXPECT_TRUE(matesIn("5k2/8/5K2/8/8/8/8/4R3", 3));
    EXPECT_FALSE(matesIn("5k2/8/5K2/8/8/8/8/4R3", 1));
    EXPECT_TRUE(matesIn("8/8/8/8/8/2K5/1R6/k7", 5));
    EXPECT_FALSE(matesIn("8/8/8/8/8/2K5/1R6/k7", 3));
    EXPECT_TRUE(matesIn("8/8/8/8/8/4K3/2R5/k7", 9));
    EXPECT_FALSE(matesIn("8/8/8/8/8/4K3/2R5/k7", 7));
}

// ---- Free squares

int freeSquares(const std::string& fen) {
    return CountFreeKingSquares(boardFromFen(fen, 2));
}

TEST(CountFreeKingSquares, CornerEdgeAndCentreOfAnEmptyBoard) {
    EXPECT_EQ(freeSquares("k7/8/8/8/8/8/8/7K"), 3);
    EXPECT_EQ(freeSquares("4k3/8/8/8/8/8/8/7K"), 5);
    EXPECT_EQ(freeSquares("8/8/8/4k3/8/8/8/7K"), 8);
}

TEST(CountFreeKingSquares, OwnMenFillSquaresAndWhiteAttacksTakeThem) {
    // A black pawn on d7 and a bishop on f8 stand beside the king.
    EXPECT_EQ(freeSquares("4kb2/3p4/8/8/8/8/8/7K"), 3);
    // The rook on b1 takes the b-file.
    EXPECT_EQ(freeSquares("k7/8/8/8/8/8/8/1R5K"), 1);
    // The White king on e3 takes d4, e4, f4; the knight on g5 takes e6.
    EXPECT_EQ(freeSquares("8/8/8/4k1N1/8/4K3/8/8"), 4);
    // A White man beside the king is a flight unless defended.
    EXPECT_EQ(freeSquares("4k3/4Q3/8/8/8/8/8/7K"), 1);
    EXPECT_EQ(freeSquares("4k3/4Q3/4K3/8/8/8/8/8"), 0);
}

TEST(CountFreeKingSquares, TheSquareBehindTheKingOnTheCheckingLineIsAttacked) {
    // The rook on a8 checks along the eighth row: f8, in the king's shadow, is no flight.
    EXPECT_EQ(freeSquares("R3k3/8/8/8/8/8/8/4K3"), 3);
    // Beside a bishop's check the square behind him on the diagonal is taken too.
    EXPECT_EQ(freeSquares("8/8/8/4k3/8/8/1B6/7K"), 6);
}

// ---- Each code: where it fires, and a near miss

struct CodeCase {
    const char* fen;
    int plies;
};

void expectFiresAndNoMate(int code, CodeCase c) {
    EXPECT_EQ(codeOf(c.fen, c.plies), code) << c.fen;
    EXPECT_FALSE(matesIn(c.fen, c.plies)) << c.fen;
}

void expectSilentAndMate(CodeCase c) {
    EXPECT_EQ(codeOf(c.fen, c.plies), 0) << c.fen;
    EXPECT_TRUE(matesIn(c.fen, c.plies)) << c.fen;
}

TEST(ImpossibilityCode, LoneRook) {
    // In the centre the king needs three men around him; in two moves he cannot reach the edge.
    expectFiresAndNoMate(IMPOSSIBLE_LONE_ROOK, {"8/8/8/3k4/8/3K4/8/R7", 3});
    // Far from the White king, a cornered king needs two men of his own.
    expectFiresAndNoMate(IMPOSSIBLE_LONE_ROOK, {"k7/8/8/8/8/8/8/1R5K", 1});
    // Near misses: the classic mate, and the same corner with two black pawns.
    expectSilentAndMate({"4k3/8/4K3/8/8/8/8/R7", 1});
    expectSilentAndMate({"k7/pp6/8/8/8/8/8/2R4K", 1});
    // The White king two squares off after his step, which uncovers the rook's check: Kc7 mates.
    expectSilentAndMate({"RK2k3/4pp2/8/8/8/8/8/8", 1});
    // Four moves bring the king from d5 to the edge: the band no longer proves anything.
    EXPECT_EQ(codeOf("8/8/8/3k4/8/3K4/8/R7", 7), 0);
}

TEST(ImpossibilityCode, LoneQueen) {
    expectFiresAndNoMate(IMPOSSIBLE_LONE_QUEEN, {"8/8/8/4k3/8/8/Q7/7K", 3});
    // A far White king: the queen alone mates a cornered king only against a blocker.
    expectFiresAndNoMate(IMPOSSIBLE_LONE_QUEEN, {"k7/8/8/2Q5/8/8/8/7K", 1});
    expectSilentAndMate({"k7/p7/8/2Q5/8/8/8/7K", 1});
    expectSilentAndMate({"7k/Q7/6K1/8/8/8/8/8", 1});
}

TEST(ImpossibilityCode, LoneMinorAgainstTooFewMen) {
    expectFiresAndNoMate(IMPOSSIBLE_LONE_MINOR, {"k7/8/8/8/8/8/8/6NK", 3});
    expectFiresAndNoMate(IMPOSSIBLE_LONE_MINOR, {"8/7p/8/4k3/8/8/8/1B5K", 3});
    // Two pawns beside the cornered king make Nc7 mate.
    expectSilentAndMate({"k1K5/pp6/4N3/8/8/8/8/8", 1});
}

TEST(ImpossibilityCode, LoneMinorWithBlockersTooFar) {
    // Black has a rook, but it stands too far to block a7 in one move.
    expectFiresAndNoMate(IMPOSSIBLE_MINOR_BLOCKERS_FAR, {"k1K5/7r/8/3N4/8/8/8/8", 1});
    // With the rook on a7, Nb6 mates.
    expectSilentAndMate({"k1K5/r7/8/3N4/8/8/8/8", 1});
}

TEST(ImpossibilityCode, LoneMinorWithTooManyFlights) {
    // Four blockers beside the king, four flights: a bishop's check takes two at most.
    expectFiresAndNoMate(IMPOSSIBLE_MINOR_FLIGHTS, {"8/8/3pp3/B2bkp2/8/8/4K3/8", 1});
    // Two flights on the bishop's diagonal, before and behind the king: Bg7 takes both and mates.
    expectSilentAndMate({"5B2/8/3pp3/3pkp2/8/5K2/8/8", 1});
    // A king step that uncovers the bishop on a1 takes two flights at most, like a bishop's move.
    expectFiresAndNoMate(IMPOSSIBLE_MINOR_FLIGHTS, {"8/8/3pp3/3bkp2/8/2K5/8/B7", 1});
    // With the White king on e3 only f6 is free, and Bc3 mates.
    expectSilentAndMate({"8/8/3pp3/B2bkp2/8/4K3/8/8", 1});
    // The same flights with two moves left prove nothing.
    EXPECT_EQ(codeOf("8/8/3pp3/B2bkp2/8/8/4K3/8", 3), 0);
}

TEST(ImpossibilityCode, MinorsAndSlowPawnsFarFromTheEdge) {
    expectFiresAndNoMate(IMPOSSIBLE_MINORS_BAND, {"8/8/8/4k3/8/8/P7/1N5K", 3});
    // A pawn one step from promotion could become a queen.
    EXPECT_EQ(codeOf("8/P7/8/4k3/8/8/8/1N5K", 3), 0);
    // On the edge: Nf7 mates.
    expectSilentAndMate({"7k/7P/6K1/4N3/8/8/8/8", 1});
}

TEST(ImpossibilityCode, TwoKnights) {
    expectFiresAndNoMate(IMPOSSIBLE_TWO_KNIGHTS, {"8/8/8/4k3/8/8/8/NN5K", 3});
    // Too far for the White king, which cannot give the last check himself.
    expectFiresAndNoMate(IMPOSSIBLE_TWO_KNIGHTS, {"k7/8/8/2NN4/8/8/8/7K", 1});
    expectSilentAndMate({"7k/5K2/5N2/4N3/8/8/8/8", 1});
}

TEST(ImpossibilityCode, BishopAndKnight) {
    expectFiresAndNoMate(IMPOSSIBLE_BISHOP_KNIGHT, {"8/8/8/4k3/8/8/8/1BN4K", 3});
    expectSilentAndMate({"4k3/4B3/4K3/1N6/8/8/8/8", 1});
}

TEST(ImpossibilityCode, TwoBishops) {
    expectFiresAndNoMate(IMPOSSIBLE_TWO_BISHOPS, {"8/p7/8/4k3/8/8/8/1BB4K", 3});
    expectSilentAndMate({"k7/8/1K6/4B3/8/8/4B3/8", 1});
}

TEST(ImpossibilityCode, TwoMinorsAgainstARook) {
    expectFiresAndNoMate(IMPOSSIBLE_MINORS_AGAINST_ROOK, {"r7/8/8/4k3/8/8/8/1NB4K", 3});
    // The rook can neither take the bishop nor step into its line.
    expectSilentAndMate({"k7/8/1K6/4B3/8/8/4B2r/8", 1});
}

TEST(ImpossibilityCode, AsksWhiteToMove) {
    // The same king in the centre, with Black to move: the moves are counted for White only.
    EXPECT_EQ(codeOf("8/8/8/3k4/8/3K4/8/R7", 3), IMPOSSIBLE_LONE_ROOK);
    EXPECT_EQ(codeOf("8/8/8/3k4/8/3K4/8/R7", 2), 0);
}

TEST(ImpossibilityCode, ReasonKeepsTheCodeAsItsBitPattern) {
    EXPECT_EQ(ImpossibilityReason(IMPOSSIBLE_LONE_ROOK), 0xFFFFFFFEu);
    EXPECT_EQ(ImpossibilityReason(IMPOSSIBLE_LONE_QUEEN), 0xFFFFFFF3u);
    EXPECT_TRUE(IsImpossibilityReason(0xFFFFFFE0u));
    EXPECT_FALSE(IsImpossibilityReason(0xFFFFFFDFu));
    EXPECT_FALSE(IsImpossibilityReason(0xFFFFFFFFu));
    EXPECT_FALSE(IsImpossibilityReason(0));
}

// ---- The tables, recounted from every placement

// The most squares beside the black king that White covers in a check, by the
// king's place and by whether the White king stands two squares off, over
// every placement of the White king and `kinds` on an empty board. A White
// man beside the king must be defended, or the position is no mate at all.
struct Covered {
    int withKing[MATE_PLACES] = {};
    int withoutKing[MATE_PLACES] = {};
};

MatePlace placeOf(int square) {
    const int neighbours = __builtin_popcountll(KING_REACH[square]);
    return neighbours == 3 ? MATE_IN_CORNER : neighbours == 5 ? MATE_ON_EDGE : MATE_INSIDE;
}

void addMan(BoardSets& sets, int kind, int square) {
    const SquareSet bit = SquareBit(square);
    sets.occupied |= bit;
    if (kind == KIND_KNIGHT) sets.whiteKnights |= bit;
    if (kind & KIND_BISHOP) sets.whiteDiagonal |= bit;
    if (kind & KIND_ROOK) sets.whiteLine |= bit;
}

void countPlacement(Covered& most, int king, int whiteKing, const std::vector<int>& kinds,
                    const std::vector<int>& squares) {
    BoardSets sets;
    sets.whiteKing = SquareBit(whiteKing);
    sets.occupied = SquareBit(whiteKing) | SquareBit(king);
    for (size_t i = 0; i < kinds.size(); ++i) addMan(sets, kinds[i], squares[i]);
    if (!sets.WhiteAttacks(king, sets.occupied)) return;
    const SquareSet withoutKing = sets.occupied & ~SquareBit(king);
    int covered = 0;
    for (SquareSet around = KING_REACH[king]; around; around &= around - 1) {
        const int square = __builtin_ctzll(around);
        if (sets.WhiteAttacks(square, withoutKing))
            ++covered;
        else if (withoutKing & SquareBit(square))
            return;
    }
    const MatePlace place = placeOf(king);
    most.withKing[place] = std::max(most.withKing[place], covered);
    if (distance(king, whiteKing) != 2) most.withoutKing[place] = std::max(most.withoutKing[place], covered);
}

Covered recount(const std::vector<int>& kinds) {
    Covered most;
    // One eighth of the board is enough: the men have no direction.
    for (int col = 0; col < 4; ++col)
        for (int row = 0; row <= col; ++row) {
            const int king = squareOf(col, row);
            for (int whiteKing = 0; whiteKing < 64; ++whiteKing) {
                if (distance(king, whiteKing) < 2) continue;
                std::vector<int> squares(kinds.size(), 0);
                // Every placement of the men on distinct free squares, as an odometer.
                const int men = static_cast<int>(kinds.size());
                for (int64_t index = 0, total = int64_t{1} << (6 * men); index < total; ++index) {
                    bool distinct = true;
                    for (int i = 0; i < men; ++i) {
                        squares[i] = static_cast<int>((index >> (6 * i)) & 63);
                        if (squares[i] == king || squares[i] == whiteKing) distinct = false;
                        for (int j = 0; j < i; ++j) distinct = distinct && squares[j] != squares[i];
                    }
                    if (distinct) countPlacement(most, king, whiteKing, kinds, squares);
                }
            }
        }
    return most;
}

void expectTable(const BlockersNeeded& needed, const std::vector<int>& kinds) {
    const Covered most = recount(kinds);
    constexpr int NEIGHBOURS[MATE_PLACES] = {3, 5, 8};
    for (int place = 0; place < MATE_PLACES; ++place) {
        EXPECT_EQ(needed.withKing[place], NEIGHBOURS[place] - most.withKing[place]) << place;
        EXPECT_EQ(needed.withoutKing[place], NEIGHBOURS[place] - most.withoutKing[place]) << place;
    }
}

TEST(BlockersNeeded, LoneMenMatchACountOfEveryPlacement) {
    expectTable(NEEDED_LONE_ROOK, {KIND_ROOK});
    expectTable(NEEDED_LONE_QUEEN, {KIND_QUEEN});
    expectTable(NEEDED_LONE_BISHOP, {KIND_BISHOP});
    expectTable(NEEDED_LONE_KNIGHT, {KIND_KNIGHT});
}

TEST(BlockersNeeded, TwoMinorsMatchACountOfEveryPlacement) {
    expectTable(NEEDED_TWO_BISHOPS, {KIND_BISHOP, KIND_BISHOP});
    expectTable(NEEDED_BISHOP_KNIGHT, {KIND_BISHOP, KIND_KNIGHT});
    expectTable(NEEDED_TWO_KNIGHTS, {KIND_KNIGHT, KIND_KNIGHT});
}

TEST(BlockersNeeded, FewerAreNeededTowardsTheCorner) {
    // The search takes the count of the nearest place the king can reach.
    for (const BlockersNeeded* needed :
         {&NEEDED_LONE_ROOK, &NEEDED_LONE_QUEEN, &NEEDED_LONE_BISHOP, &NEEDED_LONE_KNIGHT,
          &NEEDED_TWO_BISHOPS, &NEEDED_BISHOP_KNIGHT, &NEEDED_TWO_KNIGHTS})
        for (const uint8_t* counts : {needed->withKing, needed->withoutKing}) {
            EXPECT_LE(counts[MATE_IN_CORNER], counts[MATE_ON_EDGE]);
            EXPECT_LE(counts[MATE_ON_EDGE], counts[MATE_INSIDE]);
        }
}

// ---- Flights taken by the last move, counted over every placement

// The squares beside `king` that the men of `sets` attack once he is lifted.
int attackedAround(const BoardSets& sets, int king) {
    const SquareSet withoutKing = sets.occupied & ~SquareBit(king);
    int attacked = 0;
    for (SquareSet around = KING_REACH[king]; around; around &= around - 1)
        attacked += sets.WhiteAttacks(__builtin_ctzll(around), withoutKing);
    return attacked;
}

TEST(FlightsTaken, EachManAttacksAtMostItsCountAroundTheKing) {
    constexpr int KINDS[] = {KIND_KING, KIND_KNIGHT, KIND_BISHOP, KIND_PAWN};
    int most[4] = {};
    for (int king = 0; king < 64; ++king)
        for (int square = 0; square < 64; ++square)
            for (int i = 0; i < 4; ++i) {
                if (distance(square, king) < (KINDS[i] == KIND_KING ? 2 : 1)) continue;
                if (KINDS[i] == KIND_PAWN && (rowOf(square) == 0 || rowOf(square) == 7)) continue;
                BoardSets sets;
                sets.occupied = SquareBit(king);
                if (KINDS[i] == KIND_KING) {
                    sets.whiteKing = SquareBit(square);
                    sets.occupied |= SquareBit(square);
                } else if (KINDS[i] == KIND_PAWN) {
                    sets.whitePawns = SquareBit(square);
                    sets.occupied |= SquareBit(square);
                } else {
                    addMan(sets, KINDS[i], square);
                }
                most[i] = std::max(most[i], attackedAround(sets, king));
            }
    EXPECT_EQ(most[0], WHITE_KING_COVER);
    EXPECT_EQ(most[1], MINOR_OR_PAWN_COVER);
    EXPECT_EQ(most[2], MINOR_OR_PAWN_COVER);
    EXPECT_EQ(most[3], MINOR_OR_PAWN_COVER);
}

TEST(FlightsTaken, ACheckingMinorCoversAtMostItsCount) {
    int most[2] = {};
    for (int king = 0; king < 64; ++king)
        for (int square = 0; square < 64; ++square) {
            if (square == king) continue;
            for (int minor = 0; minor < 2; ++minor) {
                BoardSets sets;
                sets.occupied = SquareBit(king);
                addMan(sets, minor ? KIND_BISHOP : KIND_KNIGHT, square);
                if (sets.WhiteAttacks(king, sets.occupied))
                    most[minor] = std::max(most[minor], attackedAround(sets, king));
            }
        }
    EXPECT_EQ(most[0], FLIGHTS_TAKEN_BY_KNIGHT_CHECK);
    EXPECT_EQ(most[1], FLIGHTS_TAKEN_BY_BISHOP_CHECK);
}

TEST(FlightsTaken, AKingStepThatUncoversABishopTakesNoMore) {
    int most = 0;
    for (int king = 0; king < 64; ++king)
        for (int whiteKing = 0; whiteKing < 64; ++whiteKing) {
            if (distance(king, whiteKing) < 2) continue;
            for (int bishop = 0; bishop < 64; ++bishop) {
                if (bishop == king || bishop == whiteKing) continue;
                BoardSets before;
                before.whiteKing = SquareBit(whiteKing);
                before.occupied = SquareBit(king) | SquareBit(whiteKing);
                addMan(before, KIND_BISHOP, bishop);
                if (before.WhiteAttacks(king, before.occupied)) continue;
                for (SquareSet steps = KING_REACH[whiteKing]; steps; steps &= steps - 1) {
                    const int to = __builtin_ctzll(steps);
                    if (to == bishop || distance(to, king) < 2) continue;
                    const BoardSets after = before.AfterWhiteMove(whiteKing, to, KIND_KING, KIND_KING);
                    if (!after.WhiteAttacks(king, after.occupied)) continue;
                    // Squares attacked after the step and not before.
                    const SquareSet lifted = ~SquareBit(king);
                    int taken = 0;
                    for (SquareSet around = KING_REACH[king]; around; around &= around - 1) {
                        const int square = __builtin_ctzll(around);
                        taken += after.WhiteAttacks(square, after.occupied & lifted) &&
                                 !before.WhiteAttacks(square, before.occupied & lifted);
                    }
                    most = std::max(most, taken);
                }
            }
        }
    EXPECT_EQ(most, FLIGHTS_TAKEN_BY_BISHOP_CHECK);
}

// ---- Random positions against the plain search

// The men of one side besides the king, as piece bytes.
using Men = std::vector<uint8_t>;

class RandomPositions {
  public:
    explicit RandomPositions(uint32_t seed) : m_random(seed) {}

    int Below(int n) { return static_cast<int>(m_random() % static_cast<uint32_t>(n)); }

    // A legal position with these men, White to move, Black not in check. Half
    // the time each of these is drawn near a mate: the black king on the edge,
    // the White king close to him, a black man beside him.
    TChessboard Make(const Men& white, const Men& black) {
        for (;;) {
            TChessboard b = EmptyChessboard();
            b.m_shPliesLeft = b.m_shPliesTotal = 1;
            const int king = Below(2) ? edgeSquare() : Below(64);
            b.m_aSquares[king] = BK;
            bool placed = place(b, WK, Below(2) ? king : -1, 3);
            for (uint8_t man : white) placed = placed && place(b, man, -1, 0);
            for (uint8_t man : black) placed = placed && place(b, man, Below(2) ? king : -1, 2);
            if (!placed || !TrySetupChessboard(b, true) || b.blackInCheck()) continue;
            return b;
        }
    }

  private:
    int edgeSquare() {
        const int along = Below(8), side = Below(4);
        return side == 0 ? along : side == 1 ? 56 + along : side == 2 ? along * 8 : along * 8 + 7;
    }

    // On a free square, within `radius` of `near` when that is a square.
    bool place(TChessboard& b, uint8_t man, int near, int radius) {
        const bool pawn = (man & KIND_MASK) == KIND_PAWN;
        const int square = pawn ? 8 + Below(48) : Below(64);
        if (b.m_aSquares[square] || (near >= 0 && distance(square, near) > radius)) return false;
        b.m_aSquares[square] = man;
        return true;
    }

    std::mt19937 m_random;
};

constexpr int POSITIONS_PER_CODE = 10000;
// At most #4: deep enough for every code to fire, cheap enough for the plain search.
constexpr int MOST_PLIES = 7;

struct Tally {
    int fired = 0;
    int firedAbove = 0; // fired with more than one move left
};

// Each position is tried from MOST_PLIES down; at the first depth where any
// code fires the plain search must find no mate.
template <class MakeMen>
Tally holdAgainstSearch(int code, uint32_t seed, MakeMen makeMen, int positions = POSITIONS_PER_CODE) {
    RandomPositions random(seed);
    PlainSearch search;
    Tally tally;
    for (int i = 0; i < positions; ++i) {
        Men white, black;
        makeMen(random, white, black);
        TChessboard b = random.Make(white, black);
        for (int plies = MOST_PLIES; plies >= 1; plies -= 2) {
            b.m_shPliesLeft = b.m_shPliesTotal = static_cast<uint16_t>(plies);
            const int found = ImpossibilityCode(b);
            if (found == 0) continue;
            if (found == code) {
                ++tally.fired;
                if (plies > 1) ++tally.firedAbove;
            }
            EXPECT_FALSE(search.Mates(b, plies))
                << "code " << found << " at " << plies << " plies: " << WriteFen(b, true);
            break;
        }
    }
    return tally;
}

// Up to `most` black men of any kind; pawns as often as pieces.
void addBlackMen(RandomPositions& random, Men& black, int fewest, int most) {
    constexpr uint8_t KINDS[] = {BP, BP, BP, BN, BB, BR, BQ};
    for (int n = fewest + random.Below(most - fewest + 1); n > 0; --n)
        black.push_back(KINDS[random.Below(7)]);
}

uint8_t randomMinor(RandomPositions& random) {
    return random.Below(2) ? WB : WN;
}

void expectFiredOften(const Tally& tally, int fewest, int fewestAbove) {
    EXPECT_GE(tally.fired, fewest);
    EXPECT_GE(tally.firedAbove, fewestAbove);
}

TEST(ImpossibilityAgainstSearch, LoneRook) {
    const Tally tally = holdAgainstSearch(IMPOSSIBLE_LONE_ROOK, 1, [](RandomPositions& r, Men& w, Men& b) {
        w = {WR};
        addBlackMen(r, b, 0, 3);
    });
    expectFiredOften(tally, 2000, 1000);
}

TEST(ImpossibilityAgainstSearch, LoneQueen) {
    const Tally tally = holdAgainstSearch(IMPOSSIBLE_LONE_QUEEN, 2, [](RandomPositions& r, Men& w, Men& b) {
        w = {WQ};
        addBlackMen(r, b, 0, 2);
    });
    expectFiredOften(tally, 2000, 800);
}

TEST(ImpossibilityAgainstSearch, LoneMinor) {
    const Tally tally = holdAgainstSearch(IMPOSSIBLE_LONE_MINOR, 3, [](RandomPositions& r, Men& w, Men& b) {
        w = {randomMinor(r)};
        addBlackMen(r, b, 0, 4);
    });
    expectFiredOften(tally, 3000, 2000);
}

TEST(ImpossibilityAgainstSearch, LoneMinorWithBlockersTooFar) {
    const Tally tally =
        holdAgainstSearch(IMPOSSIBLE_MINOR_BLOCKERS_FAR, 4, [](RandomPositions& r, Men& w, Men& b) {
            w = {randomMinor(r)};
            addBlackMen(r, b, 2, 6);
        });
    expectFiredOften(tally, 3000, 1000);
}

TEST(ImpossibilityAgainstSearch, LoneMinorWithTooManyFlights) {
    // Many black men, so that the blockers are there and the flights decide;
    // the test needs the last move, so it is rarer and gets more positions.
    const Tally tally = holdAgainstSearch(
        IMPOSSIBLE_MINOR_FLIGHTS, 5,
        [](RandomPositions& r, Men& w, Men& b) {
            w = {randomMinor(r)};
            addBlackMen(r, b, 8, 12);
        },
        2 * POSITIONS_PER_CODE);
    expectFiredOften(tally, 400, 0);
}

TEST(ImpossibilityAgainstSearch, MinorsAndSlowPawns) {
    const Tally tally = holdAgainstSearch(
        IMPOSSIBLE_MINORS_BAND, 6,
        [](RandomPositions& r, Men& w, Men& b) {
            for (int n = r.Below(2); n >= 0; --n) w.push_back(WP);
            for (int n = r.Below(3); n > 0; --n) w.push_back(randomMinor(r));
            addBlackMen(r, b, 0, 1);
        },
        3 * POSITIONS_PER_CODE);
    expectFiredOften(tally, 1000, 400);
}

TEST(ImpossibilityAgainstSearch, TwoKnights) {
    const Tally tally = holdAgainstSearch(IMPOSSIBLE_TWO_KNIGHTS, 9, [](RandomPositions& r, Men& w, Men& b) {
        w = {WN, WN};
        addBlackMen(r, b, 0, 2);
    });
    expectFiredOften(tally, 2500, 1000);
}

TEST(ImpossibilityAgainstSearch, BishopAndKnight) {
    const Tally tally =
        holdAgainstSearch(IMPOSSIBLE_BISHOP_KNIGHT, 10, [](RandomPositions& r, Men& w, Men& b) {
            w = {WB, WN};
            addBlackMen(r, b, 0, 2);
        });
    expectFiredOften(tally, 2000, 800);
}

TEST(ImpossibilityAgainstSearch, TwoBishops) {
    const Tally tally = holdAgainstSearch(IMPOSSIBLE_TWO_BISHOPS, 11, [](RandomPositions& r, Men& w, Men& b) {
        w = {WB, WB};
        if (r.Below(2)) b = {BP};
    });
    expectFiredOften(tally, 2500, 1200);
}

TEST(ImpossibilityAgainstSearch, TwoMinorsAgainstARook) {
    const Tally tally =
        holdAgainstSearch(IMPOSSIBLE_MINORS_AGAINST_ROOK, 12, [](RandomPositions& r, Men& w, Men& b) {
            w = {randomMinor(r), randomMinor(r)};
            b = {BR};
        });
    expectFiredOften(tally, 2500, 1000);
}

} // namespace
} // namespace zorvane

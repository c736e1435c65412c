// Sort indications: the parser and its messages, the writer, the matching
// rules and the chain test, the root ordering, and the choice of the active set.
#include "core/chess_exception.h"
#include "core/fen.h"
#include "core/piece.h"
#include "problems/notation.h"
#include "problems/sort_indication.h"
#include "test_squares.h"
#include "test_positions.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace zorvane {
namespace {

TChessboard whiteToMove(const std::string& fen) {
    return boardFromFen(fen, 1);
}

SortIndication parsed(const std::string& text) {
    SortIndication record;
    ParseSortIndication(record, text, 1);
    return record;
}

std::string parseMessage(const std::string& text, int language = 1) {
    try {
        SortIndication record;
        ParseSortIndication(record, text, language);
    } catch (const ChessException& e) {
        return e.what();
    }
    return "";
}

std::string listMessage(const std::string& text, int language = 1) {
    try {
        SortIndications map;
        ParseSortIndications(map, text, language);
    } catch (const ChessException& e) {
        return e.what();
    }
    return "";
}

// Whether the indication of `text` matches `move` played on `fen`.
bool matches(const std::string& text, const std::string& fen, TMove move) {
    const TChessboard parent = whiteToMove(fen);
    TChessboard child;
    EXPECT_TRUE(PlayMove(parent, child, move)) << fen;
    return IndicationMatches(parsed(text), parent, move, child);
}

// A line of play kept alive: each position points at the one before.
struct Line {
    std::vector<TChessboard> positions;
    explicit Line(const std::string& fen) {
        positions.reserve(32);
        positions.push_back(whiteToMove(fen));
        positions.back().m_shPliesLeft = 31;
    }
    Line& play(TMove move) {
        TChessboard child;
        EXPECT_TRUE(PlayMove(positions.back(), child, move));
        positions.push_back(child);
        return *this;
    }
    const TChessboard& last() const { return positions.back(); }
};

SortIndications map(const std::string& text) {
    SortIndications result;
    ParseSortIndications(result, text, 1);
    return result;
}

TEST(SortIndication, RecordIsTenBytes) {
    EXPECT_EQ(sizeof(SortIndication), 10u);
}

TEST(SortIndication, SeparatorDecidesTheCaptureRule) {
    EXPECT_EQ(parsed("e2-e4").captureRule, 255);
    EXPECT_EQ(parsed("e2>e4").captureRule, 0);
    EXPECT_EQ(parsed("e2:e4").captureRule, 1);
    const SortIndication r = parsed("e2-e4");
    EXPECT_EQ(r.figure, 0);
    EXPECT_EQ(r.from, sq("e2"));
    EXPECT_EQ(r.to, sq("e4"));
    EXPECT_EQ(r.checks, 0);
    EXPECT_EQ(r.promotion, 0);
    EXPECT_EQ(r.moveNumber, 0);
    EXPECT_EQ(r.negated, 0);
    EXPECT_EQ(r.chained, 1);
}

TEST(SortIndication, DashMatchesQuietAndCaptureOthersOnlyTheirKind) {
    const char* quiet = "4k3/8/8/8/8/8/4P3/K7";
    const char* capture = "4k3/8/8/8/4p3/8/4R3/K7";
    EXPECT_TRUE(matches("e2-e4", quiet, mv("e2", "e4")));
    EXPECT_TRUE(matches("e2-e4", capture, mv("e2", "e4")));
    EXPECT_TRUE(matches("e2>e4", quiet, mv("e2", "e4")));
    EXPECT_FALSE(matches("e2>e4", capture, mv("e2", "e4")));
    EXPECT_FALSE(matches("e2:e4", quiet, mv("e2", "e4")));
    EXPECT_TRUE(matches("e2:e4", capture, mv("e2", "e4")));
    EXPECT_FALSE(matches("e2-e4", quiet, mv("e2", "e3")));
}

TEST(SortIndication, FigureWithoutFromSquareAndBareSquare) {
    const SortIndication queen = parsed("Qe4");
    EXPECT_EQ(queen.figure, WQ);
    EXPECT_EQ(queen.from, 255);
    EXPECT_EQ(queen.to, sq("e4"));
    const SortIndication any = parsed("e4");
    EXPECT_EQ(any.figure, 0);
    EXPECT_EQ(any.from, 255);
    EXPECT_EQ(any.to, sq("e4"));
    EXPECT_EQ(any.captureRule, 255);
    const char* fen = "4k3/8/8/8/8/8/8/K3Q2R";
    EXPECT_TRUE(matches("Qe4", fen, mv("e1", "e4")));
    EXPECT_FALSE(matches("Qe4", fen, mv("e1", "e3")));
    EXPECT_TRUE(matches("e4", fen, mv("e1", "e4")));
    EXPECT_TRUE(matches("e4", "4k3/8/8/8/7R/8/8/K7", mv("h4", "e4")));
    EXPECT_FALSE(matches("Qe4", "4k3/8/8/8/7R/8/8/K7", mv("h4", "e4")));
    // Polish figure letters and the pawn letter.
    EXPECT_EQ(parsed("He4").figure, WQ);
    EXPECT_EQ(parsed("Se4").figure, WN);
    EXPECT_EQ(parsed("pe4").figure, WP);
}

TEST(SortIndication, NumberedWithCheck) {
    const SortIndication r = parsed("3.Qh5+");
    EXPECT_EQ(r.moveNumber, 3);
    EXPECT_EQ(r.figure, WQ);
    EXPECT_EQ(r.to, sq("h5"));
    EXPECT_EQ(r.checks, 1);
    EXPECT_EQ(parsed("3. Qh5++").checks, 2);
    EXPECT_TRUE(matches("3.Qh5+", "4k3/8/8/8/8/8/8/K2Q4", mv("d1", "h5")));
    EXPECT_FALSE(matches("3.Qh5+", "k7/8/8/8/8/8/8/K2Q4", mv("d1", "h5")));
    EXPECT_TRUE(matches("3.Qh5", "k7/8/8/8/8/8/8/K2Q4", mv("d1", "h5")));

    // Only at White's third move.
    const SortIndications indications = map("3.Qh5+");
    Line line("4k3/8/8/8/8/8/8/K2Q4");
    line.play(mv("d1", "h5"));
    EXPECT_NE(FindMatchingIndication(indications, 3, line.last()), nullptr);
    EXPECT_EQ(FindMatchingIndication(indications, 2, line.last()), nullptr);
    EXPECT_EQ(FindMatchingIndication(indications, 1, line.last()), nullptr);
}

TEST(SortIndication, CheckLevelIsAtLeast) {
    const char* fen = "4k3/8/8/8/4N3/8/8/K3R3";
    EXPECT_TRUE(matches("Nf6++", fen, mv("e4", "f6")));
    EXPECT_TRUE(matches("Nf6+", fen, mv("e4", "f6")));
    EXPECT_TRUE(matches("Ng5+", fen, mv("e4", "g5")));
    EXPECT_FALSE(matches("Ng5++", fen, mv("e4", "g5")));
}

TEST(SortIndication, PromotionFigure) {
    const SortIndication r = parsed("a7-a8Q");
    EXPECT_EQ(r.promotion, KIND_QUEEN);
    const char* fen = "4k3/P7/8/8/8/8/8/4K3";
    EXPECT_TRUE(matches("a7-a8Q", fen, mv("a7", "a8", KIND_QUEEN)));
    EXPECT_FALSE(matches("a7-a8Q", fen, mv("a7", "a8", KIND_KNIGHT)));
    EXPECT_TRUE(matches("a8", fen, mv("a7", "a8", KIND_KNIGHT)));
}

TEST(SortIndication, NegatedGoesToTheEndOfTheList) {
    EXPECT_EQ(parsed("~a2-a3").negated, 1);
    const TChessboard board = whiteToMove("4k3/8/8/8/8/8/P7/K7");
    std::vector<TMove> moves = {mv("a2", "a3"), mv("a2", "a4"), mv("a1", "b1"), mv("a1", "b2")};
    OrderRootMovesByIndications(map("~a2-a3"), board, moves);
    EXPECT_EQ(moves, (std::vector<TMove>{mv("a2", "a4"), mv("a1", "b1"), mv("a1", "b2"), mv("a2", "a3")}));
}

TEST(SortIndication, RootOrderingLastHandledStandsInFront) {
    const TChessboard board = whiteToMove("4k3/8/8/8/8/8/P7/K7");
    std::vector<TMove> moves = {mv("a2", "a3"), mv("a2", "a4"), mv("a1", "b1"), mv("a1", "b2")};
    // Key 1 first, then key 0; within a key, later candidates after earlier ones.
    OrderRootMovesByIndications(map("b1; b2; 1.a3"), board, moves);
    EXPECT_EQ(moves, (std::vector<TMove>{mv("a1", "b2"), mv("a1", "b1"), mv("a2", "a3"), mv("a2", "a4")}));
}

TEST(SortIndication, ShortCastling) {
    const SortIndication r = parsed("0-0");
    EXPECT_EQ(r.from, 4);
    EXPECT_EQ(r.to, 6);
    EXPECT_EQ(r.captureRule, 0);
    EXPECT_EQ(parsed("0-0-0").to, 2);
    EXPECT_EQ(parsed("2.0-0+").moveNumber, 2);
    EXPECT_TRUE(matches("0-0", "4k3/8/8/8/8/8/8/4K2R", mv("e1", "g1")));
    EXPECT_FALSE(matches("0-0", "4k3/8/8/8/8/8/8/4K2R", mv("e1", "f1")));
    EXPECT_EQ(parseMessage("0-0-"), "Invalid description of SortIndication: 0-0-");
    EXPECT_EQ(parseMessage("00"), "Invalid description of SortIndication: 00");
}

TEST(SortIndication, ChainedIndicationsNeedTheEarlierMove) {
    const SortIndications indications = map("1.Rd1, 2.Rd8");
    ASSERT_EQ(indications.size(), 2u);
    EXPECT_EQ(indications.at(1).size(), 1u);
    EXPECT_EQ(indications.at(2).size(), 1u);
    const char* fen = "6k1/5ppp/8/8/8/8/3R4/R5K1";
    Line played(fen);
    played.play(mv("d2", "d1")).play(mv("h7", "h6")).play(mv("d1", "d8"));
    EXPECT_TRUE(EarlierIndicationsMatch(indications, 2, played.last()));
    EXPECT_NE(FindMatchingIndication(indications, 2, played.last()), nullptr);
    Line other(fen);
    other.play(mv("g1", "f1")).play(mv("h7", "h6")).play(mv("d2", "d8"));
    EXPECT_FALSE(EarlierIndicationsMatch(indications, 2, other.last()));
    EXPECT_EQ(FindMatchingIndication(indications, 2, other.last()), nullptr);
    // A chain shorter than the walk back fails.
    Line shortLine(fen);
    shortLine.play(mv("d2", "d8"));
    EXPECT_FALSE(EarlierIndicationsMatch(indications, 2, shortLine.last()));
    // An earlier move may match under key 0 too.
    const SortIndications withAny = map("1.Rb1; Kf1; 2.Rd8");
    EXPECT_TRUE(EarlierIndicationsMatch(withAny, 2, other.last()));
    // At the lowest key the chain ends at once.
    EXPECT_TRUE(EarlierIndicationsMatch(indications, 1, played.positions[1]));
}

TEST(SortIndication, CommaIsTheOnlySeparatorWhenPresent) {
    EXPECT_EQ(listMessage("1.Rd1; 2.Rd8, e4"), "Invalid description of SortIndication: 1.Rd1; 2.Rd8");
    const SortIndications semicolons = map("1.Rd1; 2.Rd8; e4");
    EXPECT_EQ(semicolons.size(), 3u);
}

TEST(SortIndication, ErrorTexts) {
    EXPECT_EQ(parseMessage("a"), "Invalid description of SortIndication: a");
    EXPECT_EQ(parseMessage("1."), "Invalid description of SortIndication: 1.");
    EXPECT_EQ(parseMessage("a", 0), "Niepoprawny opis SortIndication: a");
    EXPECT_EQ(parseMessage("1.", 0), "Niepoprawny opis SortIndication: 1.");
    EXPECT_EQ(parseMessage(""), "Invalid description of SortIndication");
    EXPECT_EQ(parseMessage("", 0), "Niepoprawny opis SortIndication");
    // There is no Ukrainian form.
    EXPECT_EQ(parseMessage("", 2), "Invalid description of SortIndication");
    EXPECT_EQ(parseMessage("a", 2), "Invalid description of SortIndication: a");
    EXPECT_EQ(parseMessage("e2-"), "Invalid description of SortIndication: e2-");
    EXPECT_EQ(parseMessage("Xe4"), "Invalid description of SortIndication: Xe4");
    EXPECT_EQ(listMessage("e4;;d4"), "Invalid description of SortIndication");
}

TEST(SortIndications, AllOrNothing) {
    SortIndications indications = map("e4");
    EXPECT_THROW(ParseSortIndications(indications, "Qh5; 2.d4; a", 1), ChessException);
    ASSERT_EQ(indications.size(), 1u);
    ASSERT_EQ(indications.at(0).size(), 1u);
    EXPECT_EQ(indications.at(0)[0].to, sq("e4"));
    ParseSortIndications(indications, "   ", 1);
    EXPECT_TRUE(indications.empty());
    ParseSortIndications(indications, " 2.d4 ; e4 ;Qh5 ", 1);
    ASSERT_EQ(indications.size(), 2u);
    EXPECT_EQ(indications.at(0).size(), 2u);
    EXPECT_EQ(indications.at(0)[0].to, sq("e4"));
    EXPECT_EQ(indications.at(0)[1].to, sq("h5"));
    EXPECT_EQ(indications.at(2)[0].to, sq("d4"));
}

TEST(SortIndications, FormatRoundTrips) {
    const SortIndications indications = map("~3.Qh5+; e2:e4; 0-0; pe4; a7-a8Q; Rd8++; 1.Ng1>f3; e2-e4");
    EXPECT_EQ(FormatSortIndications(indications),
              "e2:e4; e1>g1; pe4; a7-a8Q; Rd8++; e2-e4; 1.Ng1>f3; ~3.Qh5+");
    EXPECT_EQ(FormatSortIndications(map(FormatSortIndications(indications))),
              FormatSortIndications(indications));
    SortIndication odd = parsed("e4");
    odd.from = 0x80;
    EXPECT_EQ(FormatSortIndication(odd), "-e4");
    odd.figure = WK;
    odd.from = sq("e1");
    odd.captureRule = 0;
    EXPECT_EQ(FormatSortIndication(odd), "Ke1>e4");
}

TEST(SortIndications, ApplyUpToTheHighestKey) {
    EXPECT_FALSE(SortIndicationsApply(SortIndications{}, 1));
    const SortIndications numbered = map("1.Rd1; 2.Rd8");
    EXPECT_TRUE(SortIndicationsApply(numbered, 1));
    EXPECT_TRUE(SortIndicationsApply(numbered, 2));
    EXPECT_FALSE(SortIndicationsApply(numbered, 3));
    EXPECT_FALSE(SortIndicationsApply(map("e4"), 1));
}

TEST(SortIndications, MirrorByFileKeepsAnySquare) {
    const SortIndications mirrored = MirrorSortIndications(map("e2-e4; Qh5; 2.a1:b2"));
    const SortIndication& first = mirrored.at(0)[0];
    EXPECT_EQ(first.from, sq("d2"));
    EXPECT_EQ(first.to, sq("d4"));
    const SortIndication& second = mirrored.at(0)[1];
    EXPECT_EQ(second.from, 255);
    EXPECT_EQ(second.to, sq("a5"));
    EXPECT_EQ(second.figure, WQ);
    EXPECT_EQ(mirrored.at(2)[0].from, sq("h1"));
    EXPECT_EQ(mirrored.at(2)[0].to, sq("g2"));
    EXPECT_EQ(mirrored.at(2)[0].captureRule, 1);
}

TEST(VariantToSortIndications, WhiteMovesWithNumbersAndChecks) {
    const TChessboard start = whiteToMove("6k1/3p1ppp/8/8/8/8/3R4/R5K1");
    EXPECT_EQ(VariantToSortIndications(ParseVariantText(L"Rd2:d7 h7-h6 Rd7-d8", false, 1), start),
              "1.Rd2:d7; 2.Rd7-d8+");
    // It stops at the first move that cannot be made.
    EXPECT_EQ(VariantToSortIndications(ParseVariantText(L"Rd2-d1 h7-h6 Rd1-e3 g7-g6", false, 1), start),
              "1.Rd2-d1");
    EXPECT_EQ(
        VariantToSortIndications(ParseVariantText(L"0-0", false, 1), whiteToMove("4k3/8/8/8/8/8/8/4K2R")),
        "1.0-0");
    EXPECT_EQ(
        VariantToSortIndications(ParseVariantText(L"e7-e8N", false, 1), whiteToMove("8/4P1k1/8/8/8/8/8/4K3")),
        "1.e7-e8N+");
}

TEST(ActiveSortIndications, MainVariantOrCopy) {
    const TChessboard start = whiteToMove("6k1/5ppp/8/8/8/8/3R4/R5K1");
    const TVariant main = ParseVariantText(L"{Main variant} Rd2-d1 h7-h6 Rd1-d8", false, 1);
    const SortIndications own = map("e4");

    const SortIndications fromVariant = ChooseActiveSortIndications(true, &main, start, false, own, 1);
    EXPECT_EQ(FormatSortIndications(fromVariant), "1.Rd2-d1; 2.Rd1-d8+");
    EXPECT_EQ(FormatSortIndications(ChooseActiveSortIndications(false, &main, start, false, own, 1)), "e4");
    EXPECT_EQ(FormatSortIndications(ChooseActiveSortIndications(true, nullptr, start, false, own, 1)), "e4");

    // A mirrored run: the variant is mirrored and played on the mirrored start.
    const TChessboard mirroredStart = whiteToMove("1k6/ppp5/8/8/8/8/4R3/1K5R");
    EXPECT_EQ(FormatSortIndications(ChooseActiveSortIndications(true, &main, mirroredStart, true, own, 1)),
              "1.Re2-e1; 2.Re1-e8+");
}

} // namespace
} // namespace zorvane

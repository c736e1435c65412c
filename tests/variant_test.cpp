// Variants: their text, the main variant's name across languages, and the
// marks and short notation written with a board.
#include "core/chess_exception.h"
#include "core/fen.h"
#include "core/piece.h"
#include "problems/variant.h"
#include "test_squares.h"
#include "test_positions.h"

#include <gtest/gtest.h>

#include <string>

namespace zorvane {
namespace {

const std::wstring POLISH = L"Wariant g\u0142\u00f3wny";
const std::wstring ENGLISH = L"Main variant";
const std::wstring UKRAINIAN =
    L"\u041e\u0441\u043d\u043e\u0432\u043d\u0438\u0439 \u0432\u0430\u0440\u0456\u0430\u043d\u0442";

TChessboard whiteToMove(const std::string& fen) {
    return boardFromFen(fen, 1);
}

TVariant parse(const std::wstring& text, bool translate = false, int language = LANGUAGE_ENGLISH) {
    return ParseVariantText(text, translate, language);
}

std::string parseMessage(const std::wstring& text) {
    try {
        parse(text);
    } catch (const ChessException& e) {
        return e.what();
    }
    return "";
}

// The stored form: name as it stands, comments in brackets, no numbers, no board.
std::wstring stored(const TVariant& v) {
    return FormatVariantText(v, true, 0, false, nullptr, nullptr, nullptr, false, 1);
}

// Moves only, with marks from `board`.
std::wstring marked(const std::wstring& text, const TChessboard& board, int language = LANGUAGE_ENGLISH,
                    bool useShort = false) {
    return FormatVariantText(parse(text), false, -1, false, nullptr, nullptr, &board, useShort, language);
}

const char* const OPENING = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR";

TEST(MainVariantNames, ThreeLanguages) {
    EXPECT_EQ(MainVariantNames[0], POLISH);
    EXPECT_EQ(MainVariantNames[1], ENGLISH);
    EXPECT_EQ(MainVariantNames[2], UKRAINIAN);
}

TEST(ParseVariantText, NameMovesAndComment) {
    const TVariant v = parse(L"{Main variant} e2-e4 e7-e5[the only defence] Ng1-f3");
    EXPECT_EQ(v.name, ENGLISH);
    ASSERT_EQ(v.moves.size(), 3u);
    EXPECT_EQ(v.moves[0].move.from, sq("e2"));
    EXPECT_EQ(v.moves[0].move.to, sq("e4"));
    EXPECT_EQ(v.moves[0].text, "e2-e4");
    EXPECT_EQ(v.moves[0].comment, L"");
    EXPECT_EQ(v.moves[1].text, "e7-e5");
    EXPECT_EQ(v.moves[1].comment, L"the only defence");
    EXPECT_EQ(v.moves[2].text, "Ng1-f3");
    EXPECT_EQ(v.moves[2].move.from, sq("g1"));
}

TEST(ParseVariantText, MovesAlternateWhiteFirst) {
    const TVariant v = parse(L"{a} 0-0 0-0-0");
    ASSERT_EQ(v.moves.size(), 2u);
    EXPECT_EQ(v.moves[0].move.to, sq("g1"));
    EXPECT_EQ(v.moves[1].move.from, sq("e8"));
    EXPECT_EQ(v.moves[1].move.to, sq("c8"));
}

TEST(ParseVariantText, WithoutBracesTheNameIsEmpty) {
    const TVariant v = parse(L"e2-e4 e7-e5");
    EXPECT_EQ(v.name, L"");
    EXPECT_EQ(v.moves.size(), 2u);
    // With one brace only, scanning starts at the first character: "no" is a word.
    EXPECT_EQ(parseMessage(L"{no end e2-e4"), "Unknown figure letter: o");
}

TEST(ParseVariantText, LineFeedEndsTheLine) {
    const TVariant v = parse(L"{a} e2-e4\ne7-e5");
    ASSERT_EQ(v.moves.size(), 1u);
    EXPECT_EQ(v.moves[0].text, "e2-e4");
}

TEST(ParseVariantText, CommentWithoutClosingBracketRunsToTheEnd) {
    const TVariant v = parse(L"{a} e2-e4[open comment e7-e5");
    ASSERT_EQ(v.moves.size(), 1u);
    EXPECT_EQ(v.moves[0].comment, L"open comment e7-e5");
}

TEST(ParseVariantText, BracketBehindABlankBelongsToNoMove) {
    const TVariant v = parse(L"{a} e2-e4 [ e7-e5");
    ASSERT_EQ(v.moves.size(), 2u);
    EXPECT_EQ(v.moves[0].comment, L"");
    EXPECT_EQ(v.moves[1].text, "e7-e5");
}

TEST(ParseVariantText, FirstBadWordStopsTheLine) {
    // A move number is a word of its own and no move.
    EXPECT_EQ(parseMessage(L"{a} 1. e2-e4"), "Improper string length");
    EXPECT_EQ(parseMessage(L"{a} e2-e4 e7-e5X"), "Unknown figure letter: X");
    EXPECT_EQ(parseMessage(L"{a} e2-e4 e7-44"), "Improper full description of move");
}

TEST(FormatVariantText, StoredFormRoundTrips) {
    for (const std::wstring& text : {std::wstring(L"{Main variant} e2-e4 e7-e5[the only defence] Ng1-f3"),
                                     std::wstring(L"{Try} Rd1:d8 Kh8-g7 a7-a8Q"),
                                     std::wstring(L"{x} 0-0[short] 0-0-0"), std::wstring(L"{Empty}")}) {
        const TVariant v = parse(text);
        EXPECT_EQ(stored(v), text);
        EXPECT_TRUE(SameVariantMoves(parse(stored(v)), v, true));
    }
}

TEST(FormatVariantText, HeaderModes) {
    TVariant v = parse(L"{Other} e2-e4");
    EXPECT_EQ(FormatVariantText(v, true, -1, false, nullptr, nullptr, nullptr, false, 1), L"e2-e4");
    EXPECT_EQ(FormatVariantText(v, true, 1, false, nullptr, nullptr, nullptr, false, 1), L"{Other} e2-e4");
    v.name = POLISH;
    EXPECT_EQ(FormatVariantText(v, true, 0, false, nullptr, nullptr, nullptr, false, 1),
              L"{" + POLISH + L"} e2-e4");
    EXPECT_EQ(FormatVariantText(v, true, 1, false, nullptr, nullptr, nullptr, false, 0),
              L"{Main variant} e2-e4");
    v.name = UKRAINIAN;
    EXPECT_EQ(FormatVariantText(v, true, 1, false, nullptr, nullptr, nullptr, false, 2),
              L"{Main variant} e2-e4");
}

TEST(FormatVariantText, PolishMainVariantIsSavedInEnglishAndReadBackInTheWindowsLanguage) {
    TVariant v = parse(L"{a} e2-e4 e7-e5");
    v.name = POLISH;
    const std::wstring saved = FormatVariantText(v, true, 1, false, nullptr, nullptr, nullptr, false, 0);
    EXPECT_EQ(saved, L"{Main variant} e2-e4 e7-e5");
    EXPECT_EQ(ParseVariantText(saved, true, LANGUAGE_POLISH).name, POLISH);
    EXPECT_EQ(ParseVariantText(saved, true, LANGUAGE_UKRAINIAN).name, UKRAINIAN);
    EXPECT_EQ(ParseVariantText(saved, true, LANGUAGE_ENGLISH).name, ENGLISH);
    EXPECT_EQ(ParseVariantText(saved, false, LANGUAGE_POLISH).name, ENGLISH);
    EXPECT_EQ(ParseVariantText(L"{" + UKRAINIAN + L"} e2-e4", true, LANGUAGE_POLISH).name, POLISH);
    EXPECT_EQ(ParseVariantText(L"{Other} e2-e4", true, LANGUAGE_POLISH).name, L"Other");
}

TEST(FormatVariantText, Numbers) {
    const TVariant v = parse(L"{a} e2-e4 e7-e5 Ng1-f3 Nb8-c6");
    EXPECT_EQ(FormatVariantText(v, false, -1, true, nullptr, nullptr, nullptr, false, 1),
              L"1.e2-e4 e7-e5 2.Ng1-f3 Nb8-c6");
    const TVariant commented = parse(L"{a} e2-e4[best] e7-e5[forced] Ng1-f3");
    EXPECT_EQ(FormatVariantText(commented, true, -1, true, nullptr, nullptr, nullptr, false, 1),
              L"1.e2-e4(best) 1. ...e7-e5(forced) 2.Ng1-f3");
    EXPECT_EQ(FormatVariantText(commented, false, -1, true, nullptr, nullptr, nullptr, false, 1),
              L"1.e2-e4 e7-e5 2.Ng1-f3");
    EXPECT_EQ(FormatVariantText(commented, true, 0, false, nullptr, nullptr, nullptr, false, 1),
              L"{a} e2-e4[best] e7-e5[forced] Ng1-f3");
}

TEST(FormatVariantText, SharedLeadingMovesAreLeftOut) {
    const TVariant first = parse(L"{1} e2-e4 e7-e5 Ng1-f3");
    const TVariant second = parse(L"{2} e2-e4 e7-e5 Bf1-c4 Ng8-f6");
    const TVariant third = parse(L"{3} e2-e4 c7-c5 Bf1-c4");
    EXPECT_EQ(FormatVariantText(second, false, -1, false, &first, nullptr, nullptr, false, 1),
              L"Bf1-c4 Ng8-f6");
    EXPECT_EQ(FormatVariantText(second, false, -1, true, &first, nullptr, nullptr, false, 1),
              L"2.Bf1-c4 Ng8-f6");
    EXPECT_EQ(FormatVariantText(first, false, -1, false, nullptr, &second, nullptr, false, 1), L"Ng1-f3");
    // The first difference ends the comparison: Bf1-c4 is written although the other line has it too.
    EXPECT_EQ(FormatVariantText(third, false, -1, true, &second, nullptr, nullptr, false, 1),
              L"1. ...c7-c5 2.Bf1-c4");
    EXPECT_EQ(FormatVariantText(third, false, 0, false, &third, nullptr, nullptr, false, 1), L"{3}");
}

TEST(FormatVariantText, CheckDoubleCheckStalemate) {
    EXPECT_EQ(marked(L"Ra1-a8 Kh8-h7", whiteToMove("7k/8/8/6K1/8/8/8/R7")), L"Ra1-a8+ Kh8-h7");
    EXPECT_EQ(marked(L"Ne4-f6", whiteToMove("4k3/8/8/8/4N3/8/8/K3R3")), L"Ne4-f6++");
    EXPECT_EQ(marked(L"Qg1-g6", whiteToMove("7k/8/5K2/8/8/8/8/6Q1")), L"Qg1-g6=");
    EXPECT_EQ(marked(L"Qg1-g2", whiteToMove("7k/8/5K2/8/8/8/8/6Q1")), L"Qg1-g2");
}

TEST(FormatVariantText, MateWithItsQualityInEachLanguage) {
    const TChessboard ideal = whiteToMove("7k/8/6K1/8/8/8/8/R7");
    EXPECT_EQ(marked(L"Ra1-a8", ideal, LANGUAGE_ENGLISH), L"Ra1-a8x ideal mate");
    EXPECT_EQ(marked(L"Ra1-a8", ideal, LANGUAGE_POLISH), L"Ra1-a8x mat idealny");
    EXPECT_EQ(marked(L"Ra1-a8", ideal, LANGUAGE_UKRAINIAN),
              L"Ra1-a8x \u0456\u0434\u0435\u0430\u043b\u044c\u043d\u0438\u0439 \u043c\u0430\u0442");
    const TChessboard model = whiteToMove("7k/8/6K1/8/8/8/1P6/R7");
    EXPECT_EQ(marked(L"Ra1-a8", model, LANGUAGE_ENGLISH), L"Ra1-a8x model mate");
    EXPECT_EQ(marked(L"Ra1-a8", model, LANGUAGE_POLISH), L"Ra1-a8x mat wzorowy");
    EXPECT_EQ(marked(L"Ra1-a8", model, LANGUAGE_UKRAINIAN),
              L"Ra1-a8x \u0437\u0440\u0430\u0437\u043a\u043e\u0432\u0438\u0439 \u043c\u0430\u0442");
    // Queen and king both on h7: no quality.
    EXPECT_EQ(marked(L"Qa1-g7", whiteToMove("7k/8/6K1/8/8/8/8/Q7")), L"Qa1-g7x");
}

TEST(FormatVariantText, BlackMatesWithoutQuality) {
    EXPECT_EQ(marked(L"f2-f3 e7-e5 g2-g4 Qd8-h4", whiteToMove(OPENING)), L"f2-f3 e7-e5 g2-g4 Qd8-h4x");
}

TEST(FormatVariantText, ShortNotationFromTheBoard) {
    EXPECT_EQ(marked(L"e2-e4 e7-e5 Ng1-f3 Nb8-c6 Bf1-c4 Ng8-f6 Nf3-g5 d7-d5 e4:d5 Nf6:d5 Ng5:f7",
                     whiteToMove(OPENING), LANGUAGE_ENGLISH, true),
              L"e4 e5 Nf3 Nc6 Bc4 Nf6 Ng5 d5 ed5 N:d5 N:f7");
    // A move that cannot be played ends the marks; the stored text stands for the rest.
    EXPECT_EQ(marked(L"e2-e4 e7-e6 e4-e6 Ke8-e7", whiteToMove(OPENING), LANGUAGE_ENGLISH, true),
              L"e4 e6 e4-e6 Ke8-e7");
}

TEST(TranslateMainVariantName, PolishKeepsBothWhenItsOwnNameIsThere) {
    TVariantMap variants;
    TVariant english = parse(L"{Main variant} e2-e4");
    TVariant polish = parse(L"{a} d2-d4");
    polish.name = POLISH;
    variants[ENGLISH] = english;
    variants[POLISH] = polish;
    TranslateMainVariantName(variants, LANGUAGE_POLISH);
    ASSERT_EQ(variants.size(), 2u);
    EXPECT_EQ(variants[POLISH].moves[0].text, "d2-d4");
    EXPECT_EQ(variants[ENGLISH].moves[0].text, "e2-e4");
    EXPECT_EQ(variants[ENGLISH].name, ENGLISH);
}

TEST(TranslateMainVariantName, MovesTheFirstHitToTheLanguagesName) {
    TVariantMap variants;
    variants[ENGLISH] = parse(L"{Main variant} e2-e4");
    variants[L"Other"] = parse(L"{Other} d2-d4");
    TranslateMainVariantName(variants, LANGUAGE_POLISH);
    ASSERT_EQ(variants.size(), 2u);
    EXPECT_EQ(variants.count(ENGLISH), 0u);
    ASSERT_EQ(variants.count(POLISH), 1u);
    EXPECT_EQ(variants[POLISH].name, POLISH);
    EXPECT_EQ(variants[POLISH].moves[0].text, "e2-e4");

    // Polish before Ukrainian when both stand and English is asked for.
    TVariantMap two;
    TVariant p = parse(L"{p} e2-e4"), u = parse(L"{u} d2-d4");
    p.name = POLISH;
    u.name = UKRAINIAN;
    two[POLISH] = p;
    two[UKRAINIAN] = u;
    TranslateMainVariantName(two, LANGUAGE_ENGLISH);
    ASSERT_EQ(two.size(), 2u);
    EXPECT_EQ(two[ENGLISH].moves[0].text, "e2-e4");
    EXPECT_EQ(two[UKRAINIAN].moves[0].text, "d2-d4");
    EXPECT_EQ(two.count(POLISH), 0u);
}

TEST(SameVariantMoves, MovesAndOptionallyComments) {
    const TVariant a = parse(L"{a} e2-e4[x] e7-e5");
    const TVariant b = parse(L"{b} e2:e4 e7-e5[y]");
    EXPECT_TRUE(SameVariantMoves(a, b, false));
    EXPECT_FALSE(SameVariantMoves(a, b, true));
    EXPECT_TRUE(SameVariantMoves(a, a, true));
    EXPECT_FALSE(SameVariantMoves(a, parse(L"{c} e2-e4"), false));
    EXPECT_FALSE(SameVariantMoves(parse(L"a7-a8Q"), parse(L"a7-a8R"), false));
    EXPECT_FALSE(SameVariantMoves(parse(L"e2-e4 e7-e5"), parse(L"e2-e4 e7-e6"), false));
}

} // namespace
} // namespace zorvane

// The problem file: reader with all its messages, writer byte for byte, the
// safe save, the new-file text in three languages and the shared corpus.
#include "core/chess_exception.h"
#include "core/piece.h"
#include "problems/problem_file.h"
#include "test_squares.h"

#include "files_on_disk.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>
#if defined(__unix__)
#include <csignal>
#include <sys/resource.h>
#endif
#include <sstream>
#include <string>

namespace zorvane {
namespace {

namespace fs = std::filesystem;

const std::string BODY = "{\n\tFEN: 4k3/8/8/8/8/8/8/4K3\n}\n";

ProblemMap readText(const std::string& text, ProblemFileSettings settings = {}) {
    ProblemMap problems;
    std::set<std::wstring> tags;
    ReadProblemText(text, problems, settings, tags);
    return problems;
}

std::string errorOf(const std::string& text) {
    ProblemMap problems;
    std::set<std::wstring> tags;
    try {
        ReadProblemText(text, problems, ProblemFileSettings{}, tags);
    } catch (const ChessException& e) {
        return e.what();
    }
    return "(no error)";
}

// The message of a problem 1 whose body is `body` (between the braces).
std::string bodyError(const std::string& body) {
    return errorOf("1 #2\n{\n" + body + "\n}\n");
}

const std::string PREFIX = "Error parsing problem 1: ";

class ProblemFileOnDisk : public ::testing::Test {
  protected:
    TempFolder folder_{"zorvane_problem_file_"};
    const fs::path dir_ = folder_.path();
    // Names in the folder, to see that no temporary file stays behind.
    std::set<std::string> entries() const {
        std::set<std::string> names;
        for (const auto& entry : fs::directory_iterator(dir_)) names.insert(entry.path().filename().string());
        return names;
    }
};

// ---- Edge cases of the format.

TEST(ProblemFile, OnlyEncodingMarkFailsWithoutPrefix) {
    EXPECT_EQ(errorOf("UTF-8"), "Unexpected end of file.");
    EXPECT_EQ(errorOf("  \tUTF-8\n\n"), "Unexpected end of file.");
}

TEST(ProblemFile, BareNumberIsPositionWithoutStipulationAndLosesItsTags) {
    const ProblemMap problems = readText("5\n//#TAGS\n//#lost\n{\n\tFEN: 4k3/8/8/8/8/8/8/4K3\n}\n");
    ASSERT_EQ(problems.size(), 1u);
    const TChessProblem& p = *problems.at(5);
    EXPECT_EQ(p.type, PROBLEM_POSITION);
    EXPECT_EQ(p.plies, 255);
    EXPECT_EQ(p.stipulationPlies, 255);
    EXPECT_TRUE(p.tags.empty());
    EXPECT_EQ(p.startPosition.m_shPliesLeft, 255);
    EXPECT_EQ(p.startPosition.m_shPliesTotal, 255);
}

TEST(ProblemFile, ThreadsWithLevelsAndItsSave) {
    const ProblemMap problems = readText("1 #2 THREADS 4^2 " + BODY);
    const TChessProblem& p = *problems.at(1);
    EXPECT_EQ(p.threads, 4);
    EXPECT_EQ(p.multithreadingLevels, 2);
    EXPECT_EQ(WriteProblemFileText(problems, true),
              "UTF-8\n\n\n1 #2 THREADS 4\n{\n\tFEN: 4k3/8/8/8/8/8/8/4K3\n}\n");
}

TEST(ProblemFile, GuiCheckSwallowsTheBracket) {
    EXPECT_EQ(errorOf("1 #2 GUICHECK {\n\tDesc: x\n\tFEN: 4k3/8/8/8/8/8/8/4K3\n}\n"),
              PREFIX + "Opening bracket expected { or unrecognized option encountered: DESC");
    const ProblemMap problems = readText("1 #2 GUICHECK 0 " + BODY);
    EXPECT_EQ(problems.at(1)->guiCheckCount, 1u);
    EXPECT_EQ(problems.at(1)->flags, GuiCheck);
}

TEST(ProblemFile, CastlingInAnswerNeedsComma) {
    EXPECT_EQ(bodyError("\tFEN: 4k3/8/8/8/8/8/8/4K3\n\tAnswer: Qa1-a2, 0-0 Qb1-b2"),
              PREFIX + "Comma should separate various solutions of the problem, but encountered: Qb1");
    const ProblemMap problems = readText("1 #2\n{\n\tFEN: 4k3/8/8/8/8/8/8/4K3\n\tAnswer: Qa1-a2 Qb1-b2\n}\n");
    const std::vector<TMove>& answers = problems.at(1)->expectedAnswers;
    ASSERT_EQ(answers.size(), 2u);
    EXPECT_EQ(answers[0].from, sq("a1"));
    EXPECT_EQ(answers[0].to, sq("a2"));
    EXPECT_EQ(answers[1].from, sq("b1"));
    EXPECT_EQ(answers[1].to, sq("b2"));
}

TEST(ProblemFile, BracketInVariantCommentEndsIt) {
    const ProblemMap problems =
        readText("1 #2 NoMirror\n//!VARIANTS\n//!{v} e2-e4[see] e7-e5 ] d2-d4\n//!ENDVARIANTS\n" + BODY);
    const TVariant& variant = problems.at(1)->variants.at(L"v");
    ASSERT_EQ(variant.moves.size(), 3u);
    EXPECT_EQ(variant.moves[0].comment, L"see");
    EXPECT_EQ(variant.moves[1].text, "e7-e5");
    EXPECT_EQ(variant.moves[2].text, "d2-d4");
}

TEST(ProblemFile, DescriptionKeepsDoubleSlash) {
    const ProblemMap problems = readText(
        "1 #2\n{\n\tDesc:  see http://example.org // not a comment  \n\tFEN: 4k3/8/8/8/8/8/8/4K3\n}\n");
    EXPECT_EQ(problems.at(1)->description, L"see http://example.org // not a comment");
}

TEST(ProblemFile, DoubledNumberLaterWinsWithWarning) {
    std::ostringstream console;
    ProblemFileSettings settings;
    settings.console = &console;
    const ProblemMap problems = readText("3 #2\n{\n\tDesc: first\n\tFEN: 4k3/8/8/8/8/8/8/4K3\n}\n"
                                         "3 #3\n{\n\tDesc: second\n\tFEN: 4k3/8/8/8/8/8/8/4K3\n}\n",
                                         settings);
    ASSERT_EQ(problems.size(), 1u);
    EXPECT_EQ(problems.at(3)->description, L"second");
    EXPECT_EQ(problems.at(3)->plies, 5);
    EXPECT_EQ(console.str(), "Problem 3 read from file.\nWARINING: Problem id=3 redefinition - "
                             "overwriting.\nProblem 3 read from file.\n");
}

TEST(ProblemFile, AtCommentBetweenOptionsIsPlainComment) {
    const ProblemMap problems = readText("1 #2 NoMirror\n//@Note on the next option\nAllSolutions " + BODY);
    EXPECT_EQ(problems.at(1)->flags, NoMirror | AllSolutions);
}

TEST(ProblemFile, SortIndicationsBeforeTagsIsOutOfOrder) {
    EXPECT_EQ(errorOf("1 #2\n//@SortIndications: Kh1\n//#TAGS\n//#t\n" + BODY),
              PREFIX + "Opening bracket expected.");
}

// ---- Every message of the reader.

TEST(ProblemFileMessages, EndOfFileInsideBlock) {
    EXPECT_EQ(errorOf("1 #2 NoMirror"), PREFIX + "Unexpected end of file.");
    EXPECT_EQ(errorOf("1 #2\n{\n\tDesc: no line feed"), PREFIX + "Unexpected end of file.");
}

TEST(ProblemFileMessages, CommentNotClosed) {
    EXPECT_EQ(errorOf("1 #2 /* open"), PREFIX + "Unexpected end of file before comment closed.");
}

TEST(ProblemFileMessages, Slash) {
    EXPECT_EQ(errorOf("1 #2 / " + BODY), PREFIX + "Unexpected lexem (slash).");
}

TEST(ProblemFileMessages, AlphanumericIdentifier) {
    EXPECT_EQ(errorOf("1 #2\n{\n}\n"), PREFIX + "Alphanumeric identifier expected. Found: }");
    EXPECT_EQ(errorOf("{\n}\n"), "Error parsing problem 0: Alphanumeric identifier expected. Found: {");
}

TEST(ProblemFileMessages, DefaultClauses) {
    EXPECT_EQ(errorOf("//!default #5\n1 #2 " + BODY), "Incorrect 'default' clause.");
    EXPECT_EQ(errorOf("//!default  #5 AllSolutions\n1 #2 " + BODY), "Incorrect 'default' clause.");
    EXPECT_EQ(errorOf("//!default #0 AllSolutions\n1 #2 " + BODY), "Error in 'default' clause.");
    EXPECT_EQ(errorOf("//!default 5 AllSolutions\n1 #2 " + BODY), "Error in 'default' clause.");
    // The word is judged at the first problem with that number of moves.
    EXPECT_EQ(errorOf("//!default #2 Foo\n1 #3 " + BODY + "2 #2 " + BODY),
              "Error parsing problem 2: Unrecognizable option: Foo");
}

TEST(ProblemFileMessages, DefaultClauseSetsAllSolutions) {
    const ProblemMap problems = readText("UTF-8\n//!default #3 allsolutions\n1 #3 " + BODY + "2 #2 " + BODY);
    EXPECT_EQ(problems.at(1)->flags, AllSolutions);
    EXPECT_EQ(problems.at(2)->flags, 0);
}

TEST(ProblemFileMessages, HeuristicWithoutBracketOrOff) {
    EXPECT_EQ(errorOf("1 #2 sh_keyline x " + BODY),
              PREFIX + "Unexpected lexem after SH_KEYLINE (expected opening bracket or OFF)");
}

TEST(ProblemFileMessages, UnrecognizedOption) {
    EXPECT_EQ(errorOf("12 #2 Foo " + BODY),
              "Error parsing problem 12: Opening bracket expected { or unrecognized option encountered: FOO");
    EXPECT_EQ(errorOf("1 #2 //#tags\n" + BODY),
              PREFIX + "Opening bracket expected { or unrecognized option encountered: //#TAGS");
}

TEST(ProblemFileMessages, OpeningBracket) {
    EXPECT_EQ(errorOf("1 #2\n//!VARIANTS\n//!ENDVARIANTS\n//#TAGS\n" + BODY),
              PREFIX + "Opening bracket expected.");
}

TEST(ProblemFileMessages, DescriptionColon) {
    EXPECT_EQ(bodyError("\tDesc x"), PREFIX + "Colon ':' expected after description identifier.");
}

TEST(ProblemFileMessages, FenColonAndCode) {
    EXPECT_EQ(bodyError("\tFEN 4k3/8/8/8/8/8/8/4K3"), PREFIX + "Colon ':' expected after FEN identifier.");
    EXPECT_EQ(bodyError("\tFEN: 4k3/8/8"), PREFIX + "Improper FEN code");
    EXPECT_EQ(bodyError("\tFEN:\n"), PREFIX + "Improper FEN code");
    EXPECT_EQ(bodyError("\tFEN: 8/8/8/8/8/8/8/8"), PREFIX + "Improper FEN code");
}

TEST(ProblemFileMessages, FurtherFenFieldIsNoKeyword) {
    EXPECT_EQ(bodyError("\tFEN: 4k3/8/8/8/8/8/8/4K3 w"), PREFIX + "Closing bracket expected.");
}

TEST(ProblemFileMessages, WhiteList) {
    EXPECT_EQ(bodyError("\tX: Ke1"), PREFIX + "White figures identifier expected (W, WH or WHITE).");
    EXPECT_EQ(bodyError("\tWhite Ke1"), PREFIX + "Colon ':' expected after white figures identifier.");
    EXPECT_EQ(bodyError("\tWhite: Ke1x"), PREFIX + "White figure specification is invalid: KE1X");
    EXPECT_EQ(bodyError("\tWhite: Kj1"), PREFIX + "White figure position is invalid: KJ1");
    EXPECT_EQ(bodyError("\tWhite: Ke1 Ke8"), PREFIX + "Black figures identifier expected (B, BL or BLACK).");
    EXPECT_EQ(bodyError("\tWhite:\n"), PREFIX + "Black figures identifier expected (B, BL or BLACK).");
}

TEST(ProblemFileMessages, BlackList) {
    EXPECT_EQ(bodyError("\tWhite: Ke1\n\tBlack Ke8"),
              PREFIX + "Colon expected after black figures identifier.");
    EXPECT_EQ(bodyError("\tWhite: Ke1\n\tBlack: K"), PREFIX + "Black figure specification is invalid: K");
    EXPECT_EQ(bodyError("\tWhite: Ke1\n\tBlack: Ki9"), PREFIX + "Black figure position is invalid: KI9");
}

TEST(ProblemFileMessages, FieldOccupiedAndFigureLetter) {
    EXPECT_EQ(bodyError("\tWhite: Ke1, qe1\n\tBlack: Ke8"), PREFIX + "Field E1 already occupied.");
    EXPECT_EQ(bodyError("\tWhite: Ke1\n\tBlack: Ke8, e1"), PREFIX + "Field E1 already occupied.");
    EXPECT_EQ(bodyError("\tWhite: Xe1\n\tBlack: Ke8"), PREFIX + "Unknown figure letter: X");
}

TEST(ProblemFileMessages, EmptyBlackListAndPositionSetUp) {
    // Black may have no men in the list; the set-up then misses a king.
    EXPECT_EQ(bodyError("\tWhite: Ke1\n\tBlack:"), PREFIX + "Illegal number of kings.");
    EXPECT_EQ(errorOf("1 #2\r\n{\r\n\tWhite: Ke1\r\n\tBlack:\r\n}\r\n"), PREFIX + "Illegal number of kings.");
    EXPECT_EQ(bodyError("\tWhite: Ke1, a1\n\tBlack: Ke8"),
              PREFIX + "Pawns cannot occupy 1st nor 8th line of the chessboard.");
}

TEST(ProblemFileMessages, MovesSection) {
    const std::string fen = "\tFEN: r3k2r/pppppppp/8/8/8/8/PPPPPPPP/R3K2R\n";
    EXPECT_EQ(bodyError(fen + "\tMoves e2-e4"), PREFIX + "Colon expected after Moves section start.");
    EXPECT_EQ(bodyError(fen + "\tMoves: 0 0"), PREFIX + "Hyphen expected.");
    EXPECT_EQ(bodyError(fen + "\tMoves: 0-1"), PREFIX + "Incorrect castling symbol: 1");
    EXPECT_EQ(bodyError(fen + "\tMoves: e2-e4 e7-e5 0-0-1"), PREFIX + "Incorrect castling symbol: 1");
    EXPECT_EQ(bodyError(fen + "\tMoves: z9-e4"), PREFIX + "Invalid 'from' position: Z9");
    EXPECT_EQ(bodyError(fen + "\tMoves: e2+e4"), PREFIX + "Invalid lexem encountered: +");
    EXPECT_EQ(bodyError(fen + "\tMoves: e2-e9"), PREFIX + "Invalid 'to' position: E9");
    EXPECT_EQ(bodyError(fen + "\tMoves: e2-e5"), PREFIX + "Illegal move");
}

TEST(ProblemFileMessages, AnswerSection) {
    const std::string fen = "\tFEN: 4k3/8/8/8/8/8/8/4K3\n";
    EXPECT_EQ(bodyError(fen + "\tAnswer e2-e4"), PREFIX + "Colon expected after correct answer identifier.");
    EXPECT_EQ(bodyError(fen + "\tAnswer: Qa1x-a2"), PREFIX + "Invalid correct answer ('from' element): QA1X");
    EXPECT_EQ(bodyError(fen + "\tAnswer: -"), PREFIX + "Invalid correct answer ('from' element): -");
    EXPECT_EQ(bodyError(fen + "\tAnswer: e2 e4"),
              PREFIX + "Hyphen expected to separate correct answer elements");
    EXPECT_EQ(bodyError(fen + "\tAnswer: 0 0"),
              PREFIX + "Hyphen expected to separate correct answer elements");
    EXPECT_EQ(bodyError(fen + "\tAnswer: 0-1"), PREFIX + "Invalid correct answer: 1");
    EXPECT_EQ(bodyError(fen + "\tAnswer: e2-e4xy"), PREFIX + "Invalid correct answer ('to' element): E4XY");
    EXPECT_EQ(bodyError(fen + "\tAnswer: e2-e4Z"), PREFIX + "Unknown figure letter: Z");
}

TEST(ProblemFileMessages, ClosingBracket) {
    EXPECT_EQ(bodyError("\tFEN: 4k3/8/8/8/8/8/8/4K3\n\tSomething"), PREFIX + "Closing bracket expected.");
}

TEST(ProblemFileMessages, VariantAndSortIndicationErrorsArePrefixed) {
    EXPECT_EQ(errorOf("1 #2\n//!VARIANTS\n//!{v} e2e4\n" + BODY), PREFIX + "Improper string length");
    EXPECT_EQ(errorOf("1 #2\n//@SortIndications: a\n" + BODY),
              PREFIX + "Invalid description of SortIndication: a");
}

TEST(ProblemFileMessages, FirstErrorStopsTheLoadEarlierProblemsStay) {
    ProblemMap problems;
    std::set<std::wstring> tags;
    try {
        ReadProblemText("1 #2\n//#TAGS\n//#kept\n" + BODY + "2 #2 Foo " + BODY + "3 #2 " + BODY, problems,
                        ProblemFileSettings{}, tags);
        FAIL() << "no error";
    } catch (const ChessException& e) {
        EXPECT_STREQ(
            e.what(),
            "Error parsing problem 2: Opening bracket expected { or unrecognized option encountered: FOO");
    }
    ASSERT_EQ(problems.size(), 1u);
    EXPECT_TRUE(problems.count(1));
    EXPECT_EQ(tags, std::set<std::wstring>{L"kept"});
}

TEST_F(ProblemFileOnDisk, OpeningMissingFile) {
    ProblemMap problems;
    std::set<std::wstring> tags;
    const fs::path path = dir_ / "missing.cp";
    try {
        LoadProblemFile(path, problems, false, ProblemFileSettings{}, tags);
        FAIL() << "no error";
    } catch (const ChessException& e) {
        EXPECT_EQ(std::string(e.what()), "Error opening file: " + path.string());
    }
}

// ---- What the reader keeps.

TEST(ProblemFileReader, OptionsOfTheHeader) {
    const ProblemMap problems = readText(
        "4 s#3 NoMirror MirrorOnly AllSolutions StopOnDual StopOn3Sol UseMainVariantAsSortIndications\n"
        "SchedulerLevels 3 NoGlobReg GlobRegMB 512 GUICHECKBESTDEFENCE 4 SafeMode OnlyIfAvail lichess\n"
        "AllSolutionsRequires syzygy RequiresSyzygy AllSolutionsRequiresSyzygy "
        "StopRelaxHeuristicsOnFirstSolution\n"
        "LichessLevels 2 sh_keyline ( a 1 ) SH_ZUGZWANG off SH_KEYLINE(b)\n" +
        BODY);
    const TChessProblem& p = *problems.at(4);
    EXPECT_EQ(p.type, PROBLEM_SELFMATE);
    EXPECT_EQ(p.plies, 7);
    EXPECT_EQ(p.stipulationPlies, 7);
    EXPECT_EQ(p.flags, NoMirror | MirrorOnly | AllSolutions | StopOnDual | StopOn3Sol |
                           UseMainVariantAsSortIndications | NoGlobalRegister | GuiCheckBestDefence |
                           SafeMode | RequiresSyzygy | AllSolutionsRequiresSyzygy);
    EXPECT_EQ(p.useMainVariantAsSortIndications, 1);
    EXPECT_EQ(p.schedulerLevels, 3);
    EXPECT_EQ(p.globalRegisterMB, 512);
    EXPECT_EQ(p.guiCheckCount, 4u);
    EXPECT_EQ(p.requiresConditions, std::set<std::string>{"lichess"});
    EXPECT_EQ(p.allSolutionsRequires, std::set<std::string>{"syzygy"});
    EXPECT_EQ(p.stopRelaxHeuristicsOnFirstSolution, 1);
    EXPECT_EQ(p.lichessLevels, 2);
    EXPECT_EQ(p.heuristicOptions.at(0x1000), "a1b");
    EXPECT_EQ(p.heuristicOptions.at(0x80000000u), "OFF");
    EXPECT_EQ(p.startPosition.m_shPliesLeft, 7);
}

TEST(ProblemFileReader, SelfmateNeedsLowerCaseS) {
    EXPECT_EQ(errorOf("1 S#2 " + BODY),
              PREFIX + "Opening bracket expected { or unrecognized option encountered: S");
    EXPECT_EQ(errorOf("1 s 2 " + BODY),
              PREFIX + "Opening bracket expected { or unrecognized option encountered: S");
}

TEST(ProblemFileReader, GuiCheckAndAuxIsWrittenAsGuiCheck) {
    const ProblemMap problems = readText("1 #2 GUICHECKBESTDEFENCEANDAUX 2 " + BODY);
    EXPECT_EQ(problems.at(1)->flags, GuiCheck);
    EXPECT_EQ(WriteProblemFileText(problems, true),
              "UTF-8\n\n\n1 #2 GUICHECK 2\n{\n\tFEN: 4k3/8/8/8/8/8/8/4K3\n}\n");
}

TEST(ProblemFileReader, FigureListsInBothLanguages) {
    const ProblemMap problems =
        readText("1 #2\n{\n\tD: lists\n\tWH: Ke1, Hd1, wa1, gc1, sb1, pe2, f2\n\tbl: ke8, pe7\n}\n");
    const TChessProblem& p = *problems.at(1);
    const uint8_t* s = p.startPosition.m_aSquares;
    EXPECT_EQ(s[sq("e1")], WK);
    EXPECT_EQ(s[sq("d1")], WQ);
    EXPECT_EQ(s[sq("a1")], WR);
    EXPECT_EQ(s[sq("c1")], WB);
    EXPECT_EQ(s[sq("b1")], WN);
    EXPECT_EQ(s[sq("e2")], WP);
    EXPECT_EQ(s[sq("f2")], WP);
    EXPECT_EQ(s[sq("e8")], BK);
    EXPECT_EQ(s[sq("e7")], BP);
    EXPECT_EQ(p.description, L"lists");
}

TEST(ProblemFileReader, AnswersAndExpectedSortWhiteMoves) {
    ProblemMap problems =
        readText("1 #2\n{\n\tFEN: 4k3/P7/8/8/8/8/8/4K2R\n\tSolution: a7-a8N 0-0-0, Ke1:d1\n}\n"
                 "2 #2\n{\n\tFEN: 4k3/8/8/8/8/8/8/4K3\n\tExpectedSortWhiteMovesOnly: e1-e2\n}\n");
    const TChessProblem& first = *problems.at(1);
    EXPECT_EQ(first.flags, HasAnswer);
    ASSERT_EQ(first.expectedAnswers.size(), 3u);
    EXPECT_EQ(first.expectedAnswers[0].promotion, KIND_KNIGHT);
    EXPECT_EQ(first.expectedAnswers[1].from, 4);
    EXPECT_EQ(first.expectedAnswers[1].to, 2);
    EXPECT_EQ(first.expectedAnswers[2].to, sq("d1"));
    const TChessProblem& second = *problems.at(2);
    EXPECT_EQ(second.flags, HasExpectedSortWhiteMoves | ExpectedSortWhiteMovesOnly);
    ASSERT_EQ(second.expectedSortWhiteMoves.size(), 1u);
    EXPECT_TRUE(second.expectedAnswers.empty());
}

TEST(ProblemFileReader, StartPositionIsCompleted) {
    const ProblemMap problems = readText("1 #3 " + BODY);
    const TChessProblem& p = *problems.at(1);
    EXPECT_EQ(p.startPosition.m_pProblem, &p);
    EXPECT_EQ(p.startPosition.m_shPliesLeft, 5);
    EXPECT_EQ(p.startPosition.m_shPliesTotal, 5);
    EXPECT_EQ(p.startPosition.whiteKing(), sq("e1"));
    EXPECT_EQ(p.startPosition.blackKing(), sq("e8"));
    EXPECT_EQ(0, std::memcmp(p.referencePosition.m_aSquares, p.startPosition.m_aSquares, 64));
    EXPECT_EQ(p.referencePosition.m_pProblem, &p);
}

TEST(ProblemFileReader, CarriageReturnLineFeedFile) {
    const ProblemMap problems =
        readText("UTF-8\r\n\r\n1 #2 NoMirror\r\n//#TAGS\r\n//#crlf\r\n{\r\n\tDescription: text  \r\n\tWhite: "
                 "Ke1\r\n\tBlack: Ke8\r\n}"
                 "\r\n2 #2\r\n{\r\n\tFEN: 4k3/8/8/8/8/8/8/4K3\r\n}\r\n");
    ASSERT_EQ(problems.size(), 2u);
    EXPECT_EQ(problems.at(1)->description, L"text");
    EXPECT_EQ(problems.at(1)->tags, std::set<std::wstring>{L"crlf"});
    EXPECT_EQ(problems.at(1)->flags, NoMirror);
}

TEST(ProblemFileReader, MainVariantNameFollowsLanguage) {
    ProblemFileSettings settings;
    settings.languageId = LANGUAGE_POLISH;
    const ProblemMap problems =
        readText("1 #2 NoMirror\n//!VARIANTS\n//!{Main variant} e1-e2\n//!ENDVARIANTS\n" + BODY, settings);
    EXPECT_TRUE(problems.at(1)->variants.count(L"Wariant g\u0142\u00f3wny"));
    EXPECT_EQ(problems.at(1)->variants.size(), 1u);
}

TEST(ProblemFileReader, Windows1250Description) {
    const ProblemMap problems = readText(
        "1 #2 NoMirror\n//#TAGS\n//#\xa3\xf3\x9f\n{\n\tDesc: Za\xbf\xf3\xb3\xe6 g\xea\x9cl\xb9 ja\x9f\xf1\n"
        "\tFEN: 4k3/8/8/8/8/8/8/4K3\n}\n");
    const TChessProblem& p = *problems.at(1);
    EXPECT_EQ(p.description, L"Za\u017c\u00f3\u0142\u0107 g\u0119\u015bl\u0105 ja\u017a\u0144");
    EXPECT_EQ(p.tags, std::set<std::wstring>{L"\u0141\u00f3\u017a"});
    // Saved, it is UTF-8.
    const std::string text = WriteProblemFileText(problems, true);
    EXPECT_NE(text.find("\tDescription: Za\xc5\xbc\xc3\xb3\xc5\x82\xc4\x87 g\xc4\x99\xc5\x9bl\xc4\x85 "
                        "ja\xc5\xba\xc5\x84\n"),
              std::string::npos);
}

TEST(ProblemFileReader, InvalidUtf8DescriptionIsReplaced) {
    const ProblemMap problems = readText("UTF-8\n1 #2\n{\n\tDesc: a\xff"
                                         "b\n\tFEN: 4k3/8/8/8/8/8/8/4K3\n}\n");
    EXPECT_EQ(problems.at(1)->description, L"a\ufffdb");
}

TEST(ProblemFileReader, MovesBuildTheChain) {
    const ProblemMap problems = readText("7 NoMirror\n{\n\tFEN: r3k2r/pppppppp/8/8/8/8/PPPPPPPP/R3K2R\n"
                                         "\tMoves: e2-e4 d7-d5 e4-e5 f7-f5 e5:f6 0-0-0 0-0\n}\n");
    const TChessProblem& p = *problems.at(7);
    EXPECT_EQ(p.type, PROBLEM_POSITION);
    EXPECT_EQ(p.plies, 255);
    ASSERT_EQ(p.playedPositions.size(), 7u);
    EXPECT_EQ(p.playedPositions.front().m_pParent, &p.startPosition);
    for (size_t i = 1; i < p.playedPositions.size(); ++i)
        EXPECT_EQ(p.playedPositions[i].m_pParent, &p.playedPositions[i - 1]);
    const uint8_t* s = p.currentPosition().m_aSquares;
    EXPECT_EQ(s[sq("g1")], WK);
    EXPECT_EQ(s[sq("f1")], WR);
    EXPECT_EQ(s[sq("c8")], BK);
    EXPECT_EQ(s[sq("d8")], BR);
    EXPECT_EQ(s[sq("f6")], WP);
    EXPECT_EQ(s[sq("f5")], 0);
    EXPECT_EQ(p.currentPosition().m_shPliesLeft, 248);
    EXPECT_TRUE(p.currentPosition().m_pProblem == &p);
}

// ---- The writer.

const std::string RICH =
    "UTF-8\n"
    "//!default #3 AllSolutions\n"
    "3 #3 NoMirror MirrorOnly StopOnDual StopOn3Sol UseMainVariantAsSortIndications GUICHECK 3 THREADS 4^2\n"
    "  SAFEMODE RequiresSyzygy AllSolutionsRequiresSyzygy Requires syzygy OnlyIfAvail lichess NoGlobReg\n"
    "//#TAGS\n"
    "//#\xc5\xbb\xc3\xb3\xc5\x82w\n"
    "//#miniature\n"
    "//!VARIANTS\n"
    "//!{Wariant g\xc5\x82\xc3\xb3wny} d1-d7[the key] e8-f8 d7-f7\n"
    "//!{try} d1-d8\n"
    "//!ENDVARIANTS\n"
    "//@SortIndications: 1.Qd7; ~a2-a3\n"
    "{\n"
    "\tDescription:  Mate in three  \n"
    "\tFEN: 4k3/8/8/8/8/8/P7/3QK3\n"
    "\tAnswer: Qd1-d7, 0-0\n"
    "}\n"
    "/* a comment between problems */\n"
    "7 NoMirror\n"
    "{\n"
    "\tFEN: r3k2r/pppppppp/8/8/8/8/PPPPPPPP/R3K2R\n"
    "\tMoves: e2-e4 d7-d5 e4-e5 f7-f5 e5:f6 0-0-0 0-0\n"
    "}\n"
    "9 s#2\n"
    "{\n"
    "\tFEN: 4k3/8/8/8/8/8/8/4K3\n"
    "}\n";

const std::string RICH_WRITTEN =
    "UTF-8\n\n"
    "\n"
    "3 #3 NoMirror MirrorOnly AllSolutions StopOnDual StopOn3Sol UseMainVariantAsSortIndications GUICHECK 3"
    " THREADS 4 SAFEMODE RequiresSyzygy AllSolutionsRequiresSyzygy Requires lichess Requires syzygy\n"
    "//#TAGS\n"
    "//#miniature\n"
    "//#\xc5\xbb\xc3\xb3\xc5\x82w\n"
    "//!VARIANTS\n"
    "//!{Main variant} d1-d7[the key] e8-f8 d7-f7\n"
    "//!{try} d1-d8\n"
    "//!ENDVARIANTS\n"
    "//@SortIndications: ~a2-a3; 1.Qd7\n"
    "{\n"
    "\tDescription: Mate in three\n"
    "\tFEN: 4k3/8/8/8/8/8/P7/3QK3\n"
    "\tAnswer:  Qd1-d7,  0-0\n"
    "}\n"
    "\n"
    "7  NoMirror\n"
    "{\n"
    "\tFEN: r3k2r/pppppppp/8/8/8/8/PPPPPPPP/R3K2R\n"
    "   Moves:     e2-e4 d7-d5 e4-e5 f7-f5 e5:f6 0-0-0 0-0\n"
    "}\n"
    "\n"
    "9 s#2\n"
    "{\n"
    "\tFEN: 4k3/8/8/8/8/8/8/4K3\n"
    "}\n";

TEST(ProblemFileWriter, ExactBytes) {
    const ProblemMap problems = readText(RICH);
    EXPECT_EQ(WriteProblemFileText(problems, true), RICH_WRITTEN);
}

TEST(ProblemFileWriter, WithoutComments) {
    const ProblemMap problems = readText(RICH);
    std::string expected = RICH_WRITTEN;
    const std::string withComment = "d1-d7[the key]";
    expected.replace(expected.find(withComment), withComment.size(), "d1-d7");
    EXPECT_EQ(WriteProblemFileText(problems, false), expected);
}

TEST(ProblemFileWriter, RoundTripGivesIdenticalBytes) {
    const std::string first = WriteProblemFileText(readText(RICH), true);
    const std::string second = WriteProblemFileText(readText(first), true);
    EXPECT_EQ(first, second);
}

TEST(ProblemFileWriter, MovesStandAheadOfTheAnswer) {
    const ProblemMap problems = readText(
        "7 NoMirror\n{\n\tFEN: 4k3/8/8/8/8/8/8/R3K3\n\tMoves: e1-e2 e8-e7\n\tAnswer: 0-0-0, Ra1-a7\n}\n");
    const std::string text = WriteProblemFileText(problems, true);
    EXPECT_EQ(text, "UTF-8\n\n\n7  NoMirror\n{\n\tFEN: 4k3/8/8/8/8/8/8/R3K3\n   Moves:     Ke1-e2 Ke8-e7\n"
                    "\tAnswer:  0-0-0,  Ra1-a7\n}\n");
    EXPECT_EQ(WriteProblemFileText(readText(text), true), text);
}

TEST(ProblemFileWriter, AnswersAndIndicationsOffTheBoardAreNotWritten) {
    // Such squares come from the reader's arithmetic; they match no move and no text names them.
    const ProblemMap problems = readText("1 #2\n//@SortIndications: e9; 1.Qd7\n{\n\tFEN: "
                                         "4k3/8/8/8/8/8/8/3QK3\n\tAnswer: z9-a1, a1-a1, Qd1-d7\n}\n");
    ASSERT_EQ(problems.at(1)->expectedAnswers.size(), 3u);
    const std::string text = WriteProblemFileText(problems, true);
    EXPECT_EQ(
        text,
        "UTF-8\n\n\n1 #2\n//@SortIndications: 1.Qd7\n{\n\tFEN: 4k3/8/8/8/8/8/8/3QK3\n\tAnswer:  Qd1-d7\n}\n");
    EXPECT_EQ(WriteProblemFileText(readText(text), true), text);
}

TEST(ProblemFileWriter, GuiCheckCountIsAlwaysWrittenSoTheFileReadsBack) {
    // The reader takes the lexem behind GUICHECK as its count; a saved file
    // without it would swallow the "{" and no longer load.
    const ProblemMap problems = readText("1 #2 GUICHECK 1 " + BODY);
    const std::string text = WriteProblemFileText(problems, true);
    EXPECT_EQ(text, "UTF-8\n\n\n1 #2 GUICHECK 1\n{\n\tFEN: 4k3/8/8/8/8/8/8/4K3\n}\n");
    EXPECT_EQ(WriteProblemFileText(readText(text), true), text);
}

TEST(ProblemFileWriter, DirectMateWithMovesKeepsItsStipulationAndItsMoves) {
    const ProblemMap problems =
        readText("1 #3\n{\n\tFEN: 4k3/8/8/8/8/8/8/R3K3\n\tMoves: a1-a2 e8-e7\n\tAnswer: Ra1-a7\n}\n");
    const TChessProblem& problem = *problems.at(1);
    EXPECT_EQ(problem.plies, 5);
    EXPECT_EQ(problem.stipulationPlies, 5);
    EXPECT_EQ(problem.stipulationMoves(), 3);
    EXPECT_EQ(problem.startPosition.m_shPliesLeft, 5);
    ASSERT_EQ(problem.playedPositions.size(), 2u);
    EXPECT_EQ(problem.currentPosition().m_aSquares[52], BK);
    const std::string text = WriteProblemFileText(problems, true);
    EXPECT_EQ(text, "UTF-8\n\n\n1 #3\n{\n\tFEN: 4k3/8/8/8/8/8/8/R3K3\n   Moves:     Ra1-a2 Ke8-e7\n"
                    "\tAnswer:  Ra1-a7\n}\n");
    // Every later round trip keeps both.
    EXPECT_EQ(WriteProblemFileText(readText(text), true), text);
}

TEST(ProblemFileWriter, SelfmateWithMovesKeepsItsStipulation) {
    const ProblemMap problems = readText("4 s#2\n{\n\tFEN: 4k3/8/8/8/8/8/8/R3K3\n\tMoves: a1-a2\n}\n");
    EXPECT_EQ(problems.at(4)->plies, 5);
    const std::string text = WriteProblemFileText(problems, true);
    EXPECT_EQ(text, "UTF-8\n\n\n4 s#2\n{\n\tFEN: 4k3/8/8/8/8/8/8/R3K3\n   Moves:     Ra1-a2\n}\n");
    EXPECT_EQ(WriteProblemFileText(readText(text), true), text);
}

TEST(ProblemFile, ByteOrderMarkSaysUtf8) {
    const ProblemMap problems = readText("\xEF\xBB\xBF"
                                         "1 #2\n{\n\tDesc: \xC5\x81\xC3\xB3"
                                         "d\xC5\xBA\n\tFEN: 4k3/8/8/8/8/8/8/4K3\n}\n");
    ASSERT_EQ(problems.size(), 1u);
    EXPECT_EQ(problems.at(1)->description, L"\u0141\u00f3d\u017a");
    // With the "UTF-8" line behind it, the same.
    const ProblemMap both =
        readText("\xEF\xBB\xBFUTF-8\n1 #2\n{\n\tDesc: \xC3\xB3\n\tFEN: 4k3/8/8/8/8/8/8/4K3\n}\n");
    ASSERT_EQ(both.size(), 1u);
    EXPECT_EQ(both.at(1)->description, L"\u00f3");
    EXPECT_EQ(errorOf("\xEF\xBB\xBF"), "Unexpected end of file.");
}

TEST(ProblemFileWriter, NewRecordDefaults) {
    ProblemMap problems;
    problems[2] = std::make_unique<TChessProblem>();
    problems[2]->id = 2;
    EXPECT_EQ(WriteProblemFileText(problems, true), "UTF-8\n\n\n2 #2\n{\n\tFEN: 8/8/8/8/8/8/8/8\n}\n");
}

// ---- Files on disk.

TEST_F(ProblemFileOnDisk, SaveAndLoad) {
    const fs::path path = dir_ / "problems.cp";
    const ProblemMap problems = readText(RICH);
    SaveProblemFile(path, problems, ProblemFileSettings{});
    EXPECT_EQ(ReadBytes(path), RICH_WRITTEN);
    EXPECT_EQ(entries(), std::set<std::string>{"problems.cp"});

    ProblemMap loaded;
    std::set<std::wstring> tags;
    std::ostringstream console;
    ProblemFileSettings settings;
    settings.console = &console;
    LoadProblemFile(path, loaded, false, settings, tags);
    EXPECT_EQ(loaded.size(), 3u);
    EXPECT_EQ(console.str(),
              "Problem 3 read from file.\nProblem 7 read from file.\nProblem 9 read from file.\n");
    EXPECT_EQ(tags, (std::set<std::wstring>{L"miniature", L"\u017b\u00f3\u0142w"}));
}

TEST_F(ProblemFileOnDisk, CommentCompatibilityModeWritesTwoFiles) {
    ProblemFileSettings settings;
    settings.commentCompatibilityMode = true;
    const ProblemMap problems = readText(RICH);
    SaveProblemFile(dir_ / "problems.cp", problems, settings);
    EXPECT_EQ(entries(), (std::set<std::string>{"problems.cp", "problems.cpx"}));
    EXPECT_EQ(ReadBytes(dir_ / "problems.cpx"), WriteProblemFileText(problems, true));
    EXPECT_EQ(ReadBytes(dir_ / "problems.cp"), WriteProblemFileText(problems, false));
    EXPECT_NE(ReadBytes(dir_ / "problems.cpx"), ReadBytes(dir_ / "problems.cp"));

    // Loading under the mode reads the double, with the comments.
    ProblemMap loaded;
    std::set<std::wstring> tags;
    LoadProblemFile(dir_ / "problems.cp", loaded, false, settings, tags);
    EXPECT_EQ(loaded.at(3)->variants.at(L"Main variant").moves[0].comment, L"the key");
}

TEST_F(ProblemFileOnDisk, FailedSaveOverDirectoryLeavesNoTrace) {
    const fs::path target = dir_ / "taken.cp";
    fs::create_directory(target);
    try {
        SaveProblemFile(target, readText(RICH), ProblemFileSettings{});
        FAIL() << "no error";
    } catch (const ChessException& e) {
        EXPECT_EQ(std::string(e.what()), "Error opening file: " + target.string() + " (Is a directory)");
    }
    EXPECT_TRUE(fs::is_directory(target));
    EXPECT_EQ(entries(), std::set<std::string>{"taken.cp"});
}

TEST_F(ProblemFileOnDisk, FailedSaveInReadOnlyFolderKeepsOldFile) {
    const fs::path target = dir_ / "old.cp";
    const std::string old = "UTF-8\n\n\n1 #2\n{\n\tFEN: 4k3/8/8/8/8/8/8/4K3\n}\n";
    WriteBytes(target, old);
    fs::permissions(dir_, fs::perms::owner_read | fs::perms::owner_exec);
    {
        // Some users (root) write whatever the permissions say.
        std::ofstream probe(dir_ / "probe");
        if (probe) {
            probe.close();
            fs::remove(dir_ / "probe");
            GTEST_SKIP() << "the folder stays writable for this user";
        }
    }
    EXPECT_THROW(SaveProblemFile(target, readText(RICH), ProblemFileSettings{}), ChessException);
    fs::permissions(dir_, fs::perms::owner_all);
    EXPECT_EQ(ReadBytes(target), old);
    EXPECT_EQ(entries(), std::set<std::string>{"old.cp"});
}

#if defined(__unix__)
TEST_F(ProblemFileOnDisk, FailedWriteKeepsOldFile) {
    // A file size limit makes the write itself fail, whatever the user's rights.
    const fs::path target = dir_ / "old.cp";
    const std::string old = "UTF-8\n\n\n1 #2\n{\n\tFEN: 4k3/8/8/8/8/8/8/4K3\n}\n";
    WriteBytes(target, old);
    const ProblemMap problems = readText(RICH);
    rlimit saved{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &saved), 0);
    const auto previousHandler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit small = saved;
    small.rlim_cur = 100;
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    std::string message;
    try {
        SaveProblemFile(target, problems, ProblemFileSettings{});
    } catch (const ChessException& e) {
        message = e.what();
    }
    setrlimit(RLIMIT_FSIZE, &saved);
    std::signal(SIGXFSZ, previousHandler);
    EXPECT_EQ(message, "Error opening file: " + target.string() + " (File too large)");
    EXPECT_EQ(ReadBytes(target), old);
    EXPECT_EQ(entries(), std::set<std::string>{"old.cp"});
}
#endif

TEST_F(ProblemFileOnDisk, DefaultFileInEachLanguageReadsBack) {
    const std::wstring descriptions[3] = {
        L"Kliknij, aby zmieni\u0107 opis problemu", L"Click here to change problem description",
        L"\u041d\u0430\u0442\u0438\u0441\u043d\u0456\u0442\u044c \u0442\u0443\u0442, \u0449\u043e\u0431 "
        L"\u0437\u043c\u0456\u043d\u0438\u0442\u0438 \u043e\u043f\u0438\u0441 "
        L"\u043f\u0440\u043e\u0431\u043b\u0435"
        L"\u043c\u0438"};
    for (int language = 0; language < 3; ++language) {
        ProblemFileSettings settings;
        settings.languageId = language;
        const fs::path path = dir_ / ("default" + std::to_string(language) + ".cp");
        CreateDefaultProblemFile(path, settings);
        ProblemMap problems;
        std::set<std::wstring> tags;
        LoadProblemFile(path, problems, false, settings, tags);
        ASSERT_EQ(problems.size(), 1u) << language;
        const TChessProblem& p = *problems.at(1);
        EXPECT_EQ(p.description, descriptions[language]);
        EXPECT_EQ(p.plies, 3);
        EXPECT_EQ(p.startPosition.m_aSquares[sq("e1")], WK);
        EXPECT_EQ(p.startPosition.m_aSquares[sq("e8")], BK);
    }
    EXPECT_EQ(
        ReadBytes(dir_ / "default1.cp"),
        "UTF-8\n1 #2\n{\n\tDesc: Click here to change problem description\n\tWhite: Ke1\n\tBlack: Ke8\n}\n");
    EXPECT_EQ(
        ReadBytes(dir_ / "default0.cp"),
        "UTF-8\n1 #2\n{\n\tDesc: Kliknij, aby zmieni\xc4\x87 opis problemu\n\tWhite: Ke1\n\tBlack: Ke8\n}\n");
}

TEST_F(ProblemFileOnDisk, MissingFileIsCreatedWhenAsked) {
    ProblemFileSettings settings;
    settings.commentCompatibilityMode = true;
    ProblemMap problems;
    std::set<std::wstring> tags;
    LoadProblemFile(dir_ / "new.cp", problems, true, settings, tags);
    EXPECT_EQ(problems.size(), 1u);
    EXPECT_EQ(entries(), (std::set<std::string>{"new.cp", "new.cpx"}));
}

// ---- The shared corpus.

TEST(ProblemFileCorpus, WholeFileLoads) {
    const fs::path corpus = fs::path(ZORVANE_SHARED_DIR "/corpus/peer_examples.cp");
    if (!fs::exists(corpus)) GTEST_SKIP() << "corpus not found at " << corpus << " (../shared is absent)";
    ProblemMap problems;
    std::set<std::wstring> tags;
    LoadProblemFile(corpus, problems, false, ProblemFileSettings{}, tags);
    EXPECT_EQ(problems.size(), 125u);
    ASSERT_TRUE(problems.count(18));
    // Its description says "117 keys", and the answer holds as many moves.
    EXPECT_EQ(problems.at(18)->expectedAnswers.size(), 117u);
    ASSERT_TRUE(problems.count(1));
    EXPECT_EQ(problems.at(1)->description.rfind(L"thomas-maeder/popeye", 0), 0u);
    // Written and read again, the corpus gives the same text.
    const std::string written = WriteProblemFileText(problems, true);
    EXPECT_EQ(WriteProblemFileText(readText(written), true), written);
}

} // namespace
} // namespace zorvane

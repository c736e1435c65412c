// The lexem reader of problem files and its three wrappers.
#include "core/chess_exception.h"
#include "problems/lexem_reader.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace zorvane {
namespace {

std::vector<std::string> allLexems(std::string_view text, bool keepDirectives) {
    TextCursor cursor{text, 0};
    std::vector<std::string> lexems;
    for (std::string lexem = ReadLexem(cursor, false, keepDirectives); !lexem.empty();
         lexem = ReadLexem(cursor, false, keepDirectives))
        lexems.push_back(lexem);
    return lexems;
}

std::string messageOf(std::string_view text, bool failAtEnd, bool keepDirectives) {
    TextCursor cursor{text, 0};
    try {
        ReadLexem(cursor, failAtEnd, keepDirectives);
    } catch (const ChessException& e) {
        return e.what();
    }
    return "";
}

using Lexems = std::vector<std::string>;

TEST(LexemReader, AlphanumericRunsTakeCaretAndUnderscore) {
    EXPECT_EQ(allLexems("THREADS 4^2 SH_KEYLINE e2-e4", false),
              (Lexems{"THREADS", "4^2", "SH_KEYLINE", "e2", "-", "e4"}));
}

TEST(LexemReader, OtherBytesAreSingleLexems) {
    EXPECT_EQ(allLexems("{#:,}^", false), (Lexems{"{", "#", ":", ",", "}", "^"}));
}

TEST(LexemReader, WhiteSpaceIncludesCarriageReturnAndNoBreakBlank) {
    EXPECT_EQ(allLexems("a\r\nb\xa0"
                        "c\t d",
                        false),
              (Lexems{"a", "b", "c", "d"}));
}

TEST(LexemReader, EndOfTextFailsOrGivesEmptyLexem) {
    EXPECT_EQ(messageOf("  \n", true, false), "Unexpected end of file.");
    TextCursor cursor{" \t", 0};
    EXPECT_EQ(ReadLexem(cursor, false, false), "");
}

TEST(LexemReader, BlockCommentsAreSkipped) {
    EXPECT_EQ(allLexems("a /* b // c */ d", false), (Lexems{"a", "d"}));
}

TEST(LexemReader, UnclosedBlockComment) {
    EXPECT_EQ(messageOf("/* open", true, false), "Unexpected end of file before comment closed.");
    EXPECT_EQ(allLexems("a /* open", false), (Lexems{"a"}));
}

TEST(LexemReader, LineCommentsAreSkipped) {
    EXPECT_EQ(allLexems("a // comment\nb", false), (Lexems{"a", "b"}));
    EXPECT_EQ(allLexems("//#TAGS\n//!VARIANTS\nb", false), (Lexems{"b"}));
}

TEST(LexemReader, LineCommentWithoutLineFeedEndsTheText) {
    EXPECT_EQ(messageOf("// last", true, false), "Unexpected end of file before comment closed.");
    EXPECT_EQ(allLexems("a // last", false), (Lexems{"a"}));
}

TEST(LexemReader, DirectivesAreKeptWhole) {
    EXPECT_EQ(allLexems("//#TAGS\n//#two words\n//!{Main variant} e2-e4\nx", true),
              (Lexems{"//#TAGS", "//#two words", "//!{Main variant} e2-e4", "x"}));
}

TEST(LexemReader, OnlySortIndicationsCountAmongAtDirectives) {
    EXPECT_EQ(allLexems("//@Note\n//@sortINDICATIONS: e4\nx", true), (Lexems{"//@sortINDICATIONS: e4", "x"}));
    EXPECT_EQ(allLexems("//@SortIndication\nx", true), (Lexems{"x"}));
}

TEST(LexemReader, DirectiveAtEndWithoutLineFeed) {
    EXPECT_EQ(allLexems("//!default #5 AllSolutions", true), (Lexems{"//!default #5 AllSolutions"}));
}

TEST(LexemReader, LoneSlashIsAnError) {
    EXPECT_EQ(messageOf("/x", true, false), "Unexpected lexem (slash).");
    EXPECT_EQ(messageOf("/", false, false), "Unexpected lexem (slash).");
}

TEST(LexemReader, CutAtCarriageReturn) {
    TextCursor cursor{"//#tag\r\nnext", 0};
    EXPECT_EQ(ReadLexemCut(cursor, true, true), "//#tag");
    EXPECT_EQ(ReadLexemCut(cursor, true, true), "next");
}

TEST(LexemReader, IdentifierMustBeginAlphanumeric) {
    TextCursor cursor{"12 }", 0};
    EXPECT_EQ(ReadIdentifier(cursor), "12");
    try {
        ReadIdentifier(cursor);
        FAIL() << "no error";
    } catch (const ChessException& e) {
        EXPECT_STREQ(e.what(), "Alphanumeric identifier expected. Found: }");
    }
}

TEST(LexemReader, IdentifierAtEndOfText) {
    TextCursor cursor{"  ", 0};
    try {
        ReadIdentifier(cursor);
        FAIL() << "no error";
    } catch (const ChessException& e) {
        EXPECT_STREQ(e.what(), "Unexpected end of file.");
    }
}

TEST(LexemReader, FenFieldKeepsSlashes) {
    TextCursor cursor{" \t4k3/8/8/8/8/8/8/4K3 w\n", 0};
    EXPECT_EQ(ReadFenField(cursor), "4k3/8/8/8/8/8/8/4K3");
    EXPECT_EQ(ReadLexem(cursor, true, false), "w");
}

TEST(LexemReader, FenFieldStopsAtLineEnd) {
    TextCursor cursor{"4k3/8/8/8/8/8/8/4K3\r\n}", 0};
    EXPECT_EQ(ReadFenField(cursor), "4k3/8/8/8/8/8/8/4K3");
    TextCursor empty{"  \n}", 0};
    EXPECT_EQ(ReadFenField(empty), "");
}

TEST(LexemReader, NeverReadsBeyondTheView) {
    // The view ends inside a longer buffer: nothing behind it may be taken.
    const std::string buffer = "ab/*cd*/ef";
    TextCursor cursor{std::string_view(buffer).substr(0, 4), 0};
    EXPECT_EQ(ReadLexem(cursor, false, false), "ab");
    EXPECT_EQ(ReadLexem(cursor, false, false), "");
    TextCursor slash{std::string_view(buffer).substr(0, 3), 2};
    EXPECT_THROW(ReadLexem(slash, false, false), ChessException);
}

TEST(LexemReader, UpperAsciiLeavesOtherBytes) {
    EXPECT_EQ(UpperAscii("desc\xe9z"), "DESC\xe9Z");
}

} // namespace
} // namespace zorvane

#pragma once
// The lexem reader of problem files. A cursor moves over the text of the
// whole file; every routine reads only inside it, whatever the bytes.
//
// White space: 0x20, tab, LF, CR and 0xA0 (the no-break blank of the 8-bit
// code pages). A lexem is a run of alphanumeric bytes with "^" and "_", or any
// other single byte. "/* ... */" and "// ..." lines are comments; with
// `keepDirectives` the lines "//!...", "//#..." and "//@SortIndications..."
// come back whole as lexems (without their line feed).
#include <cstddef>
#include <string>
#include <string_view>

namespace zorvane {

struct TextCursor {
    std::string_view text;
    size_t pos = 0;

    bool atEnd() const { return pos >= text.size(); }
};

bool IsLexemSpace(unsigned char byte);
// Alphanumeric in the C locale: ASCII letters and digits only.
bool IsLexemAlnum(unsigned char byte);

// The next lexem. At the end of the text: with `failAtEnd` the ChessException
// "Unexpected end of file.", without it an empty lexem.
std::string ReadLexem(TextCursor& cursor, bool failAtEnd, bool keepDirectives);
// ReadLexem, cut at its first CR (a directive line of a CR LF file keeps none).
std::string ReadLexemCut(TextCursor& cursor, bool failAtEnd, bool keepDirectives);
// A lexem that must begin with an alphanumeric byte, else
// "Alphanumeric identifier expected. Found: " and the lexem.
std::string ReadIdentifier(TextCursor& cursor);
// The bytes up to a blank, tab, line feed, CR or the end, after blanks and
// tabs; a FEN holds "/" bytes and cannot go through ReadLexem.
std::string ReadFenField(TextCursor& cursor);

// ASCII upper case; other bytes stay as they are.
std::string UpperAscii(std::string_view text);

} // namespace zorvane

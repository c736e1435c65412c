#include "problems/lexem_reader.h"

#include "core/chess_exception.h"

namespace zorvane {

namespace {

constexpr std::string_view SORT_DIRECTIVE = "//@SortIndications";

// What ends a scan at the end of the text.
std::string endOfText(bool failAtEnd, const char* message) {
    if (failAtEnd) throw ChessException(message);
    return std::string();
}

bool equalsIgnoringCase(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i) {
        const auto x = static_cast<unsigned char>(a[i]), y = static_cast<unsigned char>(b[i]);
        const auto ux = x >= 'a' && x <= 'z' ? x - 32 : x;
        const auto uy = y >= 'a' && y <= 'z' ? y - 32 : y;
        if (ux != uy) return false;
    }
    return true;
}

} // namespace

bool IsLexemSpace(unsigned char byte) {
    return byte == 0x20 || byte == 0x09 || byte == 0x0A || byte == 0x0D || byte == 0xA0;
}

bool IsLexemAlnum(unsigned char byte) {
    return (byte >= '0' && byte <= '9') || (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z');
}

std::string ReadLexem(TextCursor& cursor, bool failAtEnd, bool keepDirectives) {
    const std::string_view text = cursor.text;
    size_t& pos = cursor.pos;
    for (;;) {
        while (pos < text.size() && IsLexemSpace(static_cast<unsigned char>(text[pos]))) ++pos;
        // 1. End of text.
        if (pos >= text.size()) return endOfText(failAtEnd, "Unexpected end of file.");
        const auto first = static_cast<unsigned char>(text[pos]);
        // 2. A run of alphanumeric bytes, "^" and "_".
        if (IsLexemAlnum(first)) {
            const size_t start = pos;
            while (pos < text.size() && (IsLexemAlnum(static_cast<unsigned char>(text[pos])) ||
                                         text[pos] == '^' || text[pos] == '_'))
                ++pos;
            return std::string(text.substr(start, pos - start));
        }
        // 3. Any other byte but "/".
        if (first != '/') {
            ++pos;
            return std::string(1, static_cast<char>(first));
        }
        const char second = pos + 1 < text.size() ? text[pos + 1] : '\0';
        // 4. A block comment.
        if (pos + 1 < text.size() && second == '*') {
            const size_t close = text.find("*/", pos + 2);
            if (close == std::string_view::npos) {
                pos = text.size();
                return endOfText(failAtEnd, "Unexpected end of file before comment closed.");
            }
            pos = close + 2;
            continue;
        }
        // 5. A line comment, or a directive kept as a lexem.
        if (pos + 1 < text.size() && second == '/') {
            const size_t lineFeed = text.find('\n', pos);
            const size_t lineEnd = lineFeed == std::string_view::npos ? text.size() : lineFeed;
            if (keepDirectives && pos + 2 < text.size()) {
                const char third = text[pos + 2];
                const bool directive =
                    third == '!' || third == '#' ||
                    (third == '@' && lineEnd - pos >= SORT_DIRECTIVE.size() &&
                     equalsIgnoringCase(text.substr(pos, SORT_DIRECTIVE.size()), SORT_DIRECTIVE));
                if (directive) {
                    const size_t start = pos;
                    pos = lineEnd;
                    return std::string(text.substr(start, lineEnd - start));
                }
            }
            if (lineFeed == std::string_view::npos) {
                pos = text.size();
                return endOfText(failAtEnd, "Unexpected end of file before comment closed.");
            }
            pos = lineFeed + 1;
            continue;
        }
        // 6. A slash that opens nothing.
        throw ChessException("Unexpected lexem (slash).");
    }
}

std::string ReadLexemCut(TextCursor& cursor, bool failAtEnd, bool keepDirectives) {
    std::string lexem = ReadLexem(cursor, failAtEnd, keepDirectives);
    const size_t cr = lexem.find('\r');
    if (cr != std::string::npos) lexem.resize(cr);
    return lexem;
}

std::string ReadIdentifier(TextCursor& cursor) {
    std::string lexem = ReadLexemCut(cursor, true, false);
    if (lexem.empty() || !IsLexemAlnum(static_cast<unsigned char>(lexem[0])))
        throw ChessException("Alphanumeric identifier expected. Found: " + lexem);
    return lexem;
}

std::string ReadFenField(TextCursor& cursor) {
    const std::string_view text = cursor.text;
    size_t& pos = cursor.pos;
    while (pos < text.size() && (text[pos] == ' ' || text[pos] == '\t')) ++pos;
    const size_t start = pos;
    while (pos < text.size() && text[pos] != ' ' && text[pos] != '\t' && text[pos] != '\n' &&
           text[pos] != '\r')
        ++pos;
    return std::string(text.substr(start, pos - start));
}

std::string UpperAscii(std::string_view text) {
    std::string result(text);
    for (char& c : result)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    return result;
}

} // namespace zorvane

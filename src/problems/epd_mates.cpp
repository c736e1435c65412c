#include "problems/epd_mates.h"

#include "core/chess_exception.h"
#include "core/fen.h"
#include "problems/problem_file.h"

#include <cctype>

namespace zorvane {

namespace {

constexpr int MAX_MATE_MOVES = 255;

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.front()))) text.remove_prefix(1);
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.back()))) text.remove_suffix(1);
    return text;
}

[[noreturn]] void refuse(int line, const std::string& why) {
    throw ChessException("Line " + std::to_string(line) + " of the mate list: " + why);
}

// The number right behind "bm #", up to the ';'.
int mateLength(std::string_view text, int line) {
    int moves = 0;
    size_t digits = 0;
    for (; digits < text.size() && std::isdigit(static_cast<unsigned char>(text[digits])); ++digits) {
        moves = moves * 10 + (text[digits] - '0');
        if (moves > MAX_MATE_MOVES) refuse(line, "the mate length is not a number from 1 to 255");
    }
    if (digits == 0 || moves < 1) refuse(line, "the mate length is not a number from 1 to 255");
    if (trimmed(text.substr(digits)).substr(0, 1) != ";") refuse(line, "\"bm #n\" is not closed by ';'");
    return moves;
}

// The text between the quotes of c0 "...", or empty.
std::string sourceOf(std::string_view rest) {
    const size_t field = rest.find("c0 \"");
    if (field == std::string_view::npos) return {};
    const std::string_view quoted = rest.substr(field + 4);
    const size_t close = quoted.find('"');
    return std::string(quoted.substr(0, close == std::string_view::npos ? quoted.size() : close));
}

EpdMate readLine(std::string_view text, int line) {
    constexpr std::string_view BEST_MOVE = " bm #";
    const size_t marker = text.find(BEST_MOVE);
    if (marker == std::string_view::npos) refuse(line, "no \"bm #n\" field");
    EpdMate mate;
    mate.line = line;
    mate.fen = std::string(trimmed(text.substr(0, marker)));
    const std::string_view rest = text.substr(marker + BEST_MOVE.size());
    mate.moves = mateLength(rest, line);
    mate.source = sourceOf(rest);
    FenNotes notes;
    mate.position.m_shPliesLeft = mate.position.m_shPliesTotal = static_cast<uint16_t>(2 * mate.moves - 1);
    if (!ReadFen(mate.fen, mate.position, &notes)) refuse(line, "the position is no valid FEN: " + mate.fen);
    if (notes.sideToMove != 'w') refuse(line, "White must be to move");
    return mate;
}

} // namespace

std::vector<EpdMate> ReadEpdMates(std::string_view text) {
    std::vector<EpdMate> mates;
    int line = 0;
    while (!text.empty()) {
        ++line;
        const size_t end = text.find('\n');
        const std::string_view row = trimmed(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (row.empty() || row.front() == '#') continue;
        mates.push_back(readLine(row, line));
    }
    return mates;
}

std::vector<EpdMate> LoadEpdMates(const std::string& path) {
    std::string bytes;
    if (!ReadWholeFile(path, bytes)) throw ChessException("Error opening file: " + path);
    return ReadEpdMates(bytes);
}

} // namespace zorvane

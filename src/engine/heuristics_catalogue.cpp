#include "engine/heuristics_catalogue.h"

#include "core/thread_context.h"
#include "engine/impossibility.h"

#include "core/chess_exception.h"
#include "core/piece.h"
#include "engine/heuristic_bits.h"
#include "problems/lexem_reader.h"
#include "problems/problem_file.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <optional>
#include <string_view>
#include <vector>

namespace zorvane {

namespace {

constexpr const char* NO_NAME = "...";

// m_wFlags2: the state that SH_SAVEQUEEN/ROOK's part of the fingerprint reads.
constexpr uint16_t SAVE_MAJOR_STATE = 0x20;
// Taken off the FFM part of the fingerprint. Stored register entries carry
// values made with them, so they stay as they are.
constexpr uint32_t FFM_KEY_OFFSET = 28;
constexpr uint32_t FFM_CUSTOM_KEY_OFFSET = 18;

constexpr int MAX_CORNER_SQUARES = 5;
constexpr int MAX_CORNER_MOVES = 2;

struct FfmLevelName {
    uint8_t level;
    std::string_view name;
};
constexpr FfmLevelName FFM_LEVEL_NAMES[] = {{2, "CheckOnly"}, {3, "#1"}, {4, "#1+"}, {5, "#2"},
                                            {6, "#2+"},       {7, "#3"}, {8, "#4"},  {9, "#5"}};
constexpr std::string_view FFM_PRELIMINARY = "Preliminary";
constexpr std::string_view FFM_CUSTOM = "Custom";

// By the low two bits of m_bPlayState.
constexpr std::string_view ONE_COLOUR_MODE_NAMES[] = {"", "WhiteFieldsOnly", "BlackFieldsOnly",
                                                      "SeparatedBlackBishop"};
// By m_nLoseFiguresMode.
constexpr std::string_view LOSE_FIGURES_MODE_NAMES[] = {"", "incl.pawns", "incl.pawnsBeforePromo"};

constexpr std::string_view EDGE_STRICT = "STRICT";
constexpr std::string_view EDGE_ALMOST_STRICT = "ALMOST_STRICT";
constexpr std::string_view STRICT = "strict";
constexpr std::string_view INCL_CORNER = "incl.corner";
constexpr std::string_view EFFECTIVE = "EFF";

constexpr std::string_view EDGE_EXPECTED =
    "\"STRICT\", \"ALMOST_STRICT\" or nothing, then \"C<n>A,D<n>,M<n>,incl.corner\" or a part of it";
constexpr std::string_view BAND_EXPECTED = "\"C<n>A,D<n>,M<n>,incl.corner,strict\" or a part of it";

// The strict edge forms have a name of their own in the printed set.
struct TextRewrite {
    std::string_view from;
    std::string_view to;
};
constexpr TextRewrite PRINTED_FORM_REWRITES[] = {
    {"SH_KEEPKINGONTHEEDGE(strict)", "SH_DONTLETKINGMOVE"},
    {"SH_KEEPKINGONTHEEDGE(STRICT)", "SH_DONTLETKINGMOVE"},
    {"SH_KEEPKINGONTHEEDGE(ALMOST_STRICT)", "SH_DONTLETKINGMOVE(excptns)"},
};

bool isSingleBit(uint32_t flag) {
    return flag != 0 && (flag & (flag - 1)) == 0;
}

std::string squareText(uint8_t square) {
    if (square & 0xC0) return "";
    return {static_cast<char>('A' + colOf(square)), static_cast<char>('1' + rowOf(square))};
}

// Parts separated by commas, nothing before the first one.
void appendPart(std::string& text, std::string_view part) {
    if (part.empty()) return;
    if (!text.empty()) text += ',';
    text += part;
}

bool dynamicRelaxationOn(const TSpecialHeuristicsParams& p) {
    return p.m_nDynRelaxFiguresCaptured > 0 || p.m_bDynRelaxOnAdvancedPawn;
}

// The tail that the edge and the band flag share: "C2A,D3,M11,incl.corner,strict".
// "A" stands right behind the count of captures, the other parts each after
// a comma. A defer prints its moves and the limit the search set for it.
// A letter and a number: "C2", "D3".
std::string letterNumber(char letter, unsigned number) {
    std::string text(1, letter);
    text += std::to_string(number);
    return text;
}

void appendCommonTail(std::string& text, const TSpecialHeuristicsParams& p, bool strict) {
    std::string relax;
    if (p.m_nDynRelaxFiguresCaptured > 0) relax = letterNumber('C', p.m_nDynRelaxFiguresCaptured);
    if (p.m_bDynRelaxOnAdvancedPawn) relax += 'A';
    appendPart(text, relax);
    if (p.m_wDeferMoves > 0) {
        appendPart(text, letterNumber('D', p.m_wDeferMoves));
        appendPart(text, letterNumber('M', p.m_wDeferLimit));
    }
    if (p.m_bInclCornerSquares) appendPart(text, INCL_CORNER);
    if (strict) appendPart(text, STRICT);
}

std::string ffmText(const TSpecialHeuristicsParams& p) {
    std::string text(FfmLevelText(p.m_nFfmLevel));
    if (p.m_bFfmPreliminary) (text += '-') += FFM_PRELIMINARY;
    if (p.m_bFfmCustom) (text += '-') += FFM_CUSTOM;
    return text;
}

std::string_view ffmWithOthersSuffix(uint8_t withOthers) {
    switch (withOthers) {
    case FFM_WITH_OTHERS:
        return " with other heuristics";
    case FFM_WITHOUT_OTHERS:
        return " without other heuristics";
    case FFM_PARTIALLY_WITH_OTHERS:
        return " partially with other heuristics";
    default:
        return "";
    }
}

// The parts of the fingerprint, each a field shifted in below what is there.
inline uint32_t shiftIn(uint32_t v, int bits, uint32_t value) {
    return (v << bits) + (value & ((1u << bits) - 1));
}
inline uint32_t bit(bool value) {
    return value ? 1u : 0u;
}

// Step 2: which of the root's black men are listed, whether pawns count,
// the effective form, and where the listed men stand now. The current squares
// are the position's watched slots, which the move makers carry along.
uint32_t unblockFingerprint(const TChessboard& position, const TSpecialHeuristicsParams& p,
                            const TChessboard& root) {
    const int listed = std::min<int>(p.m_nBlockedFigures, MAX_BLOCKED_FIGURES);
    uint32_t v = 0;
    int index = 0;
    for (int square = 0; square < 64; ++square) {
        const uint8_t man = root.m_aSquares[square];
        if (!isBlack(man)) continue;
        if ((man & KIND_MASK) == KIND_PAWN && !p.m_bBlockedHasPawn) continue;
        if (index < 32 &&
            std::find(p.m_aBlockedStart, p.m_aBlockedStart + listed, square) != p.m_aBlockedStart + listed)
            v |= 1u << index;
        ++index;
    }
    if (index < 32) v |= bit(p.m_bBlockedHasPawn) << index;
    // A field of its own, as the other parts: a sum would meet the list's bits.
    v = shiftIn(v, 1, bit(p.m_bBlockedEffective));
    bool moved = false;
    for (int i = 0; i < listed; ++i) moved = moved || position.m_aWatched[i] != p.m_aBlockedStart[i];
    if (!p.m_bBlockedEffective && moved) {
        for (int i = 0; i < listed; ++i)
            if (position.m_aWatched[i] != p.m_aBlockedStart[i]) v = shiftIn(v, 6, position.m_aWatched[i]);
    } else if (!moved) {
        v = v * 2 + 1;
    }
    return v;
}

// ---- The reader of the options ----

std::vector<std::string> splitAt(const std::string& text, char separator) {
    std::vector<std::string> parts;
    size_t start = 0;
    for (;;) {
        const size_t end = text.find(separator, start);
        parts.push_back(text.substr(start, end - start));
        if (end == std::string::npos) return parts;
        start = end + 1;
    }
}

bool equalsNoCase(std::string_view text, std::string_view word) {
    return UpperAscii(text) == UpperAscii(word);
}

// Decimal digits only, at most `limit`.
std::optional<unsigned> readNumber(std::string_view text, unsigned limit) {
    if (text.empty()) return std::nullopt;
    unsigned value = 0;
    for (char c : text) {
        if (c < '0' || c > '9') return std::nullopt;
        value = value * 10 + static_cast<unsigned>(c - '0');
        if (value > limit) return std::nullopt;
    }
    return value;
}

std::optional<uint8_t> readSquare(std::string_view text) {
    if (text.size() != 2) return std::nullopt;
    const char file = static_cast<char>(text[0] | 0x20);
    if (file < 'a' || file > 'h' || text[1] < '1' || text[1] > '8') return std::nullopt;
    return static_cast<uint8_t>(squareOf(file - 'a', text[1] - '1'));
}

[[noreturn]] void throwInvalidPiece(const std::string& squareText) {
    throw ChessException("Invalid piece (" + squareText + ")");
}

// The shared tail of the edge and the band flag, as read.
struct BandTail {
    uint8_t captured = 0;
    bool advancedPawn = false;
    uint16_t deferMoves = 0;
    uint16_t deferLimit = 0;
    bool inclCorner = false;
    bool strict = false;

    bool empty() const { return !captured && !advancedPawn && !deferMoves && !inclCorner; }
    bool dynamic() const { return captured > 0 || advancedPawn; }
    bool sameFields(const BandTail& o) const {
        return captured == o.captured && advancedPawn == o.advancedPawn && deferMoves == o.deferMoves &&
               deferLimit == o.deferLimit && inclCorner == o.inclCorner;
    }
};

// One option's text, read for one flag; its faults name the flag.
class ParamReader {
  public:
    ParamReader(const char* name, const std::string& text) : m_name(name), m_text(text) {}
    const std::string& text() const { return m_text; }

    [[noreturn]] void fail(std::string_view expected) const {
        throw ChessException(std::string("Invalid parameters of ") + m_name + " (\"" + m_text +
                             "\"): " + std::string(expected) + " expected");
    }
    // Parts between commas; none for an empty text, and no part may be empty.
    std::vector<std::string> parts(std::string_view expected) const {
        if (m_text.empty()) return {};
        std::vector<std::string> parts = splitAt(m_text, ',');
        for (const std::string& part : parts)
            if (part.empty()) fail(expected);
        return parts;
    }
    bool strictOrNothing() const {
        if (m_text.empty()) return false;
        if (!equalsNoCase(m_text, STRICT)) fail("\"strict\" or nothing");
        return true;
    }
    uint8_t squareOrNone(const std::string& text, std::string_view expected) const {
        if (text.empty()) return HEURISTIC_NO_SQUARE;
        const std::optional<uint8_t> square = readSquare(text);
        if (!square) fail(expected);
        return *square;
    }

    BandTail tail(const std::vector<std::string>& parts, size_t i, bool allowStrict) const {
        const std::string_view expected = allowStrict ? BAND_EXPECTED : EDGE_EXPECTED;
        BandTail tail;
        if (i < parts.size()) {
            std::string part = UpperAscii(parts[i]);
            if (part[0] == 'C' || part == "A") {
                if (part.back() == 'A') {
                    tail.advancedPawn = true;
                    part.pop_back();
                }
                if (!part.empty()) {
                    const std::optional<unsigned> n = readNumber(std::string_view(part).substr(1), 255);
                    if (part[0] != 'C' || !n || *n == 0) fail(expected);
                    tail.captured = static_cast<uint8_t>(*n);
                }
                ++i;
            }
        }
        if (i < parts.size() && (parts[i][0] | 0x20) == 'd') {
            const std::optional<unsigned> moves = readNumber(std::string_view(parts[i]).substr(1), 0xFFFF);
            if (!moves || *moves == 0 || i + 1 >= parts.size() || (parts[i + 1][0] | 0x20) != 'm')
                fail(expected);
            const std::optional<unsigned> limit =
                readNumber(std::string_view(parts[i + 1]).substr(1), 0xFFFF);
            if (!limit) fail(expected);
            tail.deferMoves = static_cast<uint16_t>(*moves);
            tail.deferLimit = static_cast<uint16_t>(*limit);
            i += 2;
        }
        if (i < parts.size() && equalsNoCase(parts[i], INCL_CORNER)) {
            tail.inclCorner = true;
            ++i;
        }
        if (allowStrict && i < parts.size() && equalsNoCase(parts[i], STRICT)) {
            tail.strict = true;
            ++i;
        }
        if (i != parts.size()) fail(expected);
        return tail;
    }

  private:
    const char* m_name;
    const std::string& m_text;
};

void storeTail(TSpecialHeuristicsParams& p, const BandTail& tail) {
    p.m_nDynRelaxFiguresCaptured = tail.captured;
    p.m_bDynRelaxOnAdvancedPawn = tail.advancedPawn;
    p.m_wDeferMoves = tail.deferMoves;
    p.m_wDeferLimit = tail.deferLimit;
    p.m_bInclCornerSquares = tail.inclCorner;
}

bool isBlackMan(uint8_t man) {
    return isBlack(man) && (man & KIND_MASK) != KIND_KING;
}

// Reads the options one by one into copies, so that a fault leaves the
// caller's state as it was.
class OptionsReader {
  public:
    OptionsReader(TChessboard& board, TSpecialHeuristicsParams& params, SolveWideHeuristicParams& solveWide)
        : m_board(board), m_p(params), m_wide(solveWide) {}

    void apply(uint32_t flag, const std::string& text) {
        const char* name = GetSpecialHeuristicName(flag);
        if (name == std::string_view(NO_NAME)) {
            char hex[16];
            std::snprintf(hex, sizeof hex, "0x%08X", static_cast<unsigned>(flag));
            throw ChessException(std::string("No special heuristic has the bit ") + hex);
        }
        if (equalsNoCase(text, "OFF")) {
            m_board.m_uHeuristics &= ~flag;
            // White's moves must not stay held to one colour without the bet.
            if (flag == SH_ONECOLORPLAYPOSSIBLE) m_board.m_bPlayState &= ~PLAY_ONE_COLOUR_MODE;
            return;
        }
        m_board.m_uHeuristics |= flag;
        const ParamReader in(name, text);
        switch (flag) {
        case SH_KEEPKINGONTHEEDGE:
            readEdge(in);
            break;
        case SH_KEEPKINGWITHINEXTEDGE: {
            const BandTail tail = in.tail(in.parts(BAND_EXPECTED), 0, true);
            m_p.m_bExtEdgeMoveUnlessOnEdge = tail.strict;
            m_bandTail = tail;
            break;
        }
        case SH_ONECOLORPLAYPOSSIBLE:
            readOneColourMode(in);
            break;
        case SH_DONTLEAVEMAINDIAGONAL: {
            const uint8_t square = in.squareOrNone(text, "the square of a black figure or nothing");
            if (square != HEURISTIC_NO_SQUARE && !IsMainDiagonalFigureSquare(m_board, square))
                throwInvalidPiece(text);
            m_p.m_cMainDiagonalFigure = square;
            break;
        }
        case SH_DONTLETFIGUREUNBLOCK:
            readUnblock(in);
            break;
        case SH_FINDFORCEDMATE:
            readFfm(in);
            break;
        case SH_DONTLETPROMOTEDQUEENMOVE:
        case SH_DONTLETPROMOTEDFIGUREMOVE:
            readPromotedStrict(flag, in);
            break;
        case SH_KEYLINE:
            readKeyLine(in);
            break;
        case SH_KEYDIAGONAL:
            readKeyDiagonal(in);
            break;
        case SH_DONTLOSEANYFIGURES:
            readLoseFiguresMode(in);
            break;
        case SH_KEYFIELD:
            m_p.m_cKeyField = in.squareOrNone(text, "a square or nothing");
            break;
        case SH_ASSERTBLACKKINGSURROUNDED:
            m_p.m_bSurroundedStrict = in.strictOrNothing();
            break;
        case SH_KEYWHITEFIGURE:
            readKeyWhiteFigure(in);
            break;
        case SH_KEEPKINGNEARCORNER:
            readCornerDistance(in);
            break;
        case SH_SEASNAKE:
            readSeaSnake(in);
            break;
        default:
            if (!text.empty()) in.fail("no parameter");
        }
    }

    // The tail is shared: where both band flags are given it must agree, or
    // the edge's be empty because the relaxation is for the band only.
    void finish() {
        if (m_edgeTail && m_bandTail) {
            if (m_edgeTail->sameFields(*m_bandTail)) {
                m_p.m_bDynRelaxExtEdgeOnly = 0;
            } else if (m_edgeTail->empty() && m_bandTail->dynamic()) {
                m_p.m_bDynRelaxExtEdgeOnly = 1;
            } else {
                throw ChessException("The parameters of SH_KEEPKINGONTHEEDGE and SH_KEEPKINGWITHINEXTEDGE "
                                     "disagree: their common part must be the same");
            }
            storeTail(m_p, *m_bandTail);
        } else if (m_edgeTail || m_bandTail) {
            m_p.m_bDynRelaxExtEdgeOnly = 0;
            storeTail(m_p, m_edgeTail ? *m_edgeTail : *m_bandTail);
        }
    }

  private:
    void readEdge(const ParamReader& in) {
        const std::vector<std::string> parts = in.parts(EDGE_EXPECTED);
        size_t i = 0;
        bool strict = false;
        bool exceptions = false;
        if (!parts.empty() && equalsNoCase(parts[0], EDGE_STRICT)) {
            strict = true;
            i = 1;
        } else if (!parts.empty() && equalsNoCase(parts[0], EDGE_ALMOST_STRICT)) {
            strict = exceptions = true;
            i = 1;
        }
        m_edgeTail = in.tail(parts, i, false);
        m_p.m_bKingMoveStrict = strict;
        m_p.m_bKingMoveExceptions = exceptions;
    }

    void readOneColourMode(const ParamReader& in) {
        for (uint8_t mode = 0; mode < std::size(ONE_COLOUR_MODE_NAMES); ++mode) {
            if (!equalsNoCase(in.text(), ONE_COLOUR_MODE_NAMES[mode])) continue;
            m_board.m_bPlayState =
                static_cast<uint8_t>((m_board.m_bPlayState & ~PLAY_ONE_COLOUR_MODE) | mode);
            return;
        }
        in.fail("\"WhiteFieldsOnly\", \"BlackFieldsOnly\", \"SeparatedBlackBishop\" or nothing");
    }

    void readUnblock(const ParamReader& in) {
        constexpr std::string_view expected = "\"EFF\" or nothing, then up to 8 squares of black men";
        const std::vector<std::string> parts = in.parts(expected);
        size_t i = 0;
        const bool effective = !parts.empty() && equalsNoCase(parts[0], EFFECTIVE);
        if (effective) i = 1;
        if (parts.size() - i > MAX_BLOCKED_FIGURES) in.fail(expected);
        uint8_t squares[MAX_BLOCKED_FIGURES];
        int count = 0;
        bool hasPawn = false;
        for (; i < parts.size(); ++i) {
            const uint8_t square = in.squareOrNone(parts[i], expected);
            if (std::find(squares, squares + count, square) != squares + count) in.fail(expected);
            const uint8_t man = m_board.m_aSquares[square];
            if (!isBlackMan(man)) throwInvalidPiece(parts[i]);
            hasPawn = hasPawn || (man & KIND_MASK) == KIND_PAWN;
            squares[count++] = square;
        }
        for (int k = 0; k < MAX_BLOCKED_FIGURES; ++k) {
            const uint8_t square = k < count ? squares[k] : HEURISTIC_NO_SQUARE;
            m_p.m_aBlockedStart[k] = m_p.m_aBlockedNow[k] = m_board.m_aWatched[k] = square;
        }
        m_p.m_nBlockedFigures = static_cast<uint8_t>(count);
        m_p.m_nBlockedFiguresSaved = 0;
        m_p.m_bBlockedEffective = effective;
        m_p.m_bBlockedHasPawn = hasPawn;
    }

    void readFfm(const ParamReader& in) {
        constexpr std::string_view expected =
            "a level (\"CheckOnly\", \"#1\", \"#1+\", \"#2\", \"#2+\", \"#3\", \"#4\", \"#5\"), then "
            "\"-Preliminary\" and \"-Custom\" if they hold,";
        const std::vector<std::string> parts = splitAt(in.text(), '-');
        const FfmLevelName* level = nullptr;
        for (const FfmLevelName& candidate : FFM_LEVEL_NAMES)
            if (equalsNoCase(parts[0], candidate.name)) level = &candidate;
        if (!level) in.fail(expected);
        size_t i = 1;
        const bool preliminary = i < parts.size() && equalsNoCase(parts[i], FFM_PRELIMINARY);
        if (preliminary) ++i;
        const bool custom = i < parts.size() && equalsNoCase(parts[i], FFM_CUSTOM);
        if (custom) ++i;
        if (i != parts.size()) in.fail(expected);
        // The level given is the one the first run starts from.
        m_p.m_nFfmLevel = m_p.m_nFfmStartLevel = level->level;
        m_p.m_bFfmPreliminary = preliminary;
        m_p.m_bFfmCustom = custom;
    }

    // One field serves both promoted-man flags; given for both, it must agree.
    void readPromotedStrict(uint32_t flag, const ParamReader& in) {
        const bool strict = in.strictOrNothing();
        if (m_promotedStrictFrom && *m_promotedStrictFrom != strict)
            throw ChessException(
                std::string("The parameters of ") + GetSpecialHeuristicName(flag) + " and " +
                GetSpecialHeuristicName(flag ^ SH_DONTLETPROMOTEDQUEENMOVE ^ SH_DONTLETPROMOTEDFIGUREMOVE) +
                " disagree: \"strict\" is one setting for both");
        m_promotedStrictFrom = strict;
        m_p.m_bPromotedStrict = strict;
    }

    void readKeyLine(const ParamReader& in) {
        const std::string& text = in.text();
        if (text.empty()) {
            m_wide.m_cKeyLineFile = HEURISTIC_NO_SQUARE;
            return;
        }
        const char file = static_cast<char>(text[0] | 0x20);
        if (text.size() != 1 || file < 'a' || file > 'h') in.fail("a file letter A to H or nothing");
        m_wide.m_cKeyLineFile = static_cast<uint8_t>(file - 'a');
    }

    void readKeyDiagonal(const ParamReader& in) {
        const std::vector<std::string> parts = splitAt(in.text(), '-');
        if (parts.size() != 2) in.fail("\"<square>-<square>\"");
        const uint8_t first = in.squareOrNone(parts[0], "\"<square>-<square>\"");
        const uint8_t second = in.squareOrNone(parts[1], "\"<square>-<square>\"");
        const bool none = first == HEURISTIC_NO_SQUARE && second == HEURISTIC_NO_SQUARE;
        if (!none && !IsKeyDiagonal(first, second)) throw ChessException("Invalid field Key diagonal");
        m_wide.m_wKeyDiagonal = static_cast<uint16_t>(first | (second << 8));
    }

    void readLoseFiguresMode(const ParamReader& in) {
        for (uint8_t mode = 0; mode < std::size(LOSE_FIGURES_MODE_NAMES); ++mode) {
            if (!equalsNoCase(in.text(), LOSE_FIGURES_MODE_NAMES[mode])) continue;
            m_p.m_nLoseFiguresMode = mode;
            return;
        }
        in.fail("\"incl.pawns\", \"incl.pawnsBeforePromo\" or nothing");
    }

    void readKeyWhiteFigure(const ParamReader& in) {
        const uint8_t square = in.squareOrNone(in.text(), "the square of a white bishop, rook or queen");
        if (square == HEURISTIC_NO_SQUARE) in.fail("the square of a white bishop, rook or queen");
        const KeyWhiteFigurePin pin = FindKeyWhiteFigurePin(m_board, square);
        if (pin.check == KeyWhiteFigureCheck::NotAKeyFigure) throwInvalidPiece(in.text());
        if (pin.check == KeyWhiteFigureCheck::NoPinnedFigure)
            throw ChessException("Invalid key white figure (pinned piece not found)");
        m_p.m_cKeyWhiteFigure = square;
        m_p.m_cKeyPinnedFigure = pin.pinnedSquare;
        m_p.m_bKeyFigureIsRook = pin.isRook;
    }

    void readCornerDistance(const ParamReader& in) {
        const std::string text = UpperAscii(in.text());
        const bool moves = !text.empty() && text.back() == 'M';
        const bool squares = !text.empty() && text.back() == 'S';
        const std::optional<unsigned> distance =
            readNumber(std::string_view(text).substr(0, text.empty() ? 0 : text.size() - 1),
                       moves ? MAX_CORNER_MOVES : MAX_CORNER_SQUARES);
        if (!(moves || squares) || !distance || *distance == 0)
            throw ChessException("Invalid maximum distance from corner in the parameter of heuristics 'Keep "
                                 "king near corner'");
        // Stored negative when counted in king moves.
        m_p.m_cCornerDistance = static_cast<int8_t>(moves ? -static_cast<int>(*distance) : *distance);
    }

    void readSeaSnake(const ParamReader& in) {
        constexpr std::string_view expected =
            "the approach square, \",\", the turn-back square, and \",\" with a count above 0 if any";
        uint8_t approach = HEURISTIC_NO_SQUARE;
        uint8_t turnBack = HEURISTIC_NO_SQUARE;
        uint8_t count = 0;
        if (!in.text().empty()) {
            const std::vector<std::string> parts = splitAt(in.text(), ',');
            if (parts.size() < 2 || parts.size() > 3) in.fail(expected);
            approach = in.squareOrNone(parts[0], expected);
            turnBack = in.squareOrNone(parts[1], expected);
            if (parts.size() == 3) {
                const std::optional<unsigned> n = readNumber(parts[2], 255);
                if (!n || *n == 0) in.fail(expected);
                count = static_cast<uint8_t>(*n);
            }
        }
        m_p.m_cApproach = approach;
        m_p.m_cTurnBack = turnBack;
        m_p.m_nSeaSnakeCount = count;
    }

    TChessboard& m_board;
    TSpecialHeuristicsParams& m_p;
    SolveWideHeuristicParams& m_wide;
    std::optional<BandTail> m_edgeTail;
    std::optional<BandTail> m_bandTail;
    std::optional<bool> m_promotedStrictFrom;
};

} // namespace

std::string_view FfmLevelText(uint8_t level) {
    for (const FfmLevelName& name : FFM_LEVEL_NAMES)
        if (name.level == level) return name.name;
    return {};
}

const char* GetSpecialHeuristicName(uint32_t flag) {
    if (!isSingleBit(flag)) return NO_NAME;
    for (const HeuristicName& heuristic : HeuristicNames)
        if (heuristic.bit == flag) return heuristic.name;
    return NO_NAME;
}

std::string GetSpecialHeuristicParamText(uint32_t flag, const TChessboard& position,
                                         const TSpecialHeuristicsParams& p,
                                         const SolveWideHeuristicParams& solveWide) {
    std::string text;
    switch (flag) {
    case SH_KEEPKINGONTHEEDGE:
        // The edge's own strictness leads; the tail's "strict" belongs to the band.
        if (p.m_bKingMoveStrict) text = p.m_bKingMoveExceptions ? EDGE_ALMOST_STRICT : EDGE_STRICT;
        if (!(p.m_bDynRelaxExtEdgeOnly && dynamicRelaxationOn(p))) appendCommonTail(text, p, false);
        break;
    case SH_KEEPKINGWITHINEXTEDGE:
        appendCommonTail(text, p, p.m_bExtEdgeMoveUnlessOnEdge);
        break;
    case SH_ONECOLORPLAYPOSSIBLE:
        text = ONE_COLOUR_MODE_NAMES[position.m_bPlayState & PLAY_ONE_COLOUR_MODE];
        break;
    case SH_DONTLEAVEMAINDIAGONAL:
        text = squareText(p.m_cMainDiagonalFigure);
        break;
    case SH_DONTLETFIGUREUNBLOCK:
        if (p.m_bBlockedEffective) text = EFFECTIVE;
        for (int i = 0; i < std::min<int>(p.m_nBlockedFigures, MAX_BLOCKED_FIGURES); ++i)
            appendPart(text, squareText(p.m_aBlockedStart[i]));
        break;
    case SH_FINDFORCEDMATE:
        text = ffmText(p);
        break;
    case SH_DONTLETPROMOTEDQUEENMOVE:
    case SH_DONTLETPROMOTEDFIGUREMOVE:
        if (p.m_bPromotedStrict) text = STRICT;
        break;
    case SH_KEYLINE:
        if (solveWide.m_cKeyLineFile < 8) text = static_cast<char>('A' + solveWide.m_cKeyLineFile);
        break;
    case SH_KEYDIAGONAL:
        text = squareText(static_cast<uint8_t>(solveWide.m_wKeyDiagonal & 0xFF)) + "-" +
               squareText(static_cast<uint8_t>(solveWide.m_wKeyDiagonal >> 8));
        break;
    case SH_DONTLOSEANYFIGURES:
        if (p.m_nLoseFiguresMode < std::size(LOSE_FIGURES_MODE_NAMES))
            text = LOSE_FIGURES_MODE_NAMES[p.m_nLoseFiguresMode];
        break;
    case SH_KEYFIELD:
        text = squareText(p.m_cKeyField);
        break;
    case SH_ASSERTBLACKKINGSURROUNDED:
        if (p.m_bSurroundedStrict) text = STRICT;
        break;
    case SH_KEYWHITEFIGURE:
        text = squareText(p.m_cKeyWhiteFigure);
        break;
    case SH_KEEPKINGNEARCORNER:
        if (p.m_cCornerDistance > 0) text = std::to_string(p.m_cCornerDistance) + "S";
        if (p.m_cCornerDistance < 0) text = std::to_string(-p.m_cCornerDistance) + "M";
        break;
    case SH_SEASNAKE:
        text = squareText(p.m_cApproach) + "," + squareText(p.m_cTurnBack);
        if (p.m_nSeaSnakeCount > 0) text += "," + std::to_string(p.m_nSeaSnakeCount);
        break;
    default:
        break;
    }
    return text;
}

std::string GetSpecialHeuristicsText(const TChessboard& position, const TSpecialHeuristicsParams& params,
                                     const SolveWideHeuristicParams& solveWide) {
    const uint32_t word = position.m_uHeuristics;
    std::string text;
    for (int index = 0; index < 32; ++index) {
        const uint32_t flag = 1u << index;
        if (!(word & flag)) continue;
        std::string part = GetSpecialHeuristicName(flag);
        const std::string paramText = GetSpecialHeuristicParamText(flag, position, params, solveWide);
        if (!paramText.empty()) part += "(" + paramText + ")";
        for (const TextRewrite& rewrite : PRINTED_FORM_REWRITES)
            if (part == rewrite.from) part = rewrite.to;
        if (!text.empty()) text += ", ";
        text += part;
    }
    // The list itself ends with the note; the FFM phrase speaks of the whole
    // set and comes last. The note stands when the unblock bet is on while
    // m_bUnblockDynamic is clear: the program has not been let apply it
    // dynamically, which is the state that forbids it.
    if ((word & SH_DONTLETFIGUREUNBLOCK) && !params.m_bUnblockDynamic)
        text += " (CannotApplyDLFUDynamically)";
    if (word & SH_FINDFORCEDMATE) text += ffmWithOthersSuffix(params.m_nFfmWithOthers);
    return text;
}

uint32_t CalcHeuristicParams(const TChessboard& position, const TSpecialHeuristicsParams& p,
                             const TChessboard& root, uint8_t queenMateIndex) noexcept {
    // 1. The empty set has no parameters.
    const uint32_t word = position.m_uHeuristics;
    if (word == 0) return 0;
    uint32_t v = 0;
    // 2. The unblock list, numbered by the root's black men.
    if (word & SH_DONTLETFIGUREUNBLOCK) v = unblockFingerprint(position, p, root);
    // 3. Whether the unblock bet may be dropped inside a line.
    v = v * 2 + bit(p.m_bUnblockDynamic);
    // 4. The key white figure's square.
    if (word & SH_KEYWHITEFIGURE) v = (v << 6) + p.m_cKeyWhiteFigure;
    // 5. The fields of the single bets, from the lowest bit.
    const bool deferred = (position.m_wFlags2 & FLAGS2_BAND_CHECK_DEFERRED) != 0;
    if (word & SH_KEEPKINGONTHEEDGE)
        v = shiftIn(v, 4,
                    bit(p.m_bKingMoveStrict && !deferred) << 3 | bit(p.m_bKingMoveExceptions) << 2 |
                        bit(deferred) << 1 | bit(p.m_bInclCornerSquares));
    if (word & SH_ONECOLORPLAYPOSSIBLE) v = shiftIn(v, 2, position.m_bPlayState & PLAY_ONE_COLOUR_MODE);
    // The two squares of the pendulum piece that the triangles play against.
    if (word & SH_ZUGZWANGTRIANGLES) v = shiftIn(shiftIn(v, 6, p.m_cPendulum1), 6, p.m_cPendulum2);
    // The band's counterparts of the edge's four bits.
    if (word & SH_KEEPKINGWITHINEXTEDGE)
        v = shiftIn(v, 4,
                    bit(p.m_bExtEdgeMoveUnlessOnEdge && !deferred) << 3 | bit(p.m_bDynRelaxExtEdgeOnly) << 2 |
                        bit(deferred) << 1 | bit(p.m_bInclCornerSquares));
    if (word & SH_SAVEQUEEN_ROOK) v = shiftIn(v, 2, bit(position.m_wFlags2 & SAVE_MAJOR_STATE));
    if (word & SH_DONTLOSEANYFIGURES) v = shiftIn(v, 2, p.m_nLoseFiguresMode);
    if (word & SH_ASSERTBLACKKINGSURROUNDED) v = shiftIn(v, 1, bit(p.m_bSurroundedStrict));
    // The knight bet has no field of its own: its bit marks it, as the next one's does.
    if (word & SH_CAPTUREKNIGHT) v = shiftIn(v, 1, 1);
    if (word & SH_SKIPWORSTWHITEMOVES) v = shiftIn(v, 1, 1);
    if (word & SH_KEEPKINGNEARCORNER) {
        const int distance = p.m_cCornerDistance;
        const int towardsZero = distance > 0 ? distance - 1 : distance < 0 ? distance + 1 : 0;
        v = v * 8 + static_cast<uint32_t>(towardsZero);
    }
    // 6. FindForcedMate's level and form.
    if (word & SH_FINDFORCEDMATE) {
        v = (p.m_nFfmLevel + v * 8) * 8;
        if (!p.m_bFfmCustom)
            v = (v + p.m_nFfmWithOthers) * 2 - FFM_KEY_OFFSET;
        else
            v = v * 2 - FFM_CUSTOM_KEY_OFFSET;
        v += p.m_bFfmPreliminary;
    }
    // 7. The queen mate's current pattern.
    if (word & SH_SINGLEQUEENMATE) v = v * 4 + queenMateIndex;
    return v;
}

void ApplyHeuristicOptions(const std::map<uint32_t, std::string>& options, TChessboard& root,
                           TSpecialHeuristicsParams& params, SolveWideHeuristicParams& solveWide) {
    TChessboard board = root;
    TSpecialHeuristicsParams p = params;
    SolveWideHeuristicParams wide = solveWide;
    OptionsReader reader(board, p, wide);
    for (const auto& [flag, text] : options) reader.apply(flag, text);
    reader.finish();
    // A solve starts at the queen mate's first pattern.
    board.m_uHeuristicParams = CalcHeuristicParams(board, p, board, 0);
    root = board;
    params = p;
    solveWide = std::move(wide);
}

bool IsMainDiagonalFigureSquare(const TChessboard& position, int square) {
    if (square < 0 || square >= 64 || !isBlackMan(position.m_aSquares[square])) return false;
    return colOf(square) == rowOf(square) || colOf(square) + rowOf(square) == 7;
}

bool IsKeyDiagonal(int first, int second) {
    if (first < 0 || first >= 64 || second < 0 || second >= 64 || first == second) return false;
    return absInt(colOf(first) - colOf(second)) == absInt(rowOf(first) - rowOf(second));
}

KeyWhiteFigurePin FindKeyWhiteFigurePin(const TChessboard& position, int square) {
    KeyWhiteFigurePin pin;
    if (square < 0 || square >= 64) return pin;
    const uint8_t figure = position.m_aSquares[square];
    if (figure != WB && figure != WR && figure != WQ) return pin;
    pin.check = KeyWhiteFigureCheck::NoPinnedFigure;
    const int king = position.blackKing();
    if (king < 0 || king >= 64) return pin;
    const int dc = colOf(king) - colOf(square);
    const int dr = rowOf(king) - rowOf(square);
    const bool straight = (dc == 0) != (dr == 0);
    const bool diagonal = dc != 0 && absInt(dc) == absInt(dr);
    if (!(straight && (figure & KIND_ROOK) == KIND_ROOK) &&
        !(diagonal && (figure & KIND_BISHOP) == KIND_BISHOP))
        return pin;
    const int step = squareOf((dc > 0) - (dc < 0), 0) + 8 * ((dr > 0) - (dr < 0));
    int at = square + step;
    while (at != king && position.m_aSquares[at] == 0) at += step;
    const uint8_t pinned = position.m_aSquares[at];
    const bool pinnable = pinned == BN || (straight && pinned == BB) || (diagonal && pinned == BR);
    if (!pinnable) return pin;
    int behind = at + step;
    while (behind != king && position.m_aSquares[behind] == 0) behind += step;
    if (behind != king) return pin;
    pin.check = KeyWhiteFigureCheck::Pins;
    pin.pinnedSquare = static_cast<uint8_t>(at);
    pin.isRook = figure == WR;
    return pin;
}

uint32_t HeuristicFingerprintOf(const TChessboard& position,
                                const TSpecialHeuristicsParams& params) noexcept {
    const TChessboard* root =
        position.m_pThread && position.m_pThread->m_pRoot ? position.m_pThread->m_pRoot : &position;
    return CalcHeuristicParams(position, params, *root, 0);
}

std::string DoubtfulReasonText(const std::string& move, uint32_t reason) {
    const int value = static_cast<int32_t>(reason);
    if (reason != 0 && reason < FIRST_IMPOSSIBILITY_REASON)
        return move + " (" + GetSpecialHeuristicName(reason) + ")\n";
    if (IsImpossibilityReason(reason)) return move + "/impossible (" + std::to_string(value) + ")\n";
    return move + " (" + std::to_string(value) + " (temp.reg.))\n";
}

} // namespace zorvane

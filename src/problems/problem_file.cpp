#include "problems/problem_file.h"

#include "core/chess_exception.h"
#include "core/fen.h"
#include "core/make_move.h"
#include "core/piece.h"
#include "problems/notation.h"
#include "problems/safe_write.h"
#include "problems/text_encoding.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <climits>
#include <fstream>
#include <iterator>
#include <sstream>
#include <system_error>

namespace zorvane {

namespace fs = std::filesystem;

const std::array<HeuristicName, 29> HeuristicNames = {{
    {0x00000001u, "SH_AREKINGSNEAR"},
    {0x00000002u, "SH_SWEEPINGWHITEROOK"},
    {0x00000004u, "SH_KEEPKINGONTHEEDGE"},
    {0x00000008u, "SH_ONECOLORPLAYPOSSIBLE"},
    {0x00000010u, "SH_ZUGZWANGTRIANGLES"},
    {0x00000020u, "SH_DONTLEAVEMAINDIAGONAL"},
    {0x00000040u, "SH_KEEPKINGWITHINEXTEDGE"},
    {0x00000080u, "SH_DONTLETFIGUREUNBLOCK"},
    {0x00000200u, "SH_FINDFORCEDMATE"},
    {0x00000400u, "SH_DONTRECEDEBLACKKING"},
    {0x00000800u, "SH_DONTLETPROMOTEDQUEENMOVE"},
    {0x00001000u, "SH_KEYLINE"},
    {0x00002000u, "SH_KEYDIAGONAL"},
    {0x00004000u, "SH_SAVEQUEEN/ROOK"},
    {0x00008000u, "SH_DONTLOSEANYFIGURES"},
    {0x00010000u, "SH_DONTLETBLACKQUEENCHECKTWICE"},
    {0x00020000u, "SH_USEBLOCKBLACKPAWNSLEVEL"},
    {0x00040000u, "SH_KEYFIELD"},
    {0x00080000u, "SH_ASSERTBLACKKINGSURROUNDED"},
    {0x00100000u, "SH_SINGLEQUEENMATE"},
    {0x00200000u, "SH_3MOVESTOMATE"},
    {0x00400000u, "SH_KEYWHITEFIGURE"},
    {0x00800000u, "SH_CAPTUREKNIGHT"},
    {0x01000000u, "SH_SKIPWORSTWHITEMOVES"},
    {0x02000000u, "SH_DONTLETPROMOTEDFIGUREMOVE"},
    {0x04000000u, "SH_KEEPKINGNEARCORNER"},
    {0x08000000u, "SH_SEASNAKE"},
    {0x40000000u, "SH_REDUCTIONTOGLOBREGPOS"},
    {0x80000000u, "SH_ZUGZWANG"},
}};

namespace {

constexpr std::string_view SORT_LINE = "//@SortIndications: ";

bool startsWith(std::string_view text, std::string_view prefix) {
    return text.size() >= prefix.size() && text.substr(0, prefix.size()) == prefix;
}

// atoi without its undefined overflow: leading white space, a sign, digits;
// a value beyond int stops at the limit.
int toInt(std::string_view text) {
    size_t i = 0;
    while (i < text.size() && (text[i] == ' ' || (text[i] >= '\t' && text[i] <= '\r'))) ++i;
    bool negative = false;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) negative = text[i++] == '-';
    long long value = 0;
    for (; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i) {
        value = value * 10 + (text[i] - '0');
        if (value > static_cast<long long>(INT_MAX) + 1) value = static_cast<long long>(INT_MAX) + 1;
    }
    if (negative) value = -value;
    if (value > INT_MAX) value = INT_MAX;
    return static_cast<int>(value);
}

std::wstring decode(std::string_view text, bool isUtf8) {
    return isUtf8 ? Utf8ToWide(text) : Windows1250ToWide(text);
}

bool isFileLetter(char c) {
    return c >= 'A' && c <= 'H';
}
bool isRankDigit(char c) {
    return c >= '1' && c <= '8';
}
uint8_t squareFromText(char file, char rank) {
    return static_cast<uint8_t>((file - 'A') + (rank - '1') * 8);
}

// One problem block, read top to bottom.
class BlockReader {
  public:
    BlockReader(TChessProblem& problem, TextCursor& cursor, bool isUtf8, const DefaultClauses& defaults,
                int languageId)
        : problem_(problem), cursor_(cursor), isUtf8_(isUtf8), defaults_(defaults), languageId_(languageId) {}

    void Read() {
        std::string lexem = readHeader();
        lexem = readSections(lexem);
        if (lexem != "{") throw ChessException("Opening bracket expected.");
        readBody();
        finish();
    }

  private:
    std::string next() { return ReadLexemCut(cursor_, true, false); }
    std::string nextWithDirectives() { return ReadLexemCut(cursor_, true, true); }

    // 1. Number, stipulation, options; gives the lexem that ended the options.
    std::string readHeader() {
        problem_.id = toInt(ReadIdentifier(cursor_));
        std::string lexem = next();
        bool stipulated = false;
        if (lexem == "#") {
            problem_.type = PROBLEM_DIRECT_MATE;
            stipulated = true;
        } else if (lexem == "s") {
            // Only "s" then "#" is a selfmate; else "s" stands as the first option.
            const size_t back = cursor_.pos;
            if (next() == "#") {
                problem_.type = PROBLEM_SELFMATE;
                stipulated = true;
            } else {
                cursor_.pos = back;
            }
        }
        if (stipulated) {
            const int moves = toInt(ReadIdentifier(cursor_));
            // Only the low 16 bits of the plies count; this keeps 2n+1 inside int.
            SetStipulation(problem_, moves & 0xFFFF);
            applyDefaultClauses(moves);
            lexem = nextWithDirectives();
        } else {
            problem_.type = PROBLEM_POSITION;
            SetStipulation(problem_, 0);
        }
        while (lexem != "{" && lexem != "//#TAGS" && lexem != "//!VARIANTS" && !startsWith(lexem, "//@")) {
            readOption(lexem);
            lexem = nextWithDirectives();
        }
        return lexem;
    }

    void applyDefaultClauses(int moves) {
        const auto found = defaults_.find(moves);
        if (found == defaults_.end()) return;
        for (const std::string& word : found->second) {
            if (UpperAscii(word) != "ALLSOLUTIONS") throw ChessException("Unrecognizable option: " + word);
            problem_.flags |= AllSolutions;
        }
    }

    void readOption(const std::string& lexem) {
        const std::string word = UpperAscii(lexem);
        if (word == "NOMIRROR")
            problem_.flags |= NoMirror;
        else if (word == "ALLSOLUTIONS")
            problem_.flags |= AllSolutions;
        else if (word == "THREADS") {
            const std::string value = next();
            const size_t caret = value.find('^');
            problem_.threads = static_cast<uint8_t>(toInt(std::string_view(value).substr(0, caret)));
            if (caret != std::string::npos)
                problem_.multithreadingLevels =
                    static_cast<uint8_t>(toInt(std::string_view(value).substr(caret + 1)));
        } else if (word == "STOPONDUAL")
            problem_.flags |= StopOnDual;
        else if (word == "STOPON3SOL")
            problem_.flags |= StopOn3Sol;
        else if (word == "MIRRORONLY")
            problem_.flags |= MirrorOnly;
        else if (word == "USEMAINVARIANTASSORTINDICATIONS") {
            problem_.flags |= UseMainVariantAsSortIndications;
            problem_.useMainVariantAsSortIndications = 1;
        } else if (word == "SCHEDULERLEVELS")
            problem_.schedulerLevels = static_cast<int16_t>(toInt(next()));
        else if (word == "NOGLOBREG")
            problem_.flags |= NoGlobalRegister;
        else if (word == "GLOBREGMB")
            problem_.globalRegisterMB = toInt(next());
        else if (word == "GUICHECKBESTDEFENCEANDAUX")
            readGuiCheckCount(GuiCheck);
        else if (word == "GUICHECKBESTDEFENCE")
            readGuiCheckCount(GuiCheckBestDefence);
        else if (word == "GUICHECK")
            readGuiCheckCount(GuiCheck);
        else if (word == "SAFEMODE")
            problem_.flags |= SafeMode;
        else if (word == "ONLYIFAVAIL" || word == "REQUIRES")
            problem_.requiresConditions.insert(next());
        else if (word == "ALLSOLUTIONSREQUIRES")
            problem_.allSolutionsRequires.insert(next());
        else if (word == "REQUIRESSYZYGY")
            problem_.flags |= RequiresSyzygy;
        else if (word == "ALLSOLUTIONSREQUIRESSYZYGY")
            problem_.flags |= AllSolutionsRequiresSyzygy;
        else if (word == "STOPRELAXHEURISTICSONFIRSTSOLUTION")
            problem_.stopRelaxHeuristicsOnFirstSolution = 1;
        else if (word == "LICHESSLEVELS")
            problem_.lichessLevels = toInt(next());
        else if (!readHeuristicOption(word))
            throw ChessException("Opening bracket expected { or unrecognized option encountered: " + word);
    }

    // The count is the next lexem whatever it is; below 1 it counts as 1.
    void readGuiCheckCount(uint16_t flag) {
        problem_.flags |= flag;
        const int count = toInt(next());
        problem_.guiCheckCount = static_cast<uint64_t>(count < 1 ? 1 : count);
    }

    bool readHeuristicOption(const std::string& word) {
        for (const HeuristicName& heuristic : HeuristicNames) {
            if (word != heuristic.name) continue;
            const std::string lexem = next();
            if (lexem == "(") {
                std::string& stored = problem_.heuristicOptions[heuristic.bit];
                for (std::string part = next(); part != ")"; part = next()) stored += part;
            } else if (UpperAscii(lexem) == "OFF") {
                problem_.heuristicOptions[heuristic.bit] = "OFF";
            } else {
                throw ChessException(std::string("Unexpected lexem after ") + heuristic.name +
                                     " (expected opening bracket or OFF)");
            }
            return true;
        }
        return false;
    }

    // 2.-4. Tags, variants, sort indications, in this order; gives the lexem after them.
    std::string readSections(std::string lexem) {
        if (lexem == "//#TAGS") {
            for (lexem = nextWithDirectives(); startsWith(lexem, "//#"); lexem = nextWithDirectives())
                problem_.tags.insert(decode(std::string_view(lexem).substr(3), isUtf8_));
        }
        if (lexem == "//!VARIANTS") {
            for (;;) {
                lexem = nextWithDirectives();
                if (lexem == "//!ENDVARIANTS") {
                    lexem = nextWithDirectives();
                    break;
                }
                if (!startsWith(lexem, "//!")) break;
                TVariant variant =
                    ParseVariantText(decode(std::string_view(lexem).substr(3), isUtf8_), false, languageId_);
                const std::wstring name = variant.name;
                problem_.variants[name] = std::move(variant);
            }
        }
        if (startsWith(lexem, SORT_LINE)) {
            ParseSortIndications(problem_.sortIndications, lexem.substr(SORT_LINE.size()), languageId_);
            lexem = nextWithDirectives();
        }
        return lexem;
    }

    // 5. Between "{" and "}".
    void readBody() {
        std::string word = UpperAscii(ReadIdentifier(cursor_));
        if (word == "D" || word == "DESC" || word == "DESCRIPTION") {
            readDescription();
            word = UpperAscii(ReadIdentifier(cursor_));
        }

        std::string lexem;
        if (word == "FEN") {
            if (next() != ":") throw ChessException("Colon ':' expected after FEN identifier.");
            const std::string field = ReadFenField(cursor_);
            if (field.empty() || !ReadFen(field, problem_.startPosition))
                throw ChessException("Improper FEN code");
            lexem = next();
        } else if (word == "W" || word == "WH" || word == "WHITE") {
            if (next() != ":") throw ChessException("Colon ':' expected after white figures identifier.");
            lexem = UpperAscii(readFigureList(true));
            if (lexem != "B" && lexem != "BL" && lexem != "BLACK")
                throw ChessException("Black figures identifier expected (B, BL or BLACK).");
            if (next() != ":") throw ChessException("Colon expected after black figures identifier.");
            lexem = readFigureList(false);
        } else {
            throw ChessException("White figures identifier expected (W, WH or WHITE).");
        }

        if (UpperAscii(lexem) == "MOVES") {
            if (next() != ":") throw ChessException("Colon expected after Moves section start.");
            readMoves();
            lexem = next();
        }

        const std::string keyword = UpperAscii(lexem);
        if (keyword == "SOLUTION" || keyword == "ANSWER" || keyword == "A") {
            problem_.flags |= HasAnswer;
            readAnswers(problem_.expectedAnswers);
        } else if (keyword == "EXPECTEDSORTWHITEMOVES" || keyword == "EXPECTEDSORTWHITEMOVESONLY") {
            problem_.flags |= HasExpectedSortWhiteMoves;
            if (keyword == "EXPECTEDSORTWHITEMOVESONLY") problem_.flags |= ExpectedSortWhiteMovesOnly;
            readAnswers(problem_.expectedSortWhiteMoves);
        } else if (lexem != "}") {
            throw ChessException("Closing bracket expected.");
        }
    }

    // Raw text up to the line feed (a CR before it belongs to the line end),
    // blanks trimmed at both ends.
    void readDescription() {
        if (next() != ":") throw ChessException("Colon ':' expected after description identifier.");
        const std::string_view text = cursor_.text;
        const size_t lineFeed = text.find('\n', cursor_.pos);
        if (lineFeed == std::string_view::npos) throw ChessException("Unexpected end of file.");
        std::string_view line = text.substr(cursor_.pos, lineFeed - cursor_.pos);
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        while (!line.empty() && line.front() == ' ') line.remove_prefix(1);
        while (!line.empty() && line.back() == ' ') line.remove_suffix(1);
        problem_.description = decode(line, isUtf8_);
        cursor_.pos = lineFeed + 1;
    }

    // "Ke1, Qd1, e2": gives the lexem that ended the list.
    std::string readFigureList(bool white) {
        // An empty list: "}" is the first byte that is no blank.
        const std::string_view text = cursor_.text;
        size_t p = cursor_.pos;
        while (p < text.size() && (text[p] == ' ' || text[p] == '\t' || text[p] == '\n' || text[p] == '\r'))
            ++p;
        if (p < text.size() && text[p] == '}') return next();

        const std::string colourName = white ? "White" : "Black";
        uint8_t* squares = problem_.startPosition.m_aSquares;
        for (;;) {
            const std::string entry = UpperAscii(ReadIdentifier(cursor_));
            uint8_t kind = KIND_PAWN;
            size_t at = 0;
            if (entry.size() == 3) {
                kind = KindFromLetter(entry[0]);
                at = 1;
            } else if (entry.size() != 2) {
                throw ChessException(colourName + " figure specification is invalid: " + entry);
            }
            const char file = entry[at], rank = entry[at + 1];
            if (!isFileLetter(file) || !isRankDigit(rank))
                throw ChessException(colourName + " figure position is invalid: " + entry);
            const uint8_t square = squareFromText(file, rank);
            if (squares[square] != 0)
                throw ChessException(std::string("Field ") + file + rank + " already occupied.");
            squares[square] = static_cast<uint8_t>(kind | (white ? WHITE : BLACK));
            std::string separator = next();
            if (separator != ",") return separator;
        }
    }

    // "Moves:" a chain of positions from the start, White first.
    void readMoves() {
        // The played line is made without the stipulation's limit on plies,
        // but a problem with a stipulation keeps it: the moves are a line
        // played from its diagram, not a new task ("#3" must not become "#128").
        if (problem_.type == PROBLEM_POSITION) problem_.plies = POSITION_PLIES;
        problem_.playedPositions.clear();
        TChessboard& start = problem_.startPosition;
        start.m_shPliesLeft = start.m_shPliesTotal = POSITION_PLIES;
        SetupChessboard(start, true);
        bool white = true;
        for (;;) {
            const size_t back = cursor_.pos;
            const std::string lexem = next();
            if (lexem != "0" && lexem.size() != 2 && lexem.size() != 3) {
                cursor_.pos = back;
                return;
            }
            TMove move;
            if (lexem == "0") {
                if (next() != "-") throw ChessException("Hyphen expected.");
                std::string zero = next();
                if (zero != "0") throw ChessException("Incorrect castling symbol: " + zero);
                bool queenSide = false;
                const size_t beforeHyphen = cursor_.pos;
                if (next() == "-") {
                    zero = next();
                    if (zero != "0") throw ChessException("Incorrect castling symbol: " + zero);
                    queenSide = true;
                } else {
                    cursor_.pos = beforeHyphen;
                }
                const int row = white ? 0 : 7;
                move.from = static_cast<uint8_t>(squareOf(4, row));
                move.to = static_cast<uint8_t>(squareOf(queenSide ? 2 : 6, row));
            } else {
                // A figure letter in front is not looked at.
                const std::string from = UpperAscii(lexem);
                const size_t at = from.size() == 3 ? 1 : 0;
                if (!isFileLetter(from[at]) || !isRankDigit(from[at + 1]))
                    throw ChessException("Invalid 'from' position: " + from);
                move.from = squareFromText(from[at], from[at + 1]);
                const std::string separator = next();
                if (separator != "-" && separator != ":")
                    throw ChessException("Invalid lexem encountered: " + separator);
                const std::string to = UpperAscii(next());
                if ((to.size() != 2 && to.size() != 3) || !isFileLetter(to[0]) || !isRankDigit(to[1]))
                    throw ChessException("Invalid 'to' position: " + to);
                move.to = squareFromText(to[0], to[1]);
                if (to.size() == 3) move.promotion = KindFromLetter(to[2]);
            }
            playMove(move, white);
            white = !white;
        }
    }

    // The child is made by the engine's own makers, so that it carries what
    // they keep; a legal move that a maker refuses for the search's sake
    // (a hopeless line, say) takes the board rebuilt from its squares instead.
    void playMove(TMove move, bool white) {
        const TChessboard& parent = problem_.currentPosition();
        TChessboard rebuilt;
        if (!PlayMove(parent, rebuilt, move)) throw ChessException("Illegal move");
        problem_.playedPositions.emplace_back();
        TChessboard& child = problem_.playedPositions.back();
        CopyToChild(child, parent);
        TMove made = move;
        const bool accepted =
            white ? MakeWhiteMove(child, made) : MakeBlackMove(child, made, true) == BLACK_MOVE_MADE;
        if (!accepted) child = rebuilt;
    }

    // Moves up to "}"; commas between them are optional, except after castling.
    void readAnswers(std::vector<TMove>& target) {
        std::string lexem = next();
        if (lexem != ":") throw ChessException("Colon expected after correct answer identifier.");
        lexem = next();
        for (;;) {
            if (lexem == "}") return;
            if (lexem == ",") lexem = next();
            target.emplace_back();
            const std::string word = UpperAscii(lexem);
            if (word.size() < 2) {
                if (word != "0") throw ChessException("Invalid correct answer ('from' element): " + word);
                if (next() != "-")
                    throw ChessException("Hyphen expected to separate correct answer elements");
                std::string zero = next();
                if (zero != "0") throw ChessException("Invalid correct answer: " + zero);
                target.back().from = 4;
                target.back().to = 6;
                lexem = next();
                if (lexem == "-") {
                    zero = next();
                    if (zero != "0") throw ChessException("Invalid correct answer: " + zero);
                    target.back().to = 2;
                    lexem = next();
                }
                if (lexem == "}") return;
                if (lexem != ",")
                    throw ChessException(
                        "Comma should separate various solutions of the problem, but encountered: " + lexem);
                continue;
            }
            const std::string from = word.size() > 2 ? word.substr(1) : word;
            if (from.size() != 2) throw ChessException("Invalid correct answer ('from' element): " + word);
            // By arithmetic alone, as the answer is only compared with moves found.
            target.back().from = squareFromText(from[0], from[1]);
            const std::string separator = next();
            if (separator != "-" && separator != ":")
                throw ChessException("Hyphen expected to separate correct answer elements");
            const std::string to = UpperAscii(ReadIdentifier(cursor_));
            if (to.size() != 2 && to.size() != 3)
                throw ChessException("Invalid correct answer ('to' element): " + to);
            target.back().to = squareFromText(to[0], to[1]);
            if (to.size() == 3) target.back().promotion = KindFromLetter(to[2]);
            lexem = next();
        }
    }

    // The starting position set up strictly, and its copy for later comparisons.
    void finish() {
        TChessboard& start = problem_.startPosition;
        SetupChessboard(start, true);
        start.m_pProblem = &problem_;
        start.m_shPliesLeft = start.m_shPliesTotal = problem_.plies;
        problem_.referencePosition = start;
    }

    TChessProblem& problem_;
    TextCursor& cursor_;
    bool isUtf8_;
    const DefaultClauses& defaults_;
    int languageId_;
};

std::string formatInt(long long value) {
    return std::to_string(value);
}

std::string moveText(const TChessboard& position, const TMove& move, bool pawnSidewaysCaptures) {
    const uint8_t figure = move.from < 64 ? position.m_aSquares[move.from] : 0;
    bool capture = move.to < 64 && position.m_aSquares[move.to] != 0;
    if (pawnSidewaysCaptures && (figure & KIND_MASK) == KIND_PAWN && move.from < 64 && move.to < 64 &&
        colOf(move.from) != colOf(move.to))
        capture = true;
    return FormatLongMove(move, figure, capture);
}

// The reader takes the squares of an answer by arithmetic alone, so an answer
// may name a square off the board, or no move at all. Such an answer can
// match no move, and no text of it would read back: it is not written.
bool answerWritable(const TMove& move) {
    return move.from < 64 && move.to < 64 && move.from != move.to;
}

// The same for sort indications: one with a square off the board matches no
// move, and its text would name another square or none.
SortIndications writableIndications(const SortIndications& map) {
    SortIndications writable;
    for (const auto& [number, records] : map)
        for (const SortIndication& record : records)
            if (record.to < 64 && (record.from < 64 || record.from == ANY_SQUARE))
                writable[number].push_back(record);
    return writable;
}

void writeProblem(std::string& out, const TChessProblem& problem, bool withComments) {
    out += "\n";
    // Header and options.
    switch (problem.type) {
    case PROBLEM_DIRECT_MATE:
        out += formatInt(problem.id) + " #" + formatInt((problem.stipulationPlies + 1) / 2);
        break;
    case PROBLEM_SELFMATE:
        out += formatInt(problem.id) + " s#" + formatInt(problem.stipulationPlies / 2);
        break;
    case PROBLEM_POSITION:
        out += formatInt(problem.id) + " ";
        break;
    default:
        break;
    }
    const uint16_t flags = problem.flags;
    if (flags & NoMirror) out += " NoMirror";
    if (flags & MirrorOnly) out += " MirrorOnly";
    if (flags & AllSolutions) out += " AllSolutions";
    if (flags & StopOnDual) out += " StopOnDual";
    if (flags & StopOn3Sol) out += " StopOn3Sol";
    if (flags & UseMainVariantAsSortIndications) out += " UseMainVariantAsSortIndications";
    // The count is always written: the reader takes the lexem behind these
    // keywords as their count, so without it a saved file would not read back.
    const std::string count = " " + std::to_string(problem.guiCheckCount > 1 ? problem.guiCheckCount : 1);
    if (flags & GuiCheck) out += " GUICHECK" + count;
    if (flags & GuiCheckBestDefence) out += " GUICHECKBESTDEFENCE" + count;
    if (problem.threads < 255) out += " THREADS " + formatInt(problem.threads);
    if (flags & SafeMode) out += " SAFEMODE";
    if (flags & RequiresSyzygy) out += " RequiresSyzygy";
    if (flags & AllSolutionsRequiresSyzygy) out += " AllSolutionsRequiresSyzygy";
    for (const std::string& condition : problem.requiresConditions) out += " Requires " + condition;
    out += "\n";

    if (!problem.tags.empty()) {
        out += "//#TAGS\n";
        for (const std::wstring& tag : problem.tags) out += "//#" + WideToUtf8(tag) + "\n";
    }
    if (!problem.variants.empty()) {
        out += "//!VARIANTS\n";
        for (const auto& [name, variant] : problem.variants)
            out += "//!" +
                   WideToUtf8(FormatVariantText(variant, withComments, 1, false, nullptr, nullptr, nullptr,
                                                false, LANGUAGE_ENGLISH)) +
                   "\n";
        out += "//!ENDVARIANTS\n";
    }
    const SortIndications indications = writableIndications(problem.sortIndications);
    if (!indications.empty()) out += "//@SortIndications: " + FormatSortIndications(indications) + "\n";

    out += "{\n";
    if (!problem.description.empty()) out += "\tDescription: " + WideToUtf8(problem.description) + "\n";
    out += "\tFEN: " + WriteFen(problem.startPosition, true) + "\n";
    // The moves come ahead of the answer, in the order the reader takes them;
    // they are written for every type, so that no played line is lost.
    if (!problem.playedPositions.empty()) {
        out += "   Moves:    ";
        const TChessboard* parent = &problem.startPosition;
        for (const TChessboard& position : problem.playedPositions) {
            out += " " + moveText(*parent, position.m_LastMove, true);
            parent = &position;
        }
        out += "\n";
    }
    if (flags & HasAnswer) {
        out += "\tAnswer: ";
        bool first = true;
        for (const TMove& answer : problem.expectedAnswers) {
            if (!answerWritable(answer)) continue;
            if (!first) out += ", ";
            out += " " + moveText(problem.startPosition, answer, false);
            first = false;
        }
        out += "\n";
    }
    out += "}\n";
}

void writeConsole(const ProblemFileSettings& settings, const std::string& text) {
    if (settings.console) *settings.console << text;
}

} // namespace

bool ReadEncodingMark(TextCursor& cursor) {
    // Editors that save UTF-8 often put a byte-order mark first: it says the
    // same as the "UTF-8" line, which may still follow it.
    constexpr std::string_view BYTE_ORDER_MARK = "\xEF\xBB\xBF";
    const bool marked = cursor.text.substr(cursor.pos, BYTE_ORDER_MARK.size()) == BYTE_ORDER_MARK;
    if (marked) cursor.pos += BYTE_ORDER_MARK.size();
    size_t p = cursor.pos;
    while (p < cursor.text.size() && (cursor.text[p] == ' ' || cursor.text[p] == '\t')) ++p;
    if (cursor.text.substr(p, 5) != "UTF-8") return marked;
    cursor.pos = p + 5;
    return true;
}

DefaultClauses ReadDefaultClauses(TextCursor& cursor) {
    DefaultClauses clauses;
    for (;;) {
        const size_t back = cursor.pos;
        const std::string lexem = ReadLexemCut(cursor, true, true);
        if (!startsWith(lexem, "//!default")) {
            cursor.pos = back;
            return clauses;
        }
        std::vector<std::string> words;
        size_t start = 0;
        for (size_t blank = lexem.find(' '); blank != std::string::npos; blank = lexem.find(' ', start)) {
            words.push_back(lexem.substr(start, blank - start));
            start = blank + 1;
        }
        words.push_back(lexem.substr(start));
        if (words.size() != 3) throw ChessException("Incorrect 'default' clause.");
        const int moves =
            words[1].size() > 1 && words[1][0] == '#' ? toInt(std::string_view(words[1]).substr(1)) : 0;
        if (moves == 0) throw ChessException("Error in 'default' clause.");
        clauses[moves].push_back(words[2]);
    }
}

size_t ParseProblem(TChessProblem& problem, std::string_view text, size_t pos, bool isUtf8,
                    const DefaultClauses& defaults, int languageId) {
    TextCursor cursor{text, pos};
    try {
        BlockReader(problem, cursor, isUtf8, defaults, languageId).Read();
    } catch (const std::exception& e) {
        throw ChessException("Error parsing problem " + std::to_string(problem.id) + ": " + e.what());
    }
    return cursor.pos;
}

namespace {

// The blocks of ReadProblemText; `read` counts the blocks stored.
void readProblemBlocks(std::string_view text, ProblemMap& problems, const ProblemFileSettings& settings,
                       std::set<std::wstring>& allTags, int& read, bool& inBlocks) {
    TextCursor cursor{text, 0};
    const bool isUtf8 = ReadEncodingMark(cursor);
    const DefaultClauses defaults = ReadDefaultClauses(cursor);
    inBlocks = true;
    for (;;) {
        auto problem = std::make_unique<TChessProblem>(settings.defaults);
        cursor.pos = ParseProblem(*problem, text, cursor.pos, isUtf8, defaults, settings.languageId);
        ++read;
        {
            std::unique_lock<std::mutex> lock;
            if (settings.listLock) lock = std::unique_lock<std::mutex>(*settings.listLock);
            const int32_t id = problem->id;
            if (problems.count(id))
                writeConsole(settings,
                             "WARINING: Problem id=" + std::to_string(id) + " redefinition - overwriting.\n");
            TranslateMainVariantName(problem->variants, settings.languageId);
            allTags.insert(problem->tags.begin(), problem->tags.end());
            problems[id] = std::move(problem);
            writeConsole(settings, "Problem " + std::to_string(id) + " read from file.\n");
        }
        // Only a look-ahead: the next block starts before it.
        const size_t back = cursor.pos;
        if (ReadLexem(cursor, false, false).empty()) return;
        cursor.pos = back;
    }
}

} // namespace

// A block is counted at the "{" that opens its body. Whatever the reader does
// not take as a body's text is passed over as the reader does: "/* */"
// comments and "//" lines (the lines of tags, variants and sort indications
// among them, whose braces open no body), and the description, which the
// reader takes raw up to the end of its line. Bodies do not nest, so a "{"
// inside a body that lacks its "}" opens the next block, and a body that the
// text ends in counts too: a broken block counts once, whatever its error.
int CountProblemBlocks(std::string_view text) {
    const auto lineEnd = [text](size_t from) {
        const size_t lineFeed = text.find('\n', from);
        return lineFeed == std::string_view::npos ? text.size() : lineFeed;
    };
    int blocks = 0;
    bool inBody = false;
    bool bodyStart = false; // only blanks and comments since the "{"
    size_t p = 0;
    while (p < text.size()) {
        const auto c = static_cast<unsigned char>(text[p]);
        const char second = p + 1 < text.size() ? text[p + 1] : '\0';
        // 1. Comments, in a body and outside.
        if (c == '/' && second == '*') {
            const size_t close = text.find("*/", p + 2);
            p = close == std::string_view::npos ? text.size() : close + 2;
            continue;
        }
        if (c == '/' && second == '/') {
            p = lineEnd(p);
            continue;
        }
        // 2. A body opens.
        if (c == '{') {
            ++blocks;
            inBody = bodyStart = true;
            ++p;
            continue;
        }
        if (!inBody) {
            ++p;
            continue;
        }
        if (c == '}') {
            inBody = false;
            ++p;
            continue;
        }
        // 3. The description, first in a body, is raw text up to the line's end.
        if (bodyStart && IsLexemAlnum(c)) {
            bodyStart = false;
            size_t end = p;
            while (end < text.size() && IsLexemAlnum(static_cast<unsigned char>(text[end]))) ++end;
            const std::string word = UpperAscii(text.substr(p, end - p));
            size_t colon = end;
            while (colon < text.size() && IsLexemSpace(static_cast<unsigned char>(text[colon]))) ++colon;
            const bool description = word == "D" || word == "DESC" || word == "DESCRIPTION";
            p = description && colon < text.size() && text[colon] == ':' ? lineEnd(colon) : end;
            continue;
        }
        if (!IsLexemSpace(c)) bodyStart = false;
        ++p;
    }
    return blocks;
}

void ReadProblemText(std::string_view text, ProblemMap& problems, const ProblemFileSettings& settings,
                     std::set<std::wstring>& allTags, ProblemLoadReport* report) {
    int read = 0;
    bool inBlocks = false; // past the encoding mark and the default clauses
    try {
        readProblemBlocks(text, problems, settings, allTags, read, inBlocks);
    } catch (const std::exception& error) {
        if (report) {
            report->whole = false;
            report->problemsRead = read;
            report->problemsInFile = CountProblemBlocks(text);
            // The block that failed is no block read, even when it has no body to count.
            report->problemsNotRead = std::max(report->problemsInFile - read, inBlocks ? 1 : 0);
            report->error = error.what();
        }
        throw;
    }
    if (report) {
        report->whole = true;
        report->problemsRead = read;
        report->problemsInFile = CountProblemBlocks(text);
        report->problemsNotRead = 0;
        report->error.clear();
    }
}

fs::path CommentedFilePath(const fs::path& path) {
    const std::string text = path.string();
    if (!text.empty() && text.back() == 'x') return path;
    return fs::path(text + "x");
}

fs::path PlainFilePath(const fs::path& path) {
    std::string text = path.string();
    if (!text.empty() && text.back() == 'x') text.pop_back();
    return fs::path(text);
}

bool ReadWholeFile(const fs::path& path, std::string& bytes) {
    std::error_code error;
    if (fs::is_directory(path, error)) return false;
    std::ifstream in(path, std::ios::binary);
    if (!in) return false;
    std::ostringstream buffer;
    buffer << in.rdbuf();
    if (in.bad()) return false;
    bytes = buffer.str();
    return true;
}

void LoadProblemFile(const fs::path& path, ProblemMap& problems, bool createIfMissing,
                     const ProblemFileSettings& settings, std::set<std::wstring>& allTags,
                     ProblemLoadReport* report) {
    const fs::path actual = settings.commentCompatibilityMode ? CommentedFilePath(path) : path;
    if (report) *report = ProblemLoadReport{};
    const auto cannotOpen = [&actual, report] {
        const std::string text = "Error opening file: " + actual.string();
        if (report) *report = ProblemLoadReport{false, 0, 0, 0, text};
        return ChessException(text);
    };
    std::string bytes;
    if (!ReadWholeFile(actual, bytes)) {
        std::error_code error;
        const bool missing = !fs::exists(actual, error) || fs::is_directory(actual, error);
        if (!createIfMissing || !missing) throw cannotOpen();
        CreateDefaultProblemFile(actual, settings);
        if (!ReadWholeFile(actual, bytes)) throw cannotOpen();
    }
    ReadProblemText(bytes, problems, settings, allTags, report);
}

std::string WriteProblemFileText(const ProblemMap& problems, bool withComments) {
    std::string out = "UTF-8\n\n";
    for (const auto& [id, problem] : problems)
        if (problem) writeProblem(out, *problem, withComments);
    return out;
}

void SaveProblemFile(const fs::path& path, const ProblemMap& problems, const ProblemFileSettings& settings) {
    if (settings.commentCompatibilityMode) {
        WriteFileSafely(CommentedFilePath(path), WriteProblemFileText(problems, true));
        WriteFileSafely(PlainFilePath(path), WriteProblemFileText(problems, false));
    } else {
        WriteFileSafely(path, WriteProblemFileText(problems, true));
    }
}

std::string DefaultProblemFileText(int languageId) {
    static const std::wstring descriptions[3] = {
        L"Kliknij, aby zmieni\u0107 opis problemu",
        L"Click here to change problem description",
        L"\u041d\u0430\u0442\u0438\u0441\u043d\u0456\u0442\u044c \u0442\u0443\u0442, \u0449\u043e\u0431 "
        L"\u0437\u043c\u0456\u043d\u0438\u0442\u0438 \u043e\u043f\u0438\u0441 "
        L"\u043f\u0440\u043e\u0431\u043b\u0435"
        L"\u043c\u0438",
    };
    const int language = languageId >= 0 && languageId <= 2 ? languageId : LANGUAGE_ENGLISH;
    return "UTF-8\n1 #2\n{\n\tDesc: " + WideToUtf8(descriptions[language]) +
           "\n\tWhite: Ke1\n\tBlack: Ke8\n}\n";
}

void CreateDefaultProblemFile(const fs::path& path, const ProblemFileSettings& settings) {
    const std::string text = DefaultProblemFileText(settings.languageId);
    if (settings.commentCompatibilityMode) {
        WriteFileSafely(CommentedFilePath(path), text);
        WriteFileSafely(PlainFilePath(path), text);
    } else {
        WriteFileSafely(path, text);
    }
}

} // namespace zorvane

#include "engine/heuristics_dialog.h"

#include "engine/heuristics_catalogue.h"

#include "core/chess_exception.h"
#include "core/fen.h"
#include "core/make_move.h"
#include "core/piece.h"
#include "core/position_id.h"
#include "engine/heuristic_bits.h"
#include "problems/notation.h"
#include "problems/text_encoding.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <deque>
#include <iterator>
#include <limits>
#include <optional>
#include <string_view>
#include <utility>

namespace zorvane {
namespace {

// The refusals, in the order of the checks.
constexpr LocalizedText BAND_OPTIONS_CONFLICT{
    L"Konflikt heurystyk: wybierz tylko jedną z 'Nie wypuszczaj czarnego króla z (pod)pasa' i '(Nie pozwól "
    L"czarnemu królowi) ruszać się, chyba że stoi na pasie'",
    L"Conflict of heuristics: select only one of 'Don't let black king out of (sub)band' and '(Don't let "
    L"black "
    L"king) move unless on band'",
    L"Конфлікт евристик: виберіть лише одну з 'Не випускати чорного короля зі (суб)смуги' та '(Не дозволяти "
    L"чорному королю) ходити, хіба що він стоїть на смузі'"};
constexpr LocalizedText KING_MOVE_CONFLICT{
    L"Konflikt heurystyk (\"Nie pozwól czarnemu królowi się ruszać\" i \"Nie wypuszczaj czarnego króla z "
    L"pasa "
    L"i/lub podpasa\") ",
    L"Conflict of heuristics (\"Don't let black king move\" and \"Don't let black king out of band and/or "
    L"subband\") ",
    L"Конфлікт евристик (\"Не дозволяти чорному королю ходити\" та \"Не випускати чорного короля зі смуги "
    L"та/або субсмуги\") "};
constexpr LocalizedText EXCEPTIONS_WITHOUT_KING_MOVE{
    L"Heurystyka 'Nie pozwól czarnemu królowi się ruszać' jest wyłączona, a 'dopuść wyj.' jest "
    L"włączone.\nWymaga to poprawienia.",
    L"Heuristics 'Don't let black king move' is off, while 'allow exc' is on.\nIt requires correction.",
    L"Евристику 'Не дозволяти чорному королю ходити' вимкнено, а 'дозволити викл.' увімкнено.\nЦе "
    L"потребує виправлення."};
constexpr LocalizedText CORNER_DISTANCE_INVALID{
    L"Niepoprawna maksymalna odległość od narożnika w parametrze heurystyki 'Trzymaj króla blisko narożnika'",
    L"Invalid maximum distance from corner in the parameter of heuristics 'Keep king near corner'",
    L"Неправильна максимальна відстань від кута в параметрі евристики 'Тримати короля біля кута'"};
constexpr LocalizedText FIGURES_TO_CAPTURE_INVALID{
    L"Niepoprawna liczba figur do zbicia dla łagodzenia heurystyk pasa",
    L"Invalid number of figures to capture for relaxation of band heuristics",
    L"Неправильна кількість фігур, які треба взяти для послаблення евристик смуги"};
constexpr LocalizedText DEFER_MOVES_INVALID{L"Niepoprawna liczba ruchów odroczenia",
                                            L"Invalid number of moves to defer",
                                            L"Неправильна кількість ходів відкладення"};
constexpr LocalizedText DEFER_WITHOUT_DYNAMIC_OPTION{
    L"Odroczenie sprawdzenia ma sens tylko wtedy, gdy wybrano 'przy zaawansowanym pionie' lub 'przy zbiciu "
    L"figury'.",
    L"Defer check is meaningful only when 'on advanced pawn' or 'on figure captured' selected.",
    L"Відкладення перевірки має сенс лише тоді, коли вибрано 'при просунутому пішаку' або 'при взятті "
    L"фігури'."};
constexpr LocalizedText LOSE_FIGURES_OPTIONS_CONFLICT{
    L"Można wybrać tylko jedną z dodatkowych opcji heurystyki Nie trać żadnych figur (wł. piony + wł. piony "
    L"przed promocją).",
    L"Only one of additional options of Don't lose any figures (incl. pawns + incl.promotable pawns) can be "
    L"selected.",
    L"Можна вибрати лише одну з додаткових опцій евристики Не втрачати жодних фігур (вкл. пішаки + вкл. "
    L"пішаки перед перетворенням)."};
constexpr LocalizedText MAIN_DIAGONAL_FIGURE_IMPROPER{
    L"Niepoprawne pole (Czarna figura, która nie może opuścić głównej przekątnej)",
    L"Improper field (Black figure not let leave main diagonal)",
    L"Неправильне поле (Чорна фігура, якій не можна залишати головну діагональ)"};
// "Improper field:", then the field's label ending in its number 1 to 8.
constexpr LocalizedText IMPROPER_FIELD_HEAD{L"Niepoprawne pole:", L"Improper field:", L"Неправильне поле:"};
constexpr LocalizedText BLOCKED_FIGURE_LABEL{L" Figura, która nie może opuścić blokady nr ",
                                             L" Figure not let unblock #",
                                             L" Фігура, якій не можна залишати блокаду № "};
constexpr LocalizedText KEY_FIGURE_INVALID{L"Niepoprawna kluczowa biała figura", L"Invalid key white figure",
                                           L"Неправильна ключова біла фігура"};
constexpr LocalizedText PINNED_FIGURE_NOT_FOUND{
    L"Niepoprawna kluczowa biała figura (nie znaleziono związanej bierki)",
    L"Invalid key white figure (pinned piece not found)",
    L"Неправильна ключова біла фігура (не знайдено зв’язаної фігури)"};
constexpr LocalizedText KEY_LINE_INVALID{L"Niepoprawne pole Kluczowa linia", L"Invalid field Key line",
                                         L"Неправильне поле Ключова лінія"};
constexpr LocalizedText KEY_DIAGONAL_INVALID{L"Niepoprawne pole Kluczowa przekątna",
                                             L"Invalid field Key diagonal",
                                             L"Неправильне поле Ключова діагональ"};
constexpr LocalizedText INVALID_MOVE_HEAD{L"Niepoprawny ruch: ", L"Invalid move: ", L"Неправильний хід: "};
constexpr LocalizedText SEA_SNAKE_WITH_FFM{L"FindForcedMate nie może być używane razem z SeaSnake.",
                                           L"FindForcedMate cannot be used together with SeaSnake.",
                                           L"FindForcedMate не можна використовувати разом із SeaSnake."};
constexpr LocalizedText FFM_RELAXATIONS_INVALID{
    L"Niepoprawna wartość w polu z liczbą łagodzeń heurystyk dla FFM (FindForcedMate)",
    L"Invalid value in field with number of heuristics relaxations for FFM (FindForcedMate)",
    L"Неправильне значення в полі з кількістю послаблень евристик для FFM (FindForcedMate)"};
constexpr LocalizedText FFM_RELAXATIONS_TOO_MANY_HEAD{
    L"Liczba łagodzeń heurystyk dla FFM jest zbyt duża (max = ",
    L"Number of heuristics relaxations for FFM is too large (max = ",
    L"Кількість послаблень евристик для FFM завелика (max = "};
constexpr LocalizedText FFM_RELAXATIONS_TOO_MANY_TAIL{L" => #5)", L" => #5)", L" => #5)"};
constexpr LocalizedText FFM_RELAXATIONS_IGNORED_HEAD{
    L"Uwaga: łagodzenie heurystyk jest wyłączone, więc ustawienie dla FFM (",
    L"Note: relaxation of heuristics is off, so setting for FFM (",
    L"Примітка: послаблення евристик вимкнено, тому налаштування для FFM ("};
constexpr LocalizedText FFM_RELAXATIONS_IGNORED_TAIL{
    L" raz(y)) zostanie zignorowane", L" time(s)) will be ignored", L" раз(и)) буде проігноровано"};
// The square fields' own fault: a text that names no square, or a figure
// letter that does not fit the man on it.
constexpr LocalizedText INVALID_PIECE_HEAD{L"Niepoprawna bierka (", L"Invalid piece (",
                                           L"Неправильна фігура ("};
constexpr LocalizedText CLOSING_PARENTHESIS{L")", L")", L")"};

// Largest typed number the read keeps apart; anything beyond counts as it.
constexpr long long TYPED_NUMBER_CEILING = 1'000'000'000;
constexpr int MAX_CORNER_SQUARES = 5;
constexpr int MAX_CORNER_MOVES = 2;

ComposedText composed(const LocalizedText& text) {
    return {std::wstring(text.polish), std::wstring(text.english), std::wstring(text.ukrainian)};
}

ComposedText& operator+=(ComposedText& text, const LocalizedText& more) {
    text.polish += more.polish;
    text.english += more.english;
    text.ukrainian += more.ukrainian;
    return text;
}

// The same words, a number or a typed text, in every language.
ComposedText& operator+=(ComposedText& text, std::wstring_view same) {
    text.polish += same;
    text.english += same;
    text.ukrainian += same;
    return text;
}

// `head`, the same middle in every language, then `tail`.
ComposedText composed(const LocalizedText& head, std::wstring_view middle, const LocalizedText& tail = {}) {
    ComposedText result = composed(head);
    result += middle;
    result += tail;
    return result;
}

ComposedText invalidPiece(const std::string& text) {
    return composed(INVALID_PIECE_HEAD, Utf8ToWide(text), CLOSING_PARENTHESIS);
}

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

std::string trimmed(std::string_view text) {
    while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
    return std::string(text);
}

// An integer as the C library's atoi reads it: blanks, a sign, the digits up
// to the first other character; 0 when there are none.
long long leadingInteger(std::string_view text) {
    std::size_t at = 0;
    while (at < text.size() && isBlank(text[at])) ++at;
    const bool negative = at < text.size() && text[at] == '-';
    if (at < text.size() && (text[at] == '-' || text[at] == '+')) ++at;
    long long value = 0;
    for (; at < text.size() && std::isdigit(static_cast<unsigned char>(text[at])); ++at)
        value = std::min(value * 10 + (text[at] - '0'), TYPED_NUMBER_CEILING);
    return negative ? -value : value;
}

bool allDigits(std::string_view text) {
    if (text.empty()) return false;
    for (const char c : text)
        if (!std::isdigit(static_cast<unsigned char>(c))) return false;
    return true;
}

// A square field: blank for none, a square's name, or a figure letter
// (English or Polish) before the square of a man of that kind. Nothing when
// the text is none of these.
struct SquareField {
    bool read = false;
    int square = NO_SQUARE;
};
SquareField readSquareField(const TChessboard& position, const std::string& text) {
    const std::string t = trimmed(text);
    if (t.empty()) return {true, NO_SQUARE};
    if (t.size() == 2) {
        const std::optional<int> square = ParseSquareName(t);
        return square ? SquareField{true, *square} : SquareField{};
    }
    if (t.size() != 3) return {};
    const std::optional<int> square = ParseSquareName(std::string_view(t).substr(1));
    if (!square) return {};
    try {
        if (KindFromLetter(t[0]) != (position.m_aSquares[*square] & KIND_MASK)) return {};
    } catch (const ChessException&) {
        return {};
    }
    return {true, *square};
}

// One move of a typed list and the position it reached.
struct PlayedMove {
    TMove move;
    std::string positionId;
};

// A typed move on `position`: long notation, or short notation that names
// one legal move.
std::optional<TMove> typedMove(const TChessboard& position, const std::string& word) {
    try {
        const std::optional<std::string> longText = ConvertShortToLong(position, word);
        return ParseMoveOnBoard(position, longText.value_or(word));
    } catch (const ChessException&) {
        return std::nullopt;
    }
}

// Plays the blank-separated moves of `text` one after the other from `start`
// with the engine's own move makers, so that the positions are those the
// search will meet; a move they refuse is as good as illegal to it. On a bad
// word, `badWord` holds it and nothing is returned.
std::optional<std::vector<PlayedMove>> playMoves(const TChessboard& start, const std::string& text,
                                                 std::string& badWord) {
    std::deque<TChessboard> line(1, start); // a deque keeps each parent where its child points
    line.front().m_pThread = nullptr;       // the capture notes of a solve are not ours to write
    std::vector<PlayedMove> played;
    std::size_t at = 0;
    while (true) {
        while (at < text.size() && isBlank(text[at])) ++at;
        if (at == text.size()) return played;
        std::size_t end = at;
        while (end < text.size() && !isBlank(text[end])) ++end;
        const std::string word = text.substr(at, end - at);
        at = end;

        const TChessboard& parent = line.back();
        std::optional<TMove> move = typedMove(parent, word);
        TChessboard child;
        CopyToChild(child, parent);
        const bool made =
            move && (parent.whiteToMove() ? MakeWhiteMove(child, *move)
                                          : MakeBlackMove(child, *move, false) != BLACK_MOVE_ILLEGAL);
        if (!made) {
            badWord = word;
            return std::nullopt;
        }
        line.push_back(child);
        played.push_back({*move, ToAlphanum6(ChessboardIdFromSquares(child.m_aSquares))});
    }
}

class DialogReader {
  public:
    DialogReader(TChessboard& position, TSpecialHeuristicsParams& params, SolveWideHeuristicParams& solveWide,
                 const HeuristicsDialogControls& controls)
        : position_(position), params_(params), solveWide_(solveWide), c_(controls) {}

    HeuristicsDialogResult read() {
        using Step = bool (DialogReader::*)();
        static constexpr Step STEPS[] = {
            &DialogReader::bandOptions,
            &DialogReader::kingMoveOptions,
            &DialogReader::cornerOptions,
            &DialogReader::edgeBets,
            &DialogReader::dynamicSwitches,
            &DialogReader::dynamicNumbers,
            &DialogReader::figureBets,
            &DialogReader::mainDiagonal,
            &DialogReader::promotedAndChecks,
            &DialogReader::unblockList,
            &DialogReader::endgameBets,
            &DialogReader::keyWhiteFigure,
            &DialogReader::whitePlayBets,
            &DialogReader::keyLineDiagonal,
            &DialogReader::seaSnake,
            &DialogReader::zugzwang,
            &DialogReader::passes,
            &DialogReader::findForcedMate,
            &DialogReader::findForcedMateCompany,
        };
        static_assert(std::size(STEPS) == 19);
        for (const Step step : STEPS)
            if (!(this->*step)()) return std::move(result_);
        // The dialog fixes the whole set: bits without a control stay off.
        position_.m_uHeuristics = word_;
        result_.ok = true;
        return std::move(result_);
    }

  private:
    bool fail(ComposedText message) {
        result_.fault = std::move(message);
        return false;
    }
    bool fail(const LocalizedText& message) { return fail(composed(message)); }
    void turnOn(uint32_t flag, bool on) {
        if (on) word_ |= flag;
    }

    // 1. Band and "move unless on the edge" are two forms of one bet.
    bool bandOptions() {
        if (c_.keepKingWithinExtEdge && c_.extEdgeMoveUnlessOnEdge) return fail(BAND_OPTIONS_CONFLICT);
        return true;
    }

    // 2. A king that may not move need not be kept on the edge; its
    //    exceptions mean nothing without it.
    bool kingMoveOptions() {
        if (c_.dontLetKingMove && c_.keepKingOnEdge) return fail(KING_MOVE_CONFLICT);
        if (!c_.dontLetKingMove && c_.allowKingMoveExceptions) return fail(EXCEPTIONS_WITHOUT_KING_MOVE);
        return true;
    }

    // 3. Corner squares, and the corner distance: squares kept positive,
    //    king moves negative.
    bool cornerOptions() {
        params_.m_bInclCornerSquares = c_.inclCornerSquares;
        if (!c_.keepKingNearCorner) {
            params_.m_cCornerDistance = 0;
            return true;
        }
        const bool moves = c_.cornerDistanceUnit == CornerDistanceUnit::Moves;
        const long long distance = leadingInteger(c_.cornerDistance);
        if (distance < 1 || distance > (moves ? MAX_CORNER_MOVES : MAX_CORNER_SQUARES))
            return fail(CORNER_DISTANCE_INVALID);
        params_.m_cCornerDistance = static_cast<int8_t>(moves ? -distance : distance);
        turnOn(SH_KEEPKINGNEARCORNER, true);
        return true;
    }

    // 4. Each sub-option alone turns its bet on.
    bool edgeBets() {
        turnOn(SH_KEEPKINGONTHEEDGE, c_.dontLetKingMove || c_.keepKingOnEdge);
        params_.m_bKingMoveStrict = c_.dontLetKingMove;
        params_.m_bKingMoveExceptions = c_.dontLetKingMove && c_.allowKingMoveExceptions;
        turnOn(SH_KEEPKINGWITHINEXTEDGE, c_.keepKingWithinExtEdge || c_.extEdgeMoveUnlessOnEdge);
        params_.m_bExtEdgeMoveUnlessOnEdge = c_.extEdgeMoveUnlessOnEdge;
        turnOn(SH_ASSERTBLACKKINGSURROUNDED, c_.assertKingSurrounded || c_.surroundedStrict);
        params_.m_bSurroundedStrict = c_.surroundedStrict;
        return true;
    }

    // 5. The dynamic relaxation's switches.
    bool dynamicSwitches() {
        params_.m_bDynRelaxExtEdgeOnly = c_.dynRelaxExtEdgeOnly;
        params_.m_bSkipDeferIfBalanceFixed = c_.skipDeferIfBalanceFixed;
        params_.m_bAutoDynRelax = c_.autoDynRelax;
        params_.m_bDynRelaxOnAdvancedPawn = c_.dynRelaxOnAdvancedPawn;
        return true;
    }

    // 6. A 0 counts only when typed as "0"; a defer needs something to
    //    relax on. Numbers beyond the field's width are refused too.
    bool dynamicNumbers() {
        const long long figures = leadingInteger(c_.dynRelaxFiguresCaptured);
        if ((figures == 0 && c_.dynRelaxFiguresCaptured != "0") || figures < 0 ||
            figures > std::numeric_limits<uint8_t>::max())
            return fail(FIGURES_TO_CAPTURE_INVALID);
        params_.m_nDynRelaxFiguresCaptured = static_cast<uint8_t>(figures);
        const long long defer = leadingInteger(c_.deferMoves);
        if ((defer == 0 && c_.deferMoves != "0") || defer < 0 || defer > std::numeric_limits<uint16_t>::max())
            return fail(DEFER_MOVES_INVALID);
        params_.m_wDeferMoves = static_cast<uint16_t>(defer);
        if (params_.m_wDeferMoves > 0 && !params_.m_bDynRelaxOnAdvancedPawn &&
            params_.m_nDynRelaxFiguresCaptured == 0)
            return fail(DEFER_WITHOUT_DYNAMIC_OPTION);
        return true;
    }

    // 7. Kings near, don't recede, save queen/rook; don't lose figures and
    //    which of White's men count.
    bool figureBets() {
        turnOn(SH_AREKINGSNEAR, c_.areKingsNear);
        turnOn(SH_DONTRECEDEBLACKKING, c_.dontRecedeBlackKing);
        turnOn(SH_SAVEQUEEN_ROOK, c_.saveQueenRook);
        if (c_.loseFiguresInclPawns && c_.loseFiguresInclPromotable)
            return fail(LOSE_FIGURES_OPTIONS_CONFLICT);
        turnOn(SH_DONTLOSEANYFIGURES,
               c_.dontLoseAnyFigures || c_.loseFiguresInclPawns || c_.loseFiguresInclPromotable);
        params_.m_nLoseFiguresMode = c_.loseFiguresInclPawns ? 1 : c_.loseFiguresInclPromotable ? 2 : 0;
        return true;
    }

    // 8. The black figure kept on a long diagonal, if one is given.
    bool mainDiagonal() {
        turnOn(SH_DONTLEAVEMAINDIAGONAL, c_.dontLeaveMainDiagonal);
        params_.m_cMainDiagonalFigure = HEURISTIC_NO_SQUARE;
        if (!c_.dontLeaveMainDiagonal) return true;
        const SquareField field = readSquareField(position_, c_.mainDiagonalFigure);
        if (!field.read) return fail(invalidPiece(c_.mainDiagonalFigure));
        if (field.square == NO_SQUARE) return true;
        if (!IsMainDiagonalFigureSquare(position_, field.square)) return fail(MAIN_DIAGONAL_FIGURE_IMPROPER);
        params_.m_cMainDiagonalFigure = static_cast<uint8_t>(field.square);
        return true;
    }

    // 9. Promoted figures, queen checks, and whether the unblock list may be
    //    applied dynamically.
    bool promotedAndChecks() {
        params_.m_bPromotedStrict = c_.promotedStrict;
        turnOn(SH_DONTLETPROMOTEDFIGUREMOVE,
               c_.dontLetPromotedMove && c_.promotedMover == PromotedMover::AnyFigure);
        turnOn(SH_DONTLETPROMOTEDQUEENMOVE,
               c_.dontLetPromotedMove && c_.promotedMover == PromotedMover::Queen);
        turnOn(SH_DONTLETBLACKQUEENCHECKTWICE, c_.dontLetQueenCheckTwice);
        params_.m_bUnblockDynamic = c_.unblockDynamic;
        return true;
    }

    // 10. The unblock list: the given squares, in field order, must hold
    //     black men. The position watches them so that the makers follow the
    //     men; it is marked as watching whenever the list holds a man, since
    //     its eight slots always have room for the eight fields.
    bool unblockList() {
        turnOn(SH_DONTLETFIGUREUNBLOCK, c_.dontLetFigureUnblock);
        uint8_t squares[MAX_BLOCKED_FIGURES];
        std::memset(squares, HEURISTIC_NO_SQUARE, sizeof squares);
        uint8_t count = 0;
        bool hasPawn = false;
        for (int i = 0; c_.dontLetFigureUnblock && i < MAX_BLOCKED_FIGURES; ++i) {
            const SquareField field = readSquareField(position_, c_.blockedFigures[i]);
            if (!field.read) return fail(invalidPiece(c_.blockedFigures[i]));
            if (field.square == NO_SQUARE) continue;
            const uint8_t man = position_.m_aSquares[field.square];
            if (!isBlack(man)) {
                ComposedText message = composed(IMPROPER_FIELD_HEAD);
                message += BLOCKED_FIGURE_LABEL;
                message += std::to_wstring(i + 1);
                return fail(std::move(message));
            }
            hasPawn = hasPawn || (man & KIND_MASK) == KIND_PAWN;
            squares[count++] = static_cast<uint8_t>(field.square);
        }
        params_.m_nBlockedFigures = count;
        params_.m_nBlockedFiguresSaved = count;
        std::memcpy(params_.m_aBlockedStart, squares, sizeof squares);
        std::memcpy(params_.m_aBlockedNow, squares, sizeof squares);
        params_.m_bBlockedHasPawn = hasPawn;
        std::memcpy(position_.m_aWatched, squares, sizeof squares);
        if (count > 0)
            position_.m_wFlags2 |= FLAGS2_UNBLOCK_WATCHED;
        else
            position_.m_wFlags2 &= static_cast<uint16_t>(~FLAGS2_UNBLOCK_WATCHED);
        return true;
    }

    // 11. Single queen mate, reduction to the global register, the #3 test.
    bool endgameBets() {
        turnOn(SH_SINGLEQUEENMATE, c_.singleQueenMate);
        turnOn(SH_REDUCTIONTOGLOBREGPOS, c_.reductionToGlobalRegister);
        turnOn(SH_3MOVESTOMATE, c_.threeMovesToMate);
        return true;
    }

    // 12. A white line piece and the black figure it pins to the king.
    bool keyWhiteFigure() {
        turnOn(SH_KEYWHITEFIGURE, c_.keyWhiteFigure);
        params_.m_cKeyWhiteFigure = HEURISTIC_NO_SQUARE;
        params_.m_cKeyPinnedFigure = HEURISTIC_NO_SQUARE;
        params_.m_bKeyFigureIsRook = 0;
        if (!c_.keyWhiteFigure) return true;
        const SquareField field = readSquareField(position_, c_.keyWhiteFigureSquare);
        if (!field.read) return fail(invalidPiece(c_.keyWhiteFigureSquare));
        const KeyWhiteFigurePin pin = FindKeyWhiteFigurePin(position_, field.square);
        if (pin.check == KeyWhiteFigureCheck::NotAKeyFigure) return fail(KEY_FIGURE_INVALID);
        if (pin.check == KeyWhiteFigureCheck::NoPinnedFigure) return fail(PINNED_FIGURE_NOT_FOUND);
        params_.m_cKeyWhiteFigure = static_cast<uint8_t>(field.square);
        params_.m_cKeyPinnedFigure = pin.pinnedSquare;
        params_.m_bKeyFigureIsRook = pin.isRook;
        return true;
    }

    // 13. One-colour play, the sweeping rook, skipping the worst moves.
    bool whitePlayBets() {
        turnOn(SH_ONECOLORPLAYPOSSIBLE, c_.oneColourPlay);
        turnOn(SH_SWEEPINGWHITEROOK, c_.sweepingWhiteRook);
        turnOn(SH_SKIPWORSTWHITEMOVES, c_.skipWorstWhiteMoves);
        return true;
    }

    // 14. The key file by its letter; the key diagonal by two squares on it.
    bool keyLineDiagonal() {
        turnOn(SH_KEYLINE, c_.keyLine);
        solveWide_.m_cKeyLineFile = HEURISTIC_NO_SQUARE;
        if (c_.keyLine) {
            const std::string letter = trimmed(c_.keyLineFile);
            const char file = letter.size() == 1 ? static_cast<char>(std::tolower(letter[0])) : 0;
            if (file < 'a' || file > 'h') return fail(KEY_LINE_INVALID);
            solveWide_.m_cKeyLineFile = static_cast<uint8_t>(file - 'a');
        }
        turnOn(SH_KEYDIAGONAL, c_.keyDiagonal);
        solveWide_.m_wKeyDiagonal = 0xFFFF;
        if (!c_.keyDiagonal) return true;
        const SquareField first = readSquareField(position_, c_.keyDiagonalFirst);
        if (!first.read) return fail(invalidPiece(c_.keyDiagonalFirst));
        const SquareField second = readSquareField(position_, c_.keyDiagonalSecond);
        if (!second.read) return fail(invalidPiece(c_.keyDiagonalSecond));
        if (!IsKeyDiagonal(first.square, second.square)) return fail(KEY_DIAGONAL_INVALID);
        solveWide_.m_wKeyDiagonal = static_cast<uint16_t>(first.square | (second.square << 8));
        return true;
    }

    // A sea snake square; only the turn-back square may be left blank.
    bool seaSnakeSquare(const std::string& text, bool mayBeBlank, uint8_t& square) {
        const SquareField field = readSquareField(position_, text);
        if (!field.read || (field.square == NO_SQUARE && !mayBeBlank)) return fail(invalidPiece(text));
        square = static_cast<uint8_t>(field.square);
        return true;
    }

    // 15. The sea snake. With "only after" moves the bet starts after them,
    //     so the root's set leaves its bit off.
    bool seaSnake() {
        params_.m_bSeaSnakeRequested = c_.seaSnake;
        params_.m_cApproach = params_.m_cTurnBack = HEURISTIC_NO_SQUARE;
        params_.m_cPendulum1 = params_.m_cPendulum2 = HEURISTIC_NO_SQUARE;
        solveWide_.m_aSeaSnakeOnlyAfter.clear();
        if (!c_.seaSnake) return true;
        if (!seaSnakeSquare(c_.seaSnakeApproach, false, params_.m_cApproach) ||
            !seaSnakeSquare(c_.seaSnakeTurnBack, true, params_.m_cTurnBack) ||
            !seaSnakeSquare(c_.seaSnakePendulum1, false, params_.m_cPendulum1) ||
            !seaSnakeSquare(c_.seaSnakePendulum2, false, params_.m_cPendulum2))
            return false;
        std::string badWord;
        const auto played = playMoves(position_, c_.seaSnakeOnlyAfter, badWord);
        if (!played) return fail(composed(INVALID_MOVE_HEAD, Utf8ToWide(badWord)));
        for (const PlayedMove& p : *played) solveWide_.m_aSeaSnakeOnlyAfter.push_back(p.move);
        if (c_.findForcedMate) return fail(SEA_SNAKE_WITH_FFM);
        turnOn(SH_SEASNAKE, solveWide_.m_aSeaSnakeOnlyAfter.empty());
        return true;
    }

    // 16. Capture of a knight; the zugzwang positions, played again only
    //     when the moves' text has changed since the dialog showed it.
    bool zugzwang() {
        turnOn(SH_CAPTUREKNIGHT, c_.captureKnight);
        turnOn(SH_ZUGZWANG, c_.zugzwang);
        if (!c_.zugzwang) {
            solveWide_.m_aZugzwangAfter.clear();
            return true;
        }
        if (c_.zugzwangMoves == c_.zugzwangMovesShown) return true;
        std::string badWord;
        const auto played = playMoves(position_, c_.zugzwangMoves, badWord);
        if (!played) return fail(composed(INVALID_MOVE_HEAD, Utf8ToWide(badWord)));
        solveWide_.m_aZugzwangAfter.clear();
        for (std::size_t i = 0; i < played->size(); ++i) {
            const PlayedMove& p = (*played)[i];
            solveWide_.m_aZugzwangAfter[p.positionId] = {p.move, static_cast<uint16_t>(i + 1)};
        }
        return true;
    }

    // 17. How the passes follow one another.
    bool passes() {
        params_.m_bLetRelax = c_.letRelax;
        params_.m_bHeuristicsFallback = c_.heuristicsFallback;
        params_.m_bPass2 = c_.pass2;
        return true;
    }

    // 18. FindForcedMate's level and how many weaker levels may follow; the
    //     last relaxation may reach #5 at most. Its fields are read only with
    //     it on.
    bool findForcedMate() {
        turnOn(SH_FINDFORCEDMATE, c_.findForcedMate);
        if (!c_.findForcedMate) return true;
        const int level = static_cast<int>(c_.ffmLevel);
        params_.m_nFfmLevel = params_.m_nFfmStartLevel = static_cast<uint8_t>(level);
        if (!allDigits(c_.ffmRelaxations)) return fail(FFM_RELAXATIONS_INVALID);
        const long long relaxations = leadingInteger(c_.ffmRelaxations);
        if (relaxations + level > FFM_STRONGEST_LEVEL)
            return fail(composed(FFM_RELAXATIONS_TOO_MANY_HEAD, std::to_wstring(FFM_STRONGEST_LEVEL - level),
                                 FFM_RELAXATIONS_TOO_MANY_TAIL));
        params_.m_nFfmRelaxations = static_cast<uint8_t>(relaxations);
        if (relaxations > 0 && !params_.m_bLetRelax)
            result_.notes.push_back(composed(FFM_RELAXATIONS_IGNORED_HEAD, std::to_wstring(relaxations),
                                             FFM_RELAXATIONS_IGNORED_TAIL));
        return true;
    }

    // 19. Captures near the king, and which other heuristics run beside it.
    bool findForcedMateCompany() {
        params_.m_bFfmAddCaptures = c_.ffmAddCaptures;
        switch (c_.ffmWithOthers) {
        case FfmWithOthersChoice::Yes:
            params_.m_nFfmWithOthers = FFM_WITH_OTHERS;
            break;
        case FfmWithOthersChoice::No:
            params_.m_nFfmWithOthers = FFM_WITHOUT_OTHERS;
            break;
        case FfmWithOthersChoice::Partially:
        case FfmWithOthersChoice::PartiallyWithInitialPass:
            params_.m_nFfmWithOthers = FFM_PARTIALLY_WITH_OTHERS;
            break;
        }
        params_.m_bFfmPreliminary = c_.ffmWithOthers == FfmWithOthersChoice::PartiallyWithInitialPass;
        return true;
    }

    TChessboard& position_;
    TSpecialHeuristicsParams& params_;
    SolveWideHeuristicParams& solveWide_;
    const HeuristicsDialogControls& c_;
    uint32_t word_ = 0;
    HeuristicsDialogResult result_;
};

} // namespace

HeuristicsDialogResult ReadHeuristicsDialog(TChessboard& position, TSpecialHeuristicsParams& params,
                                            SolveWideHeuristicParams& solveWide,
                                            const HeuristicsDialogControls& controls) {
    // m_uHeuristicParams is left as it was: the caller refreshes it (see the header).
    return DialogReader(position, params, solveWide, controls).read();
}

} // namespace zorvane

#include "table_generator.h"

#include "core/chess_exception.h"
#include "core/make_move.h"
#include "core/movegen.h"
#include "position_index.h"
#include "position_type.h"
#include "retraction.h"
#include "table_layout.h"
#include "table_symmetry.h"

#include <tbb/blocked_range.h>
#include <tbb/enumerable_thread_specific.h>
#include <tbb/parallel_for.h>
#include <tbb/task_arena.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <memory>
#include <thread>

namespace zorvane {

namespace {

// How it works. Beside the cells (White to move) the run keeps one byte per
// index for the same men with Black to move. A level n is done in two steps:
// 1. Black positions all of whose replies are known mates of at most n - 1
//    moves are lost in n - 1; every position from which White reaches one by a
//    move inside the table (found by retracting White's moves) mates in n,
//    unless it mates sooner. Only Black positions that may have become lost
//    are looked at: those with a reply into the cells of level n - 1 (found by
//    retracting Black's moves from them), those whose longest reply into a
//    lesser table is n - 1, and the few with an en passant twist.
// 2. White positions whose best move is a capture or a promotion (its value
//    computed once, from the lesser tables) or a double step that Black may
//    take en passant (weighed whole at each level) mate in n when that value is n.

// Working marks. A cell with White to move that is no legal position: the
// retractions may reach it, and it must never take a value.
constexpr uint8_t CELL_ILLEGAL = 255;
// A position with Black to move that can no longer become lost at a new
// level: illegal, stalemate, a reply without mate, or lost and settled.
constexpr uint8_t BLACK_SETTLED = 255;
// Below this a Black byte is the longest mate among the replies into lesser tables.
constexpr int MAX_LESSER_MATE = 253;

constexpr uint64_t GRAIN = 2048;
// The cells of one position: every order of its runs of like men (up to four
// alike), twice when its mirror image in the diagonal has cells of its own.
constexpr int MAX_CELLS = 2 * 24;
constexpr auto PAUSE_STEP = std::chrono::milliseconds(100);

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

uint8_t load(uint8_t& cell) {
    return std::atomic_ref<uint8_t>(cell).load(std::memory_order_relaxed);
}

bool exchange(uint8_t& cell, uint8_t expected, uint8_t desired) {
    return std::atomic_ref<uint8_t>(cell).compare_exchange_strong(expected, desired,
                                                                  std::memory_order_relaxed);
}

bool changesType(const TChessboard& before, const TMove& m) {
    const bool pawn = (before.m_aSquares[m.from] & KIND_MASK) == KIND_PAWN;
    return before.m_aSquares[m.to] != 0 || m.promotionKind() != 0 || (pawn && colOf(m.from) != colOf(m.to));
}

// A white double step that Black may answer en passant: its position with
// Black to move is not the cell's.
bool whiteDoubleStepBesideBlackPawn(const uint8_t* s, int from, int to) {
    if ((s[from] != WP && s[to] != WP) || absInt(to - from) != 16) return false;
    return (colOf(to) > 0 && s[to - 1] == BP) || (colOf(to) < 7 && s[to + 1] == BP);
}

struct Local {
    std::vector<uint64_t> assigned;
    std::vector<uint64_t> mated;
    std::vector<uint64_t> specialWhite;
    std::vector<uint64_t> specialBlack;
    int maxSeedLevel = 0;
};

class Generator {
  public:
    Generator(std::string_view type, const TMateProbe& lesserProbe, const TGenerationSettings& settings)
        : m_layout(MakeTableLayout(type, DefaultTableHeader(type) & TABLE_HEADER_PAWN_COMPACT, false)),
          m_nSize(TableSize(m_layout)), m_nKey(PosTypeKey(type)), m_lesserProbe(lesserProbe),
          m_settings(settings), m_cells(new uint8_t[m_nSize]), m_black(new uint8_t[m_nSize]),
          m_capture(new uint8_t[m_nSize]()), m_seen(new uint8_t[m_nSize]()) {
        for (int g = 0; g < m_layout.nGroups; ++g) m_bManyCells = m_bManyCells || m_layout.aGroupSize[g] > 1;
        m_bManyCells = m_bManyCells || m_layout.nKingSlots == KING_SLOTS_WITHOUT_PAWNS;
        if (m_layout.bUsesMappers)
            throw ChessException("Table " + m_layout.sType + ": made without mappers only");
        int orders = 2;
        for (int g = 0; g < m_layout.nGroups; ++g)
            for (int k = 2; k <= m_layout.aGroupSize[g]; ++k) orders *= k;
        if (orders > MAX_CELLS) throw ChessException("Table " + m_layout.sType + ": too many like men");
        // Known lesser values, and 0 for the table itself, still unknown.
        m_lesserOnly = [this](const TChessboard& b) {
            return PosTypeKeyOfPosition(b) == m_nKey ? 0 : m_lesserProbe(b);
        };
    }

    TGenerationResult Run() {
        const int threads = m_settings.nThreads > 0 ? m_settings.nThreads
                                                    : static_cast<int>(std::thread::hardware_concurrency());
        tbb::task_arena arena(std::max(threads, 1));
        TGenerationResult result;
        const Clock::time_point start = Clock::now();
        arena.execute([&] { prepare(); });
        result.dPrepareSeconds = secondsSince(start);
        int level = 0;
        std::vector<uint64_t> fresh;
        while (!m_stopped) {
            const int n = level + 1;
            if (n > MAX_ONE_BYTE_MATE)
                throw ChessException("Table " + m_layout.sType + ": mates beyond 254 moves");
            const Clock::time_point levelStart = Clock::now();
            arena.execute([&] { runLevel(n, fresh); });
            if (m_stopped) break;
            fresh = collectAssigned();
            level = n;
            const TLevelReport report{n, fresh.size(), secondsSince(levelStart)};
            result.levels.push_back(report);
            if (m_settings.onLevel) m_settings.onLevel(report, snapshot(level));
            if (fresh.empty() && n >= m_nMaxSeedLevel) break;
        }
        result.bStopped = m_stopped;
        result.nLevels = level;
        result.table = snapshot(level);
        result.dSeconds = secondsSince(start);
        return result;
    }

  private:
    // 1. The first pass: legality of both sides, the values of White's
    //    captures and promotions, Black's longest reply into a lesser table,
    //    the mated Black positions and the en passant cases.
    void prepare() {
        m_cells[0] = CELL_ILLEGAL;
        m_black[0] = BLACK_SETTLED;
        forRange(1, m_nSize, [this](uint64_t i, Local& local) {
            TChessboard white;
            if (!PositionOfIndex(m_layout, i, white)) {
                m_cells[i] = CELL_ILLEGAL;
                m_black[i] = BLACK_SETTLED;
                return;
            }
            TChessboard black = white;
            m_cells[i] = SetUpTablePosition(white, true) ? 0 : CELL_ILLEGAL;
            if (m_cells[i] == 0) prepareWhite(i, white, local);
            // Black positions are kept in one cell each: the others are left settled.
            const bool blackCell = blackCellOf(i) == i;
            m_black[i] =
                blackCell && SetUpTablePosition(black, false) ? prepareBlack(i, black, local) : BLACK_SETTLED;
        });
        for (Local& local : m_locals) {
            m_mated.insert(m_mated.end(), local.mated.begin(), local.mated.end());
            m_specialWhite.insert(m_specialWhite.end(), local.specialWhite.begin(), local.specialWhite.end());
            m_specialBlack.insert(m_specialBlack.end(), local.specialBlack.begin(), local.specialBlack.end());
            m_nMaxSeedLevel = std::max(m_nMaxSeedLevel, local.maxSeedLevel);
            local = Local();
        }
    }

    void prepareWhite(uint64_t i, const TChessboard& position, Local& local) {
        MoveBuffer moves;
        const int count = GenerateWhiteMovesOrEvasions(position, moves);
        int best = 0;
        bool special = false;
        TChessboard child;
        for (int k = 0; k < count; ++k) {
            TMove move = moves[k];
            if (IsCastlingMove(position, move.from, move.to)) continue;
            const bool doubleStep = whiteDoubleStepBesideBlackPawn(position.m_aSquares, move.from, move.to);
            if (!doubleStep && !changesType(position, move)) continue;
            CopyToChild(child, position);
            if (!MakeWhiteMove(child, move)) continue;
            if (doubleStep) {
                // Weighed whole at each level, up to the longest reply into a lesser table.
                special = true;
                local.maxSeedLevel = std::max(local.maxSeedLevel, longestLesserReply(child) + 1);
                continue;
            }
            const int value = WhiteMoveValue(child, m_lesserOnly);
            if (value != 0 && (best == 0 || value < best)) best = value;
        }
        if (best > MAX_ONE_BYTE_MATE)
            throw ChessException("Table " + m_layout.sType + ": mates beyond 254 moves");
        m_capture[i] = static_cast<uint8_t>(best);
        local.maxSeedLevel = std::max(local.maxSeedLevel, best);
        if (special) local.specialWhite.push_back(i);
    }

    // The longest mate after Black's captures and promotions in reply to a white move.
    int longestLesserReply(const TChessboard& afterWhite) {
        MoveBuffer replies;
        const int count = GenerateBlackMovesOrEvasions(afterWhite, replies);
        int longest = 0;
        TChessboard next;
        for (int k = 0; k < count; ++k) {
            if (!changesType(afterWhite, replies[k])) continue;
            CopyToChild(next, afterWhite);
            if (MakeBlackMove(next, replies[k], false) == BLACK_MOVE_ILLEGAL) continue;
            longest = std::max(longest, ReplyValue(next, m_lesserOnly));
        }
        return longest;
    }

    uint8_t prepareBlack(uint64_t i, const TChessboard& position, Local& local) {
        MoveBuffer replies;
        const int count = GenerateBlackMovesOrEvasions(position, replies);
        int lesserMax = 0;
        bool anyReply = false;
        bool special = false;
        TChessboard next;
        for (int k = 0; k < count; ++k) {
            if (IsCastlingMove(position, replies[k].from, replies[k].to)) continue;
            CopyToChild(next, position);
            if (MakeBlackMove(next, replies[k], false) == BLACK_MOVE_ILLEGAL) continue;
            anyReply = true;
            if (changesType(position, replies[k])) {
                const int value = ReplyValue(next, m_lesserOnly);
                if (value == 0) return BLACK_SETTLED;
                lesserMax = std::max(lesserMax, value);
            } else if (DoubleStepBesideWhitePawn(next)) {
                // Its value needs the table itself; the capture alone bounds when it may settle.
                special = true;
                local.maxSeedLevel = std::max(local.maxSeedLevel, ReplyValue(next, m_lesserOnly) + 1);
            }
        }
        if (!anyReply) {
            if (!position.blackInCheck()) return BLACK_SETTLED;
            local.mated.push_back(i);
            return 0;
        }
        if (lesserMax > MAX_LESSER_MATE)
            throw ChessException("Table " + m_layout.sType + ": mates beyond 254 moves");
        local.maxSeedLevel = std::max(local.maxSeedLevel, lesserMax + 1);
        if (special) local.specialBlack.push_back(i);
        return static_cast<uint8_t>(lesserMax);
    }

    void runLevel(int n, const std::vector<uint64_t>& fresh) {
        // 1. Black positions that may have become lost in n - 1.
        if (n == 1) {
            forList(m_mated, [this, n](uint64_t b, Local& local) { settleBlack(b, n, local); });
        } else {
            forList(fresh, [this, n](uint64_t q, Local& local) {
                TChessboard position;
                PositionOfIndex(m_layout, q, position);
                TRetraction retractions[MAX_RETRACTIONS];
                const int count = GenerateBlackRetractions(position, retractions);
                for (int k = 0; k < count; ++k) {
                    TChessboard before = position;
                    ApplyRetraction(before, retractions[k]);
                    uint64_t cells[2];
                    const int found = blackCellsOf(before, cells);
                    for (int j = 0; j < found; ++j) settleBlack(cells[j], n, local);
                }
            });
            forRange(1, m_nSize, [this, n](uint64_t b, Local& local) {
                if (load(m_black[b]) == n - 1) settleBlack(b, n, local);
            });
        }
        forList(m_specialBlack, [this, n](uint64_t b, Local& local) { settleBlack(b, n, local); });
        // 2. White positions whose best move leaves the table or allows en passant.
        forRange(1, m_nSize, [this, n](uint64_t i, Local& local) {
            if (m_capture[i] == n) assign(i, n, local);
        });
        const TMateProbe known = knownBelow(n);
        forList(m_specialWhite, [this, n, &known](uint64_t i, Local& local) {
            if (load(m_cells[i]) != 0) return;
            TChessboard position;
            PositionOfIndex(m_layout, i, position);
            SetUpTablePosition(position, true);
            if (ExpectedMate(position, known) == n) assign(i, n, local);
        });
    }

    // Black to move at index b: lost in n - 1 at most? Then White mates in n
    // from every position before it.
    void settleBlack(uint64_t b, int n, Local& local) {
        const uint8_t state = load(m_black[b]);
        if (state == BLACK_SETTLED || state > n - 1) return;
        // Within a level the answer cannot change: look once.
        const uint8_t seen = load(m_seen[b]);
        if (seen == n || !exchange(m_seen[b], seen, static_cast<uint8_t>(n))) return;
        TChessboard position;
        PositionOfIndex(m_layout, b, position);
        SetUpTablePosition(position, false);
        if (!allRepliesKnown(position, n)) return;
        if (!exchange(m_black[b], state, BLACK_SETTLED)) return;
        TRetraction retractions[MAX_RETRACTIONS];
        const int count = GenerateWhiteRetractions(position, retractions);
        for (int k = 0; k < count; ++k) {
            const TRetraction& r = retractions[k];
            if (IsDoubleStepRetraction(position, r) &&
                whiteDoubleStepBesideBlackPawn(position.m_aSquares, r.from, r.to))
                continue;
            TChessboard before = position;
            ApplyRetraction(before, r);
            uint64_t cells[MAX_CELLS];
            const int found = cellsOf(before, cells);
            for (int j = 0; j < found; ++j) assign(cells[j], n, local);
        }
    }

    // Whether every reply inside the table reaches a mate shorter than n; the
    // replies into lesser tables are known to from the first pass.
    bool allRepliesKnown(const TChessboard& position, int n) {
        MoveBuffer replies;
        const int count = GenerateBlackMovesOrEvasions(position, replies);
        TChessboard next;
        for (int k = 0; k < count; ++k) {
            if (IsCastlingMove(position, replies[k].from, replies[k].to) || changesType(position, replies[k]))
                continue;
            CopyToChild(next, position);
            if (MakeBlackMove(next, replies[k], false) == BLACK_MOVE_ILLEGAL) continue;
            int value;
            if (DoubleStepBesideWhitePawn(next)) {
                value = ReplyValue(next, knownBelow(n));
            } else {
                const uint8_t cell = load(m_cells[IndexOfPosition(m_layout, next)]);
                value = cell < n ? cell : 0;
            }
            if (value == 0 || value >= n) return false;
        }
        return true;
    }

    void assign(uint64_t i, int n, Local& local) {
        if (exchange(m_cells[i], 0, static_cast<uint8_t>(n))) local.assigned.push_back(i);
    }

    // Every cell of a position. The index reads like men in the order of
    // their squares before the fold, so one folded position has a cell for
    // each order of each run of like men; and without pawns, when the white
    // king stands on the folded diagonal, its mirror image in the diagonal
    // has cells of its own. All of them must learn every value.
    int cellsOf(const TChessboard& position, uint64_t* cells) const {
        cells[0] = IndexOfPosition(m_layout, position);
        if (!m_bManyCells) return 1;
        TDigits digits = decode(cells[0]);
        int count = 0;
        addOrders(digits, cells, count);
        if (onDiagonal(digits)) {
            mirrorInDiagonal(digits);
            addOrders(digits, cells, count);
        }
        return count;
    }

    // The cells that stand for a position with Black to move: one per image,
    // like men in ascending order.
    int blackCellsOf(const TChessboard& position, uint64_t* cells) const {
        cells[0] = IndexOfPosition(m_layout, position);
        if (!m_bManyCells) return 1;
        TDigits digits = decode(cells[0]);
        sortRuns(digits);
        cells[0] = encode(digits);
        if (!onDiagonal(digits)) return 1;
        mirrorInDiagonal(digits);
        sortRuns(digits);
        cells[1] = encode(digits);
        return cells[1] == cells[0] ? 1 : 2;
    }

    // The cell with Black to move that stands for index i's position.
    uint64_t blackCellOf(uint64_t i) const {
        if (!m_bManyCells) return i;
        TDigits digits = decode(i);
        sortRuns(digits);
        return encode(digits);
    }

    struct TDigits {
        uint8_t squares[MAX_TABLE_LETTERS] = {};
        int blackKing = 0;
        int slot = 0;
    };

    int radix(int letter) const {
        return m_layout.aPawn[letter] && m_layout.bPawnCompact ? PAWN_SET_SIZE : 64;
    }
    int offset(int letter) const {
        return m_layout.aPawn[letter] && m_layout.bPawnCompact ? PAWN_SET_OFFSET : 0;
    }

    TDigits decode(uint64_t index) const {
        TDigits digits;
        digits.slot = static_cast<int>(index % m_layout.nKingSlots);
        index /= m_layout.nKingSlots;
        digits.blackKing = static_cast<int>(index % 64);
        index /= 64;
        for (int i = m_layout.nLetters - 1; i >= 0; --i) {
            digits.squares[i] = static_cast<uint8_t>(index % radix(i) + offset(i));
            index /= radix(i);
        }
        return digits;
    }

    uint64_t encode(const TDigits& digits) const {
        uint64_t v = 0;
        for (int i = 0; i < m_layout.nLetters; ++i)
            v = v * radix(i) + static_cast<uint64_t>(digits.squares[i] - offset(i));
        return (v * 64 + static_cast<uint64_t>(digits.blackKing)) * m_layout.nKingSlots +
               static_cast<uint64_t>(digits.slot);
    }

    bool onDiagonal(const TDigits& digits) const {
        if (m_layout.nKingSlots != KING_SLOTS_WITHOUT_PAWNS) return false;
        const int king = PAWNLESS_SLOT_SQUARE[digits.slot];
        return rowOf(king) == colOf(king);
    }

    // The king stays in his slot; every other square is transposed.
    static void mirrorInDiagonal(TDigits& digits) {
        digits.blackKing = FlipDiagonal(digits.blackKing);
        for (uint8_t& square : digits.squares) square = static_cast<uint8_t>(FlipDiagonal(square));
    }

    void sortRuns(TDigits& digits) const {
        for (int g = 0; g < m_layout.nGroups; ++g) {
            uint8_t* run = digits.squares + m_layout.aGroupFirst[g];
            const int size = m_layout.aGroupSize[g];
            for (int i = 1; i < size; ++i)
                for (int j = i; j > 0 && run[j - 1] > run[j]; --j) std::swap(run[j - 1], run[j]);
        }
    }

    // Every order of every run, as an odometer over the runs' permutations.
    void addOrders(TDigits digits, uint64_t* cells, int& count) const {
        sortRuns(digits);
        for (;;) {
            const uint64_t cell = encode(digits);
            if (std::find(cells, cells + count, cell) == cells + count) cells[count++] = cell;
            int g = 0;
            for (; g < m_layout.nGroups; ++g) {
                uint8_t* run = digits.squares + m_layout.aGroupFirst[g];
                if (std::next_permutation(run, run + m_layout.aGroupSize[g])) break;
            }
            if (g == m_layout.nGroups) return;
        }
    }

    // Values as far as they are settled: the table's own below level n.
    TMateProbe knownBelow(int n) const {
        return [this, n](const TChessboard& b) {
            if (PosTypeKeyOfPosition(b) != m_nKey) return m_lesserProbe(b);
            const uint8_t cell = load(m_cells[IndexOfPosition(m_layout, b)]);
            return cell < n ? static_cast<int>(cell) : 0;
        };
    }

    std::vector<uint64_t> collectAssigned() {
        std::vector<uint64_t> all;
        for (Local& local : m_locals) {
            all.insert(all.end(), local.assigned.begin(), local.assigned.end());
            local.assigned.clear();
        }
        return all;
    }

    TRawTable snapshot(int level) const {
        TRawTable table;
        table.sType = m_layout.sType;
        table.nHeader = DefaultTableHeader(m_layout.sType);
        table.nCellWidth = 1;
        table.nSize = m_nSize;
        table.aBytes.resize(m_nSize);
        for (uint64_t i = 0; i < m_nSize; ++i) {
            const uint8_t cell = m_cells[i];
            table.aBytes[i] = cell == CELL_ILLEGAL || cell > level ? 0 : cell;
        }
        table.aBytes[0] = table.nHeader;
        return table;
    }

    // True when the run is to stop; waits while it is paused.
    bool stopRequested() {
        if (m_stopped) return true;
        if (m_settings.pStop == nullptr) return false;
        for (;;) {
            const int word = m_settings.pStop->load(std::memory_order_relaxed);
            if (word == 0) return false;
            if (word == STOP_RUN) {
                m_stopped = true;
                return true;
            }
            std::this_thread::sleep_for(PAUSE_STEP);
        }
    }

    template <class Body> void forRange(uint64_t begin, uint64_t end, const Body& body) {
        tbb::parallel_for(tbb::blocked_range<uint64_t>(begin, end, GRAIN),
                          [&](const tbb::blocked_range<uint64_t>& range) {
                              if (stopRequested()) return;
                              Local& local = m_locals.local();
                              for (uint64_t i = range.begin(); i != range.end(); ++i) body(i, local);
                          });
    }

    template <class Body> void forList(const std::vector<uint64_t>& list, const Body& body) {
        if (list.empty()) return;
        tbb::parallel_for(tbb::blocked_range<size_t>(0, list.size(), GRAIN / 16),
                          [&](const tbb::blocked_range<size_t>& range) {
                              if (stopRequested()) return;
                              Local& local = m_locals.local();
                              for (size_t k = range.begin(); k != range.end(); ++k) body(list[k], local);
                          });
    }

    TTableLayout m_layout;
    uint64_t m_nSize;
    uint64_t m_nKey;
    const TMateProbe& m_lesserProbe;
    TMateProbe m_lesserOnly;
    const TGenerationSettings& m_settings;
    std::unique_ptr<uint8_t[]> m_cells;
    std::unique_ptr<uint8_t[]> m_black;
    std::unique_ptr<uint8_t[]> m_capture;
    // The last level at which a Black position was looked at.
    std::unique_ptr<uint8_t[]> m_seen;
    std::vector<uint64_t> m_mated;
    std::vector<uint64_t> m_specialWhite;
    std::vector<uint64_t> m_specialBlack;
    int m_nMaxSeedLevel = 0;
    // Whether a position may have more than one cell.
    bool m_bManyCells = false;
    std::atomic<bool> m_stopped{false};
    tbb::enumerable_thread_specific<Local> m_locals;
};

} // namespace

TGenerationResult GenerateTable(std::string_view type, const TMateProbe& lesserProbe,
                                const TGenerationSettings& settings) {
    Generator generator(type, lesserProbe, settings);
    return generator.Run();
}

} // namespace zorvane

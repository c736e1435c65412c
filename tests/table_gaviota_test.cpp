// The 3-man tables held against an independent source: the Gaviota endgame
// tables of the Debian packages gaviotatb and libgaviotatb-dev, probed
// through their library. Gaviota counts the distance to mate in plies; a
// White win in p plies is a mate in (p + 1) / 2 moves.
#include "global_register/position_index.h"
#include "global_register/table_generator.h"
#include "global_register/table_set.h"
#include "global_register/table_types.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>

#ifdef ZORVANE_GAVIOTA
#include <gtb-probe.h>
#endif

namespace zorvane {
namespace {

#ifdef ZORVANE_GAVIOTA

// Where the package puts the 3-man files, compressed with scheme 4.
constexpr const char* GAVIOTA_DEFAULT_DIR = "/usr/share/gaviotatb/gtb4";
constexpr size_t GAVIOTA_CACHE_BYTES = 8 << 20;
constexpr int GAVIOTA_WDL_FRACTION = 50;

std::string gaviotaDir() {
    const char* dir = std::getenv("ZORVANE_GAVIOTA_DIR");
    return dir != nullptr ? dir : GAVIOTA_DEFAULT_DIR;
}

unsigned char gaviotaPiece(uint8_t piece) {
    switch (piece & KIND_MASK) {
    case KIND_QUEEN:
        return tb_QUEEN;
    case KIND_ROOK:
        return tb_ROOK;
    case KIND_BISHOP:
        return tb_BISHOP;
    case KIND_KNIGHT:
        return tb_KNIGHT;
    default:
        return tb_PAWN;
    }
}

TEST(TableGaviota, EveryCellOfTheThreeManTablesAgrees) {
    const std::string dir = gaviotaDir();
    if (!std::filesystem::exists(std::filesystem::path(dir) / "kqk.gtb.cp4"))
        GTEST_SKIP() << "no Gaviota 3-man files in " << dir << " (install gaviotatb, see scripts/setup.sh)";
    const char** paths = tbpaths_init();
    paths = tbpaths_add(paths, dir.c_str());
    tb_init(0, tb_CP4, paths);
    tbcache_init(GAVIOTA_CACHE_BYTES, GAVIOTA_WDL_FRACTION);
    ASSERT_TRUE(tb_is_initialized());

    TTableSet tables("");
    for (const std::string& type : AllTypesWithWhiteMen(3))
        tables.Add(GenerateTable(type, tables.Prober(), {}).table);

    for (const std::string& type : AllTypesWithWhiteMen(3)) {
        const TRawTable& table = *tables.Find(type);
        const TTableLayout layout =
            MakeTableLayout(type, (table.nHeader & TABLE_HEADER_PAWN_COMPACT) != 0, false);
        uint64_t compared = 0, mates = 0, illegal = 0, disagreements = 0;
        for (uint64_t i = 1; i < table.nSize; ++i) {
            TChessboard board;
            if (!PositionOfIndex(layout, i, board) || !SetUpTablePosition(board, true)) {
                ++illegal;
                EXPECT_EQ(table.Cell(i), 0u) << type << " illegal index " << i;
                continue;
            }
            unsigned int whiteSquares[3] = {static_cast<unsigned>(board.whiteKing()), tb_NOSQUARE,
                                            tb_NOSQUARE};
            unsigned char whitePieces[3] = {tb_KING, tb_NOPIECE, tb_NOPIECE};
            for (int s = 0; s < 64; ++s) {
                const uint8_t piece = board.m_aSquares[s];
                if (piece != 0 && isWhite(piece) && (piece & KIND_MASK) != KIND_KING) {
                    whiteSquares[1] = static_cast<unsigned>(s);
                    whitePieces[1] = gaviotaPiece(piece);
                }
            }
            const unsigned int blackSquares[2] = {static_cast<unsigned>(board.blackKing()), tb_NOSQUARE};
            const unsigned char blackPieces[2] = {tb_KING, tb_NOPIECE};
            unsigned int info = 0, plies = 0;
            ASSERT_TRUE(tb_probe_hard(tb_WHITE_TO_MOVE, tb_NOSQUARE, tb_NOCASTLE, whiteSquares, blackSquares,
                                      whitePieces, blackPieces, &info, &plies))
                << type << " index " << i;
            ASSERT_TRUE(info == tb_DRAW || info == tb_WMATE) << type << " index " << i << " info " << info;
            const unsigned expected = info == tb_WMATE ? (plies + 1) / 2 : 0;
            ++compared;
            mates += expected != 0 ? 1 : 0;
            if (table.Cell(i) != expected) {
                ++disagreements;
                ADD_FAILURE() << type << " index " << i << ": table " << table.Cell(i) << ", Gaviota "
                              << expected;
                if (disagreements > 20) return;
            }
        }
        std::cout << type << ": " << compared << " positions agree (" << mates << " mates), " << illegal
                  << " cells without a legal position hold 0\n";
        EXPECT_GT(compared, 0u);
    }
    tbcache_done();
    tb_done();
    tbpaths_done(paths);
}

#else

TEST(TableGaviota, EveryCellOfTheThreeManTablesAgrees) {
    GTEST_SKIP()
        << "built without the Gaviota probing library (install libgaviotatb-dev, see scripts/setup.sh)";
}

#endif

} // namespace
} // namespace zorvane

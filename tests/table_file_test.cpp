// Raw table files: their names and folders, the header byte, writing, and a
// reader that refuses every file that does not fit its type.
#include "core/chess_exception.h"
#include "global_register/position_index.h"
#include "global_register/table_file.h"
#include "platform/data_directory.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>

namespace zorvane {
namespace {

namespace fs = std::filesystem;

// A fresh folder of this test's own.
class TableFileTest : public ::testing::Test {
  protected:
    void SetUp() override {
        m_dir = fs::temp_directory_path() / ("zorvane-table-file-" + std::to_string(getpid()) + "-" +
                                             ::testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::remove_all(m_dir);
        fs::create_directories(m_dir);
    }
    void TearDown() override { fs::remove_all(m_dir); }

    fs::path m_dir;
};

TRawTable tableOf(const std::string& type, uint8_t header, uint64_t size, uint8_t width = 1) {
    TRawTable table;
    table.sType = type;
    table.nHeader = header;
    table.nCellWidth = width;
    table.nSize = size;
    table.aBytes.assign(size * width, 0);
    for (uint64_t i = 1; i < table.aBytes.size(); ++i) table.aBytes[i] = static_cast<uint8_t>(i % 7);
    return table;
}

void writeBytes(const fs::path& path, const std::string& bytes) {
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << bytes;
}

std::string readError(const fs::path& path, const std::string& type) {
    try {
        ReadRawTable(path, type);
    } catch (const ChessException& e) {
        return e.what();
    }
    return "(read)";
}

TEST(TableFileName, LowerCaseLettersGetAMark) {
    EXPECT_EQ(TableFileStem("Qr"), "Qr_");
    EXPECT_EQ(TableFileStem("QR"), "QR");
    EXPECT_EQ(TableFileStem("Ppq"), "Pp_q_");
    EXPECT_EQ(TableFileStem("KQkp(b7)+pc4"), "KQk_p_(b7)+p_c4");
}

TEST(TableFileName, FolderCountsAllMenAndSaysWhetherThereArePawns) {
    EXPECT_EQ(TableSubfolder("Q"), "3pieces-pawns");
    EXPECT_EQ(TableSubfolder("Pp"), "4pieces+pawns");
    EXPECT_EQ(TableSubfolder("QRrn"), "6pieces-pawns");
    EXPECT_EQ(TableFilePath("/data", "Qr"), fs::path("/data/Precalc/4pieces-pawns/Qr_.precalc"));
}

TEST(TableFileName, DataDirectoryFollowsXdgThenHome) {
    const char* oldXdg = std::getenv("XDG_DATA_HOME");
    const std::string savedXdg = oldXdg ? oldXdg : "";
    const char* oldHome = std::getenv("HOME");
    const std::string savedHome = oldHome ? oldHome : "";
    setenv("XDG_DATA_HOME", "/xdg/data", 1);
    EXPECT_EQ(platform::ProgramDataDirectory(), fs::path("/xdg/data/zorvane"));
    setenv("XDG_DATA_HOME", "relative/data", 1);
    setenv("HOME", "/home/someone", 1);
    EXPECT_EQ(platform::ProgramDataDirectory(), fs::path("/home/someone/.local/share/zorvane"));
    if (oldXdg)
        setenv("XDG_DATA_HOME", savedXdg.c_str(), 1);
    else
        unsetenv("XDG_DATA_HOME");
    if (oldHome)
        setenv("HOME", savedHome.c_str(), 1);
    else
        unsetenv("HOME");
}

TEST(TableHeader, BitsMustFitTheType) {
    THeaderMeaning meaning;
    std::string error;
    ASSERT_TRUE(InterpretTableHeader("P", TABLE_HEADER_PAWN_COMPACT, meaning, error));
    EXPECT_EQ(meaning.nSize, 98304u);
    ASSERT_TRUE(InterpretTableHeader("P", 0, meaning, error));
    EXPECT_EQ(meaning.nSize, 131072u);
    // Two-byte cells and mappers count only from four men beside the kings.
    ASSERT_TRUE(
        InterpretTableHeader("Q", TABLE_HEADER_TWO_BYTE_CELLS | TABLE_HEADER_MAPPERS, meaning, error));
    EXPECT_EQ(meaning.nCellWidth, 1);
    EXPECT_EQ(meaning.nSize, 40960u);
    ASSERT_TRUE(InterpretTableHeader("QRqr", TABLE_HEADER_TWO_BYTE_CELLS, meaning, error));
    EXPECT_EQ(meaning.nCellWidth, 2);
    EXPECT_FALSE(InterpretTableHeader("Q", TABLE_HEADER_PAWN_COMPACT, meaning, error));
    EXPECT_EQ(error, "the header calls a table without pawns pawn-compact");
    EXPECT_FALSE(InterpretTableHeader("Q", 8, meaning, error));
    EXPECT_EQ(error, "unknown bits in the header byte 8");
    EXPECT_FALSE(InterpretTableHeader("Qk", 0, meaning, error));
    EXPECT_EQ(error, "\"Qk\" is no position type");
    EXPECT_EQ(DefaultTableHeader("Qr"), 0);
    EXPECT_EQ(DefaultTableHeader("Qp"), TABLE_HEADER_PAWN_COMPACT);
}

TEST_F(TableFileTest, WrittenTableReadsBackWithItsHeaderInCellZero) {
    const fs::path path = TableFilePath(m_dir, "P");
    WriteRawTable(path, tableOf("P", TABLE_HEADER_PAWN_COMPACT, 98304));
    ASSERT_EQ(fs::file_size(path), 98304u);
    const TRawTable read = ReadRawTable(path, "P");
    EXPECT_EQ(read.nHeader, TABLE_HEADER_PAWN_COMPACT);
    EXPECT_EQ(read.nSize, 98304u);
    EXPECT_EQ(read.aBytes[0], TABLE_HEADER_PAWN_COMPACT);
    EXPECT_EQ(read.Cell(12), 5u);
    EXPECT_EQ(FindTableFile(m_dir, "P"), path);
    EXPECT_EQ(FindTableFile(m_dir, "Q"), fs::path());
    // No temporary file is left beside it.
    int files = 0;
    for (const auto& entry : fs::directory_iterator(path.parent_path()))
        files += entry.is_regular_file() ? 1 : 0;
    EXPECT_EQ(files, 1);
}

TEST(TableCells, TwoByteCellsAreLittleEndian) {
    // Only the reading of a cell: the table is cut short.
    TRawTable table;
    table.sType = "QRqr";
    table.nHeader = TABLE_HEADER_TWO_BYTE_CELLS;
    table.nCellWidth = 2;
    table.nSize = 8;
    table.aBytes.resize(16);
    table.aBytes[2 * 5] = 0x2c;
    table.aBytes[2 * 5 + 1] = 0x01;
    EXPECT_EQ(table.Cell(5), 300u);
    EXPECT_EQ(table.Cell(4), 0u);
}

TEST_F(TableFileTest, FlatFolderIsUsedWhenTheSubfolderIsMissing) {
    const fs::path flat = m_dir / "Precalc" / "Q.precalc";
    writeBytes(flat, std::string(40960, '\0'));
    EXPECT_EQ(FindTableFile(m_dir, "Q"), flat);
    EXPECT_EQ(ReadRawTable(flat, "Q").nSize, 40960u);
}

TEST_F(TableFileTest, TruncatedFileIsRefusedWithItsSizes) {
    const fs::path path = TableFilePath(m_dir, "Q");
    writeBytes(path, std::string(40959, '\0'));
    EXPECT_EQ(readError(path, "Q"),
              "Table Q: the file has 40959 bytes where 40960 are expected: " + path.string());
    writeBytes(path, std::string(40961, '\0'));
    EXPECT_EQ(readError(path, "Q"),
              "Table Q: the file has 40961 bytes where 40960 are expected: " + path.string());
}

TEST_F(TableFileTest, CorruptHeaderAndEmptyAndMissingFilesAreRefused) {
    const fs::path path = TableFilePath(m_dir, "Q");
    writeBytes(path, std::string(1, '\x41') + std::string(40959, '\0'));
    EXPECT_EQ(readError(path, "Q"), "Table Q: unknown bits in the header byte 65: " + path.string());
    writeBytes(path, "");
    EXPECT_EQ(readError(path, "Q"), "Table Q: the file is empty: " + path.string());
    EXPECT_EQ(readError(m_dir / "none.precalc", "Q"),
              "Error opening file: " + (m_dir / "none.precalc").string());
    // A pawn table read without its compact bit expects the larger size.
    const fs::path pawns = TableFilePath(m_dir, "P");
    writeBytes(pawns, std::string(98304, '\0'));
    EXPECT_EQ(readError(pawns, "P"),
              "Table P: the file has 98304 bytes where 131072 are expected: " + pawns.string());
}

TEST(TableParse, BytesInMemoryAreCheckedAlike) {
    const std::string bytes(40960, '\0');
    const auto* data = reinterpret_cast<const uint8_t*>(bytes.data());
    EXPECT_EQ(ParseRawTable("Q", data, bytes.size()).nSize, 40960u);
    EXPECT_THROW(ParseRawTable("Q", data, 100), ChessException);
    EXPECT_THROW(ParseRawTable("Q", data, 0), ChessException);
    EXPECT_THROW(ParseRawTable("Zz", data, bytes.size()), ChessException);
}

} // namespace
} // namespace zorvane

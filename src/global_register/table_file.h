#pragma once
// Raw table files: where a type's file lives, and writing and reading one.
//
// A raw file is the table itself, `size * cellWidth` bytes, one cell per
// index, with no header of its own: cell 0 (every man on a1, no position)
// holds the header byte instead. Its bits say how the file was laid out, so a
// reader must check them against the type before it trusts the size.
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace zorvane {

// Header bit 2, beside the two of position_index.h: cells of two bytes,
// little-endian. Honoured from MIN_MAPPED_TYPE_LETTERS men beside the kings.
constexpr uint8_t TABLE_HEADER_TWO_BYTE_CELLS = 4;
constexpr uint8_t TABLE_HEADER_KNOWN_BITS = 7;
// Cell values: 0 no mate (or no legal position), 1..254 mate in so many
// moves, 255 not generated yet in a one-byte table.
constexpr uint8_t CELL_NOT_GENERATED = 255;
constexpr int MAX_ONE_BYTE_MATE = 254;

constexpr const char* TABLE_FOLDER = "Precalc";
constexpr const char* TABLE_FILE_EXTENSION = ".precalc";

// The file stem of a type text: "_" after each lower-case letter, so that
// "Qr" and "QR" stay apart where the file system ignores case. Nothing is
// added inside parentheses, and behind a '+' only the letter right after it
// gets one.
std::string TableFileStem(std::string_view type);
// "<N>pieces+pawns" or "<N>pieces-pawns", N the men in all, kings included.
std::string TableSubfolder(std::string_view type);
// Where a type's file is written: base/Precalc/<subfolder>/<stem>.precalc.
std::filesystem::path TableFilePath(const std::filesystem::path& base, std::string_view type);
// The file to read: the one in the subfolder, else base/Precalc/<stem>.precalc
// when the subfolder does not exist; empty when there is no file.
std::filesystem::path FindTableFile(const std::filesystem::path& base, std::string_view type);

// One table in memory as its file holds it.
struct TRawTable {
    std::string sType;
    uint8_t nHeader = 0;
    uint8_t nCellWidth = 1;
    uint64_t nSize = 0; // cells
    std::vector<uint8_t> aBytes;

    uint32_t Cell(uint64_t index) const {
        if (nCellWidth == 1) return aBytes[index];
        return aBytes[2 * index] | static_cast<uint32_t>(aBytes[2 * index + 1]) << 8;
    }
};

// The layout a header byte asks of a type, checked: unknown bits, a
// pawn-compact bit on a type without pawns, or a text that is no type give
// false and `error` says why.
struct THeaderMeaning {
    bool bPawnCompact = false;
    bool bUsesMappers = false;
    uint8_t nCellWidth = 1;
    uint64_t nSize = 0;
};
bool InterpretTableHeader(std::string_view type, uint8_t header, THeaderMeaning& meaning, std::string& error);

// The header byte with which this program writes a type: pawn-compact when it
// has pawns, no mappers, one-byte cells.
uint8_t DefaultTableHeader(std::string_view type);

// Writes the table's bytes (cell 0 set to its header) as `path`, through a
// temporary file renamed over it, creating the folders. Throws ChessException.
void WriteRawTable(const std::filesystem::path& path, const TRawTable& table);

// Reads `bytes` as a table of `type`, whole and checked: the header must fit
// the type and the length must be the table's. Throws ChessException with the
// reason; never reads outside `bytes`.
TRawTable ParseRawTable(std::string_view type, const uint8_t* bytes, size_t length);
// The same for a file. Throws ChessException for a file that cannot be read too.
TRawTable ReadRawTable(const std::filesystem::path& path, std::string_view type);

} // namespace zorvane

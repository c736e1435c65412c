// Any bytes as a raw table file. The first byte picks the type and whether the
// rest is taken as it is or cut and padded to the type's size (so that the
// header byte, not only the length, is tried). Only ChessException may leave
// the reader; a table it accepts has exactly its type's cells, and every cell
// can be probed through a position.
#include "core/chess_exception.h"
#include "fuzz_check.h"
#include "global_register/position_index.h"
#include "global_register/table_file.h"
#include "global_register/table_set.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>

using zorvane::fuzz::check;

namespace {

constexpr const char* TYPES[] = {"Q", "P", "Qr", "Pp", "QRqr", "Kk", ""};
constexpr int TYPE_COUNT = sizeof TYPES / sizeof TYPES[0];
// Tables larger than this are only tried as given, never padded.
constexpr uint64_t MAX_PADDED = 8 << 20;

void checkTable(const zorvane::TRawTable& table, const char* type) {
    check(table.aBytes.size() == table.nSize * table.nCellWidth, "bytes and cells differ");
    check(table.nCellWidth == 1 || table.nCellWidth == 2, "cell width");
    check(table.aBytes[0] == table.nHeader, "header is not cell 0");
    zorvane::TTableSet set("");
    set.Add(table);
    const zorvane::TTableLayout layout =
        zorvane::MakeTableLayout(type, (table.nHeader & zorvane::TABLE_HEADER_PAWN_COMPACT) != 0,
                                 (table.nHeader & zorvane::TABLE_HEADER_MAPPERS) != 0);
    for (uint64_t i = 1; i < table.nSize; i += table.nSize / 97 + 1) {
        zorvane::TChessboard board;
        if (!zorvane::PositionOfIndex(layout, i, board)) continue;
        check(zorvane::IndexOfPosition(layout, board) < table.nSize, "index beyond the table");
        set.Probe(board);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    const char* type = TYPES[data[0] % TYPE_COUNT];
    const bool padded = (data[0] & 0x80) != 0;
    std::string bytes(reinterpret_cast<const char*>(data + 1), size - 1);
    if (padded) {
        zorvane::THeaderMeaning meaning;
        std::string error;
        const uint8_t header = bytes.empty() ? 0 : static_cast<uint8_t>(bytes[0]);
        if (zorvane::InterpretTableHeader(type, header, meaning, error) &&
            meaning.nSize * meaning.nCellWidth <= MAX_PADDED)
            bytes.resize(meaning.nSize * meaning.nCellWidth, '\x01');
    }
    try {
        checkTable(zorvane::ParseRawTable(type, reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()),
                   type);
    } catch (const zorvane::ChessException&) {
    }
    // The file reader takes its own way to the same checks.
    const std::filesystem::path path =
        std::filesystem::temp_directory_path() / ("table_file_fuzz." + std::to_string(getpid()));
    std::ofstream(path, std::ios::binary | std::ios::trunc)
        .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    try {
        checkTable(zorvane::ReadRawTable(path, type), type);
    } catch (const zorvane::ChessException&) {
    }
    return 0;
}

#include "table_file.h"

#include "core/chess_exception.h"
#include "position_index.h"
#include "problems/safe_write.h"
#include "table_layout.h"

#include <cctype>
#include <fstream>
#include <stdexcept>
#include <system_error>

namespace zorvane {

namespace fs = std::filesystem;

std::string TableFileStem(std::string_view type) {
    std::string stem;
    bool inParentheses = false;
    bool behindPlus = false;
    bool firstBehindPlus = false;
    for (const char c : type) {
        stem += c;
        if (c == '(') inParentheses = true;
        if (c == ')') inParentheses = false;
        const bool lower = std::islower(static_cast<unsigned char>(c)) != 0;
        if (c == '+') {
            behindPlus = true;
            firstBehindPlus = true;
            continue;
        }
        if (lower && !inParentheses && (!behindPlus || firstBehindPlus)) stem += '_';
        firstBehindPlus = false;
    }
    return stem;
}

std::string TableSubfolder(std::string_view type) {
    int men = 2;
    bool pawns = false;
    for (const char c : type) {
        if (c == '+' || c == '(') break;
        ++men;
        pawns = pawns || c == 'P' || c == 'p';
    }
    return std::to_string(men) + (pawns ? "pieces+pawns" : "pieces-pawns");
}

fs::path TableFilePath(const fs::path& base, std::string_view type) {
    return base / TABLE_FOLDER / TableSubfolder(type) / (TableFileStem(type) + TABLE_FILE_EXTENSION);
}

fs::path FindTableFile(const fs::path& base, std::string_view type) {
    std::error_code ec;
    const fs::path inSubfolder = TableFilePath(base, type);
    if (fs::is_directory(inSubfolder.parent_path(), ec))
        return fs::is_regular_file(inSubfolder, ec) ? inSubfolder : fs::path();
    const fs::path flat = base / TABLE_FOLDER / (TableFileStem(type) + TABLE_FILE_EXTENSION);
    return fs::is_regular_file(flat, ec) ? flat : fs::path();
}

bool InterpretTableHeader(std::string_view type, uint8_t header, THeaderMeaning& meaning,
                          std::string& error) {
    if ((header & ~TABLE_HEADER_KNOWN_BITS) != 0) {
        error = "unknown bits in the header byte " + std::to_string(header);
        return false;
    }
    TTableLayout layout;
    try {
        layout = MakeTableLayout(type, (header & TABLE_HEADER_PAWN_COMPACT) != 0,
                                 (header & TABLE_HEADER_MAPPERS) != 0);
    } catch (const std::runtime_error&) {
        error = "\"" + std::string(type) + "\" is no position type";
        return false;
    }
    if (layout.bPawnCompact && !layout.bHasPawns) {
        error = "the header calls a table without pawns pawn-compact";
        return false;
    }
    meaning.bPawnCompact = layout.bPawnCompact;
    meaning.bUsesMappers = layout.bUsesMappers;
    const bool twoByteHonoured = layout.nLetters >= MIN_MAPPED_TYPE_LETTERS;
    meaning.nCellWidth = twoByteHonoured && (header & TABLE_HEADER_TWO_BYTE_CELLS) ? 2 : 1;
    meaning.nSize = TableSize(layout);
    return true;
}

uint8_t DefaultTableHeader(std::string_view type) {
    for (const char c : type)
        if (c == 'P' || c == 'p') return TABLE_HEADER_PAWN_COMPACT;
    return 0;
}

void WriteRawTable(const fs::path& path, const TRawTable& table) {
    std::error_code ec;
    fs::create_directories(path.parent_path(), ec);
    if (ec) throw ChessException("Error opening file: " + path.string() + " (" + ec.message() + ")");
    std::string bytes(table.aBytes.begin(), table.aBytes.end());
    if (!bytes.empty()) bytes[0] = static_cast<char>(table.nHeader);
    WriteFileSafely(path, bytes);
}

namespace {

// A table of `type` whose file starts with `header` and has `length` bytes, its
// bytes not read yet. Throws ChessException naming `where` when they do not fit.
TRawTable checkedTable(std::string_view type, uint8_t header, uint64_t length, const std::string& where) {
    THeaderMeaning meaning;
    std::string error;
    if (!InterpretTableHeader(type, header, meaning, error))
        throw ChessException("Table " + std::string(type) + ": " + error + where);
    const uint64_t expected = meaning.nSize * meaning.nCellWidth;
    if (length != expected)
        throw ChessException("Table " + std::string(type) + ": the file has " + std::to_string(length) +
                             " bytes where " + std::to_string(expected) + " are expected" + where);
    TRawTable table;
    table.sType = std::string(type);
    table.nHeader = header;
    table.nCellWidth = meaning.nCellWidth;
    table.nSize = meaning.nSize;
    return table;
}

} // namespace

TRawTable ParseRawTable(std::string_view type, const uint8_t* bytes, size_t length) {
    if (length == 0) throw ChessException("Table " + std::string(type) + ": the file is empty");
    TRawTable table = checkedTable(type, bytes[0], length, "");
    table.aBytes.assign(bytes, bytes + length);
    return table;
}

TRawTable ReadRawTable(const fs::path& path, std::string_view type) {
    const std::string where = ": " + path.string();
    std::ifstream in(path, std::ios::binary);
    std::error_code ec;
    const uintmax_t length = fs::file_size(path, ec);
    if (!in || ec) throw ChessException("Error opening file: " + path.string());
    // The size is checked before the file is read: a wrong file may be huge.
    char header = 0;
    if (length == 0 || !in.get(header))
        throw ChessException("Table " + std::string(type) + ": the file is empty" + where);
    TRawTable table = checkedTable(type, static_cast<uint8_t>(header), length, where);
    table.aBytes.resize(static_cast<size_t>(length));
    in.seekg(0);
    if (!in.read(reinterpret_cast<char*>(table.aBytes.data()), static_cast<std::streamsize>(length)))
        throw ChessException("Error reading file: " + path.string());
    return table;
}

} // namespace zorvane

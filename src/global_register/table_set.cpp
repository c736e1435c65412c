#include "table_set.h"

#include "core/chess_exception.h"
#include "position_index.h"
#include "position_type.h"
#include "table_types.h"

namespace zorvane {

bool TTableSet::Load(std::string_view type) {
    if (Find(type) != nullptr) return true;
    const std::filesystem::path path = FindTableFile(m_base, type);
    if (path.empty()) return false;
    Add(ReadRawTable(path, type));
    return true;
}

void TTableSet::Add(TRawTable table) {
    const uint64_t key = PosTypeKey(table.sType);
    Entry entry;
    entry.layout = MakeTableLayout(table.sType, (table.nHeader & TABLE_HEADER_PAWN_COMPACT) != 0,
                                   (table.nHeader & TABLE_HEADER_MAPPERS) != 0);
    if (entry.layout.bUsesMappers && !AttachCombinationMappers(entry.layout, m_mappers))
        throw ChessException("Table " + table.sType + ": no memory for its combination mappers");
    entry.table = std::move(table);
    m_tables[key] = std::move(entry);
}

const TRawTable* TTableSet::Find(std::string_view type) const {
    const auto found = m_tables.find(PosTypeKey(type));
    return found == m_tables.end() ? nullptr : &found->second.table;
}

bool TTableSet::Covers(const TChessboard& position) const {
    const uint64_t key = PosTypeKeyOfPosition(position);
    return key != 0 && m_tables.count(key) != 0;
}

int TTableSet::LoadReachable(const TChessboard& position) {
    if (PosTypeKeyOfPosition(position) == 0) return 0;
    int loaded = 0;
    for (const std::string& type : TypesInMakingOrder({PosTypeText(position)}))
        if (Load(type)) ++loaded;
    return loaded;
}

int TTableSet::Probe(const TChessboard& position) const {
    if (position.whiteMenBesideKing() == 0) return 0;
    const auto found = m_tables.find(PosTypeKeyOfPosition(position));
    if (found == m_tables.end()) return PROBE_NOT_AVAILABLE;
    const uint32_t cell = found->second.table.Cell(IndexOfPosition(found->second.layout, position));
    return cell == CELL_NOT_GENERATED && found->second.table.nCellWidth == 1 ? PROBE_NOT_AVAILABLE
                                                                             : static_cast<int>(cell);
}

std::unique_ptr<TTableSet> LoadTablesFor(const std::filesystem::path& base, const TChessboard& root,
                                         std::string& error) {
    std::error_code missing;
    if (!std::filesystem::is_directory(base / TABLE_FOLDER, missing)) return nullptr;
    auto tables = std::make_unique<TTableSet>(base);
    try {
        tables->LoadReachable(root);
    } catch (const ChessException& e) {
        error = e.what();
        return nullptr;
    }
    return tables->Covers(root) ? std::move(tables) : nullptr;
}

} // namespace zorvane

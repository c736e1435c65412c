#pragma once
// The tables at hand while making, checking or probing: loaded from the data
// directory or just made, looked up by the men of a position.
#include "expected_mate.h"
#include "table_file.h"
#include "table_layout.h"

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace zorvane {

class TTableSet {
  public:
    explicit TTableSet(std::filesystem::path base) : m_base(std::move(base)) {}

    const std::filesystem::path& Base() const { return m_base; }

    // Reads the type's file when it is not at hand yet. False when there is
    // no file; throws ChessException for one that is damaged.
    bool Load(std::string_view type);
    // Takes a table made in memory, replacing one of the same type.
    void Add(TRawTable table);
    const TRawTable* Find(std::string_view type) const;
    // Whether the table of the position's men is at hand.
    bool Covers(const TChessboard& position) const;
    // Reads the tables of the position's men and of every type a capture or
    // a promotion can lead to, those that have files; the count at hand
    // afterwards. A position with more men than any table holds reads none.
    // Throws ChessException for a damaged file.
    int LoadReachable(const TChessboard& position);

    // The mate length of a position, White to move, from its type's table; 0
    // for a bare white king; PROBE_NOT_AVAILABLE when the table is not at
    // hand. Reads only, so threads may probe together once loading is done.
    int Probe(const TChessboard& position) const;
    // Probe as a TMateProbe.
    TMateProbe Prober() const {
        return [this](const TChessboard& position) { return Probe(position); };
    }

  private:
    struct Entry {
        TRawTable table;
        TTableLayout layout;
    };
    std::filesystem::path m_base;
    std::map<uint64_t, Entry> m_tables;
    TCombinationMappers m_mappers;
};

// The tables under `base` for a position's men and all they can come to; none
// when no table holds the men. A damaged file gives none, with its message
// in `error`.
std::unique_ptr<TTableSet> LoadTablesFor(const std::filesystem::path& base, const TChessboard& root,
                                         std::string& error);

} // namespace zorvane

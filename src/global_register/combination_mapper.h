#pragma once
// Combination mappers: a set of `Count` like men of one table as one number.
//
// Two white rooks on a1 and h8 are the same position as on h8 and a1, so a
// table that numbers them by their unordered set instead of two squares is
// about half as large (a sixth for three, and so on). The number of a set is
// its rank in lexicographic order of the ascending squares; the inverse reads
// a table of all sets in that order, `Count` bytes each, so that neither
// direction searches. Pieces take the 64 squares, pawns the 48 squares 8..55.
//
// Five like pieces need a table of about 38 MB, so a mapper is made only for
// a type that uses it and lives as long as that type's table.
#include <array>
#include <cstdint>
#include <memory>
#include <vector>

namespace zorvane {

constexpr uint32_t Binomial(uint32_t n, uint32_t k) {
    if (k > n) return 0;
    uint64_t result = 1;
    for (uint32_t i = 1; i <= k; ++i) result = result * (n - k + i) / i;
    return static_cast<uint32_t>(result);
}

constexpr int MIN_MAPPED_MEN = 2;
constexpr int MAX_MAPPED_MEN = 5;

class CMappingCombinationIndexIntoSetBase {
  public:
    explicit CMappingCombinationIndexIntoSetBase(int bytesPerEntry) : m_nBytesPerEntry(bytesPerEntry) {}
    CMappingCombinationIndexIntoSetBase(const CMappingCombinationIndexIntoSetBase&) = delete;
    CMappingCombinationIndexIntoSetBase& operator=(const CMappingCombinationIndexIntoSetBase&) = delete;
    virtual ~CMappingCombinationIndexIntoSetBase() = default;

    virtual uint32_t GetNumberOfCombinations() const = 0;
    // The squares of set `index` (below the number of combinations), ascending.
    virtual void GetCombinationOfIndex(uint32_t index, uint8_t* squares) const = 0;
    // The rank of ascending, distinct squares inside the set.
    virtual uint32_t GetIndexOfCombination(const uint8_t* squares) const = 0;

    int BytesPerEntry() const { return m_nBytesPerEntry; }

  protected:
    int m_nBytesPerEntry;
};

template <int SetSize, int Count, class Element, int Offset>
class CMappingCombinationIndexIntoSet final : public CMappingCombinationIndexIntoSetBase {
    static_assert(Count >= MIN_MAPPED_MEN && Count <= MAX_MAPPED_MEN);
    static_assert(SetSize + Offset <= 256, "squares are stored as bytes");

  public:
    static constexpr uint32_t COMBINATIONS = Binomial(SetSize, Count);

    // Throws std::bad_alloc when the table does not fit.
    CMappingCombinationIndexIntoSet();

    uint32_t GetNumberOfCombinations() const override { return COMBINATIONS; }
    void GetCombinationOfIndex(uint32_t index, uint8_t* squares) const override {
        const Element* entry = &m_aCombinations[static_cast<size_t>(index) * Count];
        for (int i = 0; i < Count; ++i) squares[i] = static_cast<uint8_t>(entry[i]);
    }
    uint32_t GetIndexOfCombination(const uint8_t* squares) const override;

  private:
    // All sets in lexicographic order, Count squares each.
    std::vector<Element> m_aCombinations;
    // m_aPartialSums[j][x]: the sets of j elements whose first element is
    // below x; the sets that start between a and b are the difference.
    std::array<std::array<uint32_t, SetSize + 1>, Count + 1> m_aPartialSums{};
};

template <int SetSize, int Count, class Element, int Offset>
CMappingCombinationIndexIntoSet<SetSize, Count, Element, Offset>::CMappingCombinationIndexIntoSet()
    : CMappingCombinationIndexIntoSetBase(Count) {
    m_aCombinations.resize(static_cast<size_t>(COMBINATIONS) * Count);
    std::array<int, Count> set{};
    for (int i = 0; i < Count; ++i) set[i] = i;
    for (size_t at = 0; at < m_aCombinations.size(); at += Count) {
        for (int i = 0; i < Count; ++i) m_aCombinations[at + i] = static_cast<Element>(set[i] + Offset);
        // Next set: raise the last element that still has room, reset the ones after it.
        int i = Count - 1;
        while (i >= 0 && set[i] == SetSize - Count + i) --i;
        if (i < 0) break;
        ++set[i];
        for (int j = i + 1; j < Count; ++j) set[j] = set[j - 1] + 1;
    }
    for (int j = 1; j <= Count; ++j)
        for (int x = 0; x < SetSize; ++x)
            m_aPartialSums[j][x + 1] = m_aPartialSums[j][x] + Binomial(static_cast<uint32_t>(SetSize - 1 - x),
                                                                       static_cast<uint32_t>(j - 1));
}

template <int SetSize, int Count, class Element, int Offset>
uint32_t CMappingCombinationIndexIntoSet<SetSize, Count, Element, Offset>::GetIndexOfCombination(
    const uint8_t* squares) const {
    uint32_t index = 0;
    int low = 0; // the least square the next element may take
    for (int i = 0; i < Count - 2; ++i) {
        const int s = squares[i] - Offset;
        index += m_aPartialSums[Count - i][s] - m_aPartialSums[Count - i][low];
        low = s + 1;
    }
    // The last pair in the remaining range [low, SetSize) in closed form.
    const uint32_t a = static_cast<uint32_t>(squares[Count - 2] - Offset - low);
    const uint32_t b = static_cast<uint32_t>(squares[Count - 1] - Offset - low);
    const uint32_t range = static_cast<uint32_t>(SetSize - low);
    return index + ((range * 2 - a - 1) * a) / 2 + b - a - 1;
}

constexpr int PIECE_SET_SIZE = 64;
constexpr int PAWN_SET_SIZE = 48;
constexpr int PAWN_SET_OFFSET = 8;

template <int Count>
using TPieceMapper = CMappingCombinationIndexIntoSet<PIECE_SET_SIZE, Count, unsigned char, 0>;
template <int Count>
using TPawnMapper = CMappingCombinationIndexIntoSet<PAWN_SET_SIZE, Count, unsigned char, PAWN_SET_OFFSET>;

// The number of sets of `count` like men, or 0 outside 2..5.
uint32_t MapperCombinations(bool pawns, int count);

// A new mapper for `count` (2..5) like pieces or pawns; null for another count
// or when the memory is not there.
std::unique_ptr<CMappingCombinationIndexIntoSetBase> CreateCombinationMapper(bool pawns, int count);

} // namespace zorvane

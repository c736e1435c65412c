#pragma once
// Sort indications: patterns of White moves that the solver tries first (or,
// negated, last). Text syntax: [~] [n.] [F] f1 [- | : | >] f2 [+]
//   "e2-e4" any man from e2 to e4; "e2>e4" only quietly; "e2:e4" only capturing;
//   "Qe4" a queen to e4 from anywhere; "3.Qh5+" White's third move, with check;
//   "~a2-a3" send it to the end; "0-0" castling short.
#include "core/chessboard.h"
#include "core/move.h"
#include "variant.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace zorvane {

constexpr uint8_t ANY_SQUARE = 255;
constexpr uint8_t CAPTURE_NO_MATTER = 255;

// The engine reads these records directly in its move ordering.
struct SortIndication {
    uint8_t figure = 0;        // figure code with the White bit, 0 for any figure
    uint8_t from = ANY_SQUARE; // 0..63, or ANY_SQUARE
    uint8_t to = 0;
    uint8_t captureRule = CAPTURE_NO_MATTER; // 1 must capture, 0 must not
    uint8_t checks = 0;                      // required check level: 0, 1 check, 2 double check
    uint8_t promotion = 0;                   // required promotion kind, or 0
    int16_t moveNumber = 0;                  // White's move number it applies to; 0 for any
    uint8_t negated = 0;                     // 1: to the end of the list instead of the front
    uint8_t chained = 1;                     // earlier numbers must have matched too
};
static_assert(sizeof(SortIndication) == 10, "ten-byte plain record read by the move ordering");
static_assert(offsetof(SortIndication, moveNumber) == 6);

// By move number, ascending; text order within a number.
using SortIndications = std::map<int16_t, std::vector<SortIndication>>;

// Replaces `map` by the indications of `text`; on an error the old contents stay
// and the error passes on. Texts of errors by `languageId` (0 Polish, other English).
void ParseSortIndications(SortIndications& map, const std::string& text, int languageId);
void ParseSortIndication(SortIndication& record, const std::string& text, int languageId);

std::string FormatSortIndications(const SortIndications& map);
std::string FormatSortIndication(const SortIndication& record);

// The White moves of a variant as indications: "1.Rd1; 2.Rd8+".
std::string VariantToSortIndications(const TVariant& variant, const TChessboard& startPosition);

// Whether `record` matches the move that led from `parent` to `child` (rules
// 1 to 6: to, from, capture, figure, check level, promotion).
bool IndicationMatches(const SortIndication& record, const TChessboard& parent, const TMove& move,
                       const TChessboard& child);

// The chain test for a match at White's move `moveNumber`; `position` is the
// position after that move.
bool EarlierIndicationsMatch(const SortIndications& map, int moveNumber, const TChessboard& position);

// Whether the indications apply at White's move `moveNumber` at all.
bool SortIndicationsApply(const SortIndications& map, int moveNumber);

// The indication that matches White's move `moveNumber` (the move that led to
// `child`), looking under that number first and under 0 then; nullptr for none.
const SortIndication* FindMatchingIndication(const SortIndications& map, int moveNumber,
                                             const TChessboard& child);

// The top list of White's moves on `position` (White's move 1) reordered: a
// match to the front, a negated match to the end, others keep their order.
void OrderRootMovesByIndications(const SortIndications& map, const TChessboard& position,
                                 std::vector<TMove>& moves);

// Indications reflected in the line between the d- and e-files; ANY_SQUARE stays.
SortIndications MirrorSortIndications(const SortIndications& map);

// The indications a solve uses: the main variant's when `useMainVariant` is on
// and there is one (mirrored first for a mirrored run, whose start position is
// then the mirrored one), a copy of `sortIndications` otherwise.
SortIndications ChooseActiveSortIndications(bool useMainVariant, const TVariant* mainVariant,
                                            const TChessboard& startPosition, bool mirrored,
                                            const SortIndications& sortIndications, int languageId);

} // namespace zorvane

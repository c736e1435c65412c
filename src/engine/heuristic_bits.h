#pragma once
// The bits of the special heuristics' word `m_uHeuristics`: each is one bet on
// the shape of the solution. 0 is the empty set.
#include <cstdint>

namespace zorvane {

constexpr uint32_t SH_AREKINGSNEAR = 0x00000001u;
constexpr uint32_t SH_SWEEPINGWHITEROOK = 0x00000002u;
constexpr uint32_t SH_KEEPKINGONTHEEDGE = 0x00000004u;
constexpr uint32_t SH_ONECOLORPLAYPOSSIBLE = 0x00000008u;
constexpr uint32_t SH_ZUGZWANGTRIANGLES = 0x00000010u;
constexpr uint32_t SH_DONTLEAVEMAINDIAGONAL = 0x00000020u;
constexpr uint32_t SH_KEEPKINGWITHINEXTEDGE = 0x00000040u;
constexpr uint32_t SH_DONTLETFIGUREUNBLOCK = 0x00000080u;
constexpr uint32_t SH_FINDFORCEDMATE = 0x00000200u;
constexpr uint32_t SH_DONTRECEDEBLACKKING = 0x00000400u;
constexpr uint32_t SH_DONTLETPROMOTEDQUEENMOVE = 0x00000800u;
constexpr uint32_t SH_KEYLINE = 0x00001000u;
constexpr uint32_t SH_KEYDIAGONAL = 0x00002000u;
constexpr uint32_t SH_SAVEQUEEN_ROOK = 0x00004000u;
constexpr uint32_t SH_DONTLOSEANYFIGURES = 0x00008000u;
constexpr uint32_t SH_DONTLETBLACKQUEENCHECKTWICE = 0x00010000u;
constexpr uint32_t SH_USEBLOCKBLACKPAWNSLEVEL = 0x00020000u;
constexpr uint32_t SH_KEYFIELD = 0x00040000u;
constexpr uint32_t SH_ASSERTBLACKKINGSURROUNDED = 0x00080000u;
constexpr uint32_t SH_SINGLEQUEENMATE = 0x00100000u;
constexpr uint32_t SH_3MOVESTOMATE = 0x00200000u;
constexpr uint32_t SH_KEYWHITEFIGURE = 0x00400000u;
constexpr uint32_t SH_CAPTUREKNIGHT = 0x00800000u;
constexpr uint32_t SH_SKIPWORSTWHITEMOVES = 0x01000000u;
constexpr uint32_t SH_DONTLETPROMOTEDFIGUREMOVE = 0x02000000u;
constexpr uint32_t SH_KEEPKINGNEARCORNER = 0x04000000u;
constexpr uint32_t SH_SEASNAKE = 0x08000000u;
constexpr uint32_t SH_REDUCTIONTOGLOBREGPOS = 0x40000000u;
constexpr uint32_t SH_ZUGZWANG = 0x80000000u;

// Heuristics that generate White's moves themselves: the steps leave the
// general stages to them.
constexpr uint32_t SH_OWN_WHITE_MOVES_MASK = 0x88400018u;
// Bets that only White's own move can break: tested on a White move's child
// (site B) in pass 1.
constexpr uint32_t SH_WHITE_MOVE_TESTS_MASK = 0x020808A6u;

} // namespace zorvane

#pragma once
// Bits of `m_uHeuristics` that the steps and the ordering test by name.
#include <cstdint>

namespace zorvane {

constexpr uint32_t SH_SKIPWORSTWHITEMOVES = 0x01000000u;
// Heuristics that generate White's moves themselves: the steps leave the
// general stages to them.
constexpr uint32_t SH_OWN_WHITE_MOVES_MASK = 0x88400018u;

} // namespace zorvane

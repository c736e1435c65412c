#pragma once
// The figure a pawn becomes, asked with a small menu at the mouse.
#include <cstdint>

class QWidget;

namespace zorvane {

// A kind (queen, rook, bishop, knight), or 0 when the menu is closed without a choice.
uint8_t ChoosePromotionByMenu(QWidget* parent, int languageId, bool white);

} // namespace zorvane

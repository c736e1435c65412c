#pragma once
// Model and ideal mates of the black king, as problemists judge them.
//
// Rule used here. The field of the king is the squares around it. A mate is
// pure when every square of the field is either attacked by exactly one White
// man (counted with the black king lifted off the board, so that a line
// through the king goes on behind it) or blocked by a black man that no White
// man attacks. The king's own square is not counted: a double check stays pure.
// A White man takes part when it attacks the king's square or a square of the
// field, or pins a black man against the king. A black man takes part when it
// blocks a square of the field.
//   Model mate: pure, and every White man takes part, the king and pawns excepted.
//   Ideal mate: pure, and every man of both sides takes part.
#include "core/chessboard.h"

namespace zorvane {

enum class MateQuality { NoMate, Plain, Model, Ideal };

// Quality of the position, Black to move; NoMate unless Black is checkmated.
MateQuality FindMateQuality(const TChessboard& position);

bool IsModelMate(const TChessboard& position);
bool IsIdealMate(const TChessboard& position);

} // namespace zorvane

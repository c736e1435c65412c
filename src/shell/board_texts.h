#pragma once
// The messages of the board and of position setting, in the three languages.
#include <QString>

#include <string>

namespace zorvane {

enum class BoardText {
    NoMoreMoves, // %1: moves of the stipulation
    CheckedAtStart,
    IllegalMove,
    PositionRepetition,
    EngineRefusesMove,
    Stalemate,
    MateInOne,
    TemporaryRegisterMate, // %1: moves
    NoMate,
    ToolUnavailable,
    StartEditing,
    StipulationToolUnavailable,
    TooManyQueensAndPawns,
    ContinueAnyway,
    BlackKingCheckedAtStart,
    WhiteKingCheckedAtStart,
    Queen,
    Rook,
    Bishop,
    Knight,
};

QString BoardMessage(int languageId, BoardText text);

// The set-up's own fault texts, which come in English, in the language asked
// for; an unknown text is given back as it is.
QString SetupFaultMessage(int languageId, const std::string& englishText);

} // namespace zorvane

#pragma once
// Stored lines of play ("variants") and their text form:
//   "{Main variant} e2-e4 e7-e5[the only defence] Ng1-f3"
#include "core/chessboard.h"
#include "core/move.h"
#include "core/localized_text.h"

#include <array>
#include <map>
#include <string>
#include <vector>

namespace zorvane {

struct TVariantMove {
    TMove move;
    std::string text; // the move as it stood in the stored line, 8-bit
    std::wstring comment;
};

struct TVariant {
    std::wstring name;
    std::vector<TVariantMove> moves; // White's move first, from the starting position
};

using TVariantMap = std::map<std::wstring, TVariant>;

// The name of the main variant by language: 0 Polish, 1 English, 2 Ukrainian.
extern const std::array<std::wstring, 3> MainVariantNames;

// Reads a variant; throws ChessException at the first word that is no long move.
// With `translateName`, any language's main-variant name becomes the one of `languageId`.
TVariant ParseVariantText(const std::wstring& text, bool translateName, int languageId);

// Writes a variant.
//   nameMode: negative no header, 0 the name as it stands, positive the main
//             variant's name in English whatever the language it stands in.
//   previous, next: when given, the leading moves shared with that line are left out.
//   board: the start position; with it come the check and mate marks, and with
//          `useShort` the short notation.
std::wstring FormatVariantText(const TVariant& variant, bool withComments, int nameMode, bool withNumbers,
                               const TVariant* previous, const TVariant* next, const TChessboard* board,
                               bool useShort, int languageId);

// Moves the main variant to the name of `languageId`, unless that name is there already.
void TranslateMainVariantName(TVariantMap& variants, int languageId);

// Same moves (from, to, promotion figure), and with `withComments` the same comments.
bool SameVariantMoves(const TVariant& a, const TVariant& b, bool withComments);

// The variant reflected in the line between the d- and e-files.
TVariant MirrorVariant(const TVariant& variant);

} // namespace zorvane

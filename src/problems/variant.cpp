#include "variant.h"

#include "mate_quality.h"
#include "notation.h"

#include <algorithm>

namespace zorvane {

const std::array<std::wstring, 3> MainVariantNames = {L"Wariant g\u0142\u00f3wny", L"Main variant",
                                                      L"\u041e\u0441\u043d\u043e\u0432\u043d\u0438\u0439 "
                                                      L"\u0432\u0430\u0440\u0456\u0430\u043d\u0442"};

namespace {

int languageIndex(int languageId) {
    return languageId >= 0 && languageId <= 2 ? languageId : LANGUAGE_ENGLISH;
}

bool isAlnum(wchar_t c) {
    return (c >= L'0' && c <= L'9') || (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z');
}
bool endsWord(wchar_t c) {
    return c == L' ' || c == L'\t' || c == L'\r' || c == L'\n';
}

// Moves are plain ASCII; anything else cannot be part of a move and is marked as such.
std::string narrow(const std::wstring& text) {
    std::string result;
    result.reserve(text.size());
    for (const wchar_t c : text) result += c < 128 ? static_cast<char>(c) : '?';
    return result;
}

std::wstring widen(const std::string& text) {
    std::wstring result;
    result.reserve(text.size());
    for (const char c : text) result += static_cast<wchar_t>(static_cast<unsigned char>(c));
    return result;
}

bool sameMove(const TVariantMove& a, const TVariantMove& b) {
    return a.move == b.move;
}

size_t sharedPrefix(const TVariant& a, const TVariant& b) {
    size_t n = 0;
    while (n < a.moves.size() && n < b.moves.size() && sameMove(a.moves[n], b.moves[n])) ++n;
    return n;
}

const wchar_t* qualityText(MateQuality quality, int languageId) {
    static const wchar_t* const model[3] = {
        L" mat wzorowy", L" model mate",
        L" \u0437\u0440\u0430\u0437\u043a\u043e\u0432\u0438\u0439 \u043c\u0430\u0442"};
    static const wchar_t* const ideal[3] = {
        L" mat idealny", L" ideal mate",
        L" \u0456\u0434\u0435\u0430\u043b\u044c\u043d\u0438\u0439 \u043c\u0430\u0442"};
    if (quality == MateQuality::Model) return model[languageIndex(languageId)];
    if (quality == MateQuality::Ideal) return ideal[languageIndex(languageId)];
    return L"";
}

// Marks behind a move, judged on the position it led to.
std::wstring marks(const TChessboard& after, bool whiteMoved, int languageId) {
    const int check = CheckLevel(after);
    const bool canMove = SideToMoveHasLegalMove(after);
    if (check > 0) {
        if (!canMove)
            return std::wstring(L"x") + (whiteMoved ? qualityText(FindMateQuality(after), languageId) : L"");
        return check == 2 ? L"++" : L"+";
    }
    return whiteMoved && !canMove ? L"=" : L"";
}

} // namespace

TVariant ParseVariantText(const std::wstring& text, bool translateName, int languageId) {
    TVariant variant;
    // 1. The name between the braces.
    size_t pos = 0;
    const size_t open = text.find(L'{');
    const size_t close = open == std::wstring::npos ? std::wstring::npos : text.find(L'}', open);
    if (open != std::wstring::npos && close != std::wstring::npos) {
        variant.name = text.substr(open + 1, close - open - 1);
        pos = close + 1;
        if (translateName && std::find(MainVariantNames.begin(), MainVariantNames.end(), variant.name) !=
                                 MainVariantNames.end())
            variant.name = MainVariantNames[languageIndex(languageId)];
    }
    // 2.-4. Words, each with its comment, read alternately for White and Black.
    bool white = true;
    while (pos < text.size() && text[pos] != L'\n') {
        if (!isAlnum(text[pos])) {
            ++pos;
            continue;
        }
        size_t end = pos;
        while (end < text.size() && !endsWord(text[end]) && text[end] != L'[') ++end;
        TVariantMove entry;
        entry.text = narrow(text.substr(pos, end - pos));
        pos = end;
        if (pos < text.size() && text[pos] == L'[') {
            const size_t closing = text.find(L']', pos + 1);
            const size_t commentEnd = closing == std::wstring::npos ? text.size() : closing;
            entry.comment = text.substr(pos + 1, commentEnd - pos - 1);
            pos = closing == std::wstring::npos ? text.size() : closing + 1;
        }
        entry.move = ParseLongMove(entry.text, white);
        variant.moves.push_back(std::move(entry));
        white = !white;
    }
    return variant;
}

std::wstring FormatVariantText(const TVariant& variant, bool withComments, int nameMode, bool withNumbers,
                               const TVariant* previous, const TVariant* next, const TChessboard* board,
                               bool useShort, int languageId) {
    std::wstring text;
    // 1. Header.
    if (nameMode == 0) {
        text = L"{" + variant.name + L"}";
    } else if (nameMode > 0) {
        const bool main = variant.name == MainVariantNames[LANGUAGE_POLISH] ||
                          variant.name == MainVariantNames[LANGUAGE_UKRAINIAN];
        text = L"{" + (main ? MainVariantNames[LANGUAGE_ENGLISH] : variant.name) + L"}";
    }

    // Moves shared with the neighbouring line are left out.
    size_t skip = 0;
    if (previous)
        skip = sharedPrefix(variant, *previous);
    else if (next)
        skip = sharedPrefix(variant, *next);

    // The positions along the line, while its moves can be played; each child
    // points at the one before, so the vector never grows beyond its reserve.
    std::vector<TChessboard> positions;
    if (board) {
        positions.reserve(variant.moves.size() + 1);
        positions.push_back(*board);
        const size_t plies = std::min<size_t>(2 * variant.moves.size() + 1, 65535);
        positions.back().m_shPliesLeft = static_cast<uint16_t>(plies | 1);
    }

    bool commentOnWhite = false;
    bool firstPrinted = true;
    for (size_t i = 0; i < variant.moves.size(); ++i) {
        const TVariantMove& entry = variant.moves[i];
        const bool white = i % 2 == 0;
        const bool playing = board && positions.size() == i + 1;
        if (playing) {
            TMove move = entry.move;
            TChessboard child;
            if (PlayMove(positions.back(), child, move)) positions.push_back(child);
        }
        const bool played = board && positions.size() == i + 2;
        if (i < skip) continue;

        // 2. Separator.
        if (!text.empty()) text += L' ';
        // 3. Move number.
        if (withNumbers) {
            const int number = static_cast<int>(i / 2) + 1;
            if (white)
                text += std::to_wstring(number) + L".";
            else if (commentOnWhite || firstPrinted)
                text += std::to_wstring(number) + L". ...";
        }
        // 4. The move.
        text += played && useShort ? widen(FormatShortMove(positions.back())) : widen(entry.text);
        // 5. Marks.
        if (played) text += marks(positions.back(), white, languageId);
        // 6. Comment.
        const bool comment = withComments && !entry.comment.empty();
        if (comment) text += withNumbers ? L"(" + entry.comment + L")" : L"[" + entry.comment + L"]";
        commentOnWhite = white && comment;
        firstPrinted = false;
    }
    return text;
}

void TranslateMainVariantName(TVariantMap& variants, int languageId) {
    const std::wstring& wanted = MainVariantNames[languageIndex(languageId)];
    if (variants.count(wanted)) return;
    for (const std::wstring& name : MainVariantNames) {
        const auto found = variants.find(name);
        if (found == variants.end()) continue;
        TVariant moved = found->second;
        moved.name = wanted;
        variants.erase(found);
        variants.emplace(wanted, std::move(moved));
        return;
    }
}

bool SameVariantMoves(const TVariant& a, const TVariant& b, bool withComments) {
    if (a.moves.size() != b.moves.size()) return false;
    for (size_t i = 0; i < a.moves.size(); ++i) {
        if (!sameMove(a.moves[i], b.moves[i])) return false;
        if (withComments && a.moves[i].comment != b.moves[i].comment) return false;
    }
    return true;
}

TVariant MirrorVariant(const TVariant& variant) {
    TVariant mirrored = variant;
    for (TVariantMove& entry : mirrored.moves) {
        if (entry.move.from < 64) entry.move.from ^= 7;
        if (entry.move.to < 64) entry.move.to ^= 7;
    }
    return mirrored;
}

} // namespace zorvane

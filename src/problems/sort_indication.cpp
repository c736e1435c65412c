#include "sort_indication.h"

#include "core/chess_exception.h"
#include "core/fen.h"
#include "core/piece.h"
#include "notation.h"

#include <algorithm>
#include <cstdlib>
#include <optional>

namespace zorvane {

namespace {

bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

std::string trimBlanks(const std::string& text) {
    const auto first = text.find_first_not_of(' ');
    if (first == std::string::npos) return std::string();
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

const char* invalidText(int languageId) {
    return languageId == 0 ? "Niepoprawny opis SortIndication" : "Invalid description of SortIndication";
}

[[noreturn]] void throwInvalid(const std::string& text, int languageId) {
    throw ChessException(std::string(invalidText(languageId)) + ": " + text);
}

// A square from a letter and a digit in either case, by arithmetic alone.
uint8_t squareFrom(char file, char rank) {
    const int col = (file | 0x20) - 'a';
    return static_cast<uint8_t>(col + (rank - '1') * 8);
}

std::optional<uint8_t> kindOfLetter(char letter) {
    try {
        return KindFromLetter(letter);
    } catch (const ChessException&) {
        return std::nullopt;
    }
}

std::string squareText(uint8_t square) {
    return std::string(1, static_cast<char>('a' + (square & 7))) + std::to_string((square >> 3) + 1);
}

bool matchesUnder(const SortIndications& map, int key, const TChessboard& parent, const TMove& move,
                  const TChessboard& child) {
    const auto found = map.find(static_cast<int16_t>(key));
    if (found == map.end()) return false;
    for (const SortIndication& record : found->second)
        if (IndicationMatches(record, parent, move, child)) return true;
    return false;
}

} // namespace

void ParseSortIndication(SortIndication& record, const std::string& text, int languageId) {
    if (text.empty()) throw ChessException(invalidText(languageId));
    SortIndication r;
    std::string t = trimBlanks(text);

    // 1. Check marks at the end.
    if (t.size() >= 2 && t.compare(t.size() - 2, 2, "++") == 0) {
        r.checks = 2;
        t.resize(t.size() - 2);
    } else if (!t.empty() && t.back() == '+') {
        r.checks = 1;
        t.pop_back();
    }
    size_t pos = 0;
    // 2. Negation.
    if (pos < t.size() && t[pos] == '~') {
        r.negated = 1;
        ++pos;
    }
    // 3. Move number.
    const size_t dot = t.find('.', pos);
    if (dot != std::string::npos) {
        r.moveNumber = static_cast<int16_t>(std::atoi(t.substr(pos, dot - pos).c_str()));
        pos = dot + 1;
        while (pos < t.size() && t[pos] == ' ') ++pos;
    }
    // 4. Figure letter: a letter not followed by a digit. A letter that names
    //    no figure makes the whole text invalid.
    if (pos < t.size() && isLetter(t[pos]) && !(pos + 1 < t.size() && isDigit(t[pos + 1]))) {
        const auto kind = kindOfLetter(t[pos]);
        if (!kind) throwInvalid(text, languageId);
        r.figure = static_cast<uint8_t>(*kind | WHITE);
        ++pos;
    }
    // 5. Castling.
    if (pos < t.size() && t[pos] == '0') {
        const std::string rest = t.substr(pos);
        if (rest == "0-0-0")
            r.to = 2;
        else if (rest == "0-0")
            r.to = 6;
        else
            throwInvalid(text, languageId);
        r.from = 4;
        r.captureRule = 0;
        record = r;
        return;
    }
    // 6. From-square, only when a separator follows somewhere.
    if (t.size() - pos >= 2 && isLetter(t[pos]) && t.find_first_of(":>-", pos) != std::string::npos) {
        r.from = squareFrom(t[pos], t[pos + 1]);
        pos += 2;
    }
    // 7. Separator.
    if (pos < t.size() && t[pos] == ':') {
        r.captureRule = 1;
        ++pos;
    } else if (pos < t.size() && t[pos] == '>') {
        r.captureRule = 0;
        ++pos;
    } else if (pos < t.size() && t[pos] == '-') {
        ++pos;
    }
    // 8. To-square.
    if (t.size() < pos + 2 || !isLetter(t[pos])) throwInvalid(text, languageId);
    r.to = squareFrom(t[pos], t[pos + 1]);
    pos += 2;
    // 9. Promotion figure.
    if (pos < t.size()) {
        const auto kind = kindOfLetter(t[pos]);
        if (!kind) throwInvalid(text, languageId);
        r.promotion = *kind;
    }
    record = r;
}

void ParseSortIndications(SortIndications& map, const std::string& text, int languageId) {
    SortIndications old;
    old.swap(map);
    try {
        const std::string t = trimBlanks(text);
        if (t.empty()) return;
        const char separator = t.find(',') != std::string::npos ? ',' : ';';
        size_t start = 0;
        while (true) {
            const size_t end = t.find(separator, start);
            SortIndication record;
            ParseSortIndication(record,
                                trimBlanks(t.substr(start, end == std::string::npos ? end : end - start)),
                                languageId);
            map[record.moveNumber].push_back(record);
            if (end == std::string::npos) break;
            start = end + 1;
        }
    } catch (...) {
        map.swap(old);
        throw;
    }
}

std::string FormatSortIndication(const SortIndication& r) {
    std::string text;
    if (r.negated) text += '~';
    if (r.moveNumber != 0) text += std::to_string(r.moveNumber) + ".";
    if (r.figure == WP)
        text += 'p';
    else if (r.figure != 0)
        text += FigureLetter(r.figure & KIND_MASK);
    if (r.from != ANY_SQUARE && (r.from & 0xC0) == 0) text += squareText(r.from);
    if (!(r.captureRule == CAPTURE_NO_MATTER && r.from == ANY_SQUARE))
        text += r.captureRule == 1 ? ":" : r.captureRule == 0 ? ">" : "-";
    text += squareText(r.to);
    if (r.promotion) text += FigureLetter(r.promotion);
    if (r.checks == 1)
        text += "+";
    else if (r.checks == 2)
        text += "++";
    return text;
}

std::string FormatSortIndications(const SortIndications& map) {
    std::string text;
    for (const auto& [key, records] : map)
        for (const SortIndication& record : records) {
            if (!text.empty()) text += "; ";
            text += FormatSortIndication(record);
        }
    return text;
}

std::string VariantToSortIndications(const TVariant& variant, const TChessboard& startPosition) {
    std::vector<TChessboard> positions;
    positions.reserve(variant.moves.size() + 1);
    positions.push_back(startPosition);
    positions.back().m_shPliesLeft =
        static_cast<uint16_t>(std::min<size_t>(2 * variant.moves.size() + 1, 65535) | 1);
    std::string text;
    for (size_t i = 0; i < variant.moves.size(); ++i) {
        const TChessboard& parent = positions.back();
        TMove move = variant.moves[i].move;
        TChessboard child;
        if (!PlayMove(parent, child, move)) break;
        if (i % 2 == 0) {
            const bool capture = parent.m_aSquares[move.to] != 0 || move.enPassant;
            if (!text.empty()) text += "; ";
            text +=
                std::to_string(i / 2 + 1) + "." + FormatLongMove(move, parent.m_aSquares[move.from], capture);
            if (CheckLevel(child) > 0) text += "+";
        }
        positions.push_back(child);
    }
    return text;
}

bool IndicationMatches(const SortIndication& r, const TChessboard& parent, const TMove& move,
                       const TChessboard& child) {
    if (r.to != move.to) return false;
    if (r.from != ANY_SQUARE && r.from != move.from) return false;
    if (r.captureRule != CAPTURE_NO_MATTER && r.captureRule != (parent.m_aSquares[move.to] != 0 ? 1 : 0))
        return false;
    if (r.figure != 0 && r.figure != parent.m_aSquares[move.from]) return false;
    if (CheckLevel(child) < r.checks) return false;
    return r.promotion == 0 || r.promotion == move.promotionKind();
}

bool EarlierIndicationsMatch(const SortIndications& map, int moveNumber, const TChessboard& position) {
    const TChessboard* reached = &position;
    int current = moveNumber;
    while (true) {
        // The next lower key; none, or key 0, ends the chain with success.
        auto lower = map.lower_bound(static_cast<int16_t>(current));
        if (lower == map.begin()) return true;
        --lower;
        const int key = lower->first;
        if (key <= 0) return true;
        for (int plies = 2 * (current - key); plies > 0; --plies) {
            reached = reached->m_pParent;
            if (reached == nullptr) return false;
        }
        const TChessboard* parent = reached->m_pParent;
        if (parent == nullptr) return false;
        const TMove move = reached->m_LastMove;
        if (!matchesUnder(map, key, *parent, move, *reached) &&
            !matchesUnder(map, 0, *parent, move, *reached))
            return false;
        current = key;
    }
}

bool SortIndicationsApply(const SortIndications& map, int moveNumber) {
    return !map.empty() && moveNumber <= map.rbegin()->first;
}

const SortIndication* FindMatchingIndication(const SortIndications& map, int moveNumber,
                                             const TChessboard& child) {
    const TChessboard* parent = child.m_pParent;
    if (parent == nullptr) return nullptr;
    for (const int key : {moveNumber, 0}) {
        const auto found = map.find(static_cast<int16_t>(key));
        if (found == map.end()) continue;
        for (const SortIndication& record : found->second) {
            if (!IndicationMatches(record, *parent, child.m_LastMove, child)) continue;
            if (record.chained && !EarlierIndicationsMatch(map, moveNumber, child)) continue;
            return &record;
        }
        if (moveNumber == 0) break;
    }
    return nullptr;
}

void OrderRootMovesByIndications(const SortIndications& map, const TChessboard& position,
                                 std::vector<TMove>& moves) {
    for (const int key : {1, 0}) {
        const auto found = map.find(static_cast<int16_t>(key));
        if (found == map.end()) continue;
        const std::vector<TMove> handled = moves;
        for (const TMove& candidate : handled) {
            TMove move = candidate;
            TChessboard child;
            if (!PlayMove(position, child, move)) continue;
            const auto record =
                std::find_if(found->second.begin(), found->second.end(), [&](const SortIndication& r) {
                    return IndicationMatches(r, position, move, child);
                });
            if (record == found->second.end()) continue;
            const auto at = std::find(moves.begin(), moves.end(), candidate);
            const TMove taken = *at;
            moves.erase(at);
            if (record->negated)
                moves.push_back(taken);
            else
                moves.insert(moves.begin(), taken);
        }
    }
}

SortIndications MirrorSortIndications(const SortIndications& map) {
    SortIndications mirrored = map;
    for (auto& [key, records] : mirrored)
        for (SortIndication& r : records) {
            if (r.from != ANY_SQUARE) r.from = static_cast<uint8_t>(r.from ^ 7);
            if (r.to != ANY_SQUARE) r.to = static_cast<uint8_t>(r.to ^ 7);
        }
    return mirrored;
}

SortIndications ChooseActiveSortIndications(bool useMainVariant, const TVariant* mainVariant,
                                            const TChessboard& startPosition, bool mirrored,
                                            const SortIndications& sortIndications, int languageId) {
    if (!useMainVariant || mainVariant == nullptr) return sortIndications;
    const TVariant variant = mirrored ? MirrorVariant(*mainVariant) : *mainVariant;
    SortIndications active;
    ParseSortIndications(active, VariantToSortIndications(variant, startPosition), languageId);
    return active;
}

} // namespace zorvane

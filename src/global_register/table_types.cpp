#include "table_types.h"

#include "position_type.h"

#include <algorithm>
#include <cctype>
#include <functional>
#include <set>
#include <tuple>

namespace zorvane {

namespace {

constexpr std::string_view WHITE_PROMOTIONS = "QRBN";
constexpr std::string_view BLACK_PROMOTIONS = "qrbn";
constexpr std::string_view MAN_LETTERS = "QRBNPqrbnp";

int countPawns(std::string_view type) {
    return static_cast<int>(std::count_if(type.begin(), type.end(), [](char c) { return IsPawnLetter(c); }));
}

std::string without(std::string_view type, size_t at) {
    std::string rest(type);
    rest.erase(at, 1);
    return rest;
}

} // namespace

std::string CanonicalPosType(std::string letters) {
    std::sort(letters.begin(), letters.end(),
              [](char a, char b) { return PosTypeLetterCode(a) < PosTypeLetterCode(b); });
    return letters;
}

bool TypeHasWhiteMan(std::string_view type) {
    return std::any_of(type.begin(), type.end(),
                       [](char c) { return std::isupper(static_cast<unsigned char>(c)); });
}

std::vector<std::string> SuccessorTypes(std::string_view type) {
    std::set<std::string> found;
    for (size_t i = 0; i < type.size(); ++i) {
        // Any man may be taken by the other side.
        found.insert(without(type, i));
        const char letter = type[i];
        if (!IsPawnLetter(letter)) continue;
        for (const char figure : letter == 'P' ? WHITE_PROMOTIONS : BLACK_PROMOTIONS) {
            // A promotion, and a promotion that takes a man of the other side.
            const std::string promoted = without(type, i) + figure;
            found.insert(CanonicalPosType(promoted));
            for (size_t j = 0; j < type.size(); ++j) {
                if (j == i || (std::isupper(static_cast<unsigned char>(type[j])) != 0) ==
                                  (std::isupper(static_cast<unsigned char>(letter)) != 0))
                    continue;
                std::string taken(type);
                taken[i] = figure;
                taken.erase(j, 1);
                found.insert(CanonicalPosType(taken));
            }
        }
    }
    std::vector<std::string> result;
    for (const std::string& t : found)
        if (!t.empty() && TypeHasWhiteMan(t)) result.push_back(t);
    return result;
}

std::vector<std::string> TypesInMakingOrder(const std::vector<std::string>& types) {
    std::set<std::string> all;
    std::function<void(const std::string&)> visit = [&](const std::string& type) {
        if (!all.insert(type).second) return;
        for (const std::string& next : SuccessorTypes(type)) visit(next);
    };
    for (const std::string& type : types)
        if (TypeHasWhiteMan(type)) visit(CanonicalPosType(type));
    std::vector<std::string> ordered(all.begin(), all.end());
    std::sort(ordered.begin(), ordered.end(), [](const std::string& a, const std::string& b) {
        return std::make_tuple(a.size(), countPawns(a), a) < std::make_tuple(b.size(), countPawns(b), b);
    });
    return ordered;
}

std::vector<std::string> AllTypesWithWhiteMen(int men) {
    std::vector<std::string> types;
    const int letters = men - 2;
    if (letters < 1) return types;
    // Multisets of letters as non-decreasing sequences of their positions in MAN_LETTERS.
    std::vector<size_t> pick(static_cast<size_t>(letters), 0);
    for (;;) {
        std::string type;
        for (const size_t p : pick) type += MAN_LETTERS[p];
        if (TypeHasWhiteMan(type)) types.push_back(type);
        int k = letters - 1;
        while (k >= 0 && pick[static_cast<size_t>(k)] == MAN_LETTERS.size() - 1) --k;
        if (k < 0) break;
        ++pick[static_cast<size_t>(k)];
        for (int j = k + 1; j < letters; ++j) pick[static_cast<size_t>(j)] = pick[static_cast<size_t>(k)];
    }
    std::sort(types.begin(), types.end(), [](const std::string& a, const std::string& b) {
        return std::make_tuple(countPawns(a), a) < std::make_tuple(countPawns(b), b);
    });
    return types;
}

} // namespace zorvane

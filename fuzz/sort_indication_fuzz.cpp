// Any bytes through the sort-indication reader. Only ChessException may
// leave it, and a failed read must leave the old indications as they were.
// What it reads, written by FormatSortIndications, reads back to the same
// records, and a second write gives the same text, with two exceptions that
// hold by design: a square is taken from a letter and any byte by arithmetic
// alone, so a record may hold a square off the board, whose text names
// another square or none (the file writer leaves such records out); and a
// promotion to a pawn is written as the pawn's blank letter, which the next
// read trims away. For those only the absence of a fault is checked.
#include "core/chess_exception.h"
#include "core/piece.h"
#include "problems/sort_indication.h"
#include "fuzz_check.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

using namespace zorvane;

using zorvane::fuzz::check;

bool sameRecord(const SortIndication& a, const SortIndication& b) {
    return a.figure == b.figure && a.from == b.from && a.to == b.to && a.captureRule == b.captureRule &&
           a.checks == b.checks && a.promotion == b.promotion && a.moveNumber == b.moveNumber &&
           a.negated == b.negated && a.chained == b.chained;
}

bool sameMap(const SortIndications& a, const SortIndications& b) {
    if (a.size() != b.size()) return false;
    for (auto x = a.begin(), y = b.begin(); x != a.end(); ++x, ++y) {
        if (x->first != y->first || x->second.size() != y->second.size()) return false;
        for (size_t i = 0; i < x->second.size(); ++i)
            if (!sameRecord(x->second[i], y->second[i])) return false;
    }
    return true;
}

bool writtenFormReadable(const SortIndications& map) {
    for (const auto& [number, records] : map)
        for (const SortIndication& r : records)
            if (r.to >= 64 || (r.from >= 64 && r.from != ANY_SQUARE) || r.promotion == KIND_PAWN)
                return false;
    return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    // Indications from before, which a failed read must give back.
    SortIndications map;
    ParseSortIndications(map, "1.Qd7; ~a2-a3", LANGUAGE_ENGLISH);
    const SortIndications before = map;
    try {
        ParseSortIndications(map, text, size % 2 ? LANGUAGE_POLISH : LANGUAGE_ENGLISH);
    } catch (const ChessException&) {
        check(sameMap(map, before), "a failed read keeps the old indications");
        return 0;
    }

    const std::string written = FormatSortIndications(map);
    if (!writtenFormReadable(map)) return 0;
    SortIndications again;
    try {
        ParseSortIndications(again, written, LANGUAGE_ENGLISH);
    } catch (const ChessException& e) {
        std::fprintf(stderr, "written indications do not read back: %s\n%s\n", e.what(), written.c_str());
        std::abort();
    }
    check(sameMap(map, again), "the written indications read back the same");
    check(FormatSortIndications(again) == written, "a second write gives the same text");
    return 0;
}

// Any bytes through the FEN-code check of a text file. It must never crash or
// hang, whatever the text; every code it reports as missing was found in the
// text, and a collection that holds the start position of a code finds it.
#include "core/fen.h"
#include "fuzz_check.h"
#include "problems/fen_check.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace {

using namespace zorvane;
using zorvane::fuzz::check;

// One problem on the initial position, so that some codes are found.
const ProblemMap& collection() {
    static const ProblemMap problems = [] {
        ProblemMap map;
        auto problem = std::make_unique<TChessProblem>();
        ReadFenPlacement("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR", problem->startPosition.m_aSquares);
        map[1] = std::move(problem);
        return map;
    }();
    return problems;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    const FenCheckResult result = CheckFenCodes(text, collection());
    check(result.codes >= static_cast<int>(result.notFound.size()), "no more missing codes than codes");
    for (const std::string& code : result.notFound)
        check(text.find(code) != std::string::npos, "a missing code stands in the text");
    return 0;
}

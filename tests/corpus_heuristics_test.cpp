// The corpus solved as a user's solve runs: with the automatic set of special
// heuristics, relaxed pass by pass and settled by the pass without them. A
// bet may only cost time: in safe mode every key set stays exact, and the
// first key found is always one of the answer's.
#include "corpus_solving.h"

namespace zorvane {
namespace {

TEST(CorpusHeuristics, EveryKeySetInSafeModeUpToFiveMovers) {
    SolveCorpus(1, 5, true, false, true);
}
TEST(CorpusHeuristics, EveryKeySetInSafeModeOfTheSixToEightMovers) {
    SolveCorpus(6, 8, true, false, true);
}
TEST(CorpusHeuristics, TheFirstKeyIsAKeyInSafeMode) {
    SolveCorpusFirstKey(1, 8, true, true);
}
TEST(CorpusHeuristics, TheFirstKeyIsAKeyInQuickMode) {
    SolveCorpusFirstKey(1, 8, false, true);
}

} // namespace
} // namespace zorvane

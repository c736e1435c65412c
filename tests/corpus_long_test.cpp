// The five- to eight-movers of the corpus: some thirty seconds in all on this
// machine, so they have a test program of their own that ctest runs beside the
// others. From the six-movers on the solve needs the temporary register, which
// it uses from ten plies on.
#include "corpus_solving.h"

namespace zorvane {
namespace {

TEST(CorpusKeysLong, FiveMovers) {
    SolveCorpus(5, 5, false, true);
}
TEST(CorpusKeysLong, SixMovers) {
    SolveCorpus(6, 6, false, true);
}
TEST(CorpusKeysLong, SevenMovers) {
    SolveCorpus(7, 7, false, true);
}
TEST(CorpusKeysLong, EightMovers) {
    SolveCorpus(8, 8, false, true);
}

} // namespace
} // namespace zorvane

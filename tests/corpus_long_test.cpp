// The five- to eight-movers of the corpus: minutes of work for the plain
// search, so they carry the label "long" and run on demand
// (ZORVANE_LONG_TESTS=1 scripts/test.sh).
#include "corpus_solving.h"

namespace zorvane {
namespace {

TEST(CorpusKeysLong, FiveMovers) { SolveCorpus(5, 5, false, true); }
TEST(CorpusKeysLong, SixMovers) { SolveCorpus(6, 6, false, true); }
TEST(CorpusKeysLong, SevenAndEightMovers) { SolveCorpus(7, 8, false, true); }

} // namespace
} // namespace zorvane
